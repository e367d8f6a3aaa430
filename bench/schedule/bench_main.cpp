#include <QAbstractButton>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "runsearch/rawsearch.h"
#include "runsearch/schedule/frmRunSchdl.h"
#include "runsearch/schedule/scheduleview.h"
#include "runsearch/search/runsearchquery.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"
#include "support/formprogram.h"

namespace {

using schedule::frmRunSchdl;
using schedule::ScheduleView;

/// The session with a search for all runs behind it.
void startOnce() {
    static const bool started = [] {
        startup::SetPaths();
        startup::OpenRoutingDatabase();
        startup::RunSearchSchoolSQL = runsearch::runSearchQuery({})->runsSchool;
        return true;
    }();
    (void)started;
}

frmRunSchdl& scheduleForm() {
    auto& form = forms::FormRegistry::instance().make<frmRunSchdl>(
        schedule::RunListPort{[] { return std::string(); }, [](const auto&) {}, [](const auto&) {}},
        nullptr);
    form.load();
    return form;
}

ScheduleView& shownAt(QSize size) {
    auto& form = scheduleForm();
    form.resize(size);
    form.show();
    bench::paint();
    return *form.findChild<ScheduleView*>("TimeLine");
}

void readRuns(benchmark::State& state) {
    startOnce();
    std::size_t rows = 0;
    for (auto _ : state) {
        rows = schedule::readPlan(*startup::gcnRouting, startup::RunSearchSchoolSQL).runs.size();
    }
    state.counters["rows"] = static_cast<double>(rows);
}

void layOutRuns(benchmark::State& state) {
    startOnce();
    const auto plan = schedule::readPlan(*startup::gcnRouting, startup::RunSearchSchoolSQL);
    for (auto _ : state) {
        benchmark::DoNotOptimize(schedule::layOut(plan, {}));
    }
}

/// From nothing to the first picture.
void openForm(benchmark::State& state) {
    startOnce();
    const double before = bench::residentMiB();
    double more = 0;
    for (auto _ : state) {
        shownAt({1366, 768});
        more = std::max(more, bench::residentMiB() - before);
        state.PauseTiming();
        forms::Application::instance().startAfresh();  // the last form's unloading ends a program
        bench::paint();
        state.ResumeTiming();
    }
    state.counters["more_MiB"] = more;
}

/// Frames of a picture that moves by three pixels each time, after the first ones, which fill the
/// font's cache.
void frames(benchmark::State& state, QSize size, double row, schedule::Order order) {
    startOnce();
    auto& view = shownAt(size);
    auto* button = scheduleForm().findChild<QAbstractButton*>(
        order == schedule::Order::ByRoute ? "ByRoute" : "BySchool");
    button->click();
    view.fit();
    if (row > 0) {
        view.setRowHeight(row);
        view.zoomTime(row >= 26 ? 2 : 1, 0);
    }
    std::vector<double> milliseconds;
    for (auto _ : state) {
        auto* bar = view.verticalScrollBar();
        bar->setValue(bar->value() + 3 < bar->maximum() ? bar->value() + 3 : 0);
        view.zoomTime(milliseconds.size() % 2 == 0 ? 1.01 : 1 / 1.01, 300);
        const auto start = std::chrono::steady_clock::now();
        view.viewport()->repaint();
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count());
    }
    milliseconds.erase(milliseconds.begin(), milliseconds.begin() + 5);
    std::ranges::sort(milliseconds);
    state.counters["median_ms"] = milliseconds[milliseconds.size() / 2];
    state.counters["worst_ms"] = milliseconds.back();
}

void registerFrames(QSize size) {
    for (const double row : {44.0, 26.0, 18.0, 14.0, 10.0, 4.0, 1.0, 0.0}) {
        for (const auto order : {schedule::Order::ByRoute, schedule::Order::BySchool}) {
            const auto name =
                fmt::format("frame/{}x{}/row_{}/{}", size.width(), size.height(),
                            row > 0 ? std::to_string(static_cast<int>(row)) : "fit",
                            order == schedule::Order::ByRoute ? "by_route" : "by_school");
            benchmark::RegisterBenchmark(
                name.c_str(), [=](benchmark::State& state) { frames(state, size, row, order); })
                ->Unit(benchmark::kMillisecond)
                ->Iterations(45);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::optional<bench::RawDistrict> raw;
    return bench::measureForms(argc, argv, [&](const std::string& folder) {
        raw.emplace(folder + "/data/routing.mdb", folder + "/common/trip.mdb");
        benchmark::RegisterBenchmark("raw_read", [&](benchmark::State& state) {
            for (auto _ : state) {
                raw->readRuns(bench::RawDistrict::Columns::Queried, "");
            }
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("read", readRuns)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("lay_out", layOutRuns)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("open_to_first_paint", openForm)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(5);
        registerFrames({1366, 768});
        registerFrames({1920, 1080});
    });
}
