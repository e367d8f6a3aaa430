#include "tools/district/base/folders.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <system_error>

#include <fmt/format.h>
#include <sys/stat.h>

#include "platform/base/error.h"
#include "platform/files/files.h"
#include "platform/ini/ini.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

/// The longest value that a settings file hands out.
constexpr std::size_t LongestSetting = 255;

[[noreturn]] void refuse(const std::string& why) {
    throw base::RunTimeError(base::errors::PathFileAccess, why);
}

void checkName(const Folders& wanted) {
    const std::string longest = wanted.common().string() + "/";
    if (longest.size() > LongestSetting) {
        refuse(
            fmt::format("The folder's name is too long: {} characters, of which a settings file "
                        "holds {}.",
                        longest.size(), LongestSetting));
    }
    if (longest.find_first_of("\r\n") != std::string::npos) {
        refuse("The folder's name holds a line end, which a settings file cannot hold.");
    }
}

void checkFree(const Folders& wanted) {
    std::error_code error;
    if (fs::exists(wanted.settings(), error) ||
        fs::exists(wanted.database(data::DatabaseFile::Routing), error)) {
        refuse(
            fmt::format("There is a district in {} already. Choose another folder, or remove "
                        "that one first.",
                        wanted.root.string()));
    }
    if (fs::exists(wanted.root, error)) {
        if (!fs::is_directory(wanted.root, error)) {
            refuse(fmt::format("{} is a file, not a folder.", wanted.root.string()));
        }
        if (!fs::is_empty(wanted.root, error) || error) {
            refuse(fmt::format("The folder {} is not empty. A district needs a folder of its own.",
                               wanted.root.string()));
        }
    }
}

/// Absolute, without a separator at its end.
fs::path tidied(const fs::path& path) {
    const fs::path whole = fs::absolute(path).lexically_normal();
    return whole.has_filename() ? whole : whole.parent_path();
}

fs::path makeBeside(const fs::path& wanted) {
    std::error_code error;
    fs::create_directories(wanted.parent_path(), error);
    std::string name = wanted.string() + ".making-XXXXXX";
    if (error || ::mkdtemp(name.data()) == nullptr) {
        refuse(fmt::format("The folder {} cannot be made: {}.", wanted.string(),
                           error ? error.message() : std::strerror(errno)));
    }
    return name;
}

void makePrivate(const fs::path& folder) {
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
}

}  // namespace

fs::path Folders::database(data::DatabaseFile file) const {
    const bool isCommon = file == data::DatabaseFile::Trip || file == data::DatabaseFile::QDSC;
    const fs::path folder = isCommon                               ? common()
                            : file == data::DatabaseFile::RouteWrk ? programs()
                                                                   : data();
    return files::find((folder / data::fileName(file)).string());
}

Folders foldersOf(const fs::path& root) {
    if (!fs::is_directory(root)) {
        throw base::RunTimeError(base::errors::FileNotFound,
                                 fmt::format("There is no folder {}.", root.string()));
    }
    Folders folders{tidied(root)};
    if (!fs::exists(folders.database(data::DatabaseFile::Routing)) &&
        fs::exists(folders.settings())) {
        const auto named = [settings = folders.settings().string()](const char* key) {
            const std::string path = ini::readString("AppPaths", key, "", settings);
            if (path.empty()) {
                refuse(fmt::format("{} does not name {}.", settings, key));
            }
            return tidied(path);
        };
        folders.elsewhere =
            Folders::Places{named("datapath"), named("progpath"), named("VIREOpath")};
    }
    return folders;
}

FolderInTheMaking::FolderInTheMaking(const fs::path& wanted) : wanted_{tidied(wanted)} {
    checkName(wanted_);
    checkFree(wanted_);
    making_.root = makeBeside(wanted_.root);
    for (const fs::path& folder : {making_.data(), making_.reports(), making_.programs(),
                                   making_.common(), making_.settings().parent_path()}) {
        makePrivate(folder);
    }
}

FolderInTheMaking::~FolderInTheMaking() {
    if (!finished_) {
        std::error_code ignored;
        fs::remove_all(making_.root, ignored);
    }
}

void FolderInTheMaking::finish() {
    std::error_code error;
    fs::rename(making_.root, wanted_.root, error);
    if (error) {
        refuse(fmt::format("The district cannot be moved to {}: {}.", wanted_.root.string(),
                           error.message()));
    }
    finished_ = true;
}

void writeSettings(const Folders& making, const Folders& wanted) {
    writePrivateFile(
        making.settings(),
        fmt::format("[AppPaths]\n"
                    "datapath={}/\n"
                    "progpath={}/\n"
                    "VIREOpath={}/\n"
                    "\n"
                    "[AppSettings]\n"
                    "ERRORHANDLING=True\n"
                    "MAPSoftware=ArcView3.2\n",
                    wanted.data().string(), wanted.programs().string(), wanted.common().string()));
}

void writePrivateFile(const fs::path& path, std::string_view text) {
    const auto before = ::umask(S_IRWXG | S_IRWXO);
    std::ofstream file(path, std::ios::binary);
    ::umask(before);
    file << text;
    file.close();
    if (!file) {
        refuse(fmt::format("{} cannot be written.", path.string()));
    }
}

}  // namespace tools::district
