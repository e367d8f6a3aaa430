#pragma once

#include <filesystem>
#include <string>

#include "data/schema/schema.h"

namespace tools::district {

/// Where a district's files stand below its folder.
struct Folders {
    std::filesystem::path root;

    [[nodiscard]] std::filesystem::path data() const { return root / "data"; }
    [[nodiscard]] std::filesystem::path programs() const { return root / "prog"; }
    [[nodiscard]] std::filesystem::path common() const { return root / "common"; }
    [[nodiscard]] std::filesystem::path reports() const { return root / "data" / "RouteRpts"; }
    [[nodiscard]] std::filesystem::path settings() const { return root / "vireo" / "route.ini"; }
    [[nodiscard]] std::filesystem::path database(data::DatabaseFile file) const;
};

/// A new folder beside the one that is asked for, which takes that one's place when all is done.
/// Until then it is removed again by the destructor, so that a failure leaves nothing behind.
/// Everything below it is for its owner only.
class FolderInTheMaking {
public:
    /// Raises base::RunTimeError where the folder holds something already, cannot be made, or has a
    /// name that the settings file cannot hold.
    explicit FolderInTheMaking(const std::filesystem::path& wanted);
    ~FolderInTheMaking();
    FolderInTheMaking(const FolderInTheMaking&) = delete;
    FolderInTheMaking& operator=(const FolderInTheMaking&) = delete;

    [[nodiscard]] const Folders& folders() const { return making_; }
    /// Where it will stand.
    [[nodiscard]] const Folders& wanted() const { return wanted_; }

    /// Moves it to its place. Raises base::RunTimeError.
    void finish();

private:
    Folders wanted_;
    Folders making_;
    bool finished_ = false;
};

/// Writes the settings file of a district that will stand at `wanted`.
void writeSettings(const Folders& making, const Folders& wanted);

/// Writes a text file that only its owner reads. Raises base::RunTimeError.
void writePrivateFile(const std::filesystem::path& path, std::string_view text);

}  // namespace tools::district
