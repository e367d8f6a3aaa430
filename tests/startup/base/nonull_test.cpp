#include <gtest/gtest.h>

#include "startup/base/mdlNONULL.h"

namespace {

using base::Value;
using startup::NoNullNumber;
using startup::NoNullString;

TEST(NoNullString, TurnsNullAndBlankIntoOneBlankAndKeepsTheRestAsItIs) {
    for (const Value& blank : {Value(), Value(""), Value("   ")}) {
        EXPECT_EQ(NoNullString(blank), Value(" "));
    }
    for (const Value& kept : {Value("  a "), Value("\t"), Value(0)}) {
        EXPECT_EQ(NoNullString(kept), kept);
    }
}

TEST(NoNullNumber, KeepsWhatStartsWithANumberAndMakesTheRestZero) {
    for (const Value& zero :
         {Value(), Value(""), Value("0"), Value("x1"), Value(0.0), Value(false), Value("-0.0")}) {
        const Value result = NoNullNumber(zero);
        EXPECT_TRUE(result.isInteger());
        EXPECT_EQ(result, Value(0));
    }
    for (const Value& kept :
         {Value("12"), Value(" 12 miles"), Value("-1"), Value(0.25), Value(-2)}) {
        EXPECT_EQ(NoNullNumber(kept), kept);
    }
}

TEST(CheckBoxValues, OnlyOneIsChecked) {
    EXPECT_TRUE(startup::SetBoolean(1));
    EXPECT_FALSE(startup::SetBoolean(0));
    EXPECT_FALSE(startup::SetBoolean(2));
    EXPECT_FALSE(startup::SetBoolean(-1));
    EXPECT_EQ(startup::SetCheckBox(true), 1);
    EXPECT_EQ(startup::SetCheckBox(false), 0);
}

}  // namespace
