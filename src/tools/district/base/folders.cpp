#include "tools/district/base/folders.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/ini/ini.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

/// The longest value that a settings file hands out.
constexpr std::size_t LongestSetting = 255;

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

constexpr std::string_view Making = ".making-";

bool isInUse(const fs::path& folder) {
    try {
        const files::FolderLock lock(folder.string(), std::chrono::milliseconds(0));
        return false;
    } catch (const base::RunTimeError&) {
        return true;
    }
}

/// Those that killed programs left.
void removeAbandoned(const fs::path& wanted) {
    std::error_code error;
    const std::string beginning = wanted.filename().string() + std::string(Making);
    for (const auto& entry : fs::directory_iterator(wanted.parent_path(), error)) {
        if (entry.path().filename().string().starts_with(beginning) && entry.is_directory(error) &&
            !isInUse(entry.path())) {
            fs::remove_all(entry.path(), error);
        }
    }
}

fs::path makeBeside(const fs::path& wanted) {
    std::error_code error;
    fs::create_directories(wanted.parent_path(), error);
    std::string name = wanted.string() + std::string(Making) + "XXXXXX";
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

FolderInTheMaking::FolderInTheMaking(const fs::path& wanted, Place place)
    : wanted_{tidied(wanted)}, place_(place) {
    checkName(wanted_);
    if (place == Place::Free) {
        checkFree(wanted_);
    }
    removeAbandoned(wanted_.root);
    making_.root = makeBeside(wanted_.root);
    inUse_ = std::make_unique<files::FolderLock>(making_.root.string(), std::chrono::seconds(1));
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
    const unsigned flags = place_ == Place::District ? RENAME_EXCHANGE : 0;
    if (::renameat2(AT_FDCWD, making_.root.c_str(), AT_FDCWD, wanted_.root.c_str(), flags) != 0) {
        refuse(fmt::format("The district cannot be moved to {}: {}.", wanted_.root.string(),
                           std::strerror(errno)));
    }
    finished_ = place_ == Place::Free;
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

std::string settingsFor(const Folders& wanted, std::string_view settings) {
    const std::pair<std::string_view, fs::path> places[] = {{"datapath", wanted.data()},
                                                            {"progpath", wanted.programs()},
                                                            {"VIREOpath", wanted.common()}};
    std::string text;
    std::istringstream lines{std::string(settings)};
    for (std::string line; std::getline(lines, line);) {
        const auto key = base::trim(std::string_view(line).substr(0, line.find('=')));
        const auto* const place = std::ranges::find_if(
            places, [&](const auto& one) { return base::equalsNoCase(one.first, key); });
        text += place == std::end(places) || line.find('=') == std::string::npos
                    ? line + '\n'
                    : fmt::format("{}={}/\n", place->first, place->second.string());
    }
    return text;
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
