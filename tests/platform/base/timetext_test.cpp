#include "platform/base/timetext.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

TEST(TidyTime, ReadsWhatPlannersTypeAndKeepsWhatIsNoTime) {
    const std::vector<std::pair<std::string, std::string>> table{
        {"7:5 am", "07:05 AM"},
        {"07:05 AM", "07:05 AM"},
        {" 7:05am ", "07:05 AM"},
        {"19:05", "07:05 PM"},
        {"7 pm", "07:00 PM"},
        {"12:00 am", "12:00 AM"},
        {"0:15", "12:15 AM"},
        {"705", "07:05 AM"},
        {"1530", "03:30 PM"},
        {"730p", "07:30 PM"},
        {"7:30 p", "07:30 PM"},
        {"7:05:30 am", "07:05:30 AM"},
        {"", ""},
        {"   ", ""},
        {"25:00", "25:00"},
        {"7:61", "7:61"},
        {"noon", "noon"},
        {"2570", "2570"},
        {"1/31/2026", "1/31/2026"},
        {"7:05 am x", "7:05 am x"},
        {"a", "a"},
        {"'; DROP", "'; DROP"},
        {"99999", "99999"},
        {"1/31/2026 7:00", "1/31/2026 7:00"},
    };
    for (const auto& [typed, tidy] : table) {
        EXPECT_EQ(base::tidyTime(typed), tidy) << "typed: " << typed;
    }
}
