#include "tools/district/base/folders.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include <fmt/format.h>
#include <sys/stat.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/files/installation.h"
#include "platform/ini/ini.h"
#include "platform/store/base/location.h"
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

Folders allowed(Folders wanted, NewFolder::Place place) {
    checkName(wanted);
    std::error_code error;
    if (place == NewFolder::Place::Free &&
        (fs::exists(wanted.settings(), error) ||
         fs::exists(wanted.database(data::DatabaseFile::Routing), error))) {
        refuse(
            fmt::format("There is a district in {} already. Choose another folder, or remove "
                        "that one first.",
                        wanted.root.string()));
    }
    return wanted;
}

/// As the settings have a place: with a separator at its end.
std::string settingOf(const fs::path& place) {
    return store::isServer(place.string()) ? store::pathIn(place.string(), "")
                                           : place.string() + "/";
}

void makePrivate(const fs::path& folder) {
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
}

}  // namespace

bool Folders::isOnServer() const { return store::isServer(data().string()); }

fs::path Folders::database(data::DatabaseFile file) const {
    const bool isCommon = file == data::DatabaseFile::Trip || file == data::DatabaseFile::QDSC;
    const bool isWork = file == data::DatabaseFile::RouteWrk && !isOnServer();
    const fs::path folder = isCommon ? common() : isWork ? programs() : data();
    if (store::isServer(folder.string())) {
        return store::pathIn(folder.string(), data::fileName(file));
    }
    return files::find((folder / data::fileName(file)).string());
}

Folders foldersOf(const fs::path& root) {
    if (store::isServer(root.string())) {
        return {root, Folders::Places{root, root, root}};
    }
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

FolderInTheMaking::FolderInTheMaking(const fs::path& wanted, NewFolder::Place place)
    : wanted_{allowed({tidied(wanted)}, place)}, folder_(wanted, place), making_{folder_.path()} {
    for (const fs::path& folder : {making_.data(), making_.reports(), making_.programs(),
                                   making_.common(), making_.settings().parent_path()}) {
        makePrivate(folder);
    }
}

void writeSettings(const Folders& making, const Folders& wanted) {
    writePrivateFile(making.settings(),
                     fmt::format("; Made by vireo-district {}.\n"
                                 "[AppPaths]\n"
                                 "datapath={}\n"
                                 "progpath={}\n"
                                 "VIREOpath={}\n"
                                 "\n"
                                 "[AppSettings]\n"
                                 "ERRORHANDLING=True\n"
                                 "MAPSoftware=ArcView3.2\n",
                                 files::installation().version, settingOf(wanted.data()),
                                 settingOf(wanted.programs()), settingOf(wanted.common())));
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
                    : fmt::format("{}={}\n", place->first, settingOf(place->second));
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
