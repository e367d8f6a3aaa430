#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "platform/base/notcopied.h"
#include "platform/files/files.h"

namespace tools::district {

/// Absolute, without a separator at its end; a place on a server as it is given.
[[nodiscard]] std::filesystem::path tidied(const std::filesystem::path& path);

/// `start` and the time in `folder`, as in "backup-2026-11-22-093000.dump"; with a number behind it
/// where something made within the same second has that name.
[[nodiscard]] std::filesystem::path timedName(const std::filesystem::path& folder,
                                              std::string_view start, std::string_view ending = "");

/// A new folder beside the one that is asked for, which takes that one's place when all is done.
/// Until then it is removed again by the destructor, so that a failure leaves nothing behind; what
/// a killed program left is removed by the next one that makes the same. It is for its owner only.
class NewFolder : private base::NotCopied {
public:
    /// What may stand in the place of the folder that is asked for.
    enum class Place {
        Free,     ///< nothing, or an empty folder
        Replaced  ///< a folder, which stands there up to the end and is removed then
    };

    /// Raises base::RunTimeError where something else stands there, or it cannot be made.
    explicit NewFolder(const std::filesystem::path& wanted, Place place = Place::Free);
    ~NewFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return making_; }
    /// Where it will stand.
    [[nodiscard]] const std::filesystem::path& wanted() const { return wanted_; }

    /// Moves it to its place. Raises base::RunTimeError.
    void finish();

private:
    std::filesystem::path wanted_;
    Place place_;
    std::filesystem::path making_;
    std::unique_ptr<files::FolderLock> inUse_;
    bool finished_ = false;
};

}  // namespace tools::district
