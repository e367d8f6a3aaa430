#include <algorithm>

#include <gtest/gtest.h>

#include "platform/base/value.h"
#include "runedit/times/mdl_Time_Calc_Routines.h"
#include "startup/base/session.h"
#include "support/rows.h"
#include "support/testsession.h"
#include "tools/district/make/madedistrict.h"
#include "tools/district/make/plan.h"
#include "tools/district/make/sample.h"

namespace runedit {

namespace {

using base::Date;

std::int64_t seconds(std::int64_t milliseconds) {
    return base::roundHalfEven(static_cast<double>(milliseconds) / 1000);
}

/// The times of a run of the plan, moved by the sample's shift: the school's arrival, and before it
/// each gap rounded once.
std::vector<Date> plannedTimes(const tools::district::PlanRun& run) {
    auto visits = run.pickups;
    visits.push_back(run.school);
    std::vector<Date> times(visits.size());
    times.back() = {seconds(run.school.arrival) + tools::district::SampleShiftSeconds};
    for (std::size_t i = visits.size() - 1; i > 0; --i) {
        times[i - 1] = times[i].plusSeconds(-seconds(visits[i].arrival - visits[i - 1].arrival));
    }
    return times;
}

}  // namespace

// The oracle: every run of the sample stands on a published plan, whose times must come out from
// either end after the stored ones are gone.
TEST(PublishedPlan, ComesOutOfTheStoredMinutesOfAllRuns) {
    const tools::district::MadeDistrict district;
    const support::TestSession session;
    session.start(district.folder() + "/vireo");
    startup::gErrorHandling = false;
    const auto plan = tools::district::readPlan(tools::district::embeddedPlan());
    ASSERT_EQ(plan.runs.size(), 59U);
    for (const auto& planned : plan.runs) {
        const std::string run = tools::district::sampleRunId(planned);
        const auto expected = plannedTimes(planned);
        std::vector<std::string> texts(expected.size());
        std::ranges::transform(expected, texts.begin(), &Date::text);
        const auto expectTimes = [&](std::string mode, Date anchor, Date last) {
            startup::gcnRouting->Execute(
                "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = Null WHERE RUN = '" + run + "'");
            EXPECT_EQ(Calc_Times(mode, anchor, false, run), last) << run << mode;
            EXPECT_EQ(support::rowsOf("SELECT TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUN='" + run +
                                          "' ORDER BY RUNSEQ",
                                      *startup::gcnRouting),
                      texts)
                << run << mode;
        };
        expectTimes("End", expected.back(), expected.front());
        expectTimes("Start", expected.front(), expected.back());
    }
}

}  // namespace runedit
