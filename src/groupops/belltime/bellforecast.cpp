#include "groupops/belltime/bellforecast.h"

#include <algorithm>
#include <cstdlib>

#include "data/runs/runrow.h"
#include "platform/ado/recordset.h"
#include "runedit/times/storedstoptimes.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

using base::Date;
using runedit::TimedStop;
using runedit::TimeOrder;
using Verdict = RunForecast::Verdict;

/// How long a run takes; nothing where its times cannot be computed.
std::optional<std::int64_t> durationOf(const std::vector<TimedStop>& stops, TimeOrder order) {
    try {
        return std::abs(timesFrom(stops, order, Date()).last.seconds);
    } catch (const base::RunTimeError&) {
        return std::nullopt;
    }
}

RunForecast leftOut(RunForecast run, const char* why) {
    run.verdict = Verdict::LeftOut;
    run.why = why;
    return run;
}

/// A run to school is late that ends after its bell, a run home early that starts before it.
void judge(RunForecast& run, bool pickup, Date bell) {
    const Date judged = pickup ? *run.after.end : *run.after.start;
    run.secondsAfterBell = judged.seconds - bell.seconds;
    if (pickup && run.secondsAfterBell > 0) {
        run.verdict = Verdict::Late;
    } else if (!pickup && run.secondsAfterBell < 0) {
        run.verdict = Verdict::Early;
    }
}

}  // namespace

int GroupForecast::count(Verdict verdict) const {
    return static_cast<int>(std::ranges::count(runs, verdict, &RunForecast::verdict));
}

std::vector<GroupForecast> BellForecaster::forecast(const BellChange& change) {
    std::vector<GroupForecast> groups(static_cast<std::size_t>(groups_.count()));
    std::int32_t gap = 0;
    for (int group = 1; group <= groups_.count(); ++group) {
        const auto bell = newBellOf(change, group);
        for (const Run& run : bell ? runsOf(group) : Group()) {
            groups[static_cast<std::size_t>(group - 1)].runs.push_back(
                foretold(run, change.method, *bell, gap));
        }
    }
    return groups;
}

RunForecast BellForecaster::foretold(const Run& run, const BellMethod& method, Date bell,
                                     std::int32_t& gap) {
    if (!run.stored) {
        return leftOut(run.known, "It is no longer there");
    }
    const auto anchor = bellAnchor(method, run.bell, bell, gap);
    if (!anchor) {
        return leftOut(run.known, "It has no end time to keep the time span from");
    }
    gap = anchor->gapMinutes;
    const auto seconds = method.fromEnd ? run.secondsBackwards : run.secondsForwards;
    if (!seconds) {
        return leftOut(run.known, "A stop has no loading or driving minutes");
    }
    RunForecast result = run.known;
    result.after = method.fromEnd ? RunTimes{anchor->time.plusSeconds(-*seconds), anchor->time}
                                  : RunTimes{anchor->time, anchor->time.plusSeconds(*seconds)};
    judge(result, run.bell.pickup, bell);
    return result;
}

const BellForecaster::Group& BellForecaster::runsOf(int group) {
    const auto [place, isNew] = read_.try_emplace(group);
    for (int slot = 1; isNew && slot <= groups_[group].runCount; ++slot) {
        place->second.push_back(read(groups_[group].runs[slot]));
    }
    return place->second;
}

BellForecaster::Run BellForecaster::read(const std::string& id) const {
    Run run{.known = {.run = id}};
    ado::Recordset row;
    run.stored = data::openRun(row, routing_, id);
    if (!run.stored) {
        return run;
    }
    run.known.description = startup::textOf(row["DESCRIPTION"]);
    run.known.now = {startup::timeOf(row["STARTTIME"]), startup::timeOf(row["ENDTIME"])};
    run.bell = {row["PICKUP"].asBoolean(), startup::timeOf(row["BELLTIME"]), run.known.now.end};
    ado::Recordset rows(stopRowsSql(runedit::StopTable::Routing, TimeOrder::Forwards, id),
                        routing_);
    auto stops = runedit::readStops(rows);
    run.secondsForwards = durationOf(stops, TimeOrder::Forwards);
    std::ranges::reverse(stops);
    run.secondsBackwards = durationOf(stops, TimeOrder::Backwards);
    return run;
}

}  // namespace groupops
