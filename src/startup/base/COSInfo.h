#pragma once

#include <string>

namespace startup {

/// What the program asks the operating system about itself. The only one who knows where the
/// configuration file is.
class COSInfo {
public:
    /// The folder of "route.ini", without a separator at its end: "vireo" in the user's
    /// configuration folder or in one of the machine's, whichever holds the file first; the user's
    /// where none does.
    [[nodiscard]] std::string windowsDirectory() const;

    /// Answers with this folder from now on; empty goes back to the system's. For tests.
    static void useFolder(const std::string& folder);
};

}  // namespace startup
