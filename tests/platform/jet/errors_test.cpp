// What is no statement of the dialect, or too much of one, gives a clear error and changes nothing.

#include "support/errors.h"

#include <string>

#include <gtest/gtest.h>

#include "district.h"
#include "platform/jet/report.h"

namespace jet::testing {

namespace {

/// The description of the error that a statement raises; empty where it raises none.
std::string complaint(std::string_view sql) {
    try {
        (void)shapeOf(sql);
        (void)sharedDistrict().text(sql);
        return "";
    } catch (const SqlError& error) {
        EXPECT_GE(error.position(), 1U);
        EXPECT_LE(error.position(), sql.size() + 1);
        return error.description();
    }
}

std::string repeated(std::string_view text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

}  // namespace

TEST(Errors, AreReadByPeople) {
    const std::string hint =
        "An apostrophe ends a text: write it twice, or _ for it in a pattern. ";
    const std::string sql = "SELECT RUN.* FROM RUN WHERE RUN.RUN = 'O'Brien' AND RUN.ACTIVE = True";
    EXPECT_EQ(complaint(sql),
              hint +
                  "A text is not closed, or a quote inside a text is not doubled, at position 47: "
                  "… WHERE RUN.RUN = 'O'Brien' AND RUN.ACTIVE = True");
}

TEST(Errors, CarryTheNumberOfTheirKind) {
    const auto number = [](std::string_view sql) {
        return support::errorOf([&] { return sharedDistrict().text(sql); });
    };
    EXPECT_EQ(number("SELECT"), errors::Syntax);
    EXPECT_EQ(number("SELECT X.A FROM X"), errors::NoSuchTable);
    EXPECT_EQ(number("SELECT RUN.X FROM RUN"), errors::NoSuchColumn);
    EXPECT_EQ(number("SELECT RUN.RUN FROM RUN WHERE RUN.RUN = 1"), errors::TypeMismatch);
}

TEST(Errors, CutTheExcerptBetweenCharacters) {
    const std::string sql = repeated("é", 60);
    for (std::size_t offset = 0; offset <= sql.size(); ++offset) {
        const std::string excerpt = around(sql, offset);
        for (std::size_t i = 0; i < excerpt.size(); i += excerpt.compare(i, 3, "…") == 0 ? 3 : 2) {
            ASSERT_TRUE(excerpt.compare(i, 3, "…") == 0 || excerpt.compare(i, 2, "é") == 0)
                << excerpt;
        }
    }
    EXPECT_EQ(around("a\nb\tc", 2), "a b c");
}

TEST(Errors, NothingBehindAStatementIsTaken) {
    for (const char* sql : {"SELECT RUN.RUN FROM RUN; DELETE FROM RUN", "SELECT RUN.RUN FROM RUN;;",
                            "SELECT RUN.RUN FROM RUN WHERE RUN.RUN = 'x'; DELETE FROM RUN --'",
                            "DELETE FROM RUN -- all", "SELECT RUN.RUN FROM RUN /* */"}) {
        EXPECT_NE(complaint(sql), "") << sql;
    }
    EXPECT_EQ(complaint("SELECT RUN.RUN FROM RUN ; "), "");
}

TEST(Errors, LongStatementsAreAnsweredNotCrashed) {
    const std::string text(10'000, 'x');
    EXPECT_EQ(sharedDistrict().first("SELECT RUN.RUN FROM RUN WHERE RUN.RUN LIKE '" + text + "%'"),
              "");
    for (const std::string& sql :
         {"SELECT RUN.RUN FROM RUN WHERE " + text, std::string(10'000, '('),
          "SELECT " + std::string(10'000, '-'), "SELECT 1 WHERE " + repeated("NOT (1=1 AND ", 5000),
          "SELECT " + repeated("TRIM(", 5000), "SELECT 1 FROM " + repeated("(", 5000),
          repeated("SELECT RUN FROM RUN WHERE RUN IN (", 5000), "SELECT 1" + repeated("+1", 5000),
          "SELECT 1" + repeated("^1", 5000),
          "SELECT RUN FROM RUN WHERE 1" + repeated("=1", 5000)}) {
        EXPECT_NE(complaint(sql), "") << sql.substr(0, 40);
    }
    EXPECT_EQ(complaint("SELECT " + repeated("(", 190) + "1" + repeated(")", 190)), "");
    EXPECT_EQ(complaint("SELECT 'a'" + repeated(" & 'a'", 900)), "");
}

TEST(Errors, WhatIsTakenTheStoreTakesToo) {
    const auto deepest = [](const char* from, const char* open, const char* inside,
                            const char* close) {
        int depth = 0;
        for (int i = 1; i < 60; ++i) {
            const std::string sql = from + repeated(open, i) + inside + repeated(close, i);
            if (complaint(sql).empty()) {
                EXPECT_NO_THROW((void)sharedDistrict().run(sql)) << sql;
                depth = i;
            }
        }
        return depth;
    };
    EXPECT_GE(deepest("SELECT ", "1-(", "1", ")"), 20);
    EXPECT_GE(deepest("SELECT ", "IIF(1=1,2,", "1", ")"), 20);
    EXPECT_GE(deepest("SELECT ", "'a' & TRIM(", "'x'", ")"), 10);
    EXPECT_EQ(deepest("SELECT RUN FROM RUN WHERE ", "(INT_ROUTEID=1 OR PICKUP AND ", "ACTIVE", ")"),
              10);
    EXPECT_EQ(
        deepest("SELECT RUN FROM RUN WHERE ", "(INT_ROUTEID=1 OR PICKUP AND ", "NOT ACTIVE", ")"),
        10);
    EXPECT_GE(
        deepest("SELECT RUN FROM RUN WHERE ", "RUN IN (SELECT RUN FROM RUN WHERE ", "ACTIVE", ")"),
        9);
}

TEST(Errors, ThousandsOfTermsAreOneList) {
    std::string same = "SELECT RUN.RUN FROM RUN WHERE ( RUN.SCHOOL = 'S0'";
    std::string stops =
        "SELECT RUN.RUN FROM RUN WHERE RUN.RUN IN (SELECT STOP_TRIPTYPE.RUN FROM STOP INNER JOIN "
        "STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP.SCHOOL = 'S0' AND "
        "STOP.STOPTYPE='SCHOOL'";
    std::string mixed = "SELECT RUN.RUN FROM RUN WHERE RUN.PICKUP = True";
    for (int i = 1; i < 2000; ++i) {
        const std::string code = "'S" + std::to_string(i) + "'";
        same += " OR RUN.SCHOOL = " + code;
        stops += " OR STOP.SCHOOL = " + code + " AND STOP.STOPTYPE='SCHOOL'";
        mixed += " OR RUN.SCHOOL > " + code;
    }
    EXPECT_EQ(sharedDistrict().run(same + ")").size(), 4U);
    EXPECT_EQ(sharedDistrict().text(same + ")").find(" OR "), std::string::npos);
    EXPECT_EQ(sharedDistrict().run(stops + ")").size(), 2U);
    EXPECT_EQ(sharedDistrict().text(stops + ")").find(" OR "), std::string::npos);
    EXPECT_EQ(sharedDistrict().run(mixed).size(), 4U);
}

TEST(Errors, CharactersThatCannotStandAreRefused) {
    for (const char c : {'\x01', '\x7f', '@', '{', '}', '|', '~', '`', '?', ':'}) {
        EXPECT_NE(complaint(std::string("SELECT RUN.RUN FROM RUN WHERE RUN.RUN = ") + c), "") << c;
    }
    EXPECT_NE(complaint(std::string_view("SELECT 'a\0b'", 12)), "");
    EXPECT_NE(complaint(std::string_view("SELECT 1\0", 9)), "");
}

}  // namespace jet::testing
