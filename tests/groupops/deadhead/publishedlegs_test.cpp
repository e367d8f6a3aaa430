#include <fmt/format.h>
#include <gtest/gtest.h>

#include "../groupsupport.h"
#include "groupops/deadhead/districtdeadhead.h"
#include "platform/base/value.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"
#include "support/testsession.h"
#include "tools/district/check/checks.h"
#include "tools/district/make/madedistrict.h"
#include "tools/district/make/plan.h"

namespace groupops {
namespace {

using base::Date;

std::int64_t seconds(const ado::Field& minutes) {
    return base::roundHalfEven(minutes.asNumber() * 60);
}

/// The seconds of a bus's dead-heads: before each run, and after the last one.
std::vector<std::int64_t> storedLegs(int bus) {
    ado::Recordset runs;
    runs.Open(
        fmt::format("SELECT RUN.* FROM RUN WHERE RUN.INT_ROUTEID={} ORDER BY RUN.STARTTIME", bus),
        *startup::gcnRouting, ado::CursorType::Static);
    std::vector<std::int64_t> legs;
    for (; !runs.Eof(); runs.MoveNext()) {
        const std::int64_t before = seconds(runs["DEADHEAD_BEFORE_TIME"]);
        EXPECT_EQ(runs["STARTTIME"].Value().asDate().seconds - before,
                  runs["DEADHEAD_BEFORE_STARTTIME"].Value().asDate().seconds);
        legs.push_back(before);
    }
    runs.MoveLast();
    legs.push_back(seconds(runs["DEADHEAD_AFTER_TIME"]));
    return legs;
}

}  // namespace

// The oracle: the sample's runs and buses stand on a published plan, whose dead-heads must come out
// of the travel records.
TEST(PublishedDeadHeads, ComeOutForEveryBus) {
    const tools::district::MadeDistrict district;
    const support::TestSession session;
    session.start(district.folder() + "/vireo");
    startup::gErrorHandling = false;
    support::FakeProgress progress;
    const auto outcome =
        calculateAllRoutes({*startup::gcnRouting, *startup::gcnDeadCross}, true, progress);
    EXPECT_EQ(outcome.done, 31);
    EXPECT_EQ(outcome.failed, 0);
    std::map<int, std::vector<std::int64_t>> published;
    std::size_t count = 0;
    for (const auto& leg : tools::district::readPlan(tools::district::embeddedPlan()).legs) {
        if (leg.action == "deadhead") {
            const auto milliseconds = static_cast<double>(leg.end - leg.start);
            published[leg.bus].push_back(base::roundHalfEven(milliseconds / 1000));
            ++count;
        }
    }
    EXPECT_EQ(count, 90U);
    EXPECT_EQ(published.size(), 31U);
    for (const auto& [bus, legs] : published) {
        EXPECT_EQ(storedLegs(bus), legs) << "bus " << bus;
    }
    startup::closeConnections();
    tools::district::Progress checking;
    EXPECT_TRUE(tools::district::checkDistrict(district.folders(), checking).findings.empty());
}

}  // namespace groupops
