#include <fstream>
#include <sstream>
#include <system_error>

#include <fmt/format.h>

#include "tools/district/check/checkparts.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

void checkPrivacy(const Folders& folders, CheckReport& report) {
    CheckFinding open{.what = "Files and folders that others than their owner can read"};
    std::vector<fs::path> all = {folders.root, folders.data(), folders.programs(),
                                 folders.common()};
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        all.push_back(folders.database(file));
    }
    for (const fs::path& path : all) {
        std::error_code error;
        const auto mode = fs::status(path, error).permissions();
        const auto others = fs::perms::group_all | fs::perms::others_all;
        if (!error && fs::exists(path, error) && (mode & others) != fs::perms::none) {
            open.add(path.string());
        }
    }
    report.add(std::move(open));
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
        const std::string whole = fs::absolute(path).lexically_normal().string() + "/";
        if (text.str().find("=" + whole) == std::string::npos) {
            astray.add(whole);
        }
    }
    report.add(std::move(astray));
}

}  // namespace

void checkFiles(const Folders& folders, CheckReport& report) {
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
