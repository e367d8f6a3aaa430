// Writing each row of an ordered join while reading it, as the stop time calculation does. The time
// for a row must not grow with their number. Nothing of it is kept.

#include <benchmark/benchmark.h>

#include "district.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

namespace {

void updateWhileReading(benchmark::State& state) {
    ado::Connection connection;
    connection.Open(bench::district().routing);
    connection.setDurability(store::Durability::Crash);
    std::int64_t rows = 0;
    int minute = 0;
    for (auto _ : state) {
        connection.BeginTrans();
        minute = (minute + 1) % 60;
        ado::Recordset stops;
        stops.Open(
            "SELECT STOP.*, STOP_TRIPTYPE.* FROM STOP INNER JOIN STOP_TRIPTYPE ON"
            " STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP.STOPTYPE<>'DIRECTIONAL'"
            " AND STOP_TRIPTYPE.ID <= " +
                std::to_string(state.range(0)) + " ORDER BY STOP_TRIPTYPE.RUNSEQ",
            connection);
        for (; !stops.Eof(); stops.MoveNext(), ++rows) {
            stops["TIME_AT_STOP"].Value(base::Date::timeOfDay(8, minute));
            stops.Update();
        }
        connection.RollbackTrans();
    }
    state.SetItemsProcessed(rows);
}

BENCHMARK(updateWhileReading)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
