// A bell change at its bounds (300 groups of 30 runs of 8 stops) and a group change of the same
// 9,000 runs, in the sample district and in one of 20,000 runs: a run must not cost more than 1.3
// times as much in the big one. The figure to read is a_run.

#include <iostream>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "groupops/belltime/bellchange.h"
#include "groupops/groupchange/runchange.h"
#include "measureddistrict.h"
#include "platform/ado/recordset.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "startup/base/session.h"
#include "support/insertmany.h"

namespace {

constexpr std::int64_t ManyRuns = 20'000;
constexpr int Groups = groupops::BellGroups::MaxGroups;
constexpr int Runs = Groups * groupops::BellGroup::MaxRuns;
constexpr int StopsOfRun = 8;
using NewBells = std::vector<std::optional<base::Date>>;

constexpr auto OfTheGroups = "SELECT RUN.* FROM RUN WHERE RUN.RUNFAMILY = 'BENCH'";

/// Nobody looks and nobody stops.
class Silent : public base::ProgressPort {
public:
    void progress(double) override {}
    void status(const std::string&) override {}
    bool yield() override { return false; }
};

void addGroups(const bench::MeasuredDistrict& district) {
    const auto routing = store::open(district.routing());
    routing->execute(bench::insertMany(
        "RUN", Runs, "RUN, SCHOOL, RUNFAMILY, PICKUP, BELLTIME, STARTTIME, ENDTIME",
        fmt::format("'BELL-' || i, 'BENCH-' || ((i - 1) / {}), 'BENCH', 1, '1899-12-30 08:00:00', "
                    "'1899-12-30 07:10:00', '1899-12-30 07:45:00'",
                    groupops::BellGroup::MaxRuns)));
    routing->execute(bench::insertMany(
        "STOP_TRIPTYPE", Runs * StopsOfRun,
        "INT_STOPID, TRIPTYPE, RUN, RUNSEQ, LOAD_TIME, TIME_TOSTOP, UPDATE_TIME",
        fmt::format("(SELECT min(INT_STOPID) FROM STOP WHERE STOPTYPE = 'REGULAR') + i % 50, 'AM', "
                    "'BELL-' || ((i - 1) / {0} + 1), (i - 1) % {0} + 1, 0.7, 4.3, 1",
                    StopsOfRun)));
    routing->checkpoint();
}

void setCounters(benchmark::State& state, int changed) {
    if (changed != Runs) {
        state.SkipWithError(fmt::format("{} runs changed", changed).c_str());
    }
    state.counters["a_run"] = benchmark::Counter(
        Runs, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void bellChange(benchmark::State& state, const bench::MeasuredDistrict& district) {
    district.openSession();
    Silent silent;
    int round = 0;
    int changed = 0;
    for (auto _ : state) {
        groupops::BellGroups groups;
        readBellGroups(*startup::gcnRouting, OfTheGroups, groups);
        const auto bell = base::Date::timeOfDay(8, ++round % 60);
        changed = groupops::changeBellTimes(*startup::gcnRouting,
                                            {groups, NewBells(Groups, bell), {.fromEnd = true}},
                                            {silent, [](double) {}})
                      .done;
    }
    setCounters(state, changed);
}

void groupChange(benchmark::State& state, const bench::MeasuredDistrict& district) {
    district.openSession();
    std::vector<std::string> runs;
    for (int run = 1; run <= Runs; ++run) {
        runs.push_back(fmt::format("BELL-{}", run));
    }
    Silent silent;
    int round = 0;
    int changed = 0;
    for (auto _ : state) {
        const std::vector<groupops::RunChange> changes{{"Capacity", ++round % 2 ? "High" : "Low"},
                                                       {"OverFill", round}};
        changed = groupops::changeRuns(*startup::gcnRouting, runs, changes, silent).done;
    }
    setCounters(state, changed);
}

void registerDistrict(const std::string& name, const bench::MeasuredDistrict& district) {
    const auto add = [&](const char* what, auto function) {
        benchmark::RegisterBenchmark(
            (name + what).c_str(),
            [&district, function](benchmark::State& state) { function(state, district); })
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(3);
    };
    add("/bell_change_300_groups_of_30", bellChange);
    add("/group_change_9000_runs", groupChange);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    try {
        const bench::MeasuredDistrict sample({});
        const bench::MeasuredDistrict big(ManyRuns);
        addGroups(sample);
        addGroups(big);
        registerDistrict("sample", sample);
        registerDistrict("20000_runs", big);
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
