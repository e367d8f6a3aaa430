// Random statements give the same rows, or the same error, on both engines.

#include <random>

#include <gtest/gtest.h>

#include "district.h"
#include "platform/base/error.h"

namespace jet::testing {

namespace {

/// Makes expressions of each kind, `depth` levels deep.
class Maker {
public:
    std::string condition(int depth) {
        const int next = depth - 1;
        switch (depth > 0 ? pick(9) : 1 + pick(5)) {
            case 0:
                return "NOT (" + condition(next) + ")";
            case 1:
                return text(next) + one({" = ", " <> "}) + text(next);
            case 2:
                return number(next) + one({" < ", " >= ", " = ", " <> "}) + number(next);
            case 3:
                return date(next) + one({" < ", " >= ", " = "}) + date(next);
            case 4:
                return yesNo() + one({" = True", " = False", " = -1", " <> 0"});
            case 5:
                return text(next) + one({" LIKE ", " NOT LIKE "}) +
                       one({"'r%'", "'%north%'", "'1_'", "'[!r]%'", "'%[0-9]'", "'é%'", "'%'"});
            case 6:
                return one({code(), "RUN.DESCRIPTION"}) + one({" IN (", " NOT IN ("}) + literal() +
                       ", " + literal() + ")";
            case 7:
                return one({text(next), number(next), date(next)}) +
                       one({" Is Null", " Is Not Null"});
            default:
                return "(" + condition(next) + one({" AND ", " OR "}) + condition(next) + ")";
        }
    }

    std::string text(int depth) {
        const int next = depth - 1;
        switch (depth > 0 ? pick(12) : pick(3)) {
            case 0:
                return code();
            case 1:
                return literal();
            case 2:
                return "RUN.DESCRIPTION";
            case 3:
                return one({"UCASE(", "LCASE(", "TRIM(", "RTRIM("}) + text(next) + ")";
            case 4:
                return "LEFT(" + text(next) + ", " + one({"0", "1", "3"}) + ")";
            case 5:
                return "MID(" + text(next) + ", 2, 2)";
            case 6:
                return "IIF(" + condition(next) + ", " + text(next) + ", " + text(next) + ")";
            case 7:
                return "NZ(" + text(next) + ", 'none')";
            case 8:
                return "CSTR(" + one({number(next), date(next), yesNo()}) + ")";
            case 9:
                return "FORMAT(" +
                       one({date(next) + ", 'h:nn AM/PM d'", number(next) + ", '0.0#'"}) + ")";
            case 10:
                return "REPLACE(" + text(next) + ", 'R', 'x')";
            default:
                return "(" + text(next) + " & " + one({text(next), number(next)}) + ")";
        }
    }

    std::string number(int depth) {
        const int next = depth - 1;
        switch (depth > 0 ? pick(10) : pick(2)) {
            case 0:
                return one({"RUN.TOTAL_MILES", "RUN.OverFill", "RUN.INT_ROUTEID",
                            "RUN.DEADHEAD_BEFORE_TIME", "ROUTE.EMPNUM"});
            case 1:
                return one({"0", "1", "2.5", "7", "12.1"});
            case 2:
                return "(" + number(next) + one({" + ", " - ", " * "}) + number(next) + ")";
            case 3:
                return "LEN(" + text(next) + ")";
            case 4:
                return "INSTR(" + text(next) + ", " + one({"'o'", "'2'", "'north'"}) + ")";
            case 5:
                return "VAL(" + text(next) + ")";
            case 6:
                return one({"ABS(", "INT(", "FIX(", "NZ(", "ROUND("}) + number(next) + ")";
            case 7:
                return "DATEDIFF('n', " + date(next) + ", " + date(next) + ")";
            case 8:
                return "(" + number(next) + one({" / ", " MOD ", " \\ "}) + one({"2", "4"}) + ")";
            default:
                return "IIF(" + condition(next) + ", " + number(next) + ", " + number(next) + ")";
        }
    }

    std::string date(int depth) {
        switch (depth > 0 ? pick(4) : pick(2)) {
            case 0:
                return one({"RUN.STARTTIME", "RUN.BELLTIME"});
            case 1:
                return one({"#7:00 AM#", "#8:30 AM#", "#1/31/2026 3:00 PM#"});
            case 2:
                return "DATEADD(" + one({"'n'", "'d'", "'m'"}) + ", 3, " + date(depth - 1) + ")";
            default:
                return one({"TIMEVALUE(", "DATEVALUE("}) + date(depth - 1) + ")";
        }
    }

    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

private:
    std::string one(const std::vector<std::string>& choices) {
        return choices[static_cast<std::size_t>(pick(static_cast<int>(choices.size())))];
    }
    std::string code() { return one({"RUN.RUN", "RUN.SCHOOL", "RUN.TRIPTYPE", "RUN.RUNFAMILY"}); }
    std::string yesNo() { return one({"RUN.ACTIVE", "RUN.PICKUP", "RUN.REGENERATE"}); }
    std::string literal() {
        return one({"'R1'", "'r2 '", "''", "' '", "'12'", "'S2'", "'am'", "'MORNING north'",
                    "'50% of [it]'"});
    }

    std::mt19937 random_{20'261'122};
};

/// The rows, or the error's number.
std::vector<std::string> outcomeOf(District& district, const std::string& sql) {
    try {
        return district.run(sql);
    } catch (const base::RunTimeError& error) {
        return {"error " + std::to_string(error.number())};
    }
}

TEST(Engines, AgreeOnRandomStatements) {
    if (serverDistrict() == nullptr) {
        GTEST_SKIP() << "PostgreSQL's server is not installed";
    }
    Maker make;
    for (int i = 0; i < 600; ++i) {
        const int depth = i % 4;
        const std::string joined = "(RUN LEFT JOIN ROUTE ON RUN.INT_ROUTEID = ROUTE.INT_ROUTEID)";
        const std::string sql =
            i % 3 == 0 ? "SELECT " + make.text(1) + ", Count(*), Min(" + make.number(1) +
                             ") FROM " + joined + " WHERE " + make.condition(depth) +
                             " GROUP BY RUN.SCHOOL, RUN.DESCRIPTION, RUN.RUN, RUN.TRIPTYPE, "
                             "RUN.RUNFAMILY, RUN.ACTIVE, RUN.PICKUP, RUN.REGENERATE, "
                             "RUN.TOTAL_MILES, RUN.OverFill, RUN.INT_ROUTEID, "
                             "RUN.DEADHEAD_BEFORE_TIME, ROUTE.EMPNUM, RUN.STARTTIME, RUN.BELLTIME "
                             "ORDER BY RUN.RUN"
                       : "SELECT RUN.RUN, " + make.text(depth) + ", " + make.number(depth) + ", " +
                             make.date(depth) + " FROM " + joined + " WHERE " +
                             make.condition(depth) + " ORDER BY RUN.RUN";
        ASSERT_EQ(outcomeOf(*serverDistrict(), sql), outcomeOf(sharedDistrict(), sql)) << sql;
    }
}

}  // namespace

}  // namespace jet::testing
