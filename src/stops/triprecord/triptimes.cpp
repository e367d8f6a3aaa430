#include "stops/triprecord/triptimes.h"

#include <algorithm>
#include <vector>

#include "data/runs/runrow.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "runedit/times/stoptimes.h"
#include "startup/base/fieldvalues.h"

namespace stops {

namespace {

using runedit::StopTable;
using runedit::TimedStop;
using runedit::TimeOrder;

struct TimeSpan {
    base::Date start;
    base::Date end;
};

/// The run's timed stops, and the place of one of them.
struct TimedRun {
    std::vector<TimedStop> stops;
    std::vector<std::int64_t> ids;

    [[nodiscard]] std::size_t placeOf(std::int64_t id) const {
        return static_cast<std::size_t>(std::ranges::find(ids, id) - ids.begin());
    }
};

TimedRun readTimedRun(ado::Connection& routing, std::string_view run) {
    ado::Recordset rows(runedit::stopRowsSql(StopTable::Routing, TimeOrder::Forwards, run), routing,
                        ado::CursorType::Static);
    TimedRun result{runedit::readStops(rows), {}};
    if (!result.stops.empty()) {
        rows.MoveFirst();
    }
    for (; !rows.Eof(); rows.MoveNext()) {
        result.ids.push_back(rows["ID"].asInteger());
    }
    return result;
}

bool lacksMinutes(const TimedStop& stop) { return !stop.loadMinutes || !stop.driveMinutes; }

TimeSpan timeFromMiddle(const runedit::StoredStops& stops, base::Date anchor,
                        const runedit::LogLine& log) {
    std::string mode = "MID";
    const auto first = runedit::timeStoredStops(stops, mode, anchor, log);
    return {first, anchor};
}

/// The fixed stop is the first one at its time. Where an earlier one stands at the same time, the
/// way back to the run's start is gone first, and the times counted from there.
TimeSpan timeFromStart(const runedit::StoredStops& stops, const TimedRun& run, std::size_t place,
                       base::Date anchor, const runedit::LogLine& log) {
    std::vector<TimedStop> back(run.stops.begin(),
                                run.stops.begin() + static_cast<std::ptrdiff_t>(place) + 1);
    std::ranges::reverse(back);
    base::Date start = runedit::timesFrom(back, TimeOrder::Backwards, anchor).last;
    std::string mode = "Start";
    const auto last = runedit::timeStoredStops(stops, mode, start, log);
    return {start, last};
}

void writeSpan(ado::Connection& routing, const std::string& run, const TimeSpan& span,
               const data::Author& author) {
    ado::Recordset row;
    if (!data::openRun(row, routing, run, ado::CursorType::Dynamic)) {
        return;
    }
    row["STARTTIME"].Value(span.start);
    row["ENDTIME"].Value(span.end);
    row["ChangedBy"].Value(author.user);
    row["changeddt"].Value(author.now);
    row.Update();
}

}  // namespace

std::optional<TripRun> readTripRun(ado::Connection& routing, std::string_view run) {
    ado::Recordset row;
    if (!data::openRun(row, routing, run)) {
        return std::nullopt;
    }
    return TripRun{std::string(base::trim(run)),
                   std::string(base::trim(startup::textOf(row["DESCRIPTION"]))),
                   startup::timeOf(row["STARTTIME"]), startup::timeOf(row["ENDTIME"]),
                   startup::timeOf(row["BELLTIME"])};
}

std::string stopWithoutMinutes(ado::Connection& routing, std::string_view run) {
    const auto stops = readTimedRun(routing, run).stops;
    const auto found = std::ranges::find_if(stops, lacksMinutes);
    return found == stops.end() ? std::string() : found->stopId.value_or(" ");
}

bool timeRunAround(ado::Connection& routing, const TripRecord& record, const data::Author& author,
                   const runedit::LogLine& log) {
    // All records that are on no run share a blank one, which is none to be timed.
    const auto anchor = record.timeAtStop();
    if (!record.isOnRun() || !anchor) {
        return false;
    }
    ado::CommitOnExit unit(routing);
    const TimedRun run = readTimedRun(routing, record.run);
    const std::size_t place = run.placeOf(record.id);
    if (place == run.stops.size()) {
        return false;
    }
    const runedit::StoredStops stored{routing, StopTable::Routing, record.run};
    const auto first = std::ranges::find(run.stops, *anchor, &TimedStop::time);
    const bool isFirst = static_cast<std::size_t>(first - run.stops.begin()) == place;
    writeSpan(routing, record.run,
              isFirst ? timeFromMiddle(stored, *anchor, log)
                      : timeFromStart(stored, run, place, *anchor, log),
              author);
    unit.commit();
    return true;
}

}  // namespace stops
