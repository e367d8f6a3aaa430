#include "tools/district/check/checks.h"

#include <utility>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/error.h"
#include "platform/store/database.h"
#include "tools/district/check/checkparts.h"

namespace tools::district {

namespace {

using data::DatabaseFile;

/// The routing file with the tables of all the others beside its own; null where it cannot be
/// opened.
std::unique_ptr<store::Database> openAll(const Folders& folders, CheckReport& report) {
    std::unique_ptr<store::Database> database;
    CheckFinding unopened{.what = "Database files that cannot be opened"};
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        const std::string path = folders.database(file).string();
        try {
            if (file == DatabaseFile::Routing) {
                database = store::open(path);
            } else if (database) {
                database->link(path);
            } else {
                store::open(path);
            }
        } catch (const store::StoreError& error) {
            unopened.add(error.what());
        }
    }
    report.add(std::move(unopened));
    return database;
}

void checkTables(store::Database& database, CheckReport& report, Progress& progress) {
    checkSchema(database, report);
    checkCells(database, report, progress);
    checkKeys(database, report, progress);
    checkRules(database, report, progress);
}

}  // namespace

void CheckFinding::add(std::string example, std::int64_t times) {
    count += times;
    if (examples.size() < MostExamples) {
        if (example.ends_with('.')) {
            example.pop_back();
        }
        examples.push_back(std::move(example));
    }
}

std::string CheckFinding::text() const {
    return fmt::format("{}: {}, such as {}.", what, count, fmt::join(examples, "; "));
}

void CheckReport::add(CheckFinding finding) {
    if (finding.count > 0) {
        findings.push_back(std::move(finding));
    }
}

std::string CheckReport::text() const {
    std::string lines;
    for (const CheckFinding& finding : findings) {
        lines += finding.text() + '\n';
    }
    const std::string found = findings.empty()
                                  ? "no fault"
                                  : fmt::format("{} {} of fault", findings.size(),
                                                findings.size() == 1 ? "kind" : "kinds");
    return lines + fmt::format("Looked at {} rows in {} tables: {}.\n", rows, tables, found);
}

CheckReport checkDistrict(const Folders& folders, Progress& progress) {
    if (!std::filesystem::is_directory(folders.root)) {
        throw base::RunTimeError(base::errors::FileNotFound,
                                 fmt::format("There is no folder {}.", folders.root.string()));
    }
    CheckReport report;
    checkFiles(folders, report);
    const auto database = openAll(folders, report);
    if (!database) {
        return report;
    }
    try {
        checkTables(*database, report, progress);
    } catch (const store::StoreError& error) {
        CheckFinding broken{.what = "Faults that ended the check"};
        broken.add(error.what());
        report.add(std::move(broken));
    }
    return report;
}

}  // namespace tools::district
