// Reading every row of the routing search: through a recordset, and through the engine's own C
// interface in the same process.

#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include "district.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

namespace {

constexpr const char* ListColumns[] = {
    "Run",         "Description", "StartTime", "EndTime",   "BellTime",  "School",  "TripType",
    "LocCode",     "RunFamily",   "RouteID",   "EmpName",   "Vehicle",   "AidName", "total_time",
    "total_miles", "total_stops", "Capacity",  "TimeToUse", "Regenerate"};

using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Prepared = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

void require(int code, sqlite3* handle) {
    if (code != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(handle));
    }
}

Handle openRaw() {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(bench::district().routing.c_str(), &opened,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    Handle handle(opened, sqlite3_close);
    require(code, opened);
    const std::string attach = "ATTACH '" + bench::district().trip + "' AS trip";
    require(sqlite3_exec(opened, attach.c_str(), nullptr, nullptr, nullptr), opened);
    require(sqlite3_exec(opened, "PRAGMA cache_size = -16000", nullptr, nullptr, nullptr), opened);
    return handle;
}

Prepared prepareRaw(sqlite3* handle) {
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(handle, bench::rawRoutingSearch().c_str(), -1, &statement, nullptr),
            handle);
    return {statement, sqlite3_finalize};
}

/// Each cell by its type; the sum keeps the reading from being left out.
std::size_t touch(sqlite3_stmt* row, int column) {
    switch (sqlite3_column_type(row, column)) {
        case SQLITE_INTEGER:
            return static_cast<std::size_t>(sqlite3_column_int64(row, column));
        case SQLITE_FLOAT:
            return static_cast<std::size_t>(sqlite3_column_double(row, column));
        case SQLITE_NULL:
            return 0;
        default: {
            const unsigned char* text = sqlite3_column_text(row, column);
            return text[0] + static_cast<std::size_t>(sqlite3_column_bytes(row, column));
        }
    }
}

void readRaw(benchmark::State& state, const std::vector<int>& columns) {
    const Handle handle = openRaw();
    std::size_t sum = 0;
    for (auto _ : state) {
        const Prepared rows = prepareRaw(handle.get());
        while (sqlite3_step(rows.get()) == SQLITE_ROW) {
            for (const int column : columns) {
                sum += touch(rows.get(), column);
            }
        }
    }
    benchmark::DoNotOptimize(sum);
}

void rawAllColumns(benchmark::State& state) {
    std::vector<int> all(
        static_cast<std::size_t>(sqlite3_column_count(prepareRaw(openRaw().get()).get())));
    for (std::size_t i = 0; i < all.size(); ++i) {
        all[i] = static_cast<int>(i);
    }
    readRaw(state, all);
    state.counters["columns"] = static_cast<double>(all.size());
}

void rawListColumns(benchmark::State& state) {
    const Handle handle = openRaw();
    const Prepared rows = prepareRaw(handle.get());
    std::vector<int> columns;
    for (const char* name : ListColumns) {
        for (int i = 0; i < sqlite3_column_count(rows.get()); ++i) {
            if (sqlite3_stricmp(sqlite3_column_name(rows.get(), i), name) == 0) {
                columns.push_back(i);
            }
        }
    }
    readRaw(state, columns);
    state.counters["columns"] = static_cast<double>(columns.size());
}

void rawStepOnly(benchmark::State& state) { readRaw(state, {}); }

template <class Touch>
void readRecordset(benchmark::State& state, bool listOnly, const Touch& touchField) {
    ado::Connection connection;
    connection.Open(bench::district().routing);
    connection.link(bench::district().trip);
    std::size_t sum = 0;
    std::int64_t rows = 0;
    for (auto _ : state) {
        ado::Recordset found;
        found.Open(bench::routingSearch(), connection);
        std::vector<const ado::Field*> fields;
        if (listOnly) {
            for (const char* name : ListColumns) {
                fields.push_back(&found.Fields(name));
            }
        } else {
            for (int i = 0; i < found.fieldCount(); ++i) {
                fields.push_back(&found.Fields(i));
            }
        }
        for (rows = 0; !found.Eof(); found.MoveNext(), ++rows) {
            for (const ado::Field* field : fields) {
                sum += touchField(*field);
            }
        }
    }
    benchmark::DoNotOptimize(sum);
    state.counters["rows"] = static_cast<double>(rows);
}

std::size_t touchText(const ado::Field& field) { return field.textView().size(); }

std::size_t touchValue(const ado::Field& field) {
    const base::Value value = field.Value();
    return value.isText() ? value.heldText().size() : value.isNull() ? 0 : 1;
}

void recordsetAllValues(benchmark::State& state) { readRecordset(state, false, touchValue); }
void recordsetListTexts(benchmark::State& state) { readRecordset(state, true, touchText); }
void recordsetListValues(benchmark::State& state) { readRecordset(state, true, touchValue); }
void recordsetMoveOnly(benchmark::State& state) {
    readRecordset(state, true, [](const ado::Field&) { return std::size_t{0}; });
}

/// Copied into memory first, as before a write.
void recordsetAllKept(benchmark::State& state) {
    ado::Connection connection;
    connection.Open(bench::district().routing);
    connection.link(bench::district().trip);
    for (auto _ : state) {
        ado::Recordset found;
        found.Open(bench::routingSearch(), connection, ado::CursorType::Static);
        benchmark::DoNotOptimize(found.RecordCount());
    }
}

BENCHMARK(rawStepOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(recordsetMoveOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(rawListColumns)->Unit(benchmark::kMillisecond);
BENCHMARK(recordsetListTexts)->Unit(benchmark::kMillisecond);
BENCHMARK(recordsetListValues)->Unit(benchmark::kMillisecond);
BENCHMARK(rawAllColumns)->Unit(benchmark::kMillisecond);
BENCHMARK(recordsetAllValues)->Unit(benchmark::kMillisecond);
BENCHMARK(recordsetAllKept)->Unit(benchmark::kMillisecond);

}  // namespace
