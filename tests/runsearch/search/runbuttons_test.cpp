#include "runsearch/search/runbuttons.h"

#include <string_view>

#include <gtest/gtest.h>

namespace runsearch {
namespace {

TEST(RunButtons, FollowPermissionsOnlyAfterRunsWereFound) {
    RunButtons buttons;
    EXPECT_EQ(buttons, (RunButtons{true, true, true, false, false, false, false, false}));
    const auto all = [](std::string_view) { return true; };
    const auto few = [](std::string_view task) { return task == "RTG250"; };
    buttons.afterRunsFound(all);
    EXPECT_EQ(buttons, (RunButtons{true, true, true, true, true, true, true, true}));
    buttons.afterRunsFound(few);
    EXPECT_EQ(buttons, (RunButtons{false, true, false, false, true, true, false, true}));
    buttons.afterRunsFound(all);
    EXPECT_EQ(buttons, (RunButtons{false, true, false, true, true, true, true, true}));
    buttons.afterReset();
    EXPECT_EQ(buttons, (RunButtons{false, true, false, false, false, false, false, false}));
}

}  // namespace
}  // namespace runsearch
