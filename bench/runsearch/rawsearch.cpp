#include "rawsearch.h"

#include <stdexcept>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

namespace bench {

namespace {

constexpr auto Driver = "trim(e.LASTNAME) || ', ' || trim(e.FIRSTNAME)";
constexpr auto Aid = "trim(a.LASTNAME) || ', ' || trim(a.FIRSTNAME)";

std::string queried() {
    return fmt::format(
        "r.*, o.ROUTEID, o.VEHICLE, o.EMPNUM, {}, o.AID_EMPNUM, {}, r.TOTAL_MILES + "
        "r.DEADHEAD_MILES_BEFORE + r.DEADHEAD_MILES_AFTER",
        Driver, Aid);
}

std::string shown() {
    return fmt::format(
        "r.RUN, r.DESCRIPTION, r.STARTTIME, r.ENDTIME, r.BELLTIME, r.SCHOOL, r.TRIPTYPE, "
        "r.LOCCODE, r.RUNFAMILY, o.ROUTEID, {}, o.VEHICLE, {}, r.TOTAL_TIME, r.TOTAL_MILES, "
        "r.total_stops, r.Capacity, r.TimeToUse, r.REGENERATE",
        Driver, Aid);
}

constexpr auto From =
    "FROM RUN r LEFT JOIN ROUTE o ON o.INT_ROUTEID = r.INT_ROUTEID LEFT JOIN trip.EMPLOYEE e ON "
    "e.EMPNUM = o.EMPNUM LEFT JOIN trip.EMPLOYEE a ON a.EMPNUM = o.AID_EMPNUM";

}  // namespace

RawDistrict::RawDistrict(const std::string& routing, const std::string& trip) {
    if (sqlite3_open_v2(routing.c_str(), &database_, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
    }
    (void)value(fmt::format("ATTACH '{}' AS trip", trip));
}

RawDistrict::~RawDistrict() { sqlite3_close(database_); }

sqlite3_stmt* RawDistrict::prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(fmt::format("{}: {}", sqlite3_errmsg(database_), sql));
    }
    return statement;
}

std::string RawDistrict::value(const std::string& sql) {
    auto* statement = prepare(sql);
    std::string text;
    if (sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_type(statement, 0) != SQLITE_NULL) {
        text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    }
    sqlite3_finalize(statement);
    return text;
}

std::size_t RawDistrict::readRuns(Columns columns, const std::string& condition) {
    auto* statement = prepare(fmt::format(
        "SELECT {} {} {}", columns == Columns::Queried ? queried() : shown(), From, condition));
    const int count = sqlite3_column_count(statement);
    std::size_t rows = 0;
    std::size_t bytes = 0;
    for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
        for (int column = 0; column < count; ++column) {
            benchmark::DoNotOptimize(sqlite3_column_text(statement, column));
            bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
        }
    }
    benchmark::DoNotOptimize(bytes);
    sqlite3_finalize(statement);
    return rows;
}

}  // namespace bench
