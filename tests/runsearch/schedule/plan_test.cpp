#include "runsearch/schedule/plan.h"

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/telling.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/runbuilder.h"

namespace schedule {

namespace {

using support::RunBuilder;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto SearchedRuns =
    "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM, 'Smith, Ann' AS EMPNAME FROM ROUTE "
    "RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID";

void fillRuns(const support::TestDistrict& district) {
    fillSmall(district);
    district.sql(data::DatabaseFile::Routing, "DELETE FROM RUN");
    district.sql(data::DatabaseFile::Routing,
                 "INSERT INTO RUNWARNING(RUN, WARNINGTYPE) VALUES ('A2', 'Capacity')");
    const auto routed = [](const char* run) {
        return std::move(RunBuilder(run)
                             .with("INT_ROUTEID", 1)
                             .with("DEADHEAD_BEFORE_TIME", 5)
                             .with("DEADHEAD_AFTER_TIME", 5));
    };
    routed("A1")
        .school("oak")
        .starts("7:00")
        .ends("7:30")
        .bell("7:45")
        .with("PICKUP", true)
        .into(district);
    routed("A2").school("OAK").starts("7:20:30").ends("8:00").with("tuesday", true).into(district);
    routed("NIGHT").starts("23:30").ends("0:20").with("DEADHEAD_BEFORE_TIME", -1).into(district);
    RunBuilder("END").ends("9:00").school("GONE").into(district);
    RunBuilder("NEVER").with("INT_ROUTEID", 0).into(district);
    RunBuilder("LOST").with("INT_ROUTEID", 77).starts("9:00").ends("9:30").into(district);
}

class ReadPlan : public support::DistrictSession {
protected:
    ReadPlan() : DistrictSession(fillRuns), plan(readPlan(*startup::gcnRouting, SearchedRuns)) {}
    const ScheduledRun& run(const char* id) {
        return *std::ranges::find(plan.runs, id, &ScheduledRun::id);
    }
    Plan plan;
};

TEST_F(ReadPlan, TakesEveryRunAsItIsStored) {
    ASSERT_EQ(plan.runs.size(), 6);
    EXPECT_EQ(run("A1").school, run("A2").school);
    EXPECT_EQ(plan.school(run("A1").school).name, "Oak School");
    EXPECT_EQ(run("A2").start, 7 * Hour + 20 * Minute + 30);
    EXPECT_EQ(run("A2").days, 2);
    EXPECT_TRUE(run("A2").hasWarnings && !run("A1").hasWarnings);
    EXPECT_EQ(run("NIGHT").end, Day + 20 * Minute);
    EXPECT_EQ(run("NIGHT").before.time, std::nullopt);
    EXPECT_EQ(run("A1").before.time, 5 * Minute);
    EXPECT_EQ(run("END").start, 9 * Hour);
    EXPECT_EQ(plan.school(run("END").school).name, "GONE");
    EXPECT_EQ(run("NEVER").start, std::nullopt);
    EXPECT_THAT((std::vector{run("NEVER").route, run("LOST").route}), ElementsAre(None, None));
    EXPECT_TRUE(readPlan(*startup::gcnRouting, "").runs.empty());
}

TEST_F(ReadPlan, TellsWhatOverlapsWithTheEmptyTripBetween) {
    const auto chart = layOut(plan, {});
    const auto place = [&](const char* id) {
        return static_cast<int>(&run(id) - plan.runs.data());
    };
    EXPECT_EQ(troublesText(chart.troubles), "1 overlap");
    EXPECT_EQ(countText(plan, chart), "6 runs on 1 route");
    EXPECT_THAT(spokenText(cardOf(plan, chart, place("A2"))),
                HasSubstr("Run A2, overlap overlaps A1 by 10 min, and 5 min empty between"));
    EXPECT_THAT(spokenText(cardOf(plan, chart, place("A1"))),
                HasSubstr("bell 7:45 AM, 15 min after the end"));
    EXPECT_THAT(spokenText(cardOf(plan, chart, place("NEVER"))), HasSubstr("times no times"));
    EXPECT_EQ(chart.rows.front().kind, RowKind::NoTimes);
    EXPECT_EQ(chart.rows.back().kind, RowKind::NoRoute);
    EXPECT_TRUE(isFound(plan, run("A1"), " SMITH") && !isFound(plan, run("LOST"), "smith"));
}

}  // namespace

}  // namespace schedule
