// How the dialect compares and what can be written through a result.

#include <gtest/gtest.h>

#include "district.h"

namespace jet::testing {

namespace {

std::string runsWhere(const std::string& condition) {
    std::string result;
    for (const std::string& row :
         sharedDistrict().run("SELECT RUN.RUN FROM RUN WHERE " + condition + " ORDER BY RUN.RUN")) {
        result += (result.empty() ? "" : " ") + row;
    }
    return result;
}

}  // namespace

TEST(Rules, TextIgnoresCaseAndTrailingBlanks) {
    EXPECT_EQ(runsWhere("RUN.RUN = 'r1  '"), "R1");
    EXPECT_EQ(runsWhere("'r1' = RUN.RUN"), "R1");
    EXPECT_EQ(runsWhere("RUN.SCHOOL = 's2'"), "12 120");
    EXPECT_EQ(runsWhere("RUN.SCHOOL <> 'S2 '"), "12A R1 R2");
    EXPECT_EQ(runsWhere("RUN.SCHOOL IN ('s1 ', ' ')"), "12A R1 R2");
    EXPECT_EQ(runsWhere("RUN.RUN >= 'r' AND RUN.RUN < 'R2'"), "R1");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION = 'morning north'"), "R1");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION IN ('morning north   ', 'x')"), "R1");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION BETWEEN 'MORNING' AND 'morning NORTH'"), "R1");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION <> 'MORNING NORTH'"), "12 12A R2");
    EXPECT_EQ(runsWhere("LEFT(RUN.RUN, 1) = 'R '"), "R1 R2");
    EXPECT_EQ(runsWhere("RUN.SCHOOL = LCASE('S1')"), "R1 R2");
}

TEST(Rules, EmptyAndBlankAreEqual) {
    EXPECT_EQ(runsWhere("RUN.RUNFAMILY = ''"), "120 12A");
    EXPECT_EQ(runsWhere("RUN.RUNFAMILY = '  '"), "120 12A");
    EXPECT_EQ(runsWhere("RUN.RUNFAMILY <> ''"), "12 R1 R2");
    EXPECT_EQ(runsWhere("RUN.RUNFAMILY NOT IN ('F1', '')"), "12");
    EXPECT_EQ(runsWhere("RUN.RUNFAMILY > ''"), "12 R1 R2");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION = ' '"), "12A");
    EXPECT_EQ(sharedDistrict()
                  .run("SELECT RUN.RUNFAMILY, Count(*) FROM RUN GROUP BY RUN.RUNFAMILY")
                  .size(),
              3U);
    EXPECT_EQ(sharedDistrict().run("SELECT DISTINCT RUN.RUNFAMILY FROM RUN").size(), 3U);
    EXPECT_EQ(sharedDistrict().run("SELECT DISTINCT RUN.SCHOOL FROM RUN").size(), 3U);
}

TEST(Rules, LikeIgnoresCaseButNotTrailingBlanks) {
    EXPECT_EQ(runsWhere("RUN.RUN LIKE 'r%'"), "R1 R2");
    EXPECT_EQ(runsWhere("RUN.RUN LIKE 'r1 '"), "");
    EXPECT_EQ(runsWhere("RUN.RUN LIKE 'r1'"), "R1");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION LIKE '%north'"), "R2");
    EXPECT_EQ(runsWhere("RUN.RUN LIKE '12_'"), "120 12A");
    EXPECT_EQ(runsWhere("RUN.RUN LIKE '12[a-z]'"), "12A");
    EXPECT_EQ(runsWhere("RUN.RUN LIKE '[!r]%'"), "12 120 12A");
    EXPECT_EQ(runsWhere("RUN.RUN NOT LIKE '12%'"), "R1 R2");
    EXPECT_EQ(runsWhere("RUN.RUN NOT LIKE '12[a-z]'"), "12 120 R1 R2");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION LIKE '%'"), "12 12A R1 R2");
    EXPECT_EQ(runsWhere("RUN.DESCRIPTION LIKE '50[%] of [[]it]'"), "12");
    EXPECT_EQ(runsWhere("RUN.RUN LIKE '1' & '2%'"), "12 120 12A");
}

TEST(Rules, AnyNonZeroIsYes) {
    for (const char* yes :
         {"RUN.REGENERATE = True", "RUN.REGENERATE = -1", "RUN.REGENERATE = 1",
          "RUN.REGENERATE <> 0", "RUN.REGENERATE", "RUN.REGENERATE = YES", "True = RUN.REGENERATE",
          "RUN.REGENERATE IN (True)", "NOT RUN.REGENERATE = No", "RUN.REGENERATE < 0",
          "RUN.REGENERATE + 1 = 0"}) {
        EXPECT_EQ(runsWhere(yes), "R2") << yes;
    }
    EXPECT_EQ(runsWhere("NOT RUN.REGENERATE"), "12 120 12A R1");
    EXPECT_EQ(sharedDistrict().first(
                  "SELECT Sum(RUN.REGENERATE), Min(RUN.REGENERATE), Max(RUN.REGENERATE) FROM RUN"),
              "-1|Yes|No");
    EXPECT_EQ(sharedDistrict().first("SELECT RUN.RUN FROM RUN ORDER BY RUN.REGENERATE"), "R2");
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
