#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <system_error>
#include <vector>

#include <fmt/format.h>
#include <sys/stat.h>

#include "platform/store/base/location.h"
#include "tools/district/check/checkparts.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using fs::perms;

constexpr perms ReadAndWrite = perms::group_read | perms::group_write;

/// Everything of a district that is there, its folders first.
std::vector<fs::path> placesOf(const Folders& folders) {
    std::vector<fs::path> places = {folders.root, folders.data(), folders.programs(),
                                    folders.common()};
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        places.push_back(folders.database(file));
    }
    std::erase_if(places, [](const fs::path& place) {
        std::error_code error;
        return !fs::exists(place, error);
    });
    return places;
}

perms modeOf(const fs::path& path) {
    std::error_code error;
    const auto mode = fs::status(path, error).permissions();
    return error ? perms::none : mode;
}

gid_t groupOf(const fs::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_gid : static_cast<gid_t>(-1);
}

/// A district is shared by a group where new files in its folders become that group's.
bool isShared(const Folders& folders) {
    return std::ranges::all_of(
        std::array{folders.data(), folders.programs(), folders.common()},
        [](const fs::path& folder) { return (modeOf(folder) & perms::set_gid) != perms::none; });
}

void checkPrivacy(const Folders& folders, CheckReport& report) {
    const bool shared = isShared(folders);
    CheckFinding open{.what = shared ? "Files and folders that others than their group can read"
                                     : "Files and folders that others than their owner can read"};
    CheckFinding closed{.what = "Files and folders that the group of this district cannot change"};
    const gid_t group = groupOf(folders.data());
    for (const fs::path& place : placesOf(folders)) {
        const perms mode = modeOf(place);
        const perms others = shared ? perms::others_all : perms::group_all | perms::others_all;
        if ((mode & others) != perms::none) {
            open.add(place.string());
        }
        const bool isRoot = place == folders.root;  // nobody need write there
        if (shared && !isRoot &&
            (groupOf(place) != group || (mode & ReadAndWrite) != ReadAndWrite)) {
            closed.add(place.string());
        }
    }
    report.add(std::move(open));
    report.add(std::move(closed));
}

/// The settings must name this folder's own places, as after a move they do not.
void checkSettings(const Folders& folders, CheckReport& report) {
    std::ifstream file(folders.settings());
    if (!file) {
        CheckFinding missing{.what = "Settings that cannot be read"};
        missing.add(folders.settings().string());
        report.add(std::move(missing));
        return;
    }
    std::stringstream text;
    text << file.rdbuf();
    CheckFinding astray{.what = "Folders that the settings do not name"};
    for (const fs::path& path : {folders.data(), folders.programs(), folders.common()}) {
        if (store::isServer(path.string())) {
            continue;
        }
        const std::string whole = fs::absolute(path).lexically_normal().string() + "/";
        if (text.str().find("=" + whole) == std::string::npos) {
            astray.add(whole);
        }
    }
    report.add(std::move(astray));
}

}  // namespace

void checkFiles(const Folders& folders, CheckReport& report) {
    if (store::isServer(folders.root.string())) {
        return;
    }
    checkSettings(folders, report);
    checkPrivacy(folders, report);
}

void checkSchema(const store::Database& database, CheckReport& report) {
    CheckFinding tables{.what = "Missing tables"};
    CheckFinding columns{.what = "Missing columns"};
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        for (const store::Table& wanted : data::tablesOf(file)) {
            const store::Table* found = database.catalog().find(wanted.name);
            if (found == nullptr) {
                tables.add(fmt::format("{} ({})", wanted.name, data::fileName(file)));
                continue;
            }
            for (const store::Column& column : store::lacking(wanted, found).columns) {
                columns.add(fmt::format("{}.{}", wanted.name, column.name));
            }
        }
    }
    report.add(std::move(tables));
    report.add(std::move(columns));
}

}  // namespace tools::district
