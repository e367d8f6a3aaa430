#include "runsearch/schedule/sketchsaving.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "groupops/base/grouploop.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/date.h"
#include "runsearch/schedule/timescale.h"

namespace schedule {

namespace {

constexpr auto ChangedMeanwhile = "Changed by somebody else meanwhile";
constexpr double NotCalculated = -2;

base::Date timeOfDay(Seconds time) { return base::Date{time}.timeValue(); }

/// One move being written.
class Saving {
public:
    Saving(ado::Connection& routing, const Plan& stored, std::string user)
        : routing_(routing), stored_(stored), user_(std::move(user)) {}

    std::optional<groupops::LeftOut> save(const Move& move);

private:
    [[nodiscard]] bool isAsRead(ado::Recordset& row, const ScheduledRun& run) const;
    void writeRun(ado::Recordset& row, const ScheduledRun& run, const Move& move) const;
    void shiftStops(const Move& move, Seconds by) const;
    void log(const ScheduledRun& run, const Move& move) const;
    [[nodiscard]] std::string routeName(std::int64_t key) const;

    ado::Connection& routing_;
    const Plan& stored_;
    std::string user_;
};

std::optional<groupops::LeftOut> Saving::save(const Move& move) {
    const auto& run = *std::ranges::find(stored_.runs, move.run, &ScheduledRun::id);
    ado::Recordset row;
    if (!data::openRun(row, routing_, move.run, ado::CursorType::Dynamic)) {
        return groupops::LeftOut{groupops::DeletedMeanwhile, move.run};
    }
    if (!isAsRead(row, run)) {
        return groupops::LeftOut{ChangedMeanwhile, move.run};
    }
    writeRun(row, run, move);
    row.Close();
    if (move.start != *run.start) {
        shiftStops(move, move.start - *run.start);
    }
    log(run, move);
    routing_.Execute("UPDATE SYSTEM SET SYSTEM.NEEDDEADHEADBUILD = True");
    return std::nullopt;
}

bool Saving::isAsRead(ado::Recordset& row, const ScheduledRun& run) const {
    const auto isTime = [&](const char* column, Seconds time, bool isLacking) {
        const auto value = row[column].Value();
        return value.isNull() ? isLacking
                              : !isLacking && value.asDate().timeValue() == timeOfDay(time);
    };
    const auto& changed = row["changeddt"];
    const auto& route = row["INT_ROUTEID"];
    return isTime("STARTTIME", *run.start, run.lacksStart) &&
           isTime("ENDTIME", *run.end, run.lacksEnd) &&
           (changed.isNull() ? 0 : changed.Value().asDate().seconds) == run.changedAt &&
           (route.isNull() ? 0 : route.asInteger()) == run.routeKey;
}

void Saving::writeRun(ado::Recordset& row, const ScheduledRun& run, const Move& move) const {
    if (move.route == 0) {
        row["INT_ROUTEID"].Value(base::Value());
    } else {
        row["INT_ROUTEID"].Value(move.route);
    }
    if (!run.lacksStart) {
        row["STARTTIME"].Value(timeOfDay(move.start));
    }
    if (!run.lacksEnd) {
        row["ENDTIME"].Value(timeOfDay(move.start + *run.end - *run.start));
    }
    for (const auto* column : {"DEADHEAD_BEFORE_TIME", "DEADHEAD_AFTER_TIME"}) {
        row[column].Value(NotCalculated);
    }
    for (const auto* column : {"DEADHEAD_BEFORE_STARTTIME", "DEADHEAD_AFTER_STARTTIME",
                               "DEADHEAD_MILES_BEFORE", "DEADHEAD_MILES_AFTER"}) {
        row[column].Value(base::Value());
    }
    row["SHOW_BOTH_BEG"].Value(false);
    row["SHOW_BOTH_END"].Value(false);
    row["ChangedBy"].Value(user_);
    row["changeddt"].Value(base::Now());
    row.Update();
}

void Saving::shiftStops(const Move& move, Seconds by) const {
    ado::Recordset stops("Select Stop_TripType.* From Stop_TripType Where Stop_TripType.Run='" +
                             ado::escaped(move.run) + "'",
                         routing_, ado::CursorType::Dynamic);
    for (; !stops.Eof(); stops.MoveNext()) {
        auto& time = stops["TIME_AT_STOP"];
        if (!time.isNull()) {
            time.Value(movedTime(time.Value().asDate(), by));
            stops.Update();
        }
    }
}

std::string Saving::routeName(std::int64_t key) const {
    const auto route = std::ranges::find(stored_.routes, key, &Route::key);
    return key == 0 || route == stored_.routes.end() ? "no route" : "route " + route->id;
}

void Saving::log(const ScheduledRun& run, const Move& move) const {
    const auto from = run.route == None ? 0 : stored_.route(run.route).key;
    ado::Recordset entry("Select RunLog.* from RunLog Where RunLog.ID=0", routing_);
    entry.AddNew();
    entry["RunID"].Value(move.run);
    entry["LogDate"].Value(base::Now());
    entry["User"].Value(user_);
    entry["Description"].Value(
        fmt::format("Run changed in the run schedule from {} at {} to {} at {}.", routeName(from),
                    clockText(*run.start, HalfOfDay::Told), routeName(move.route),
                    clockText(move.start, HalfOfDay::Told)));
    entry.Update();
}

}  // namespace

groupops::Outcome saveMoves(ado::Connection& routing, const Plan& stored,
                            std::span<const Move> moves, const std::string& user,
                            base::ProgressPort& progress) {
    groupops::Outcome outcome{.asked = static_cast<int>(moves.size())};
    Saving saving(routing, stored, user);
    groupops::GroupLoop(routing, progress, groupops::runChangeWording(), outcome)
        .forEach(
            moves, [&](const Move& move) { return saving.save(move); },
            [](const Move& move) { return fmt::format("Saved run {}.", move.run); });
    return outcome;
}

}  // namespace schedule
