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
    constexpr int Argument = base::errors::InvalidProcedureCall;
    constexpr int Overflow = base::errors::Overflow;
    constexpr int Mismatch = base::errors::TypeMismatch;
    for (const auto& [bad, number] : {std::pair{"CDATE('someday')", Mismatch},
                                      {"CLNG('many')", Mismatch},
                                      {"DATEADD('x', 1, #1/1/2026#)", Argument},
                                      {"#1/1/2026# + 1E9", Overflow},
                                      {"DATEADD('d', 9000000, #1/1/2026#)", Overflow},
                                      {"DATEADD('yyyy', 1E12, #1/1/2026#)", Overflow},
                                      {"CDATE(4E6)", Overflow},
                                      {"1 / 0", 11},
                                      {"1 \\ 0.4", 11},
                                      {"5 MOD 0", 11},
                                      {"0 ^ -1", Overflow},
                                      {"(-8) ^ 0.5", Argument},
                                      {"CINT(32768)", Overflow},
                                      {"CLNG(3E9)", Overflow},
                                      {"2 * 9E18 \\ 1", Overflow},
                                      {"STR('x')", Mismatch},
                                      {"LEFT('a', -1)", Argument},
                                      {"RIGHT('a', -1)", Argument},
                                      {"MID('a', 0)", Argument},
                                      {"MID('a', 1, -1)", Argument},
                                      {"INSTR(0, 'a', 'a')", Argument},
                                      {"FORMAT('a', '#')", Argument},
                                      {"(SELECT RUN.RUN FROM RUN)", 3354}}) {
        EXPECT_EQ(support::errorOf(
                      [sql = std::string("SELECT ") + bad] { (void)sharedDistrict().run(sql); }),
                  number)
            << bad;
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

TEST(Rules, ResultsKnowWhereTheirColumnsComeFrom) {
    const Translation result = translate(
        "SELECT STOP_TRIPTYPE.*, S.StopId AS Stop, 1+1, Trim(S.ADDR1) FROM STOP_TRIPTYPE INNER "
        "JOIN Stop AS S ON "
        "STOP_TRIPTYPE.INT_STOPID = S.INT_STOPID",
        sharedDistrict().catalog());
    EXPECT_EQ(result.columns[0].name, "ID");
    EXPECT_EQ(result.columns[0].source, "STOP_TRIPTYPE");
    EXPECT_EQ(result.columns[0].kind, store::ColumnKind::Counter);
    const OutputColumn& stop = result.columns[20];
    EXPECT_EQ(stop.name, "Stop");
    EXPECT_EQ(stop.source, "S");
    EXPECT_EQ(stop.column, "STOPID");
    EXPECT_EQ(stop.table, 1);
    EXPECT_EQ(result.columns[21].name, "Expr1021");
    EXPECT_EQ(result.columns[21].kind, store::ColumnKind::Number);
    EXPECT_EQ(result.columns[21].table, -1);
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
