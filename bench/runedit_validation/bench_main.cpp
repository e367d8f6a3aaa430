// All seven checks on a run of 20 stops beside the raw statements, in the sample district and in
// one of 20,000 runs, and one validation of every run of the latter.

#include <iostream>
#include <map>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "measureddistrict.h"
#include "platform/ado/recordset.h"
#include "rawvalidation.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "startup/base/session.h"

namespace {

constexpr std::int64_t ManyRuns = 20'000;

void checkRun(benchmark::State& state, const bench::MeasuredDistrict& district) {
    district.openSession();
    for (auto _ : state) {
        const auto flags = runedit::CheckRun(bench::Run, 0, false, "Y");
        if (flags != "YYYNYYYY") {
            state.SkipWithError(("The checks found " + flags).c_str());
        }
    }
}

void rawStatements(benchmark::State& state, const bench::MeasuredDistrict& district) {
    district.openSession();  // so that both have a second connection on the file
    bench::RawValidation raw(district.routing(), district.trip());
    for (auto _ : state) {
        raw.validate();
    }
}

std::vector<std::string> columnOf(const std::string& sql) {
    ado::Recordset rows;
    rows.Open(sql, *startup::gcnRouting);
    std::vector<std::string> texts;
    for (; !rows.Eof(); rows.MoveNext()) {
        texts.push_back(rows.Fields(0).asText());
    }
    return texts;
}

void everyRun(benchmark::State& state, const bench::MeasuredDistrict& district) {
    district.openSession();
    const auto runs = columnOf("SELECT RUN FROM RUN");
    for (auto _ : state) {
        for (const auto& run : runs) {
            runedit::CheckRun(run, 0, false, "Y");
        }
    }
    state.counters["runs"] = static_cast<double>(runs.size());
    for (const auto& type : columnOf("SELECT WARNINGTYPE FROM RUNWARNING")) {
        state.counters[type] = state.counters[type] + 1;
    }
}

void registerDistrict(const std::string& name, const bench::MeasuredDistrict& district) {
    const auto add = [&](const char* what, auto function) {
        return benchmark::RegisterBenchmark(
                   (name + what).c_str(),
                   [&district, function](benchmark::State& state) { function(state, district); })
            ->UseRealTime();
    };
    add("/CheckRun_20_stops", checkRun)->Unit(benchmark::kMicrosecond);
    add("/raw_20_stops", rawStatements)->Unit(benchmark::kMicrosecond);
    add("/CheckRun_every_run", everyRun)->Unit(benchmark::kSecond)->Iterations(1);
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
        registerDistrict("sample", sample);
        registerDistrict("20000_runs", big);
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
