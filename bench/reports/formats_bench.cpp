// A report of 40,000 rows in each format: rows a second, and how much memory it takes at its peak.

#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sys/resource.h>

#include "reports/formats/export.h"

namespace {

using namespace reports;

constexpr int Runs = 2000;
constexpr int StopsOfARun = 20;

Report definition() {
    Report report{.id = "stops", .title = "Stops", .groups = {{"RUN", "RUNTITLE", "stop"}}};
    for (const char* field : {"PLACE", "CORNER", "NAME"}) {
        report.columns.push_back({.field = field, .caption = field, .width = 100, .grows = true});
    }
    report.columns.push_back(
        {.field = "TIME", .caption = "Time", .kind = CellKind::Time, .width = 50});
    for (const char* field : {"STOP", "RIDERS", "ON_BUS"}) {
        report.columns.push_back({.field = field,
                                  .caption = field,
                                  .kind = CellKind::Whole,
                                  .width = 40,
                                  .total = Total::Sum});
    }
    report.columns.push_back(
        {.field = "MILES", .caption = "Miles", .kind = CellKind::Decimal, .width = 40});
    return report;
}

/// Rows that are made as they are read.
class ManyRows : public Content {
public:
    [[nodiscard]] const Report& report() const override { return report_; }
    [[nodiscard]] const Options& options() const override { return options_; }
    [[nodiscard]] const Heading& heading() const override { return heading_; }
    [[nodiscard]] std::size_t size() const override { return Runs * StopsOfARun; }
    std::optional<Item> next() override {
        const int run = at_ / (StopsOfARun + 1);
        const int stop = at_++ % (StopsOfARun + 1);
        if (run >= Runs) {
            return std::nullopt;
        }
        if (stop == 0) {
            return GroupHead{0, fmt::format("Run {}", run), "20 stops", false};
        }
        return Row{{fmt::format("{} Rue de la République & <Main>", run + stop),
                    stop % 7 == 0 ? "שדרות ירושלים" : "at 23rd Avenue",
                    fmt::format("O'Brien, Łucja {}", stop),
                    base::Date::timeOfDay(6 + stop / 10, run % 60), stop, stop % 5, stop * 2,
                    stop * 0.7}};
    }

private:
    Report report_ = definition();
    Options options_;
    Heading heading_{"Stops", "All runs", "District", "Nov 21, 2026 9:41 AM", "PLANNER", "", true};
    int at_ = 0;
};

double peakMiB() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// The memory is that of this process so far: run one format a process to compare it.
void write(benchmark::State& state, Format format) {
    const auto path =
        std::filesystem::temp_directory_path() / fmt::format("bench-report{}", extensionOf(format));
    const double before = peakMiB();
    for (auto _ : state) {
        ManyRows rows;
        exportReport(rows, format, path.string(), {});
    }
    state.counters["rows"] =
        benchmark::Counter(Runs * StopsOfARun, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["more_MiB"] = peakMiB() - before;
    state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    std::filesystem::remove(path);
}

}  // namespace

int main(int argc, char** argv) {
    for (const Format format : {Format::Csv, Format::Text, Format::Html, Format::Rtf, Format::Excel,
                                Format::Pdf, Format::Tiff}) {
        benchmark::RegisterBenchmark(std::string(nameOf(format)).c_str(),
                                     [format](benchmark::State& state) { write(state, format); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(2);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
