// A merge of a run of 20 stops in the sample district and in one of 20,000 runs: the cost must not
// grow with the district, at most 1.3 times the sample's. And the list of runs to choose from.

#include <iostream>
#include <utility>

#include <benchmark/benchmark.h>

#include "groupops/merge/runmerge.h"
#include "platform/store/open/open.h"
#include "support/insertmany.h"
#include "support/temporarydistrict.h"

namespace {

constexpr int Stops = 20;
constexpr std::int64_t ManyRuns = 20'000;

class NoProgress : public base::ProgressPort {
public:
    void progress(double percent) override { benchmark::DoNotOptimize(percent); }
    void status(const std::string& text) override { benchmark::DoNotOptimize(text.data()); }
    bool yield() override { return false; }
};

std::string routingOf(const bench::TemporaryDistrict& district) {
    return district.path(data::DatabaseFile::Routing);
}

void addRuns(const bench::TemporaryDistrict& district) {
    const auto routing = store::open(routingOf(district));
    routing->execute("INSERT INTO RUN(RUN) VALUES ('BENCH-A'), ('BENCH-B')");
    routing->execute(bench::insertMany("STOP", Stops, "INT_STOPID, STOPID, STOPTYPE",
                                       "9000000 + i, 'BENCH-' || i, 'REGULAR'"));
    routing->execute(bench::insertMany("STOP_TRIPTYPE", Stops, "INT_STOPID, TRIPTYPE, RUN, RUNSEQ",
                                       "9000000 + i, 'AM', 'BENCH-A', i"));
    routing->checkpoint();
}

/// To and fro; every round moves all stops.
void merge(benchmark::State& state, const bench::TemporaryDistrict& district) {
    ado::Connection routing;
    routing.Open(routingOf(district));
    NoProgress progress;
    groupops::RunMerge merge{"BENCH-B", "BENCH-A", "BENCH"};
    for (auto _ : state) {
        const auto outcome = groupops::mergeRuns(routing, merge, progress);
        if (outcome.done != Stops) {
            state.SkipWithError("Not all stops were moved.");
        }
        std::swap(merge.receiving, merge.source);
    }
    // All are to be on the first run again for the next round of measuring.
    groupops::mergeRuns(routing, {"BENCH-A", "BENCH-B", "BENCH"}, progress);
}

void runsToChoose(benchmark::State& state, const bench::TemporaryDistrict& district) {
    ado::Connection routing;
    routing.Open(routingOf(district));
    for (auto _ : state) {
        const auto runs = groupops::readOtherRuns(routing, "BENCH-A");
        state.counters["runs"] = static_cast<double>(runs.rowCount());
    }
}

void measure(const std::string& name, const bench::TemporaryDistrict& district) {
    for (const auto& [what, measured] :
         {std::pair{"merge_20_stops/", &merge}, std::pair{"runs_to_choose/", &runsToChoose}}) {
        benchmark::RegisterBenchmark((what + name).c_str(), [&district, measured = measured](
                                                                benchmark::State& state) {
            measured(state, district);
        })->Unit(benchmark::kMicrosecond);
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    try {
        const bench::TemporaryDistrict sample({});
        const bench::TemporaryDistrict big(ManyRuns);
        addRuns(sample);
        addRuns(big);
        measure("sample", sample);
        measure("20000_runs", big);
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
