#include "tools/district/command/importsources.h"

#include <QProcess>
#include <QStringList>
#include <fstream>
#include <map>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/files/installation.h"
#include "platform/store/open/open.h"
#include "tools/district/base/refuse.h"
#include "tools/district/import/feed/schoolruns.h"
#include "tools/district/import/feed/tripchoice.h"
#include "tools/district/import/source/csv.h"
#include "tools/district/place/centre.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

bool isAccess(const fs::path& path) {
    const std::string ending = path.extension().string();
    return base::equalsNoCase(ending, ".mdb") || base::equalsNoCase(ending, ".accdb");
}

// ---- The reader of Access files, a program of its own.

/// Runs it; its output goes to a file. Returns what it complained of, and raises base::RunTimeError
/// where it did not come to its end.
std::string runReader(const fs::path& file, const QStringList& more, const fs::path& output) {
    constexpr int LongestWaitMs = 300'000;
    QProcess reader;
    reader.setStandardOutputFile(QString::fromStdString(output.string()));
    reader.start(QString::fromStdString(files::installation().companions + "/vireo-read-access"),
                 QStringList{QString::fromStdString(file.string())} + more);
    const bool isEnded = reader.waitForFinished(LongestWaitMs);
    if (reader.error() == QProcess::FailedToStart) {
        refuse("The program vireo-read-access, which reads Access files, is not installed.");
    }
    std::string complaints = reader.readAllStandardError().toStdString();
    if (!isEnded || reader.exitStatus() != QProcess::NormalExit) {
        reader.kill();
        refuse(fmt::format("{} is damaged: reading it came to no end.", file.string()));
    }
    if (reader.exitCode() != 0) {
        refuse(fmt::format("{}: {}", file.string(), base::trim(complaints)));
    }
    return complaints;
}

struct AccessTable {
    std::string kind;
    std::string name;
    std::string linkedTo;
};

std::vector<AccessTable> tablesIn(const fs::path& list) {
    std::ifstream text(list, std::ios::binary);
    const CsvShape shape = shapeOf(text, {.charset = Charset::Utf8, .separator = ','});
    text.clear();
    text.seekg(0);
    CsvReader reader(text, shape);
    std::vector<AccessTable> tables;
    while (reader.next() == CsvReader::Item::Record) {
        const auto& fields = reader.record().fields;
        tables.push_back({std::string(fields[0].text), std::string(fields[1].text),
                          std::string(fields[3].text)});
    }
    tables.erase(tables.begin());  // the head
    return tables;
}

/// A sentence on what is no table of the file's own; empty for a table.
std::string leftOut(const AccessTable& table) {
    if (table.kind == "query") {
        return fmt::format("The query \"{}\" is left out; what it shows can be saved as a table.\n",
                           table.name);
    }
    if (table.kind != "table") {
        return fmt::format("The table \"{}\" is linked to {}; import that file.\n", table.name,
                           table.linkedTo.empty() ? "another file" : table.linkedTo);
    }
    return table.name.find('/') == std::string::npos
               ? std::string()
               : fmt::format("The table \"{}\" is left out: its name cannot be a file's.\n",
                             table.name);
}

/// Run ids by the trips of an earlier import.
std::map<std::string, std::string> runsOfTrips(const Folders& district) {
    std::map<std::string, std::string> runs;
    const auto routing = store::open(district.database(data::DatabaseFile::Routing).string());
    const auto rows = routing->prepare("SELECT RUN, COMMENT FROM RUN WHERE COMMENT IS NOT NULL");
    while (rows->step()) {
        if (const std::string trip = tripOfComment(rows->text(1)); !trip.empty()) {
            runs.emplace(trip, rows->text(0));
        }
    }
    return runs;
}

}  // namespace

ImportSources::ImportSources(const std::vector<fs::path>& sources, const SourceChoice& choice,
                             const Folders& district) {
    for (const fs::path& source : sources) {
        if (isAccess(source)) {
            takeAccess(source, choice);
        } else if (FeedFiles::isFeed(source)) {
            takeFeed(source, choice, district);
        } else {
            files_.push_back(source);
        }
    }
}

const fs::path& ImportSources::newFolder() {
    folders_.push_back(std::make_unique<PrivateFolder>());
    files_.push_back(folders_.back()->path());
    return files_.back();
}

void ImportSources::takeFeed(const fs::path& path, const SourceChoice& choice,
                             const Folders& district) {
    const transit::Feed feed = transit::readFeed(FeedFiles(path));
    std::vector<TripSign> signs;
    for (const std::string& text : choice.trips) {
        signs.push_back(tripSign(text));
    }
    SchoolTripOptions options{.trips = tripsWith(feed, signs),
                              .sharedStops = choice.sharedStops,
                              .centre = keptCentre(district),
                              .knownRuns = runsOfTrips(district)};
    if (options.trips.empty()) {
        question_ += fmt::format("{}: no trips are chosen, of {}", path.string(), signsTold(feed));
        return;
    }
    const SchoolRuns runs = schoolRunsOf(feed, options);
    for (const std::string& remark : runs.remarks) {
        remarks_ += remark + '\n';
    }
    if (choice.keepsCentre && !options.centre && runs.count > 0) {
        keepCentre(district, runs.centre);
    }
    runs.writeTo(newFolder());
}

void ImportSources::takeAccess(const fs::path& file, const SourceChoice& choice) {
    const PrivateFolder lists;
    const fs::path list = lists.path() / "tables.csv";
    runReader(file, {}, list);
    const fs::path folder = newFolder();
    for (const AccessTable& table : tablesIn(list)) {
        if (const std::string why = leftOut(table); !why.empty()) {
            remarks_ += why;
            continue;
        }
        remarks_ += runReader(
            file, {QString::fromStdString(table.name), QString::fromStdString(choice.charset)},
            folder / (table.name + ".csv"));
    }
}

}  // namespace tools::district
