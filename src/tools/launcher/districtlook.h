#pragma once

#include <string>

namespace tools::launcher {

/// What can be done with a district.
enum class Condition {
    Ready,
    LookOnly,  ///< some of its files may only be read
    Older,     ///< an upgrade brings it up
    Newer,     ///< the program is too old for it
    Moved,     ///< its settings name other folders than those beside them
    Unusable
};

/// A district as it was found.
struct DistrictLook {
    Condition condition = Condition::Ready;
    std::string name = {};  ///< as it calls itself; empty where that cannot be read
    std::string says = {};  ///< what is to be told, in whole sentences; empty where it is ready
};

/// Looks whether the program can work on the district in a folder. Changes nothing, raises nothing;
/// waits as long as the folder's file system does.
[[nodiscard]] DistrictLook lookAtDistrict(const std::string& folder) noexcept;

/// The condition in a word or two: "Older version".
[[nodiscard]] std::string wordsFor(Condition condition);

/// Whether the program is started on such a district.
[[nodiscard]] bool canBeOpened(Condition condition);

/// The district's folder where its settings' folder, its settings or one of its own folders was
/// chosen in its place; the folder itself otherwise, without a separator at its end.
[[nodiscard]] std::string districtFolderOf(const std::string& chosen);

/// Lets the settings of a district that was moved name the folders beside them. Raises
/// base::RunTimeError.
void adoptFolders(const std::string& folder);

}  // namespace tools::launcher
