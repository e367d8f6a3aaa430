#include "groupops/belltime/bellchange.h"

#include <map>
#include <utility>

#include "data/runs/runrow.h"
#include "groupops/base/grouploop.h"
#include "platform/ado/recordset.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

constexpr auto ChangedBy = "BELL TIME CHANGE";

/// One bell change under way.
class Changing {
public:
    Changing(ado::Connection& routing, const BellChange& change, const BellReport& report)
        : routing_(routing), change_(change), report_(report) {}

    Outcome all();

private:
    std::optional<LeftOut> changeRun(const std::string& run, base::Date bell);
    void write(ado::Recordset& row, const std::string& run, base::Date bell, base::Date anchor);
    [[nodiscard]] std::vector<std::string> readsOf(const std::string& run) const;

    ado::Connection& routing_;
    const BellChange& change_;
    const BellReport& report_;
    std::int32_t gap_ = 0;  ///< goes over from run to run
};

Outcome Changing::all() {
    Outcome outcome;
    const int count = change_.groups.count();
    for (int group = 1; group <= count; ++group) {
        outcome.asked += newBellOf(change_, group) ? change_.groups[group].runCount : 0;
    }
    GroupLoop loop(routing_, report_.runs, runChangeWording(), outcome);
    for (int group = 1; group <= count && !outcome.stopped; ++group) {
        report_.groups(100.0 * group / count);
        const auto bell = newBellOf(change_, group);
        const auto& runs = change_.groups[group].runs;
        const int inGroup = bell ? change_.groups[group].runCount : 0;
        loop.forEach(
            numbersTo(inGroup),
            [&](int slot) {
                loop.worksOn(runs[slot]);
                return changeRun(runs[slot], *bell);
            },
            [](int) { return ChangingBells; }, Telling::Done,
            [&](int slot) { return readsOf(runs[slot]); });
    }
    return outcome;
}

std::vector<std::string> Changing::readsOf(const std::string& run) const {
    const auto order =
        change_.method.fromEnd ? runedit::TimeOrder::Backwards : runedit::TimeOrder::Forwards;
    return {data::runSql(run), stopRowsSql(runedit::StopTable::Routing, order, run)};
}

std::optional<LeftOut> Changing::changeRun(const std::string& run, base::Date bell) {
    ado::Recordset row;
    if (!data::openRun(row, routing_, run, ado::CursorType::Dynamic)) {
        return LeftOut{DeletedMeanwhile, run};
    }
    const BellRun before{row["Pickup"].asBoolean(), startup::timeOf(row["BellTime"]),
                         startup::timeOf(row["EndTime"])};
    const auto anchor = bellAnchor(change_.method, before, bell, gap_);
    if (!anchor) {
        return LeftOut{"Left as they were, for they have no end time to keep the time span from",
                       run};
    }
    gap_ = anchor->gapMinutes;
    try {
        write(row, run, bell, anchor->time);
    } catch (const base::RunTimeError& error) {
        // Raised before anything of the run is written.
        if (error.number() != base::errors::InvalidUseOfNull) {
            throw;
        }
        return LeftOut{"Left as they were, for a stop has no loading or driving minutes", run};
    }
    return std::nullopt;
}

void Changing::write(ado::Recordset& row, const std::string& run, base::Date bell,
                     base::Date anchor) {
    std::string mode = change_.method.fromEnd ? "END" : "Start";
    base::Date from = anchor;
    const auto otherEnd = runedit::timeStoredStops({routing_, runedit::StopTable::Routing, run},
                                                   mode, from, report_.log);
    row["BellTime"].Value(bell);
    row["StartTime"].Value(change_.method.fromEnd ? otherEnd.timeValue() : anchor);
    row["EndTime"].Value(change_.method.fromEnd ? anchor : otherEnd.timeValue());
    row["changeddt"].Value(base::Now());
    row["ChangedBy"].Value(ChangedBy);
    row.Update();
    row.Close();
}

}  // namespace

/// Whichever day the bell's arithmetic has come to.
std::optional<base::Date> newBellOf(const BellChange& change, int group) {
    const auto place = static_cast<std::size_t>(group - 1);
    const bool changes = place < change.newBells.size() && change.newBells[place];
    return changes ? std::optional(change.newBells[place]->timeValue()) : std::nullopt;
}

std::optional<BellCrowd> crowdAfter(const BellChange& change) {
    std::map<std::pair<std::string, std::string>, int> runs;
    for (int group = 1; group <= change.groups.count(); ++group) {
        const BellGroup& before = change.groups[group];
        const auto bell = newBellOf(change, group);
        runs[{before.school, bell ? bell->text() : before.bellTime}] += before.runCount;
    }
    for (const auto& [place, count] : runs) {
        if (count > BellGroup::MaxRuns) {
            return BellCrowd{place.first, place.second, count};
        }
    }
    return std::nullopt;
}

Outcome changeBellTimes(ado::Connection& routing, const BellChange& change,
                        const BellReport& report) {
    return Changing(routing, change, report).all();
}

}  // namespace groupops
