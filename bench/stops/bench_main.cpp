#include <QAbstractButton>
#include <QElapsedTimer>
#include <QLabel>
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include "startup/base/session.h"
#include "startup/main/RunStartup.h"
#include "stops/search/foundstops.h"
#include "stops/search/frmSelStops.h"
#include "support/formprogram.h"

namespace {

using bench::paint;

constexpr auto StopColumns =
    "s.STOPID, s.ADDR1, s.SCHOOL, s.DESCRIPTION, s.STOPTYPE, s.LOCCODE, s.ACTIVE, s.XPOS, s.YPOS, "
    "s.INT_STOPID";
constexpr auto TripColumns =
    ", t.TRIPTYPE, t.RUN, t.NUM_STUDENTS, t.TIME_AT_STOP, t.TIME_TOSTOP, t.DIST_TOSTOP, t.RUNSEQ, "
    "t.ACTIVE, t.ID";
constexpr auto TripsFrom = "STOP s JOIN STOP_TRIPTYPE t ON t.INT_STOPID = s.INT_STOPID";

/// The routing database opened a second time through SQLite's own C interface.
class RawRouting {
public:
    explicit RawRouting(const std::string& file) {
        if (sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database_));
        }
    }
    ~RawRouting() { sqlite3_close(database_); }
    RawRouting(const RawRouting&) = delete;
    RawRouting& operator=(const RawRouting&) = delete;

    /// Touches every cell; the number of rows, and the first cell of the last one.
    std::pair<std::size_t, std::string> read(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
            throw std::runtime_error(fmt::format("{}: {}", sqlite3_errmsg(database_), sql));
        }
        const int columns = sqlite3_column_count(statement);
        std::size_t rows = 0;
        std::string first;
        for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
            for (int column = 0; column < columns; ++column) {
                benchmark::DoNotOptimize(sqlite3_column_text(statement, column));
            }
            first = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        }
        sqlite3_finalize(statement);
        return {rows, first};
    }

private:
    sqlite3* database_ = nullptr;
};

void startOnce() {
    static const bool started = (startup::Main("PLANNER"), paint(), true);
    (void)started;
}

struct Case {
    std::string name;
    stops::StopSearchCriteria criteria;
    std::string rawCondition;
};

std::vector<Case> cases(RawRouting& raw) {
    std::vector<Case> all;
    const auto add = [&](const char* name, const char* column, int characters,
                         std::string stops::StopSearchCriteria::*criterion) {
        const auto prefix = raw.read(fmt::format("SELECT substr({}, 1, {}) FROM STOP WHERE "
                                                 "STOPTYPE = 'REGULAR' LIMIT 1 OFFSET 5000",
                                                 column, characters))
                                .second;
        for (const bool trips : {false, true}) {
            const auto stopsOnly = fmt::format("WHERE {} LIKE '{}%'", column, prefix);
            Case one{fmt::format("{}/{}", trips ? "trip_types" : "stops", name), {}, stopsOnly};
            if (trips) {
                one.rawCondition = fmt::format(
                    "WHERE t.INT_STOPID IN (SELECT INT_STOPID FROM STOP {})", stopsOnly);
            }
            one.criteria.*criterion = prefix;
            one.criteria.tripTypes = trips;
            all.push_back(one);
        }
    };
    add("id_prefix", "STOPID", 5, &stops::StopSearchCriteria::stopId);
    add("description_prefix", "DESCRIPTION", 5, &stops::StopSearchCriteria::description);
    add("address_prefix", "ADDR1", 4, &stops::StopSearchCriteria::address);
    Case everyStop{"stops/all", {}, ""};
    Case everyTrip{"trip_types/all", {}, ""};
    everyTrip.criteria.tripTypes = true;
    all.push_back(everyStop);
    all.push_back(everyTrip);
    return all;
}

void registerCase(const Case& searched, RawRouting& raw) {
    benchmark::RegisterBenchmark((searched.name + "/found").c_str(), [searched](
                                                                         benchmark::State& state) {
        startOnce();
        std::size_t rows = 0;
        for (auto _ : state) {
            stops::FoundStops found(searched.criteria, *startup::gcnRouting);
            auto table = found.emptyTable();
            found.read(table, static_cast<std::size_t>(-1));
            rows = table.rowCount();
        }
        state.counters["rows"] = static_cast<double>(rows);
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((searched.name + "/raw").c_str(), [searched,
                                                                    &raw](benchmark::State& state) {
        const bool trips = searched.criteria.tripTypes;
        const auto sql =
            fmt::format("SELECT {}{} FROM {} {}", StopColumns, trips ? TripColumns : "",
                        trips ? TripsFrom : "STOP s", searched.rawCondition);
        std::size_t rows = 0;
        for (auto _ : state) {
            rows = raw.read(sql).first;
        }
        state.counters["rows"] = static_cast<double>(rows);
    })->Unit(benchmark::kMillisecond);
}

/// From the click to the complete list; `longest_ms` is the longest that the form took no event.
void fill(benchmark::State& state, bool trips) {
    startOnce();
    auto& form = forms::FormRegistry::instance().make<stops::frmSelStops>();
    form.showForm();
    form.findChild<QAbstractButton*>("chkTRIPTYPES")->setChecked(trips);
    const auto& count = *form.findChild<QLabel*>("TotSel");
    double longest = 0;
    const auto turn = [&](const auto& work) {
        QElapsedTimer clock;
        clock.start();
        work();
        longest = std::max(longest, static_cast<double>(clock.nsecsElapsed()) / 1e6);
    };
    for (auto _ : state) {
        turn([&] { form.findChild<QAbstractButton*>("cmdSearch")->click(); });
        do {
            turn([] { QCoreApplication::processEvents(); });
        } while (count.text().contains(' '));
        turn([] { QCoreApplication::processEvents(); });
    }
    state.counters["rows"] = count.text().toDouble();
    state.counters["longest_ms"] = longest;
}

}  // namespace

int main(int argc, char** argv) {
    std::unique_ptr<RawRouting> raw;
    return bench::measureForms(argc, argv, [&](const std::string& folder) {
        raw = std::make_unique<RawRouting>(folder + "/data/routing.mdb");
        for (const auto& searched : cases(*raw)) {
            registerCase(searched, *raw);
        }
        benchmark::RegisterBenchmark("stops/all/form", fill, false)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("trip_types/all/form", fill, true)
            ->Unit(benchmark::kMillisecond);
    });
}
