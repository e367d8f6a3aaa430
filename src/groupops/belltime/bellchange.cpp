#include "groupops/belltime/bellchange.h"

#include <map>
#include <utility>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "platform/ado/recordset.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

constexpr auto ChangedBy = "BELL TIME CHANGE";

std::optional<base::Date> newBell(const BellChange& change, int group) {
    const auto place = static_cast<std::size_t>(group - 1);
    return place < change.newBells.size() ? change.newBells[place] : std::nullopt;
}

/// One bell change under way.
class Changing {
public:
    Changing(ado::Connection& routing, const BellChange& change, const BellReport& report)
        : routing_(routing), work_(routing), change_(change), report_(report) {}

    GroupOutcome all();

private:
    bool changeGroup(const BellGroup& group, base::Date bell);
    void changeRun(const std::string& run, base::Date bell);
    void write(ado::Recordset& row, const std::string& run, base::Date bell, base::Date anchor);

    ado::Connection& routing_;
    ado::GroupWork work_;
    const BellChange& change_;
    const BellReport& report_;
    GroupOutcome outcome_;
    std::int32_t gap_ = 0;  ///< goes over from run to run
};

GroupOutcome Changing::all() {
    const int count = change_.groups.count();
    for (int group = 1; group <= count; ++group) {
        outcome_.asked += newBell(change_, group) ? change_.groups[group].runCount : 0;
    }
    for (int group = 1; group <= count && !outcome_.stopped; ++group) {
        report_.groups.progress(100.0 * group / count);
        if (const auto bell = newBell(change_, group)) {
            outcome_.stopped = !changeGroup(change_.groups[group], *bell);
        }
    }
    return outcome_;
}

/// False where the planner stopped it.
bool Changing::changeGroup(const BellGroup& group, base::Date bell) {
    for (int slot = 1; slot <= group.runCount; ++slot) {
        const bool stopped = report_.runs.yield() ||
                             !work_.unit(report_.runs, [&] { changeRun(group.runs[slot], bell); });
        if (stopped) {
            return false;
        }
        report_.runs.progress(100.0 * slot / group.runCount);
    }
    return true;
}

void Changing::changeRun(const std::string& run, base::Date bell) {
    ado::Recordset row;
    if (!data::openRun(row, routing_, run, ado::CursorType::Dynamic)) {
        outcome_.gone.push_back(run);
        return;
    }
    const BellRun before{row["Pickup"].asBoolean(), startup::timeOf(row["BellTime"]),
                         startup::timeOf(row["EndTime"])};
    const auto anchor = bellAnchor(change_.method, before, bell, gap_);
    if (!anchor) {
        outcome_.withoutEnd.push_back(run);
        return;
    }
    gap_ = anchor->gapMinutes;
    write(row, run, bell, anchor->time);
    ++outcome_.changed;
}

void Changing::write(ado::Recordset& row, const std::string& run, base::Date bell,
                     base::Date anchor) {
    std::string mode = change_.method.fromEnd ? "END" : "Start";
    base::Date from = anchor;
    const auto otherEnd = runedit::timeStoredStops({routing_, runedit::StopRows::Routing, run},
                                                   mode, from, report_.log);
    row["BellTime"].Value(bell.timeValue());
    row["StartTime"].Value(change_.method.fromEnd ? otherEnd.timeValue() : anchor);
    row["EndTime"].Value(change_.method.fromEnd ? anchor : otherEnd.timeValue());
    row["changeddt"].Value(base::Now());
    row["ChangedBy"].Value(ChangedBy);
    row.Update();
    row.Close();
}

}  // namespace

std::optional<BellCrowd> crowdAfter(const BellChange& change) {
    std::map<std::pair<std::string, std::string>, int> runs;
    for (int group = 1; group <= change.groups.count(); ++group) {
        const BellGroup& before = change.groups[group];
        const auto bell = newBell(change, group);
        runs[{before.school, bell ? bell->timeValue().text() : before.bellTime}] += before.runCount;
    }
    for (const auto& [place, count] : runs) {
        if (count > BellGroup::MaxRuns) {
            return BellCrowd{place.first, place.second, count};
        }
    }
    return std::nullopt;
}

GroupOutcome changeBellTimes(ado::Connection& routing, const BellChange& change,
                             const BellReport& report) {
    return Changing(routing, change, report).all();
}

}  // namespace groupops
