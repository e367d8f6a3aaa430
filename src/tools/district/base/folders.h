#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "data/schema/schema.h"
#include "platform/files/files.h"

namespace tools::district {

/// Where a district's files stand: below its folder, or where the folder's settings say.
struct Folders {
    struct Places {
        std::filesystem::path data;
        std::filesystem::path programs;
        std::filesystem::path common;
    };
    std::filesystem::path root;
    std::optional<Places> elsewhere = {};

    [[nodiscard]] std::filesystem::path data() const {
        return elsewhere ? elsewhere->data : root / "data";
    }
    [[nodiscard]] std::filesystem::path programs() const {
        return elsewhere ? elsewhere->programs : root / "prog";
    }
    [[nodiscard]] std::filesystem::path common() const {
        return elsewhere ? elsewhere->common : root / "common";
    }
    [[nodiscard]] std::filesystem::path reports() const { return data() / "RouteRpts"; }
    [[nodiscard]] std::filesystem::path settings() const { return root / "vireo" / "route.ini"; }
    /// Without regard to the case of a file that is there.
    [[nodiscard]] std::filesystem::path database(data::DatabaseFile file) const;
};

/// The places of the district in a folder: those below it where a routing database stands there,
/// otherwise those that its settings name. Raises base::RunTimeError where there is no such folder.
[[nodiscard]] Folders foldersOf(const std::filesystem::path& root);

/// A new folder beside the one that is asked for, which takes that one's place when all is done.
/// Until then it is removed again by the destructor, so that a failure leaves nothing behind; what
/// a killed program left is removed by the next one that makes the same. Everything below it is for
/// its owner only.
class FolderInTheMaking {
public:
    /// What may stand in the place of the folder that is asked for.
    enum class Place {
        Free,      ///< nothing, or an empty folder
        District,  ///< a district that this one replaces
    };

    /// Raises base::RunTimeError where something else stands there, the folder cannot be made, or
    /// has a name that the settings file cannot hold.
    explicit FolderInTheMaking(const std::filesystem::path& wanted, Place place = Place::Free);
    ~FolderInTheMaking();
    FolderInTheMaking(const FolderInTheMaking&) = delete;
    FolderInTheMaking& operator=(const FolderInTheMaking&) = delete;

    [[nodiscard]] const Folders& folders() const { return making_; }
    /// Where it will stand.
    [[nodiscard]] const Folders& wanted() const { return wanted_; }

    /// Moves it to its place; what it replaces stands there up to that moment, and is removed by
    /// the destructor. Raises base::RunTimeError.
    void finish();

private:
    Folders wanted_;
    Folders making_;
    Place place_;
    std::unique_ptr<files::FolderLock> inUse_;
    bool finished_ = false;
};

/// Writes the settings file of a district that will stand at `wanted`.
void writeSettings(const Folders& making, const Folders& wanted);

/// The text of a settings file with the folders of the district at `wanted` in the place of those
/// that it names; everything else stays.
[[nodiscard]] std::string settingsFor(const Folders& wanted, std::string_view settings);

/// Writes a text file that only its owner reads. Raises base::RunTimeError.
void writePrivateFile(const std::filesystem::path& path, std::string_view text);

}  // namespace tools::district
