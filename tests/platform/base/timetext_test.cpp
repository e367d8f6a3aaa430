#include "platform/base/timetext.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

TEST(TidyTime, ReadsWhatPlannersTypeAndKeepsWhatIsNoTime) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> table{
        {"07:05 AM", {"7:5 am", "07:05 AM", " 7:05am ", "705"}},
        {"07:05 PM", {"19:05"}},
        {"07:00 PM", {"7 pm"}},
        {"12:00 AM", {"12:00 am"}},
        {"12:15 AM", {"0:15"}},
        {"03:30 PM", {"1530"}},
        {"07:30 PM", {"730p", "7:30 p"}},
        {"07:05:30 AM", {"7:05:30 am"}},
        {"", {"", "   "}},
    };
    for (const auto& [tidy, all] : table) {
        for (const auto& typed : all) {
            EXPECT_EQ(base::tidyTime(typed), tidy) << "typed: " << typed;
        }
    }
    for (const char* none : {"25:00", "7:61", "noon", "2570", "1/31/2026", "7:05 am x", "a",
                             "'; DROP", "99999", "1/31/2026 7:00"}) {
        EXPECT_EQ(base::tidyTime(none), none);
    }
}
