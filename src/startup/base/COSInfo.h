#pragma once

#include <string>
#include <vector>

namespace startup {

/// The variable in which the launcher leaves the folder of the district that was chosen.
inline constexpr const char* DistrictVariable = "VIREO_DISTRICT";

/// What the program asks the operating system about itself. The only one who knows where the
/// configuration file is.
class COSInfo {
public:
    /// The folder of "route.ini", without a separator at its end: "vireo" in the district's folder
    /// that the variable names, in the user's configuration folder or in one of the machine's,
    /// whichever holds the file first; the user's where none does.
    [[nodiscard]] std::string windowsDirectory() const;

    /// The user's configuration folder and the machine's, as they are looked through.
    [[nodiscard]] std::vector<std::string> configurationFolders() const;

    /// Answers with this folder from now on; empty goes back to the system's. For tests.
    static void useFolder(const std::string& folder);
};

}  // namespace startup
