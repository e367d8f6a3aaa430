#include "startup/base/COSInfo.h"

#include <cstdlib>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

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
    return files::folderList(configured.empty() ? "/etc/xdg" : configured);
}

std::string ofSuite(const std::string& folder) {
    return folder + (folder.ends_with('/') ? "vireo" : "/vireo");
}

}  // namespace

std::vector<std::string> COSInfo::configurationFolders() const {
    std::vector<std::string> folders = machineFolders();
    folders.insert(folders.begin(), userFolder());
    return folders;
}

std::string COSInfo::windowsDirectory() const {
    if (!givenFolder().empty()) {
        return givenFolder();
    }
    if (const std::string district = environment(DistrictVariable);
        isFullPath(district) && files::exists(ofSuite(district) + files::Separator + "route.ini")) {
        return ofSuite(district);
    }
    const std::vector<std::string> folders = configurationFolders();
    for (const std::string& folder : folders) {
        if (files::exists(ofSuite(folder) + files::Separator + "route.ini")) {
            return ofSuite(folder);
        }
    }
    return ofSuite(folders.front());
}

void COSInfo::useFolder(const std::string& folder) { givenFolder() = folder; }

}  // namespace startup
