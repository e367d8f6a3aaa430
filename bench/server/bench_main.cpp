// What planners do most, on the district that a folder names, be it files or a server: "measure"
// plays it on both, with and without a network between. With a server the raw statements stand
// beside: a search of all runs may take 1.5 times theirs, the row of a run 1.3 times.

#include <QAbstractButton>
#include <QLineEdit>
#include <QPushButton>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "groupops/belltime/bellchange.h"
#include "groupops/deadhead/districtdeadhead.h"
#include "groupops/groupchange/runchange.h"
#include "platform/ado/recordset.h"
#include "platform/base/ports.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/store/base/location.h"
#include "rawserver.h"
#include "runedit/editor/Run.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/session.h"
#include "support/formprogram.h"

namespace {

using startup::gcnRouting;

constexpr auto SomeRuns = "SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE '{}%'";

/// Nobody looks and nobody stops.
class Silent : public base::ProgressPort {
public:
    void progress(double) override {}
    void status(const std::string&) override {}
    bool yield() override { return false; }
};

class NoBoxes : public base::MsgBoxPort {
public:
    NoBoxes() { base::ports().msgBox = this; }
    base::MsgAnswer show(const base::MsgRequest& request) override {
        return base::defaultAnswer(request);
    }
};

void startOnce() {
    static const NoBoxes boxes;
    if (!gcnRouting) {
        startup::gCommandLine = "PLANNER";
        startup::SetErrorHandling();
        startup::OpenRoutingDatabase();
    }
}

std::vector<std::string> runIds() {
    std::vector<std::string> ids;
    ado::Recordset rows;
    rows.Open("SELECT RUN.RUN FROM RUN ORDER BY RUN.RUN", *gcnRouting);
    for (; !rows.Eof(); rows.MoveNext()) {
        ids.push_back(rows["RUN"].asText());
    }
    return ids;
}

/// One of many: there is nothing special about it.
std::string aRun() { return runIds().at(513); }

std::int64_t trips() {
    return gcnRouting->roundTrips() + startup::gcnTrip->roundTrips() +
           startup::gcnDeadCross->roundTrips();
}

/// Waits for a server, each time.
void countTrips(benchmark::State& state, std::int64_t before) {
    state.counters["round_trips"] = benchmark::Counter(static_cast<double>(trips() - before),
                                                       benchmark::Counter::kAvgIterations);
}

void openRun(benchmark::State& state) {
    startOnce();
    const std::string run = aRun();
    const auto before = trips();
    for (auto _ : state) {
        auto& form = forms::FormRegistry::instance().make<runedit::Run>();
        form.edit(run);
        form.load();
        state.PauseTiming();
        forms::FormRegistry::instance().destroyAll();
        state.ResumeTiming();
    }
    countTrips(state, before);
}

void press(benchmark::State& state, const char* button) {
    startOnce();
    auto& form = forms::FormRegistry::instance().make<runedit::Run>();
    form.edit(aRun());
    form.load();
    int round = 0;
    const auto before = trips();
    for (auto _ : state) {
        state.PauseTiming();
        form.findChild<QLineEdit*>("OverFill")->setText(QString::number(++round % 100));
        state.ResumeTiming();
        form.findChild<QPushButton*>(button)->click();
    }
    countTrips(state, before);
    forms::FormRegistry::instance().destroyAll();
}

/// From the click to the filled list, all runs with their routes.
void search(benchmark::State& state) {
    startOnce();
    auto& form = forms::FormRegistry::instance().load<runsearch::frmTarn>();
    form.findChild<QAbstractButton*>("UseRoute")->setChecked(true);
    const auto before = trips();
    for (auto _ : state) {
        form.cmdSearch_Click();
        state.PauseTiming();
        bench::paint();
        state.ResumeTiming();
    }
    state.counters["rows"] = form.findChild<controls::MultiColumnList*>("RunList")->rows();
    countTrips(state, before);
    forms::FormRegistry::instance().destroyAll();
}

void readRunByKey(benchmark::State& state) {
    startOnce();
    const auto ids = runIds();
    std::size_t which = 0;
    for (auto _ : state) {
        ado::Recordset row;
        benchmark::DoNotOptimize(data::openRun(row, *gcnRouting, ids[which++ * 37 % ids.size()]));
        for (int field = 0; field < row.fieldCount(); ++field) {
            benchmark::DoNotOptimize(row.Fields(field).isNull());
        }
    }
}

/// A figure for each run.
void setEach(benchmark::State& state, int done, std::int64_t before) {
    state.counters["each"] = benchmark::Counter(
        done, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["trips_of_each"] =
        static_cast<double>(trips() - before) / done / static_cast<double>(state.iterations());
}

std::string prefixOfSome() { return aRun().substr(0, 5); }

void groupChange(benchmark::State& state) {
    startOnce();
    auto ids = runIds();
    ids.resize(200);
    Silent silent;
    int round = 0;
    int done = 0;
    const auto before = trips();
    for (auto _ : state) {
        const std::vector<groupops::RunChange> changes{{"OverFill", ++round}};
        done = groupops::changeRuns(*gcnRouting, ids, changes, silent).done;
    }
    setEach(state, done, before);
}

void bellChange(benchmark::State& state) {
    startOnce();
    groupops::BellGroups groups;
    readBellGroups(*gcnRouting, fmt::format(SomeRuns, prefixOfSome()), groups);
    Silent silent;
    int round = 0;
    int done = 0;
    const auto before = trips();
    for (auto _ : state) {
        const auto bell = base::Date::timeOfDay(8, ++round % 60);
        const std::vector<std::optional<base::Date>> bells(static_cast<std::size_t>(groups.count()),
                                                           bell);
        done = groupops::changeBellTimes(*gcnRouting, {groups, bells, {.fromEnd = true}},
                                         {silent, [](double) {}})
                   .done;
    }
    setEach(state, done, before);
}

void deadHead(benchmark::State& state) {
    startOnce();
    Silent silent;
    int done = 0;
    const auto before = trips();
    for (auto _ : state) {
        done =
            groupops::calculateAllRoutes({*gcnRouting, *startup::gcnDeadCross}, true, silent).done;
    }
    setEach(state, done, before);
}

void registerRaw(const std::string& routing) {
    benchmark::RegisterBenchmark("raw_search",
                                 [routing](benchmark::State& state) {
                                     bench::RawServer raw(routing);
                                     for (auto _ : state) {
                                         benchmark::DoNotOptimize(raw.readRuns());
                                     }
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark(
        "raw_run_by_key",
        [routing](benchmark::State& state) {
            startOnce();
            const auto ids = runIds();
            bench::RawServer raw(routing);
            std::size_t which = 0;
            for (auto _ : state) {
                benchmark::DoNotOptimize(raw.readRun(ids[which++ * 37 % ids.size()]));
            }
        })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

}  // namespace

int main(int argc, char** argv) {
    return bench::measureForms(argc, argv, [](const std::string&) {
        const auto add = [](const char* name, auto measured) {
            return benchmark::RegisterBenchmark(name, measured)
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
        };
        add("search", search);
        add("run_by_key", readRunByKey);
        add("open_a_run", openRun);
        add("ok", [](benchmark::State& state) { press(state, "OK"); });
        add("calculate_times", [](benchmark::State& state) { press(state, "CalcTimes"); });
        add("group_change_200_runs", groupChange);
        add("bell_change", bellChange);
        add("dead_head_of_all_routes", deadHead)->Iterations(1);
        startup::SetPaths();
        if (store::isServer(startup::gDataPath)) {
            registerRaw(store::pathIn(startup::gDataPath, "routing.mdb"));
        }
    });
}
