#include "tools/launcher/districtlook.h"

#include <array>
#include <exception>
#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "data/schema/version.h"
#include "platform/base/lookup.h"
#include "platform/files/files.h"
#include "platform/ini/ini.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "startup/districts/knowndistricts.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/newfolder.h"

namespace tools::launcher {

namespace {

namespace fs = std::filesystem;
using data::DatabaseFile;
using district::Folders;

constexpr int PatienceMs = 2000;

constexpr std::array Files{DatabaseFile::Routing,  DatabaseFile::RouteWrk,  DatabaseFile::Trip,
                           DatabaseFile::VIREORpt, DatabaseFile::DeadCross, DatabaseFile::QDSC};

/// Those that the program writes to all day.
constexpr std::array Changed{DatabaseFile::Routing, DatabaseFile::RouteWrk, DatabaseFile::Trip,
                             DatabaseFile::DeadCross};

/// What ends a look early.
struct Finding {
    DistrictLook look;
};

[[noreturn]] void find(Condition condition, std::string says, std::string name = {}) {
    throw Finding{{condition, std::move(name), std::move(says)}};
}

void requireSettings(const std::string& folder) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        find(Condition::Unusable,
             fmt::format("There is no folder {}.  It was moved or removed, or the disk that holds "
                         "it is not connected.",
                         folder));
    }
    if (!files::exists(startup::settingsIn(folder))) {
        find(Condition::Unusable, fmt::format("There is no district in {}: it has no {}.", folder,
                                              startup::settingsIn(folder)));
    }
}

/// The folders that the settings name, as the program takes them.
Folders::Places placesIn(const std::string& settings) {
    const auto named = [&](const char* key) {
        const std::string path = ini::readString("AppPaths", key, "", settings);
        if (path.empty()) {
            find(Condition::Unusable,
                 fmt::format("{} does not name {}, or may not be read.", settings, key));
        }
        return district::tidied(path);
    };
    return {named("datapath"), named("progpath"), named("VIREOpath")};
}

bool isSame(const fs::path& one, const fs::path& other) {
    std::error_code error;
    return one == other || fs::equivalent(one, other, error);
}

/// A copy that names the folders of its original would change that one.
void requireOwnFolders(const std::string& folder, const Folders::Places& named) {
    const Folders beside{folder};
    std::error_code error;
    if (fs::exists(beside.database(DatabaseFile::Routing), error) &&
        !isSame(named.data, beside.data())) {
        find(Condition::Moved,
             fmt::format("This district was moved or copied: its files stand in {}, but its "
                         "settings name {}.",
                         beside.data().string(), named.data.string()));
    }
}

using OpenFiles = std::vector<std::pair<DatabaseFile, std::unique_ptr<store::Database>>>;

OpenFiles openFiles(const Folders& folders) {
    OpenFiles open;
    for (const DatabaseFile file : Files) {
        open.emplace_back(file, store::open(folders.database(file).string(), PatienceMs));
    }
    return open;
}

std::string nameIn(store::Database& routing) {
    try {
        const auto row = routing.prepare("SELECT \"DistName\" FROM \"District\"");
        return row->step() ? std::string(row->text(0)) : std::string();
    } catch (const store::StoreError&) {  // an older district may lack it
        return {};
    }
}

void requireFittingVersion(const OpenFiles& open, const std::string& folder,
                           const std::string& name) {
    std::vector<data::FoundFile> found;
    bool isOlder = false;
    bool isOther = false;
    for (const auto& [file, database] : open) {
        found.push_back(data::lookAt(file, std::string(data::fileName(file)), database->mark(),
                                     database->catalog()));
        isOlder = isOlder || found.back().age == data::Age::Older;
        isOther = isOther || found.back().age == data::Age::Newer ||
                  found.back().age == data::Age::Foreign;
    }
    if (isOther) {
        find(Condition::Newer, data::versionComplaint(found, folder), name);
    }
    if (isOlder) {
        find(Condition::Older,
             "This district was made by an earlier version of the program.  Before it can be "
             "opened it has to be brought up; its files are copied first.",
             name);
    }
}

bool isChangeable(const OpenFiles& open) {
    try {
        for (const auto& [file, database] : open) {
            if (std::ranges::find(Changed, file) != Changed.end()) {
                database->requireWritable();
            }
        }
        return true;
    } catch (const store::StoreError&) {
        return false;
    }
}

DistrictLook look(const std::string& folder) {
    requireSettings(folder);
    const Folders::Places places = placesIn(startup::settingsIn(folder));
    requireOwnFolders(folder, places);
    const OpenFiles open = openFiles({folder, places});
    const std::string name = nameIn(*open.front().second);
    requireFittingVersion(open, folder, name);
    if (!isChangeable(open)) {
        return {Condition::LookOnly, name,
                "You can look at this district, but not all of it can be changed: some of its "
                "files may only be read."};
    }
    return {Condition::Ready, name};
}

}  // namespace

DistrictLook lookAtDistrict(const std::string& folder) noexcept {
    try {
        return look(folder);
    } catch (const Finding& finding) {
        return finding.look;
    } catch (const std::exception& error) {
        return {Condition::Unusable, {}, error.what()};
    }
}

std::string wordsFor(Condition condition) {
    static constexpr std::pair<Condition, const char*> Words[] = {
        {Condition::Ready, "Ready"},         {Condition::LookOnly, "To look at only"},
        {Condition::Older, "Older version"}, {Condition::Newer, "Other version"},
        {Condition::Moved, "Moved"},         {Condition::Unusable, "Cannot be opened"}};
    return base::lookUp(Words, condition, "");
}

bool canBeOpened(Condition condition) {
    return condition == Condition::Ready || condition == Condition::LookOnly;
}

std::string districtFolderOf(const std::string& chosen) {
    const fs::path path = district::tidied(chosen);
    for (const fs::path& folder : {path, path.parent_path(), path.parent_path().parent_path()}) {
        if (files::exists(startup::settingsIn(folder.string()))) {
            return folder.string();
        }
    }
    return path.string();
}

void adoptFolders(const std::string& folder) {
    const std::string settings = startup::settingsIn(folder);
    files::write(settings, district::settingsFor({district::tidied(folder)},
                                                 ini::decoded(files::read(settings))));
}

}  // namespace tools::launcher
