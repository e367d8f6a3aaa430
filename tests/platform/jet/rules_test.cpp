// What statements.txt does not show: plans, results, faults at run time.

#include <utility>

#include <gtest/gtest.h>

#include "district.h"
#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "support/errors.h"

namespace jet::testing {

TEST(Rules, TheClockIsThePorts) {
    struct FixedClock : base::ClockPort {
        [[nodiscard]] base::Date now() const override {
            return base::Date::of(2026, 3, 4, 5, 6, 7);
        }
    } fixed;
    base::ClockPort* before = std::exchange(base::ports().clock, &fixed);
    EXPECT_EQ(sharedDistrict().first("SELECT NOW(), DATE(), TIME()"),
              "2026-03-04 05:06:07|2026-03-04 00:00:00|1899-12-30 05:06:07");
    base::ports().clock = before;
}

TEST(Rules, BadArgumentsFailTheStatement) {
    const std::vector<std::pair<int, std::vector<std::string>>> faults = {
        {base::errors::InvalidProcedureCall,
         {"DATEADD('x', 1, #1/1/2026#)", "(-8) ^ 0.5", "LEFT('a', -1)", "RIGHT('a', -1)",
          "MID('a', 0)", "MID('a', 1, -1)", "INSTR(0, 'a', 'a')", "FORMAT('a', '#')"}},
        {base::errors::Overflow,
         {"#1/1/2026# + 1E9", "DATEADD('d', 9000000, #1/1/2026#)", "CDATE(4E6)", "0 ^ -1",
          "DATEADD('yyyy', 1E12, #1/1/2026#)", "CINT(32768)", "CLNG(3E9)", "2 * 9E18 \\ 1"}},
        {base::errors::TypeMismatch, {"CDATE('someday')", "CLNG('many')", "STR('x')"}},
        {11, {"1 / 0", "1 \\ 0.4", "5 MOD 0"}},
        {3354, {"(SELECT RUN.RUN FROM RUN)"}}};
    for (const auto& [number, expressions] : faults) {
        for (const auto& bad : expressions) {
            EXPECT_EQ(support::errorOf([&] { (void)sharedDistrict().run("SELECT " + bad); }),
                      number)
                << bad;
        }
    }
}

TEST(Rules, AKeySearchUsesItsIndex) {
    const auto plan = [](const std::string& condition) {
        return sharedDistrict().plan("SELECT RUN.* FROM RUN WHERE " + condition);
    };
    for (const char* condition :
         {"RUN.RUN = 'r1 '", "RUN.RUN LIKE '12%'", "RUN.RUN LIKE '12_x%'", "'R1' = RUN.RUN",
          "RUN.SCHOOL = 'A' OR RUN.SCHOOL = 'B'", "RUN.SCHOOL = ' '", "RUN.INT_ROUTEID = 5"}) {
        EXPECT_NE(plan(condition).find("SEARCH RUN USING"), std::string::npos) << condition << "\n"
                                                                               << plan(condition);
    }
    EXPECT_NE(sharedDistrict()
                  .plan("SELECT RUNLOG.* FROM RUNLOG WHERE DateValue(CStr([LOGDATE]))>=#1/2/2026#")
                  .find("LOGDATE>?"),
              std::string::npos);
}

TEST(Rules, OneRowIsNotSortedByTheServer) {
    store::Catalog server(store::Engine::Postgres);
    for (const store::Table& table : sharedDistrict().catalog().tables()) {
        server.add(table);
    }
    const auto isSorted = [&](const std::string& from) {
        return translate("SELECT * FROM " + from, server).text.find("ORDER BY") !=
               std::string::npos;
    };
    for (const char* one : {"RUN WHERE RUN.RUN = 'R1'", "STOP WHERE INT_STOPID = 1",
                            "RUN WHERE ACTIVE = True AND RUN.RUN = 'R1'"}) {
        EXPECT_FALSE(isSorted(one)) << one;
    }
    for (const char* many : {"RUN", "RUN WHERE RUN.RUN = ' '", "RUN WHERE RUN.RUN <> 'R1'",
                             "RUN WHERE NOT RUN.RUN = 'R1'",
                             "RUN WHERE RUN.RUN = 'R1' OR RUN.RUN = 'R2'", "RUN WHERE SCHOOL = 'A'",
                             "RUN, STOP WHERE RUN.RUN = 'R1'", "RUN WHERE RUN.RUN = SCHOOL"}) {
        EXPECT_TRUE(isSorted(many)) << many;
    }
}

TEST(Rules, ResultsKnowWhereTheirColumnsComeFrom) {
    const Translation result = translate(
        "SELECT STOP_TRIPTYPE.*, S.StopId AS Stop, 1+1, Trim(S.ADDR1) FROM STOP_TRIPTYPE INNER "
        "JOIN Stop AS S ON "
        "STOP_TRIPTYPE.INT_STOPID = S.INT_STOPID",
        sharedDistrict().catalog());
    const auto shown = [&](std::size_t place) {
        const OutputColumn& column = result.columns[place];
        return column.name + "|" + column.source + "|" + column.column + "|" +
               std::to_string(column.table);
    };
    EXPECT_EQ(shown(0) + " " + shown(20) + " " + shown(21),
              "ID|STOP_TRIPTYPE|ID|0 Stop|S|STOPID|1 Expr1021|||-1");
    EXPECT_EQ(result.columns[0].kind, store::ColumnKind::Counter);
    EXPECT_EQ(result.columns[21].kind, store::ColumnKind::Number);
    EXPECT_EQ(result.columns[22].kind, store::ColumnKind::Text);
    ASSERT_EQ(result.tables.size(), 2U);
    EXPECT_EQ(result.tables[1].name, "STOP");
    EXPECT_EQ(result.tables[1].alias, "S");
    EXPECT_EQ(result.tables[0].keyColumn, 23);
    EXPECT_EQ(result.tables[1].keyColumn, 24);
    EXPECT_TRUE(result.updatable);
}

TEST(Rules, GroupedAndDistinctResultsCannotBeWritten) {
    for (const char* sql :
         {"SELECT DISTINCT RUN.RUN FROM RUN", "SELECT RUN.RUN FROM RUN GROUP BY RUN.RUN",
          "SELECT Count(*) FROM RUN", "SELECT 1"}) {
        const Translation result = translate(sql, sharedDistrict().catalog());
        EXPECT_FALSE(result.updatable) << sql;
        EXPECT_EQ(result.text.find("rowid"), std::string::npos) << sql;
    }
}

}  // namespace jet::testing
