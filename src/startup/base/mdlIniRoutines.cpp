#include "startup/base/mdlIniRoutines.h"

#include <exception>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/ini/ini.h"

namespace startup {

namespace {

// Traps whatever the error switch says: it is read before there is a switch.
std::string settingOrEmpty(const std::string& section, const std::string& key,
                           const std::string& defaultValue, const std::string& iniFile) noexcept {
    try {
        return ini::readString(section, key, defaultValue, iniFile);
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace

std::string INIGetSettingString(const std::string& section, const std::string& key,
                                const std::string& defaultValue, const std::string& iniFile) {
    std::string value = settingOrEmpty(section, key, defaultValue, iniFile);
    if (value.empty()) {
        base::MsgBox({.text = "Error reading " + iniFile +
                              ".  Please make sure you have the lastest version of the ini file in "
                              "the correct path.",
                      .title = "INIGetSettingString",
                      .concerns = fmt::format("{} in section [{}]\nThe key is missing or has no "
                                              "value.",
                                              key, section)});
    }
    return value;
}

}  // namespace startup
