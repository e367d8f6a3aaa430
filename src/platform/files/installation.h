#pragma once

#include <string>

namespace files {

/// What is installed, and where. All of it lies in fixed places around the folder of the running
/// program, so that a copy of the whole tree works anywhere; a build folder has the same shape.
/// Folders are full paths without a separator at their end; none of them needs to be there.
struct Installation {
    std::string programs;    ///< what people start: tarn, vireo, vireo-district
    std::string companions;  ///< what programs start: Logon.Exe, DelWrkFiles.exe, vireo-read-access
    std::string guide;       ///< the guide: its pages (*.md), and their pictures in pictures/
    std::string version;     ///< such as "1.0.0": the release that all programs belong to
    std::string desktopEntry;  ///< the identifier of its entry in the desktop's menu
};

/// The one that the running program belongs to.
[[nodiscard]] Installation installation();

/// The one whose programs or companions lie in that folder.
[[nodiscard]] Installation installationAround(const std::string& folder);

}  // namespace files
