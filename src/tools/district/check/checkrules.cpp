#include <algorithm>
#include <array>

#include "platform/base/text.h"
#include "tools/district/check/checkparts.h"

namespace tools::district {

namespace {

/// A rule as the query of its breaches: the first column is the example, the second how many cases
/// the row stands for. The tables that it reads must all be there.
struct Rule {
    std::string_view what;
    std::array<std::string_view, 2> tables;  ///< the second may be empty
    std::string_view breaches;
};

constexpr std::string_view NotOneRow = "Tables that must hold exactly one row";

constexpr std::array Rules = {
    Rule{"Runs whose capacity is none of High, Medium, Low",
         {"RUN"},
         R"(SELECT RUN FROM RUN WHERE TRIM("Capacity") NOT IN ('High', 'Medium', 'Low', ''))"},
    Rule{"Runs with a total that cannot be",
         {"RUN"},
         R"(SELECT RUN FROM RUN WHERE TOTAL_TIME < 0 OR TOTAL_TIME > 1440 OR TOTAL_MILES < 0
            OR TOTAL_STUDENTS < 0 OR "total_stops" < 0 OR "OverFill" < 0)"},
    Rule{"Runs with a dead-head figure that cannot be",
         {"RUN"},
         R"(SELECT RUN FROM RUN
            WHERE (DEADHEAD_BEFORE_TIME < 0 AND DEADHEAD_BEFORE_TIME NOT IN (-1, -2, -3))
            OR (DEADHEAD_AFTER_TIME < 0 AND DEADHEAD_AFTER_TIME NOT IN (-1, -2, -3)))"},
    Rule{"Runs with more than 100 timed stops",
         {"STOP", "STOP_TRIPTYPE"},
         R"(SELECT t.RUN FROM STOP_TRIPTYPE AS t INNER JOIN STOP AS s
            ON s.INT_STOPID = t.INT_STOPID WHERE t.RUN NOT IN ('', ' ')
            AND s.STOPTYPE <> 'DIRECTIONAL' GROUP BY t.RUN HAVING COUNT(*) > 100)"},
    Rule{"Routes with more than 50 runs",
         {"RUN", "ROUTE"},
         R"(SELECT r.ROUTEID FROM ROUTE AS r INNER JOIN RUN AS u ON u.INT_ROUTEID = r.INT_ROUTEID
            GROUP BY r.INT_ROUTEID, r.ROUTEID HAVING COUNT(*) > 50)"},
    Rule{"Stop ids that more than one stop has",
         {"STOP"},
         "SELECT STOPID, COUNT(*) - 1 FROM STOP GROUP BY STOPID HAVING COUNT(*) > 1"},
    Rule{"Stops that have two records of one trip type",
         {"STOP", "STOP_TRIPTYPE"},
         R"(SELECT s.STOPID, COUNT(*) - 1 FROM STOP_TRIPTYPE AS t INNER JOIN STOP AS s
            ON s.INT_STOPID = t.INT_STOPID WHERE s.STOPTYPE = 'REGULAR'
            GROUP BY t.INT_STOPID, s.STOPID, t.TRIPTYPE HAVING COUNT(*) > 1)"},
    Rule{"Runs with two stops at the same place of the sequence",
         {"STOP_TRIPTYPE"},
         R"(SELECT RUN, COUNT(*) - 1 FROM STOP_TRIPTYPE WHERE RUN NOT IN ('', ' ')
            GROUP BY RUN, RUNSEQ HAVING COUNT(*) > 1)"},
    Rule{"Stop trips with a sequence below 0",
         {"STOP_TRIPTYPE"},
         "SELECT ID FROM STOP_TRIPTYPE WHERE RUNSEQ < 0"},
    Rule{"Stop trips on no run that still have a sequence",
         {"STOP_TRIPTYPE"},
         "SELECT ID FROM STOP_TRIPTYPE WHERE (RUN IS NULL OR RUN IN ('', ' ')) AND RUNSEQ <> 0"},
    Rule{"Stop trips without load or driving time",
         {"STOP_TRIPTYPE"},
         "SELECT ID FROM STOP_TRIPTYPE WHERE LOAD_TIME IS NULL OR TIME_TOSTOP IS NULL"},
    Rule{"Stop trips with a figure that cannot be",
         {"STOP_TRIPTYPE"},
         R"(SELECT ID FROM STOP_TRIPTYPE WHERE NUM_STUDENTS < 0 OR LOAD_TIME < 0 OR LOAD_TIME > 1440
            OR TIME_TOSTOP < 0 OR TIME_TOSTOP > 1440 OR DIST_TOSTOP < 0 OR CUM_TIME < 0
            OR CUM_MILES < 0)"},
    Rule{"Students who stand twice at one stop for one trip type",
         {"STU_ADDR_TRIPTYPE"},
         R"(SELECT INT_STUID, COUNT(*) - 1 FROM STU_ADDR_TRIPTYPE
            GROUP BY INT_STOPID, TRIPTYPE, INT_STUID HAVING COUNT(*) > 1)"},
    Rule{"Students who have one special need twice",
         {"STU_SPECIALNEEDS"},
         R"(SELECT INT_STUID, COUNT(*) - 1 FROM STU_SPECIALNEEDS
            GROUP BY INT_STUID, SPECIALNEEDS_CODE HAVING COUNT(*) > 1)"},
    Rule{"Dead-head ways that cannot be",
         {"DEADHEAD_CROSS"},
         R"(SELECT ENDPOINT_INT_STOPID FROM DEADHEAD_CROSS WHERE TRAVEL_MINUTES IS NULL
            OR TRAVEL_MINUTES < 0 OR TRAVEL_MILES IS NULL OR TRAVEL_MILES < 0)"},
    Rule{"Dead-head ways that stand more than once",
         {"DEADHEAD_CROSS"},
         R"(SELECT low, COUNT(*) - 1 FROM (SELECT
            CASE WHEN ENDPOINT_INT_STOPID < DEST_INT_STOPID THEN ENDPOINT_INT_STOPID
                 ELSE DEST_INT_STOPID END AS low,
            CASE WHEN ENDPOINT_INT_STOPID < DEST_INT_STOPID THEN DEST_INT_STOPID
                 ELSE ENDPOINT_INT_STOPID END AS high FROM DEADHEAD_CROSS) AS ways
            GROUP BY low, high HAVING COUNT(*) > 1)"},
    Rule{"Vehicle types with seats that cannot be",
         {"VEHTYPE"},
         R"(SELECT VEHTYPE FROM VEHTYPE WHERE HIGH < 0 OR MEDIUM < 0 OR LOW < 0 OR HIGH < MEDIUM
            OR MEDIUM < LOW)"},
    Rule{"Users with more rights than there are permission points",
         {"QDSCPP", "QDSCU_PP"},
         R"(SELECT QDSC1 FROM QDSCU_PP WHERE PRODUCT = 'ROUTING' GROUP BY QDSC1
            HAVING COUNT(*) > (SELECT COUNT(*) FROM QDSCPP WHERE PRODUCT = 'ROUTING'))"},
    Rule{
        NotOneRow,
        {"District"},
        "SELECT 'District with ' || n FROM (SELECT COUNT(*) AS n FROM District) AS t WHERE n <> 1"},
    Rule{NotOneRow,
         {"SYSTEM"},
         "SELECT 'SYSTEM with ' || n FROM (SELECT COUNT(*) AS n FROM SYSTEM) AS t WHERE n <> 1"},
    Rule{
        NotOneRow,
        {"StartEnd"},
        "SELECT 'StartEnd with ' || n FROM (SELECT COUNT(*) AS n FROM StartEnd) AS t WHERE n <> 1"},
};

/// Not a rule, since stores search texts for single characters in ways of their own.
void checkRunIds(store::Database& database, CheckReport& report) {
    CheckFinding odd{.what = R"(Run ids that are blank or hold one of # % * ' / \ ")"};
    if (database.catalog().find("RUN") == nullptr) {
        return;
    }
    const auto rows = database.prepare("SELECT RUN FROM RUN WHERE RUN IS NOT NULL");
    while (rows->step()) {
        const std::string_view run = rows->text(0);
        if (base::trim(run).empty() || run.find_first_of(R"(#%*'/\")") != run.npos) {
            odd.add(std::string(run));
        }
    }
    report.add(std::move(odd));
}

}  // namespace

void checkRules(store::Database& database, CheckReport& report, Progress& progress) {
    checkRunIds(database, report);
    for (const Rule& rule : Rules) {
        progress.begin(std::string(rule.what), 0);
        const bool readable = std::ranges::all_of(rule.tables, [&](std::string_view table) {
            return table.empty() || database.catalog().find(table) != nullptr;
        });
        if (readable) {
            report.add(findingOf(database, std::string(rule.what), std::string(rule.breaches)));
        }
    }
}

}  // namespace tools::district
