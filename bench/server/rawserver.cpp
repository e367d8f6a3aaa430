#include "rawserver.h"

#include <array>
#include <cstdlib>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "platform/store/base/location.h"

namespace bench {

namespace {

constexpr auto Runs =
    R"(SELECT r.*, o."ROUTEID", o."VEHICLE", o."EMPNUM",
       rtrim(e."LASTNAME") || ', ' || rtrim(e."FIRSTNAME"), o."AID_EMPNUM",
       rtrim(a."LASTNAME") || ', ' || rtrim(a."FIRSTNAME"),
       r."TOTAL_MILES" + r."DEADHEAD_MILES_BEFORE" + r."DEADHEAD_MILES_AFTER"
       FROM "routing.mdb"."RUN" r
       LEFT JOIN "routing.mdb"."ROUTE" o ON o."INT_ROUTEID" = r."INT_ROUTEID"
       LEFT JOIN "trip.mdb"."EMPLOYEE" e ON e."EMPNUM" = o."EMPNUM"
       LEFT JOIN "trip.mdb"."EMPLOYEE" a ON a."EMPNUM" = o."AID_EMPNUM")";

std::size_t cellsOf(PGresult* rows) {
    std::size_t cells = 0;
    const int columns = PQnfields(rows);
    for (int row = 0; row < PQntuples(rows); ++row) {
        for (int column = 0; column < columns; ++column, ++cells) {
            const char* text = PQgetvalue(rows, row, column);
            const Oid type = PQftype(rows, column);
            if (type == 20 || type == 701) {
                benchmark::DoNotOptimize(std::strtod(text, nullptr));
            } else {
                benchmark::DoNotOptimize(text);
            }
        }
    }
    return cells;
}

PGresult* required(PGresult* rows) {
    if (PQresultStatus(rows) != PGRES_TUPLES_OK && PQresultStatus(rows) != PGRES_COMMAND_OK) {
        throw std::runtime_error(PQresultErrorMessage(rows));
    }
    return rows;
}

}  // namespace

RawServer::RawServer(const std::string& routing)
    : connection_(PQconnectdb(store::serverPathOf(routing).connection.c_str())) {
    for (const char* sql : {"SET jit = off; SET enable_hashjoin = off; SET enable_hashagg = off"}) {
        PQclear(required(PQexec(connection_, sql)));
    }
    PQclear(required(PQprepare(
        connection_, "run", R"(SELECT * FROM "routing.mdb"."RUN" WHERE "RUN" = $1)", 1, nullptr)));
}

RawServer::~RawServer() { PQfinish(connection_); }

std::size_t RawServer::readRuns() {
    PGresult* rows = required(PQexec(connection_, Runs));
    const auto count = static_cast<std::size_t>(PQntuples(rows));
    benchmark::DoNotOptimize(cellsOf(rows));
    PQclear(rows);
    return count;
}

std::size_t RawServer::readRun(const std::string& run) {
    const std::array<const char*, 1> key{run.c_str()};
    PGresult* rows =
        required(PQexecPrepared(connection_, "run", 1, key.data(), nullptr, nullptr, 0));
    const std::size_t cells = cellsOf(rows);
    PQclear(rows);
    return cells;
}

}  // namespace bench
