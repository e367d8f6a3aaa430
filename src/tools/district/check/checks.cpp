#include "tools/district/check/checks.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "data/schema/version.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "platform/store/open/standstill.h"
#include "tools/district/check/checkparts.h"

namespace tools::district {

namespace {

using data::DatabaseFile;

/// Whether the rest of the check can make sense of the files.
bool checkVersions(const std::vector<data::FoundFile>& found, const Folders& folders,
                   CheckReport& report) {
    const auto version = [](const data::FoundFile& one) { return one.mark.version; };
    if (!found.empty()) {
        report.version = version(std::ranges::min(found, {}, version));
    }
    report.versionComplaint = data::versionComplaint(found, folders.root.string());
    return std::ranges::all_of(found, [](const data::FoundFile& one) {
        return one.age == data::Age::Current || one.age == data::Age::Older;
    });
}

/// The routing file with the tables of all the others beside its own; null where it cannot be
/// opened, or the files are none that this program knows.
std::unique_ptr<store::Database> openAll(const Folders& folders, CheckReport& report,
                                         Progress& progress) {
    std::unique_ptr<store::Database> database;
    CheckFinding unopened{.what = "Database files that cannot be opened"};
    CheckFinding damaged{.what = "Damaged database files, to be restored from a back-up"};
    std::vector<data::FoundFile> found;
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        const std::string path = folders.database(file).string();
        try {
            auto opened = store::open(path);
            progress.begin(fmt::format("Looking {} over", data::fileName(file)), 0);
            for (const std::string& damage : opened->damages()) {
                damaged.add(fmt::format("{}: {}", data::fileName(file), damage));
            }
            found.push_back(data::lookAt(file, path, opened->mark(), opened->catalog()));
            if (file == DatabaseFile::Routing) {
                database = std::move(opened);
            } else if (database) {
                database->link(path);
            }
        } catch (const store::StoreError& error) {
            unopened.add(error.what());
        }
    }
    report.add(std::move(unopened));
    report.add(std::move(damaged));
    return checkVersions(found, folders, report) ? std::move(database) : nullptr;
}

/// All tables are read as they are at one moment, where somebody works in the district meanwhile.
/// Not where the files may only be read.
void beginReading(store::Database& database, const Folders& folders) {
    std::vector<std::string> paths;
    paths.reserve(data::AllDatabaseFiles.size());
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        paths.push_back(folders.database(file).string());
    }
    try {
        const store::StandStill still(paths, store::StandStillPatience);
        database.beginReading();
    } catch (const store::StoreError&) {
        return;
    }
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
    std::string lines = versionComplaint.empty() ? "" : versionComplaint + "\n\n";
    for (const CheckFinding& finding : findings) {
        lines += finding.text() + '\n';
    }
    const std::string found = findings.empty()
                                  ? "no fault"
                                  : fmt::format("{} {} of fault", findings.size(),
                                                findings.size() == 1 ? "kind" : "kinds");
    return lines + fmt::format("Version {}. Looked at {} rows in {} tables: {}.\n", version, rows,
                               tables, found);
}

CheckReport checkDistrict(const Folders& folders, Progress& progress) {
    CheckReport report;
    checkFiles(folders, report);
    const auto database = openAll(folders, report, progress);
    if (!database) {
        return report;
    }
    try {
        beginReading(*database, folders);
        checkTables(*database, report, progress);
        checkStreets(folders, *database, report, progress);
    } catch (const store::StoreError& error) {
        CheckFinding broken{.what = "Faults that ended the check"};
        broken.add(error.what());
        report.add(std::move(broken));
    }
    return report;
}

}  // namespace tools::district
