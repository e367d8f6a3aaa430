// The times of a run of 20 stops, computed and written on a copy of the measured district: at most
// 3 ms with the journal settings of a planner's single save. That save waits for the disk once; the
// raw updates, which wait as often, tell how much of a figure is the disk's.

#include <filesystem>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <stdlib.h>

#include "district.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "runedit/times/mdl_Time_Calc_Routines.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"

namespace {

namespace fs = std::filesystem;

constexpr auto Run = "BENCH20";
constexpr int Stops = 20;

/// A copy of the routing file with one more run, removed at the end.
class Copy {
public:
    Copy() {
        std::string pattern = (fs::temp_directory_path() / "vireo-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no folder to work in");
        }
        folder_ = pattern;
        fs::copy_file(bench::district().routing, path());
        const auto database = store::open(path());
        database->execute(fmt::format(
            "INSERT INTO STOP_TRIPTYPE (INT_STOPID, TRIPTYPE, RUN, RUNSEQ, LOAD_TIME, TIME_TOSTOP)"
            " SELECT INT_STOPID, 'AM', '{}', row_number() OVER (ORDER BY INT_STOPID), 0.7, 1.9"
            " FROM STOP WHERE STOPTYPE = 'REGULAR' LIMIT {}",
            Run, Stops));
        database->checkpoint();
    }
    ~Copy() { fs::remove_all(folder_); }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    [[nodiscard]] std::string path() const { return folder_ / "routing.mdb"; }

private:
    fs::path folder_;
};

const Copy& copy() {
    static const Copy made;
    return made;
}

/// All 20 times change from one round to the next, unless `anchors` is 1.
void calcTimes(benchmark::State& state, const char* mode, store::Durability durability,
               int anchors) {
    startup::gcnRouting = startup::GetJetConnection(copy().path());
    startup::gcnRouting->setDurability(durability);
    int round = 0;
    for (auto _ : state) {
        std::string given = mode;
        auto anchor = base::Date::timeOfDay(8, ++round % anchors);
        benchmark::DoNotOptimize(runedit::Calc_Times(given, anchor, false, Run));
    }
    startup::closeConnections();
}

/// The same rows written with one prepared statement, the times known beforehand.
void rawUpdates(benchmark::State& state, store::Durability durability) {
    const auto database = store::open(copy().path());
    database->setDurability(durability);
    const auto rows = database->prepare("SELECT ID FROM STOP_TRIPTYPE WHERE RUN = ?");
    rows->bind(0, Run);
    std::vector<std::int64_t> ids;
    while (rows->step()) {
        ids.push_back(rows->integer(0));
    }
    rows->reset();
    const auto update = database->prepare("UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = ? WHERE ID = ?");
    int round = 0;
    for (auto _ : state) {
        database->begin();
        const auto time = base::Date::timeOfDay(9, ++round % 60);
        for (const std::int64_t id : ids) {
            update->bind(0, time.iso());
            update->bind(1, id);
            update->step();
            update->reset();
        }
        database->commit();
    }
}

using enum store::Durability;

BENCHMARK_CAPTURE(calcTimes, Start_single_save, "Start", PowerCut, 60)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(calcTimes, End_single_save, "End", PowerCut, 60)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(calcTimes, Start_in_group_operation, "Start", Crash, 60)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(calcTimes, Start_nothing_changes, "Start", PowerCut, 1)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(rawUpdates, single_save, PowerCut)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_CAPTURE(rawUpdates, in_group_operation, Crash)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

}  // namespace
