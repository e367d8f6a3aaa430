#include "platform/dbf/tablefile.h"

#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "support/fakes.h"

namespace {

using base::Value;
using dbf::Kind;

dbf::Table stops() {
    return {{{"STOPID"}, {"DESCRIPTION"}, {"XPOS", Kind::Number, 4}, {"RUNSEQ", Kind::Number}},
            {{"S1", "Oak & Ma\u0142a \u2013 caf\u00e9", -1234.5, 1},
             {"", Value(), Value(), 9007199254740991},
             {"S3", std::string(300, 'x'), 0.00004, 0}}};
}

TEST(TableFile, HoldsWhatWasWrittenAsFarAsTheFormatCan) {
    const auto read = dbf::tableIn(dbf::bytesOf(stops()));
    ASSERT_THAT(read.columns, testing::SizeIs(4));
    EXPECT_EQ(read.columns[1].name, "DESCRIPTIO");
    EXPECT_EQ(read.columns[2], (dbf::Column{"XPOS", Kind::Number, 4}));
    ASSERT_THAT(read.rows, testing::SizeIs(3));
    EXPECT_THAT(read.rows[0],
                testing::ElementsAre(Value("S1"), Value("Oak & Ma?a \u2013 caf\u00e9"),
                                     Value(-1234.5), Value(1)));
    EXPECT_THAT(read.rows[1],
                testing::ElementsAre(Value(), Value(), Value(), Value(9007199254740991)));
    EXPECT_EQ(read.rows[2][1], Value(std::string(dbf::MaxTextWidth, 'x')));
    EXPECT_EQ(read.rows[2][2], Value(0));
}

TEST(TableFile, IsReadByOthersByItsHeader) {
    const support::FakeClock clock;
    const std::string bytes = dbf::bytesOf(stops());
    EXPECT_EQ(bytes[0], '\x03');                    // dBASE III without memo
    EXPECT_EQ(bytes.substr(1, 3), "\x7E\x01\x1F");  // the day of the clock, years from 1900
    EXPECT_EQ(bytes[29], '\x57');                   // the language driver of code page 1252
    EXPECT_EQ(bytes.substr(32, 6), "STOPID");       // the first column
    EXPECT_EQ(bytes[32 + 11], 'C');
    EXPECT_EQ(bytes.back(), '\x1A');
}

TEST(TableFile, ATableWithoutRowsIsATable) {
    auto table = stops();
    table.rows.clear();
    const std::string bytes = dbf::bytesOf(table);
    EXPECT_EQ(bytes.substr(32 * 3 + 16, 2), "\x06\x04") << "a number is wider than its decimals";
    const auto read = dbf::tableIn(bytes);
    EXPECT_THAT(read.columns, testing::SizeIs(4));
    EXPECT_THAT(read.rows, testing::IsEmpty());
}

TEST(TableFile, RefusesBytesThatAreNone) {
    const std::string whole = dbf::bytesOf(stops());
    std::string moreRows = whole;
    moreRows[4] = 100;
    std::string widerColumn = whole;
    widerColumn[32 + 16] = '\xFE';
    for (const std::string& bytes :
         {std::string(), std::string("Runs.txt"), whole.substr(0, 40), moreRows, widerColumn}) {
        EXPECT_THROW(static_cast<void>(dbf::tableIn(bytes)), base::RunTimeError);
    }
    for (const double wild : {1e30, HUGE_VAL}) {
        const dbf::Table table{{{"X", Kind::Number, 4}}, {{wild}}};
        EXPECT_THROW(static_cast<void>(dbf::bytesOf(table)), dbf::TooWide);
    }
}

}  // namespace
