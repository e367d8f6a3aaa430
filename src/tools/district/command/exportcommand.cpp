#include "tools/district/command/exportcommand.h"

#include <ostream>

#include <fmt/format.h>

#include "tools/district/base/newfolder.h"
#include "tools/district/base/progress.h"
#include "tools/district/base/refuse.h"
#include "tools/district/export/runfeed.h"
#include "tools/district/export/tables.h"
#include "tools/district/export/zip.h"
#include "tools/district/place/centre.h"

namespace tools::district {

namespace {

void writeFeed(const FeedOptions& options, const feed::Feed& feed) {
    if (options.target.extension() != ".zip") {
        NewFolder folder(options.target);
        feed::write(feed, folder.path());
        folder.finish();
        return;
    }
    const NewFolder scratch(options.target.string() + ".files");
    feed::write(feed, scratch.path());
    zipFolder(scratch.path(), options.target);
}

void tell(const RunFeed& runs, const std::filesystem::path& target, QJsonObject& result) {
    result = {{"target", pathJson(target)},
              {"trips", static_cast<qint64>(runs.feed.trips.size())},
              {"routes", static_cast<qint64>(runs.feed.routes.size())},
              {"stops", static_cast<qint64>(runs.feed.stops.size())},
              {"leftOut", arrayOf(runs.leftOut, [](const auto& one) {
                   return QJsonObject{{"run", toJson(one.first)}, {"reason", toJson(one.second)}};
               })}};
}

}  // namespace

void runExport(const ExportOptions& options, std::ostream& out) {
    Progress progress;
    NewFolder folder(options.target);
    const DistrictSnapshot district(options.folders);
    const auto written = writeTables(district, folder.path(), options.withoutNames, progress);
    folder.finish();
    progress.clear();
    if (options.result != nullptr) {
        *options.result = {{"target", pathJson(folder.wanted())},
                           {"tables", static_cast<qint64>(written.tables)},
                           {"rows", static_cast<qint64>(written.rows)}};
    }
    out << fmt::format("Wrote {} rows of {} tables{} to {}.\n", written.rows, written.tables,
                       options.withoutNames ? " without names" : "", folder.wanted().string());
}

void runFeedExport(const FeedOptions& options, std::ostream& out) {
    Progress progress;
    progress.begin("Reading the runs", 0);
    const DistrictSnapshot district(options.folders);
    const geo::Centre centre = centreFor(options.folders, options.centre, [&] {
        return middleOfStops(district.database(data::DatabaseFile::Routing));
    });
    RunFeed runs = feedOfRuns(district, geo::Projection(centre));
    for (const auto& [run, reason] : runs.leftOut) {
        out << fmt::format("Left out {}: {}.\n", run, reason);
    }
    if (runs.feed.trips.empty()) {
        refuse("No run can be a trip of a feed; nothing was written.");
    }
    runs.feed.agency.url = options.url;
    runs.feed.agency.timezone = options.timezone;
    runs.feed.from = options.from;
    runs.feed.until = options.until;
    progress.begin("Writing the feed", 0);
    writeFeed(options, runs.feed);
    if (!keptCentre(options.folders)) {
        keepCentre(options.folders, centre);
    }
    progress.clear();
    if (options.result != nullptr) {
        tell(runs, options.target, *options.result);
    }
    out << fmt::format("Wrote {} trips of {} routes and {} stops to {}.\n", runs.feed.trips.size(),
                       runs.feed.routes.size(), runs.feed.stops.size(), options.target.string());
}

}  // namespace tools::district
