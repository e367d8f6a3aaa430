#include "rawvalidation.h"

#include <stdexcept>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "measureddistrict.h"

namespace bench {

namespace {

constexpr auto ReadRun = "SELECT * FROM RUN WHERE RUN = ?";
constexpr auto RegularStops =
    "SELECT s.STOPID, t.*, s.STOPTYPE FROM STOP s JOIN STOP_TRIPTYPE t ON s.INT_STOPID = "
    "t.INT_STOPID WHERE s.STOPTYPE = 'REGULAR' AND t.RUN = ?";
constexpr auto NotFromTheRight =
    "SELECT s.STOPID, t.*, s.STOPTYPE FROM STOP s JOIN STOP_TRIPTYPE t ON s.INT_STOPID = "
    "t.INT_STOPID WHERE s.STOPTYPE = 'REGULAR' AND t.RUN = ? AND t.RUN_PICKUP_SIDE <> 'right'";
constexpr auto TimedStops =
    "SELECT s.STOPID, t.*, s.STOPTYPE FROM STOP s JOIN STOP_TRIPTYPE t ON s.INT_STOPID = "
    "t.INT_STOPID WHERE s.STOPTYPE <> 'DIRECTIONAL' AND t.RUN = ?";
constexpr auto TimedStopsInSequence =
    "SELECT s.STOPID, t.*, s.STOPTYPE FROM STOP s JOIN STOP_TRIPTYPE t ON s.INT_STOPID = "
    "t.INT_STOPID WHERE s.STOPTYPE <> 'DIRECTIONAL' AND t.RUN = ? ORDER BY t.RUNSEQ";
constexpr auto NeedsAtStop =
    "SELECT a.INT_STOPID, n.SPECIALNEEDS_CODE, a.TRIPTYPE, count(n.SPECIALNEEDS_CODE) FROM STUDENT "
    "s JOIN STU_ADDR_TRIPTYPE a ON s.INT_STUID = a.INT_STUID JOIN STU_SPECIALNEEDS n ON "
    "s.INT_STUID = n.INT_STUID WHERE a.INT_STOPID = ? AND a.TRIPTYPE = ? GROUP BY a.INT_STOPID, "
    "a.TRIPTYPE, n.SPECIALNEEDS_CODE";
constexpr auto Clear = "DELETE FROM RUNWARNING WHERE WARNINGTYPE = ? AND RUN = ?";
constexpr auto Warn =
    "INSERT INTO RUNWARNING(RUN, WARNINGTYPE, WARNINGDATETIME, WARNINGTEXT) VALUES (?, ?, "
    "'2026-01-31 08:05:09', 'StopID: BENCH-20 has a ride time greater than the max allowed.  "
    "Stop''s total ride time: 60 minutes max allowed: 59 minutes.')";

void execute(sqlite3* database, const std::string& sql) {
    if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database));
    }
}

}  // namespace

RawValidation::RawValidation(const std::string& routing, const std::string& trip) {
    if (sqlite3_open_v2(routing.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
    }
    execute(database_, fmt::format("PRAGMA synchronous = FULL; ATTACH '{}' AS trip", trip));
}

RawValidation::~RawValidation() {
    for (const auto& [sql, statement] : statements_) {
        sqlite3_finalize(statement);
    }
    sqlite3_close(database_);
}

void RawValidation::run(const char* sql, std::initializer_list<const char*> parameters) {
    auto*& statement = statements_[sql];
    if (statement == nullptr &&
        sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(fmt::format("{}: {}", sqlite3_errmsg(database_), sql));
    }
    int place = 0;
    for (const char* parameter : parameters) {
        sqlite3_bind_text(statement, ++place, parameter, -1, SQLITE_TRANSIENT);
    }
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            benchmark::DoNotOptimize(sqlite3_column_text(statement, column));
        }
    }
    sqlite3_reset(statement);
    if (result != SQLITE_DONE) {
        throw std::runtime_error(fmt::format("{}: {}", sqlite3_errmsg(database_), sql));
    }
}

void RawValidation::write(const char* type, int warnings) {
    for (int i = 0; i < warnings; ++i) {
        run(Warn, {Run, type});
    }
}

void RawValidation::readNeeds() {
    run("SELECT * FROM VEHTYPE_SPECIALNEEDS WHERE VEHTYPE = ?", {"BENCH"});
    run(RegularStops, {Run});
    for (int i = 1; i <= 20; ++i) {
        run(NeedsAtStop, {std::to_string(9000000 + i).c_str(), "AM"});
    }
}

void RawValidation::validate() {
    run("SELECT * FROM District");
    run(ReadRun, {Run});
    run("SELECT * FROM VEHTYPE WHERE VEHTYPE = ?", {"BENCH"});
    run("BEGIN IMMEDIATE");
    run(Clear, {"PASSENGERS", Run});
    run(RegularStops, {Run});
    run(ReadRun, {Run});
    write("PASSENGERS", 1);
    run(Clear, {"RIGHTSIDE", Run});
    run(NotFromTheRight, {Run});
    run("SELECT RIGHTSIDE FROM STOP WHERE STOPID = ?", {"BENCH-1"});
    write("RIGHTSIDE", 1);
    run(Clear, {"EARLY BELL", Run});
    run(Clear, {"LATE BELL", Run});
    run(TimedStopsInSequence, {Run});
    write("LATE BELL", 2);
    run(Clear, {"RIDETIME", Run});
    run("SELECT * FROM District");
    run(TimedStops, {Run});
    write("RIDETIME", 1);
    run(Clear, {"SPECIAL", Run});
    readNeeds();
    write("SPECIAL", 1);
    run(Clear, {"CONFLICTING TIME", Run});
    run(TimedStopsInSequence, {Run});
    write("CONFLICTING TIME", 1);
    run("COMMIT");
}

}  // namespace bench
