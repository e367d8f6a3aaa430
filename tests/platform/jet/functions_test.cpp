#include "platform/jet/functions.h"

#include <gtest/gtest.h>

#include "district.h"
#include "platform/base/ports.h"

namespace jet::testing {

namespace {

struct Case {
    const char* expression;
    const char* value;
};

class FixedClock : public base::ClockPort {
public:
    [[nodiscard]] base::Date now() const override { return base::Date::of(2026, 3, 4, 5, 6, 7); }
};

std::string valueOf(const std::string& expression) {
    return sharedDistrict().first("SELECT " + expression + " FROM SYSTEM");
}

}  // namespace

TEST(Functions, GiveTheDialectsResults) {
    for (const auto& [expression, value] : {
             Case{"TRIM$('  a b ')", "a b"},
             {"LTRIM('  a ') & '|'", "a |"},
             {"RTRIM$('  a ') & '|'", "  a|"},
             {"UCASE('ab') & LCASE('CD')", "ABcd"},
             {"LEFT('abc', 2) & RIGHT('abc', 2)", "abbc"},
             {"RIGHT('aéb', 2) & RIGHT('ab', 0) & RIGHT('ab', 9)", "ébab"},
             {"MID('abcd', 2) & MID('abcd', 2, 1)", "bcdb"},
             {"LEN('ab ')", "3"},
             {"INSTR('Morning', 'NING')", "4"},
             {"VAL('12ab') + VAL('x')", "12"},
             {"CSTR(61.50) & CSTR(60) & CSTR(#8:05:00 AM#) & CSTR(True)", "61.5608:05:00 AMTrue"},
             {"CLNG(2.5) & CINT(3.5) & CLNG('4')", "244"},
             {"CDBL('1.5') + 1", "2.5"},
             {"5 / 2", "2.5"},
             {"7 \\ 2", "3"},
             {"7 MOD 4", "3"},
             {"2 ^ 3", "8"},
             {"-2 ^ 2", "-4"},
             {"- -3", "3"},
             {"2 - -3", "5"},
             {"1 - (2 - 3)", "2"},
             {"(1 + 2) * 3", "9"},
             {"'a' + 'b'", "ab"},
             {"'a' + Null", "Null"},
             {"'a' & Null & 1 & ' ' & 1.50", "a1 1.5"},
             {"1 + True", "0"},
             {"'3' + 1", "4"},
             {"ABS(-3)", "3"},
             {"INT(-1.5)", "-2"},
             {"FIX(-1.5)", "-1"},
             {"ROUND(2.5) & ROUND(2.345, 1)", "22.3"},
             {"CDATE('1/31/2026 7:05 PM')", "2026-01-31 19:05:00"},
             {"DATEVALUE('1/31/2026 7:05 PM')", "2026-01-31 00:00:00"},
             {"TIMEVALUE(#1/31/2026 7:05 PM#)", "1899-12-30 19:05:00"},
             {"YEAR(#1/31/2026#) & MONTH(#1/31/2026#) & DAY(#1/31/2026#)", "2026131"},
             {"HOUR(#7:05:09 PM#) & MINUTE(#7:05:09 PM#) & SECOND(#7:05:09 PM#)", "1959"},
             {"WEEKDAY(#3/4/2026#)", "4"},
             {"#1/31/2026# + 1.5", "2026-02-01 12:00:00"},
             {"#8:00 AM# - 1", "1899-12-29 08:00:00"},
             {"#1/31/2026# - #1/30/2026#", "1"},
             {"DATEADD('m', 1, #1/31/2026#)", "2026-02-28 00:00:00"},
             {"DATEADD('yyyy', -1, #2/29/2024 8:00 AM#)", "2023-02-28 08:00:00"},
             {"DATEADD('n', 90, #11:00 PM#)", "1899-12-31 00:30:00"},
             {"DATEADD('s', -1, #8:00 AM#)", "1899-12-30 07:59:59"},
             {"DATEDIFF('m', #1/31/2026#, #2/1/2026#)", "1"},
             {"DATEDIFF('yyyy', #12/31/2025#, #1/1/2026#)", "1"},
             {"DATEDIFF('n', #7:59:59 AM#, #8:00:00 AM#)", "1"},
             {"DATEDIFF('h', #8:00 AM#, #7:00 AM#)", "-1"},
             {"DATEDIFF('ww', #3/7/2026#, #3/8/2026#)", "1"},
             {"IIF(1 > 2, 'a', 'b') & IIF(Null, 'a', 'b')", "bb"},
             {"IIF(ISNULL(Null), 1, 2)", "1"},
             {"ISNULL('a')", "No"},
             {"TRIM(Null)", "Null"},
             {"DATEADD('d', Null, #1/1/2026#)", "Null"},
         }) {
        EXPECT_EQ(valueOf(expression), value) << expression;
    }
}

TEST(Functions, TheClockIsThePorts) {
    FixedClock fixed;
    base::ClockPort* before = base::ports().clock;
    base::ports().clock = &fixed;
    EXPECT_EQ(valueOf("NOW()"), "2026-03-04 05:06:07");
    EXPECT_EQ(valueOf("DATE()"), "2026-03-04 00:00:00");
    EXPECT_EQ(valueOf("TIME()"), "1899-12-30 05:06:07");
    base::ports().clock = before;
}

TEST(Functions, AggregatesCountWhatIsThere) {
    EXPECT_EQ(
        sharedDistrict().first(
            "SELECT Count(*), Count(RUN.INT_ROUTEID), Sum(RUN.TOTAL_MILES), Avg(RUN.TOTAL_MILES), "
            "Min(RUN.DESCRIPTION), Max(RUN.RUN) FROM RUN"),
        "5|3|25.5|6.375||R2");
    EXPECT_EQ(sharedDistrict().run(
                  "SELECT First(STOPID), Last(STOPID), RUN FROM RUNDIR GROUP BY RUN ORDER BY RUN"),
              (std::vector<std::string>{"ELM|Null|R1", "Null|Null|R2"}));
    EXPECT_EQ(
        sharedDistrict().run("SELECT UCASE(RUN.SCHOOL), Count(*) AS N FROM RUN GROUP BY RUN.SCHOOL "
                             "HAVING Count(*) > 1 AND "
                             "RUN.SCHOOL <> '' ORDER BY N DESC, RUN.SCHOOL"),
        (std::vector<std::string>{"S1|2", "S2|2"}));
    EXPECT_EQ(sharedDistrict().first("SELECT Count(*) FROM RUN HAVING 1 = 2"), "");
}

TEST(Functions, BadArgumentsFailTheStatement) {
    EXPECT_THROW((void)valueOf("CDATE('someday')"), base::RunTimeError);
    EXPECT_THROW((void)valueOf("CLNG('many')"), base::RunTimeError);
    EXPECT_THROW((void)valueOf("DATEADD('x', 1, #1/1/2026#)"), base::RunTimeError);
    EXPECT_THROW((void)valueOf("#1/1/2026# + 1E9"), base::RunTimeError);
    EXPECT_THROW((void)valueOf("DATEADD('d', 9000000, #1/1/2026#)"), base::RunTimeError);
    EXPECT_THROW((void)valueOf("DATEADD('yyyy', 1E12, #1/1/2026#)"), base::RunTimeError);
}

}  // namespace jet::testing
