#include "platform/process/programs.h"

#include <cstdlib>

#include <unistd.h>

#include "platform/files/files.h"
#include "platform/files/installation.h"

namespace process {

std::string findProgram(std::string_view name, const std::vector<std::string>& folders) {
    if (name.empty() || name.find('/') != std::string_view::npos) {
        return {};
    }
    for (const char* suffix : {"", ".exe"}) {
        for (const std::string& folder : folders) {
            std::string path = files::find(folder + (folder.ends_with('/') ? "" : "/") +
                                           std::string(name) + suffix);
            if (files::exists(path) && ::access(path.c_str(), X_OK) == 0) {
                return path;
            }
        }
    }
    return {};
}

std::string programOfSuite(std::string_view name) {
    const files::Installation installed = files::installation();
    std::vector<std::string> folders = foldersOfPath();
    folders.insert(folders.begin(), {installed.programs, installed.companions});
    return findProgram(name, folders);
}

std::vector<std::string> foldersOfPath() {
    const char* path = std::getenv("PATH");
    return files::folderList(path == nullptr ? "" : path);
}

}  // namespace process
