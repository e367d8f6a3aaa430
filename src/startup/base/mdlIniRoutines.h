#pragma once

#include <string>

namespace startup {

/// One value of a configuration file, at most 255 characters. Where it is missing or empty a
/// message box names the file, and the result is empty. Raises nothing.
std::string INIGetSettingString(const std::string& section, const std::string& key,
                                const std::string& defaultValue, const std::string& iniFile);

}  // namespace startup
