// What one statement costs before its first row: at most 60 microseconds to translate and prepare,
// a key look-up as a whole at most 20.

#include <fstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "district.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/ado/session.h"
#include "platform/jet/translate.h"

namespace {

void connect(ado::Connection& connection) {
    connection.Open(bench::district().routing);
    connection.link(bench::district().trip);
}

void translateSearch(benchmark::State& state) {
    ado::Connection connection;
    connect(connection);
    for (auto _ : state) {
        benchmark::DoNotOptimize(jet::translate(bench::routingSearch(), connection.catalog()));
    }
}

void translateAndPrepareSearch(benchmark::State& state) {
    ado::Connection connection;
    connect(connection);
    store::Database& database = connection.session()->database();
    for (auto _ : state) {
        const auto translation = jet::translate(bench::routingSearch(), connection.catalog());
        benchmark::DoNotOptimize(database.prepare(translation.text));
    }
}

/// Every statement of the program that the routing database understands, from the list with which
/// the translator is tested.
std::vector<std::string> everyStatement(ado::Connection& connection) {
    std::ifstream list(VIREO_SOURCE_DIR "/tests/platform/jet/statements.txt");
    store::Database& database = connection.session()->database();
    std::vector<std::string> statements;
    for (std::string line; std::getline(list, line);) {
        if (!line.starts_with("? ")) {
            continue;
        }
        try {
            const std::string sql = line.substr(2);
            database.prepare(jet::translate(sql, connection.catalog()).text);
            statements.push_back(sql);
        } catch (const base::RunTimeError&) {
            continue;
        }
    }
    return statements;
}

/// The mean over all of them.
void translateAndPrepareEvery(benchmark::State& state) {
    ado::Connection connection;
    connect(connection);
    store::Database& database = connection.session()->database();
    const auto statements = everyStatement(connection);
    if (statements.empty()) {
        state.SkipWithError("the list of statements is not where this was built");
        return;
    }
    std::size_t next = 0;
    for (auto _ : state) {
        const auto translation = jet::translate(statements[next], connection.catalog());
        benchmark::DoNotOptimize(database.prepare(translation.text));
        next = (next + 1) % statements.size();
    }
    state.counters["statements"] = static_cast<double>(statements.size());
}

void prepareRawSearch(benchmark::State& state) {
    ado::Connection connection;
    connect(connection);
    store::Database& database = connection.session()->database();
    for (auto _ : state) {
        benchmark::DoNotOptimize(database.prepare(bench::rawRoutingSearch()));
    }
}

/// The first thousand keys of a table; another one each time, so that the plan is the same and the
/// literal is not.
std::vector<std::string> someKeys(ado::Connection& connection, const std::string& sql) {
    std::vector<std::string> keys;
    ado::Recordset rows;
    for (rows.Open(sql, connection); !rows.Eof() && keys.size() < 1000; rows.MoveNext()) {
        keys.push_back(rows.Fields(0).asText());
    }
    return keys;
}

void lookUp(benchmark::State& state, const std::string& keysSql, const std::string& sql,
            const std::string& closing) {
    ado::Connection connection;
    connect(connection);
    const std::vector<std::string> keys = someKeys(connection, keysSql);
    std::size_t next = 0;
    std::size_t characters = 0;
    for (auto _ : state) {
        ado::Recordset found;
        found.Open(sql + keys[next] + closing, connection);
        next = (next + 1) % keys.size();
        characters += found.Fields(1).textView().size() + found["DESCRIPTION"].textView().size();
        found.Close();
    }
    benchmark::DoNotOptimize(characters);
}

void lookUpByText(benchmark::State& state) {
    lookUp(state, "SELECT RUN.RUN FROM RUN",
           "Select Run.RUN, Run.Description FROM Run WHERE RUN.RUN='", "'");
}

void lookUpByNumber(benchmark::State& state) {
    lookUp(state, "SELECT STOP.INT_STOPID FROM STOP",
           "Select STOP.STOPID, STOP.DESCRIPTION FROM STOP WHERE STOP.INT_STOPID = ", "");
}

void openRouting(benchmark::State& state) {
    for (auto _ : state) {
        ado::Connection connection;
        connect(connection);
    }
}

BENCHMARK(translateSearch)->Unit(benchmark::kMicrosecond);
BENCHMARK(translateAndPrepareSearch)->Unit(benchmark::kMicrosecond);
BENCHMARK(translateAndPrepareEvery)->Unit(benchmark::kMicrosecond);
BENCHMARK(prepareRawSearch)->Unit(benchmark::kMicrosecond);
BENCHMARK(lookUpByText)->Unit(benchmark::kMicrosecond);
BENCHMARK(lookUpByNumber)->Unit(benchmark::kMicrosecond);
BENCHMARK(openRouting)->Unit(benchmark::kMicrosecond);

}  // namespace
