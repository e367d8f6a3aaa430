#include "tools/district/make/history.h"

#include <map>

#include <gmock/gmock.h>

#include "data/schema/schema.h"

namespace tools::district {

TEST(History, SpeaksInTheWordsOfTheFormsAndNeverGoesBackInTime) {
    District district;
    district.asOf = base::Date::of(2026, 1, 30, 12);
    district.logEntries = 400;
    const Stop stop{.stopId = "A"};
    district.runs.emplace_back().id = "R1";
    district.runs[0].visits = {{.stop = &stop, .sequence = 1}, {.stop = &stop, .sequence = 2}};
    const std::map<int, const char*> words = {
        {data::activity::Added, "Stop added to run: A with the sequence of: [12]\\."},
        {data::activity::Removed, "Stop removed from run: A the sequence was: [12]\\."},
        {data::activity::Moved, "(up to top|up one|down one)\\.  The old sequence was: [1-3]\\."},
        {data::activity::Merged, "From run: R1 with the sequence of: [1-9] to new run: R1 "}};
    std::map<int, int> met;
    base::Date before;
    tellHistory(district, [&](const LogEntry& entry) {
        ++met[entry.activity];
        EXPECT_THAT(entry.description, testing::ContainsRegex(words.at(entry.activity)));
        EXPECT_GE(entry.date, before);
        EXPECT_LE(entry.date, district.asOf);
        before = entry.date;
    });
    EXPECT_EQ(met.size(), words.size());
}

}  // namespace tools::district
