// Preparing reports of every run of a district, and reading them; give the district's folder.

#include <iostream>
#include <string>

#include <benchmark/benchmark.h>

#include "reports/catalog/preparation.h"
#include "startup/base/COSInfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"

namespace {

std::unique_ptr<reports::Prepared> prepared(const std::string& report) {
    const reports::Sources sources{*startup::gcnRouting, *startup::gcnVIREORpt, "PLANNER",
                                   base::Date::of(2026, 11, 21, 9, 41)};
    return reports::prepare(sources, {.report = report,
                                      .runs = "SELECT RUN.* FROM RUN",
                                      .options = {.names = report == "driver-instructions"}});
}

void prepare(benchmark::State& state, const std::string& report) {
    for (auto _ : state) {
        const auto made = prepared(report);
        state.PauseTiming();
        state.counters["runs"] = static_cast<double>(made->runs());
        state.ResumeTiming();
    }
}

/// From the click to the first item, with what a preparation takes; the rows are removed outside.
void firstItem(benchmark::State& state, const std::string& report) {
    for (auto _ : state) {
        auto made = prepared(report);
        auto content = made->content();
        benchmark::DoNotOptimize(content->next());
        state.PauseTiming();
        state.counters["rows"] = static_cast<double>(content->size());
        content.reset();
        made.reset();
        state.ResumeTiming();
    }
}

void readAll(benchmark::State& state, const std::string& report) {
    const auto made = prepared(report);
    std::size_t items = 0;
    for (auto _ : state) {
        const auto content = made->content();
        for (items = 0; content->next(); ++items) {
        }
    }
    state.counters["items"] = static_cast<double>(items);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::cerr << "bench_report_catalog [options] DISTRICT\n";
        return 1;
    }
    startup::COSInfo::useFolder(std::string(argv[1]) + "/vireo");
    startup::SetPaths();
    startup::OpenRoutingDatabase();
    for (const char* report : {"run-list", "run-stops", "run-students", "driver-instructions",
                               "directions", "summary-school", "changed-runs"}) {
        const std::string name = report;
        benchmark::RegisterBenchmark((name + "/prepare").c_str(), prepare, name)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "/first_item").c_str(), firstItem, name)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "/read").c_str(), readAll, name)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    startup::closeConnections();
    return 0;
}
