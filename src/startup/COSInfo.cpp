#include "startup/COSInfo.h"

#include <cstdlib>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "platform/base/text.h"
#include "platform/files/files.h"

namespace startup {

namespace {

std::string& givenFolder() {
    static std::string folder;
    return folder;
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

std::string homeFolder() {
    if (std::string home = environment("HOME"); !home.empty()) {
        return home;
    }
    const passwd* entry = getpwuid(getuid());
    return entry == nullptr ? "/" : entry->pw_dir;
}

// A configuration folder that is no full path is to be ignored.
bool isFullPath(std::string_view folder) { return folder.starts_with('/'); }

std::string userFolder() {
    const std::string configured = environment("XDG_CONFIG_HOME");
    return isFullPath(configured) ? configured : homeFolder() + "/.config";
}

std::vector<std::string> machineFolders() {
    const std::string configured = environment("XDG_CONFIG_DIRS");
    std::string_view rest = configured.empty() ? std::string_view("/etc/xdg") : configured;
    std::vector<std::string> folders;
    while (!rest.empty()) {
        const auto end = rest.find(':');
        if (isFullPath(rest.substr(0, end))) {
            folders.emplace_back(rest.substr(0, end));
        }
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return folders;
}

std::string ofSuite(const std::string& folder) {
    return folder + (folder.ends_with('/') ? "vireo" : "/vireo");
}

}  // namespace

std::string COSInfo::windowsDirectory() const {
    if (!givenFolder().empty()) {
        return givenFolder();
    }
    std::vector<std::string> folders = machineFolders();
    folders.insert(folders.begin(), userFolder());
    for (const std::string& folder : folders) {
        if (files::exists(ofSuite(folder) + files::Separator + "route.ini")) {
            return ofSuite(folder);
        }
    }
    return ofSuite(folders.front());
}

void COSInfo::useFolder(const std::string& folder) { givenFolder() = folder; }

}  // namespace startup
