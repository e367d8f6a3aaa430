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
#include "startup/base/session.h"
#include "startup/main/RunStartup.h"
#include "support/formprogram.h"
#include "support/rawdatabase.h"

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

/// Sorting the whole log, once it is read, from the click to the list in its new order.
void sort(benchmark::State& state) {
    const int column = static_cast<int>(state.range(0));
    double longest = 0;
    for (auto _ : state) {
        const auto wanted =
            list().sortsDescendingNext(column) ? Qt::DescendingOrder : Qt::AscendingOrder;
        QElapsedTimer click;
        click.start();
        inquiry().LogList_ClickColumn(column);
        longest =
            std::max({longest, milliseconds(click), longestTurn([&] {
                          return list().sortColumn() == column && list().sortOrder() == wanted;
                      })});
    }
    state.counters["longest_turn_ms"] = longest;
}

/// The raw statement of a search with LIMIT, its columns looked at: what a first screen is compared
/// with.
void rawFirstScreen(benchmark::State& state, const char* sql) {
    inquiry();
    bench::RawDatabase raw(startup::gDataPath + "routing.mdb");
    for (auto _ : state) {
        raw.run(sql, {}, [](sqlite3_stmt* row) {
            for (int column = 0; column < sqlite3_column_count(row); ++column) {
                benchmark::DoNotOptimize(sqlite3_column_text(row, column));
            }
        });
    }
}

/// A planner's single save while a log is half read.
void saveBesideHalfReadLog(benchmark::State& state) {
    inquiry();
    runsearch::RunLogReader reader(*startup::gcnRouting, {});
    auto entries = runsearch::RunLogReader::emptyTable();
    for (auto _ : state) {
        state.PauseTiming();
        reader.read(500, entries);
        state.ResumeTiming();
        startup::gcnRouting->Execute("UPDATE SYSTEM SET NEEDDEADHEADBUILD = True");
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
    benchmark::RegisterBenchmark("save_beside_half_read_log", saveBesideHalfReadLog)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(100);
    const auto raw = [](const char* name, const char* sql) {
        benchmark::RegisterBenchmark(name, [sql](benchmark::State& state) {
            rawFirstScreen(state, sql);
        })->Unit(benchmark::kMillisecond);
    };
    raw("raw_first_screen/whole_log", "SELECT * FROM RUNLOG ORDER BY LOGDATE DESC LIMIT 500");
    raw("raw_first_screen/one_activity",
        "SELECT * FROM RUNLOG WHERE ACTIVITYCODE = 3 ORDER BY LOGDATE DESC LIMIT 500");
    raw("raw_first_screen/unknown_activity",
        "SELECT * FROM RUNLOG WHERE ACTIVITYCODE = 999 ORDER BY LOGDATE DESC LIMIT 500");
    raw("raw_first_screen/some_runs",
        "SELECT * FROM RUNLOG WHERE RUNID >= 'A0027' AND RUNID < 'A0028' ORDER BY LOGDATE DESC "
        "LIMIT 500");
    raw("raw_first_screen/half_of_the_runs",
        "SELECT * FROM RUNLOG WHERE RUNID >= 'A' AND RUNID < 'B' ORDER BY LOGDATE DESC LIMIT 500");
    raw("raw_first_screen/half_of_the_runs_one_activity",
        "SELECT * FROM RUNLOG WHERE RUNID >= 'A' AND RUNID < 'B' AND ACTIVITYCODE = 3 ORDER BY "
        "LOGDATE DESC LIMIT 500");
}

}  // namespace

int main(int argc, char** argv) { return bench::measureForms(argc, argv, registerAll); }
