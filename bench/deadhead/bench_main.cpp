// The dead-head of all 4,000 routes of a district of 20,000 runs, reset included, beside the raw
// statements: at most twice their time.

#include <iostream>

#include <benchmark/benchmark.h>

#include "groupops/deadhead/districtdeadhead.h"
#include "rawdeadhead.h"
#include "support/temporarydistrict.h"

namespace {

using data::DatabaseFile;

constexpr std::int64_t ManyRuns = 20'000;

class NoProgress : public base::ProgressPort {
public:
    void progress(double percent) override { benchmark::DoNotOptimize(percent); }
    void status(const std::string& text) override { benchmark::DoNotOptimize(text.data()); }
    bool yield() override { return false; }
};

void allRoutes(benchmark::State& state, const bench::TemporaryDistrict& district) {
    ado::Connection routing;
    ado::Connection cross;
    routing.Open(district.path(DatabaseFile::Routing));
    cross.Open(district.path(DatabaseFile::DeadCross));
    NoProgress progress;
    groupops::DeadHeadOutcome outcome;
    for (auto _ : state) {
        outcome = groupops::calculateAllRoutes({routing, cross}, true, progress);
    }
    state.counters["routes"] = outcome.done;
    state.counters["failed"] = outcome.failed;
}

void rawStatements(benchmark::State& state, const bench::TemporaryDistrict& district) {
    bench::RawDeadHead raw(district.path(DatabaseFile::Routing),
                           district.path(DatabaseFile::DeadCross));
    std::int64_t legs = 0;
    for (auto _ : state) {
        legs = raw.calculate();
    }
    state.counters["legs"] = static_cast<double>(legs);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    try {
        const bench::TemporaryDistrict district(ManyRuns);
        for (const auto& [name, measured] :
             {std::pair{"all_routes", &allRoutes}, std::pair{"raw_statements", &rawStatements}}) {
            benchmark::RegisterBenchmark(name,
                                         [&district, measured = measured](benchmark::State& state) {
                                             measured(state, district);
                                         })
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
        }
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
