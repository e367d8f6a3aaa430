// The run log inquiry on a district's whole log. Each search is measured from the click to its
// first screen; on the way to the end every turn of the event loop counts, since it is how long the
// form does not answer.

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <algorithm>
#include <string>

#include <benchmark/benchmark.h>

#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "runsearch/log/RunLogInquiry.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"
#include "startup/main/RunStartup.h"
#include "support/formprogram.h"

namespace {

using runsearch::RunLogInquiry;

RunLogInquiry& inquiry() {
    static const bool started = (startup::Main("PLANNER"), true);
    (void)started;
    return forms::FormRegistry::instance().load<RunLogInquiry>();
}

template <class Control>
Control& control(const char* name) {
    return *inquiry().findChild<Control*>(name);
}

controls::MultiColumnList& list() { return control<controls::MultiColumnList>("LogList"); }

double milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Lets the event loop turn until `done`; the longest turn in milliseconds.
template <class Done>
double longestTurn(Done done) {
    double longest = 0;
    while (!done()) {
        QElapsedTimer turn;
        turn.start();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        longest = std::max(longest, milliseconds(turn));
    }
    return longest;
}

bool isCounted() {
    const QString text = control<QLabel>("LogCount").text();
    return text.isEmpty() || !text.contains("so far");
}

void fill(const std::string& run, const std::string& activity) {
    control<QLineEdit>("RunID").setText(QString::fromStdString(run));
    control<controls::MultiColumnCombo>("cmbActivityCode").setText(activity);
}

void firstScreen(benchmark::State& state, const std::string& run, const std::string& activity) {
    fill(run, activity);
    inquiry().showForm();
    double counting = 0;
    for (auto _ : state) {
        inquiry().Search_Click();
        QCoreApplication::sendPostedEvents();
        list().viewport()->repaint();
        state.PauseTiming();
        counting = std::max(counting, longestTurn(isCounted));
        state.ResumeTiming();
    }
    state.counters["longest_turn_counting_ms"] = counting;
    state.SetLabel(control<QLabel>("LogCount").text().toStdString());
}

/// From the End key to the last entry chosen.
void jumpToEnd(benchmark::State& state) {
    fill("", "");
    inquiry().showForm();
    double longest = 0;
    double grown = 0;
    for (auto _ : state) {
        state.PauseTiming();
        inquiry().Search_Click();
        (void)longestTurn(isCounted);
        const double before = bench::residentMiB();
        state.ResumeTiming();
        QTest::keyClick(&list(), Qt::Key_End);
        longest = std::max(longest, longestTurn([] { return list().chosenRow() > 100'000; }));
        grown = std::max(grown, bench::residentMiB() - before);
    }
    state.counters["longest_turn_ms"] = longest;
    state.counters["more_MiB"] = grown;
    state.counters["entries"] = list().rows();
}

/// Sorting the whole log, once it is read.
void sort(benchmark::State& state) {
    const int column = static_cast<int>(state.range(0));
    for (auto _ : state) {
        inquiry().LogList_ClickColumn(column);
    }
}

/// A planner's single save while a log is half read: on a connection of its own, and on hers, which
/// must read it to the end first.
void saveBesideHalfReadLog(benchmark::State& state, bool ownConnection) {
    inquiry();
    for (auto _ : state) {
        state.PauseTiming();
        const auto own = startup::GetJetConnection(startup::gDataPath + "routing.mdb");
        auto& connection = ownConnection ? *own : *startup::gcnRouting;
        auto reader =
            std::make_unique<runsearch::RunLogReader>(connection, runsearch::RunLogFilters{});
        state.ResumeTiming();
        startup::gcnRouting->Execute("UPDATE SYSTEM SET NEEDDEADHEADBUILD = True");
        state.PauseTiming();
        reader.reset();
        state.ResumeTiming();
    }
}

void registerAll(const std::string&) {
    const auto search = [](const char* name, const char* run, const char* activity) {
        benchmark::RegisterBenchmark(name, [run, activity](benchmark::State& state) {
            firstScreen(state, run, activity);
        })->Unit(benchmark::kMillisecond);
    };
    search("first_screen/whole_log", "", "");
    search("first_screen/one_activity", "", "3");
    search("first_screen/unknown_activity", "", "999");
    search("first_screen/some_runs", "A0027", "");
    search("first_screen/half_of_the_runs", "A", "");
    search("first_screen/half_of_the_runs_one_activity", "A", "3");
    benchmark::RegisterBenchmark("jump_to_end", jumpToEnd)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
    benchmark::RegisterBenchmark("sort_whole_log", sort)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(2)
        ->Arg(0)
        ->Arg(2);
    benchmark::RegisterBenchmark("save_beside_half_read_log/own_connection", saveBesideHalfReadLog,
                                 true)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("save_beside_half_read_log/planners_connection",
                                 saveBesideHalfReadLog, false)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(2);
}

}  // namespace

int main(int argc, char** argv) { return bench::measureForms(argc, argv, registerAll); }
