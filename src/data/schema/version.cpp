#include "data/schema/version.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace data {

namespace {

/// "VIR" and a digit.
constexpr std::int32_t FirstKind = 0x56495230;

/// The tables of a file that somebody else made for something else have other names. The report
/// file had none before version 3.
bool hasAnyTable(DatabaseFile file, const store::Catalog& catalog) {
    return file == DatabaseFile::VIREORpt ||
           std::ranges::any_of(tablesOf(file), [&](const store::Table& table) {
               return catalog.find(table.name) != nullptr;
           });
}

std::string firstMissing(DatabaseFile file, const store::Catalog& catalog) {
    for (const store::Table& table : tablesOf(file)) {
        const store::Table* found = catalog.find(table.name);
        if (found == nullptr) {
            return table.name;
        }
        const store::Table missing = store::lacking(table, found);
        if (!missing.columns.empty()) {
            return table.name + "." + missing.columns.front().name;
        }
    }
    return {};
}

Age ageOf(const FoundFile& found, const store::Catalog& catalog) {
    const auto wanted = markOf(found.file);
    if (found.mark.kind != wanted.kind &&
        (found.mark.kind != 0 || !hasAnyTable(found.file, catalog))) {
        return Age::Foreign;
    }
    if (found.mark.version > wanted.version) {
        return Age::Newer;
    }
    return found.mark == wanted && found.missing.empty() ? Age::Current : Age::Older;
}

std::string described(const FoundFile& found) {
    const bool isOld = found.mark.version < currentVersion();
    return found.age == Age::Older && !isOld
               ? fmt::format("{} (lacks {})", fileName(found.file), found.missing)
               : fmt::format("{} (version {})", fileName(found.file), found.mark.version);
}

std::string listed(std::span<const FoundFile> files, Age age) {
    std::string list;
    for (const FoundFile& found : files) {
        if (found.age == age) {
            list +=
                (list.empty() ? "" : ", ") + (age == Age::Foreign ? found.path : described(found));
        }
    }
    return list;
}

/// Blank and empty codes are equal, which a join over an index sees only where they are the same. A
/// key that is there as a blank already stays empty.
UpgradeStep blankCodes(std::int32_t number, DatabaseFile file) {
    UpgradeStep step{number, file, "makes empty codes blank", {}};
    for (const store::Table& table : tablesOf(file)) {
        for (const store::Column& column : table.columns) {
            if (column.kind == store::ColumnKind::Code) {
                step.statements.push_back(
                    fmt::format(R"(UPDATE OR IGNORE main."{0}" SET "{1}" = ' ' WHERE "{1}" = '')",
                                table.name, column.name));
            }
        }
    }
    return step;
}

std::vector<UpgradeStep> madeSteps() {
    std::vector<UpgradeStep> steps = {
        {1,
         DatabaseFile::Routing,
         "gives SYSTEM and StartEnd the one row that they must hold",
         {"INSERT INTO SYSTEM (NEEDDEADHEADBUILD) SELECT 1 WHERE NOT EXISTS"
          " (SELECT 1 FROM SYSTEM)",
          "INSERT INTO StartEnd (StartorEnd, CalcTime, Run, VehType, BellTime, VehCapacity)"
          " SELECT 'End', '1899-12-30 00:00:00', ' ', ' ', '1899-12-30 00:00:00', 0"
          " WHERE NOT EXISTS (SELECT 1 FROM StartEnd)"}}};
    for (const DatabaseFile file : AllDatabaseFiles) {
        steps.push_back(blankCodes(2, file));
    }
    steps.push_back({3, DatabaseFile::VIREORpt, "gives the report file its work tables", {}});
    return steps;
}

}  // namespace

const std::vector<UpgradeStep>& upgradeSteps() {
    static const std::vector<UpgradeStep> steps = madeSteps();
    return steps;
}

std::int32_t currentVersion() { return upgradeSteps().back().number; }

store::FileMark markOf(DatabaseFile file) {
    return {FirstKind + static_cast<std::int32_t>(file), currentVersion()};
}

FoundFile lookAt(DatabaseFile file, std::string path, store::FileMark mark,
                 const store::Catalog& catalog) {
    FoundFile found{.file = file,
                    .path = std::move(path),
                    .mark = mark,
                    .missing = firstMissing(file, catalog)};
    found.age = ageOf(found, catalog);
    return found;
}

std::string versionComplaint(std::span<const FoundFile> files, const std::string& folder) {
    if (const std::string foreign = listed(files, Age::Foreign); !foreign.empty()) {
        return fmt::format("These are no files of a district under such a name: {}.", foreign);
    }
    if (const std::string newer = listed(files, Age::Newer); !newer.empty()) {
        return fmt::format(
            "This district is newer than the program, which works with version {}: {}. Install "
            "the newer program; nothing was changed.",
            currentVersion(), newer);
    }
    if (const std::string older = listed(files, Age::Older); !older.empty()) {
        return fmt::format(
            "This district is older than the program, which works with version {}: {}.\n\nThis "
            "brings it up while nobody works in it, with a back-up first:\n\n"
            "vireo-district upgrade \"{}\"",
            currentVersion(), older, folder);
    }
    return {};
}

}  // namespace data
