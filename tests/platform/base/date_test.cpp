#include "platform/base/date.h"

#include <gtest/gtest.h>

namespace base {

TEST(Date, ReadsWhatPlannersType) {
    const auto five = Date::timeOfDay(7, 5);
    for (const char* text : {"7:5 am", "07:05 AM", "7:05", " 7:05a ", "07:05:00 am", "7:05AM"}) {
        EXPECT_EQ(Date::parse(text), five) << text;
    }
    EXPECT_EQ(Date::parse("12:00 am"), Date::timeOfDay(0, 0));
    EXPECT_EQ(Date::parse("12:30 PM"), Date::timeOfDay(12, 30));
    EXPECT_EQ(Date::parse("7 pm"), Date::timeOfDay(19, 0));
    EXPECT_EQ(Date::parse("1/31/2026 7:05:09 PM"), Date::of(2026, 1, 31, 19, 5, 9));
    EXPECT_EQ(Date::parse("2026-01-31"), Date::of(2026, 1, 31));
    EXPECT_EQ(Date::parse("2/29/2024"), Date::of(2024, 2, 29));
}

TEST(Date, RefusesWhatIsNoTime) {
    for (const char* text :
         {"", "  ", "7", "25:00", "7:60", "7:5:61", "13:00 PM", "abc", "7:05x", "7:-5", "2/30/2026",
          "1/1/", "1//2026", "7:05 am am", "1/1/2026 x", "#7:05#", "-7:05", "1-1/2026"}) {
        EXPECT_FALSE(Date::parse(text)) << text;
    }
}

TEST(Date, DefaultTextFollowsWhatIsHeld) {
    EXPECT_EQ(Date::timeOfDay(0, 0).text(), "12:00:00 AM");
    EXPECT_EQ(Date::timeOfDay(13, 5, 9).text(), "1:05:09 PM");
    EXPECT_EQ(Date::of(2026, 1, 31).text(), "1/31/2026");
    EXPECT_EQ(Date::of(2026, 1, 31, 7, 5).text(), "1/31/2026 7:05:00 AM");
    EXPECT_EQ(Date::timeOfDay(0, 7).hhmm(), "12:07 AM");
    EXPECT_EQ(Date::timeOfDay(15, 0, 59).hhmm(), "03:00 PM");
    EXPECT_EQ(Date::timeOfDay(8, 0).iso(), "1899-12-30 08:00:00");
}

TEST(Date, TextAndStoreFormReadBackToTheSameSecond) {
    for (std::int64_t s = -40L * Date::SecondsPerDay; s < 50000L * Date::SecondsPerDay;
         s += 7919L * 1013) {
        const Date date{s};
        EXPECT_EQ(Date::fromIso(date.iso()), date);
        EXPECT_EQ(Date::parse(date.text()), date) << date.text();
        EXPECT_EQ(date.dateValue().seconds + date.timeValue().seconds, s);
        EXPECT_GE(date.timeValue().seconds, 0);
    }
}

TEST(Date, StoreFormIsExact) {
    for (const char* text : {"1899-12-30 8:00:00", "1899-12-30T08:00:00", "1899-13-30 08:00:00",
                             "1899-12-30 24:00:00", "1899-12-30 08:00:0-", "1899-12-30"}) {
        EXPECT_FALSE(Date::fromIso(text)) << text;
    }
}

}  // namespace base
