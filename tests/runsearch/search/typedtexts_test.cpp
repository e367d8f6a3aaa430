// What a planner types goes into the statements of a search as typed: whatever it is, a server gets
// the one translated statement or none, and finds and refuses what files do.

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include "platform/base/error.h"
#include "runsearch/log/runlogquery.h"
#include "runsearch/search/runsearchquery.h"
#include "stops/search/stopsearch.h"
#include "support/privateserver.h"
#include "support/rows.h"
#include "tools/district/copy/copydistrict.h"
#include "tools/district/make/madedistrict.h"

namespace runsearch {

namespace {

const std::vector<std::string> Typed{
    "A0000",
    "'; DROP TABLE RUN; --",
    "' OR '1' = '1",
    "''; DELETE FROM RUN WHERE '' = '",
    "%' UNION SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE '%",
    "\\'; DROP SCHEMA vireo CASCADE; --",
    "x\\",
    "E'\\x27",
    "$$; SELECT pg_sleep(1); $$",
    "$1 ? ?",
    "[",
    "[!",
    "[a-",
    "_%[a-z]%",
    "/* */ -- #",
    "\"",
    "; COMMIT; DROP TABLE RUN",
    "\xE2\x80\x99 OR 1=1 \xCA\xBC",
    "line\nline\ttab\r",
    std::string("nul\0after", 9),
    std::string(5000, 'x'),
    "\xC3\x89 \xC3\xA9 \xC2\xB2 e\xCC\x81",
};

std::vector<std::string> questionsOf(const std::string& text) {
    std::vector<std::string> questions;
    const auto search = [&](auto RunSearchCriteria::*field) {
        RunSearchCriteria criteria;
        criteria.useRoute = true;
        criteria.*field = text;
        const auto query = runSearchQuery(criteria);
        questions.push_back(query->runs);
        questions.push_back(query->runsSchool);
    };
    for (const auto field :
         {&RunSearchCriteria::runId, &RunSearchCriteria::description, &RunSearchCriteria::runFamily,
          &RunSearchCriteria::location, &RunSearchCriteria::driver, &RunSearchCriteria::vehicle,
          &RunSearchCriteria::aid, &RunSearchCriteria::route}) {
        search(field);
    }
    for (const auto field : {&stops::StopSearchCriteria::stopId, &stops::StopSearchCriteria::run,
                             &stops::StopSearchCriteria::address, &stops::StopSearchCriteria::zip,
                             &stops::StopSearchCriteria::school}) {
        stops::StopSearchCriteria criteria{.tripTypes = true};
        criteria.*field = text;
        questions.push_back(stops::stopSearchQuery(criteria));
    }
    questions.push_back(runLogPageQuery({.runId = text}, RunLogWay::ByRun, {}, 10));
    questions.push_back(runLogCountQuery({.runId = text}));
    return questions;
}

/// The rows that a statement finds, in no order, or the error that it raises.
std::string said(const std::string& question, ado::Connection& connection) {
    try {
        auto rows = support::rowsOf(question, connection);
        std::ranges::sort(rows);
        return fmt::format("{}", fmt::join(rows, "\n"));
    } catch (const base::RunTimeError& error) {
        return fmt::format("error {}: {}", error.number(), error.what());
    }
}

}  // namespace

TEST(TypedTexts, ReachAServerInTheOneTranslatedStatementOnly) {
    support::PrivateServer* const server = support::PrivateServer::find();
    if (server == nullptr) {
        GTEST_SKIP() << "PostgreSQL's server is not installed";
    }
    const tools::district::MadeDistrict made(20);
    const std::string place = server->newPlace();
    tools::district::Progress progress;
    tools::district::copyDistrict(made.folder(), place, progress);
    ado::Connection files;
    ado::Connection onServer;
    files.Open(made.folders().database(data::DatabaseFile::Routing).string());
    files.link(made.folders().database(data::DatabaseFile::Trip).string());
    onServer.Open(place + "routing.mdb");
    onServer.link(place + "trip.mdb");
    std::ifstream log(
        std::filesystem::path(server->tell("postgres", "SHOW data_directory")).parent_path() /
        "log");
    static_cast<void>(said("SELECT RUN.RUN FROM RUN", onServer));
    static_cast<void>(server->tell("postgres",
                                   "ALTER SYSTEM SET log_statement = 'all';"
                                   " SELECT pg_reload_conf()"));
    /// The statements that came to the server since the last look.
    const auto logged = [&] {
        std::vector<std::string> statements;
        log.clear();
        for (std::string line; std::getline(log, line);) {
            if (line.find(" LOG:  statement: ") != std::string::npos ||
                line.find(" LOG:  execute ") != std::string::npos) {
                statements.push_back(line);
            }
        }
        return statements;
    };
    const std::string rowsBefore = said("SELECT RUN.* FROM RUN", files);
    int reached = 0;
    for (const std::string& text : Typed) {
        for (const std::string& question : questionsOf(text)) {
            static_cast<void>(logged());
            const std::string there = said(question, onServer);
            const auto statements = logged();
            EXPECT_EQ(there, said(question, files)) << "typed: " << text;
            ASSERT_LE(statements.size(), 1U) << question;
            if (!statements.empty()) {
                ++reached;
                EXPECT_NE(statements[0].find(": SELECT "), std::string::npos) << question;
            }
        }
    }
    EXPECT_GT(reached, static_cast<int>(Typed.size())) << "the log tells of them";
    EXPECT_EQ(said("SELECT RUN.* FROM RUN", onServer), rowsBefore);
}

}  // namespace runsearch
