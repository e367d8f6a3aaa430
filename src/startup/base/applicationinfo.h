#pragma once

#include <string>

namespace startup {

/// What the running program says about itself.
struct ApplicationInfo {
    std::string title;
    std::string companyName;
    int major = 0;
    int minor = 0;
    int revision = 0;
    std::string path;  ///< the program's own folder, without a separator at its end
    std::string productName;
};

/// The program in force. A companion program changes the title before it does anything else; tests
/// change the path.
ApplicationInfo& applicationInfo();

}  // namespace startup
