#include "groupops/merge/runmerge.h"

#include <string_view>

#include <fmt/format.h>

#include "data/lists/listreader.h"
#include "data/runs/runrow.h"
#include "groupops/base/grouploop.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"
#include "startup/base/fieldvalues.h"
#include "stops/sequence/stoplog.h"

namespace groupops {

namespace {

using startup::textOf;
using startup::wholeOf;

constexpr auto StopsOfRun =
    "SELECT STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ, STOP_TRIPTYPE.INT_STOPID,"
    " STOP_TRIPTYPE.TRIPTYPE FROM STOP_TRIPTYPE Where STOP_TRIPTYPE.Run = '{}' ORDER BY"
    " STOP_TRIPTYPE.RUNSEQ{}";

bool isSameRun(std::string_view a, std::string_view b) {
    return base::equalsNoCase(base::trim(a), base::trim(b));
}

std::int64_t lastSequence(ado::Connection& routing, const std::string& run) {
    ado::Recordset stops(fmt::format(StopsOfRun, ado::escaped(run), " DESC"), routing);
    return stops.Eof() ? 0 : wholeOf(stops["RUNSEQ"]);
}

stops::RunStop stopOf(ado::Connection& routing, ado::Recordset& row) {
    stops::RunStop stop;
    stop.intStopId = wholeOf(row["INT_STOPID"]);
    stop.tripType = textOf(row["TRIPTYPE"]);
    stop.sequence = wholeOf(row["RUNSEQ"]);
    ado::Recordset place(
        fmt::format("Select STOP.STOPID, STOP.STOPTYPE FROM STOP WHERE STOP.INT_STOPID = {}",
                    stop.intStopId),
        routing);
    stop.stopId = place.Eof() ? "NOT FOUND" : textOf(place["STOPID"]);
    stop.stopType = place.Eof() ? "" : textOf(place["STOPTYPE"]);
    return stop;
}

/// Reads the row anew; false where it is no longer a stop of that run.
bool isStillOn(ado::Recordset& row, const std::string& run) {
    try {
        row.Resync();
    } catch (const base::RunTimeError& error) {
        if (error.number() != ado::errors::RecordDeleted) {
            throw;
        }
        return false;
    }
    return isSameRun(textOf(row["RUN"]), run);
}

std::optional<LeftOut> moveStop(ado::Connection& routing, ado::Recordset& row,
                                const RunMerge& merge, stops::StopLog& log) {
    const bool still = isStillOn(row, merge.source);
    const stops::RunStop stop = stopOf(routing, row);
    if (!still) {
        return LeftOut{"Left alone, for another program has moved or deleted them meanwhile",
                       stop.stopId};
    }
    const std::int64_t sequence = lastSequence(routing, merge.receiving) + 1;
    row["RUN"].Value(merge.receiving);
    row["RUNSEQ"].Value(sequence);
    row.Update();
    log.merged(stop, merge.source, sequence);
    return std::nullopt;
}

}  // namespace

MergeObstacle mergeObstacle(ado::Connection& routing, const RunMerge& merge) {
    if (base::trim(merge.source).empty()) {
        return MergeObstacle::NoSource;
    }
    if (isSameRun(merge.source, merge.receiving)) {
        return MergeObstacle::SameRun;
    }
    if (!data::runExists(routing, merge.source)) {
        return MergeObstacle::UnknownSource;
    }
    if (!data::runExists(routing, merge.receiving)) {
        return MergeObstacle::UnknownReceiving;
    }
    ado::Recordset stops(fmt::format(StopsOfRun, ado::escaped(base::trim(merge.source)), ""),
                         routing);
    return stops.Eof() ? MergeObstacle::NoStops : MergeObstacle::None;
}

std::optional<MergeMessage> messageOf(MergeObstacle obstacle, const RunMerge& merge) {
    switch (obstacle) {
        case MergeObstacle::None:
        case MergeObstacle::SameRun:
            break;
        case MergeObstacle::NoSource:
            return MergeMessage{"No Run Selected",
                                "Oops, no run has been selected to be merged.  Please select the "
                                "run whose stops are to be moved and try again."};
        case MergeObstacle::UnknownSource:
            return MergeMessage{"Run Not Found",
                                fmt::format("Oops, there is no run: {}.  Please select a run from "
                                            "the list and try again.",
                                            merge.source)};
        case MergeObstacle::UnknownReceiving:
            return MergeMessage{
                "Run Not Found",
                fmt::format("Oops, run: {} does not exist any more.  Nothing can "
                            "be merged to it.  Please close this screen and search again.",
                            merge.receiving)};
        case MergeObstacle::NoStops:
            return MergeMessage{
                "No Stops",
                fmt::format(
                    "Oops, run: {} has no stops that could be merged.  Please select another run.",
                    merge.source)};
    }
    return std::nullopt;
}

Outcome mergeRuns(ado::Connection& routing, const RunMerge& asked, base::ProgressPort& progress) {
    const RunMerge merge{std::string(base::trim(asked.receiving)),
                         std::string(base::trim(asked.source)), asked.user};
    const stops::EditedRun logged{merge.receiving, {}, merge.user};
    stops::StopLog log(routing, logged);
    ado::Recordset rows(fmt::format(StopsOfRun, ado::escaped(merge.source), ""), routing,
                        ado::CursorType::Dynamic);
    Outcome outcome{.asked = static_cast<int>(rows.RecordCount())};
    int standsAt = 1;
    GroupLoop loop(routing, progress, mergeWording(merge), outcome);
    loop.forEach(
        numbersTo(outcome.asked),
        [&](int stop) {
            for (; standsAt < stop; ++standsAt) {
                rows.MoveNext();
            }
            loop.worksOn(fmt::format("{} of run: {}", stop, merge.source));
            return moveStop(routing, rows, merge, log);
        },
        [&](int stop) {
            return fmt::format("Merged stop: {} of {} total stops.", stop, outcome.asked);
        });
    return outcome;
}

Wording mergeWording(const RunMerge& merge) {
    return {"stop", fmt::format("merged to run: {} and saved", merge.receiving), "the merge",
            fmt::format("The stops not yet reached are still on run: {}.", merge.source)};
}

table::TextTable readOtherRuns(ado::Connection& routing, const std::string& run) {
    static constexpr data::ListColumn Columns[]{{"Run", "Run", 1500},
                                                {"Description", "Description", 3000}};
    return data::readList(Columns,
                          fmt::format("SELECT RUN.RUN, RUN.DESCRIPTION FROM RUN Where (RUN.ACTIVE "
                                      "= True) AND (RUN.RUN <> '{}') ORDER BY RUN.RUN",
                                      ado::escaped(base::trim(run))),
                          routing);
}

}  // namespace groupops
