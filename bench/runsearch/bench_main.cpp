#include <QAbstractButton>
#include <QLineEdit>
#include <array>
#include <functional>
#include <optional>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "rawsearch.h"
#include "runsearch/finder/runindex.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/main/RunStartup.h"
#include "support/formprogram.h"

namespace {

runsearch::frmTarn& mainForm() {
    return forms::FormRegistry::instance().load<runsearch::frmTarn>();
}

template <class Control>
Control& control(const char* name) {
    return *mainForm().findChild<Control*>(name);
}

using bench::paint;

void startOnce() {
    static const bool started = (startup::Main("PLANNER"), paint(), true);
    (void)started;
}

/// From the start of Main to the main form painted; the program starts once in a process.
void start(benchmark::State& state) {
    for (auto _ : state) {
        startOnce();
    }
}

/// From the click to the filled list; with `painted`, to its visible part on the screen.
void search(benchmark::State& state, bool painted) {
    const double before = bench::residentMiB();
    for (auto _ : state) {
        mainForm().cmdSearch_Click();
        if (!painted) {
            state.PauseTiming();
        }
        paint();
        if (!painted) {
            state.ResumeTiming();
        }
    }
    state.counters["rows"] = control<controls::MultiColumnList>("RunList").rows();
    state.counters["more_MiB"] = bench::residentMiB() - before;
}

struct Case {
    std::string name;
    std::function<void()> fill;
    std::string rawCondition;
};

void typeInto(const char* name, const std::string& text) {
    control<QLineEdit>(name).setText(QString::fromStdString(text));
}

void select(const char* listName, const std::string& code) {
    auto& list = control<controls::MultiColumnList>(listName);
    for (int row = 0; row < list.rows(); ++row) {
        if (list.cellText(row, 0) == code) {
            list.selectRows(std::array{row});
        }
    }
}

std::vector<Case> cases(bench::RawDistrict& raw) {
    const auto prefix = raw.value("SELECT substr(RUN, 1, 3) FROM RUN ORDER BY RUN LIMIT 1");
    const auto driver = raw.value(
        "SELECT o.EMPNUM FROM ROUTE o JOIN RUN r ON r.INT_ROUTEID = o.INT_ROUTEID WHERE o.EMPNUM "
        "IS NOT NULL LIMIT 1");
    const auto school = raw.value(
        "SELECT s.SCHOOL FROM STOP s JOIN SCHOOL c ON c.SCHOOL = s.SCHOOL AND c.ACTIVE WHERE "
        "s.STOPTYPE = 'SCHOOL' LIMIT 1");
    const auto tripType = raw.value(
        "SELECT TRIPTYPE FROM STOP_TRIPTYPE WHERE RUN > ' ' GROUP BY 1 ORDER BY count(*) "
        "LIMIT 1");
    return {
        {"no_criteria", [] {}, ""},
        {"run_prefix", [=] { typeInto("RunId", prefix); },
         fmt::format("WHERE r.RUN LIKE '{}%'", prefix)},
        {"driver", [=] { control<controls::MultiColumnCombo>("cmbEmployee").setText(driver); },
         fmt::format("WHERE o.EMPNUM = {}", driver)},
        {"school_stops",
         [=] {
             select("lstSchool", school);
             control<QAbstractButton>("SearchStops").setChecked(true);
         },
         fmt::format("WHERE r.RUN IN (SELECT t.RUN FROM STOP s JOIN STOP_TRIPTYPE t ON "
                     "t.INT_STOPID = s.INT_STOPID WHERE s.SCHOOL = '{}' AND s.STOPTYPE = 'SCHOOL')",
                     school)},
        {"trip_type_stops",
         [=] {
             select("lstTripType", tripType);
             control<QAbstractButton>("Search_Stops_TripType").setChecked(true);
         },
         fmt::format("WHERE r.RUN IN (SELECT RUN FROM STOP_TRIPTYPE WHERE TRIPTYPE = '{}')",
                     tripType)},
    };
}

void registerClick(const Case& searched, const char* name, bool painted) {
    benchmark::RegisterBenchmark((searched.name + name).c_str(), [searched, painted](
                                                                     benchmark::State& state) {
        startOnce();
        mainForm().cmdReset_Click();
        control<QAbstractButton>("UseRoute").setChecked(true);
        searched.fill();
        search(state, painted);
    })->Unit(benchmark::kMillisecond);
}

void registerRaw(const Case& searched, const char* name, bench::RawDistrict& raw,
                 bench::RawDistrict::Columns columns) {
    benchmark::RegisterBenchmark((searched.name + name).c_str(), [searched, columns,
                                                                  &raw](benchmark::State& state) {
        std::size_t rows = 0;
        for (auto _ : state) {
            rows = raw.readRuns(columns, searched.rawCondition);
        }
        state.counters["rows"] = static_cast<double>(rows);
    })->Unit(benchmark::kMillisecond);
}

/// From a key in the finder's box to the rows below it, once everything is read.
void findRun(benchmark::State& state) {
    startOnce();
    runsearch::RunIndex index(*startup::gcnRouting);
    while (!index.isWhole()) {
        index.readOn(1000);
    }
    const std::array typed{"1", "10", "oak", "oak st", "elementary", "no such run"};
    std::size_t key = 0;
    std::size_t rows = 0;
    for (auto _ : state) {
        rows += index.find(typed[key++ % typed.size()], 12).size();
    }
    state.counters["rows"] = static_cast<double>(rows);
}

void registerCase(const Case& searched, bench::RawDistrict& raw) {
    using Columns = bench::RawDistrict::Columns;
    registerClick(searched, "/click_to_filled_list", false);
    registerClick(searched, "/click_to_painted_list", true);
    registerRaw(searched, "/raw_queried_columns", raw, Columns::Queried);
    registerRaw(searched, "/raw_shown_columns", raw, Columns::Shown);
}

}  // namespace

int main(int argc, char** argv) {
    std::optional<bench::RawDistrict> raw;
    return bench::measureForms(argc, argv, [&](const std::string& folder) {
        raw.emplace(folder + "/data/routing.mdb", folder + "/common/trip.mdb");
        benchmark::RegisterBenchmark("start_of_Main_to_form_shown", start)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
        benchmark::RegisterBenchmark("find_run_by_key", findRun)->Unit(benchmark::kMillisecond);
        for (const auto& searched : cases(*raw)) {
            registerCase(searched, *raw);
        }
    });
}
