#include <fmt/format.h>

#include "../groupsupport.h"
#include "groupops/deadhead/districtdeadhead.h"
#include "groupops/deadhead/mdlDeadHead_Process.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/errors.h"
#include "support/storewatch.h"

namespace groupops {
namespace {

using data::DatabaseFile;
using support::FakeProgress;
using testing::ElementsAre;
using testing::HasSubstr;

/// Garage 900; ways 900-1 (10 minutes), 2-900 (20.5), 2-3 (5); from anywhere to 7 there is 77.
///
/// | Route | Garage | Runs |
/// |---|---|---|
/// | 1: A | 900 | A1 (stops 1 to 2, 7:00-7:30), A2 (3 to 7, 7:45-8:00) |
/// | 2: B | none | B1 (stops none to 5) |
void fillDeadHead(const support::TestDistrict& district) {
    for (const auto* sql :
         {"INSERT INTO District(Back_To_Garage_Gap) VALUES (60)",
          "INSERT INTO SYSTEM(NEEDDEADHEADBUILD) VALUES (1)",
          "INSERT INTO ROUTE(INT_ROUTEID, ROUTEID, GARAGE_STOPID, DEADERROR) VALUES "
          "(1, 'A', 900, 1), (2, 'B', NULL, 0)",
          "INSERT INTO RUN(RUN, INT_ROUTEID, FirstStop, LastStop, STARTTIME, ENDTIME, "
          "DEADHEAD_BEFORE_TIME) VALUES "
          "('A2', 1, 3, 7, '1899-12-30 07:45:00', '1899-12-30 08:00:00', 4), "
          "('A1', 1, 1, 2, '1899-12-30 07:00:00', '1899-12-30 07:30:00', 4), "
          "('B1', 2, NULL, 5, '1899-12-30 07:00:00', '1899-12-30 07:30:00', 4), "
          "('LOOSE', NULL, 1, 2, NULL, NULL, 4)"}) {
        district.sql(DatabaseFile::Routing, sql);
    }
    district.sql(DatabaseFile::DeadCross,
                 "INSERT INTO DEADHEAD_CROSS(DEST_INT_STOPID, ENDPOINT_INT_STOPID, TRAVEL_MINUTES, "
                 "TRAVEL_MILES) VALUES (1, 900, 10.1, 4.3), (2, 900, 20.5, 8), (3, 2, 5, 2), "
                 "(7, 800, 77, 30), (6, 8, NULL, NULL)");
}

class DeadHeadTest : public support::DistrictSession {
protected:
    DeadHeadTest() : DistrictSession(fillDeadHead) { startup::gErrorHandling = false; }

    static DeadHeadData data() { return {*startup::gcnRouting, *startup::gcnDeadCross}; }
    /// Minutes, miles and start times before and after a run, and its flags.
    static std::string deadHead(const std::string& run) {
        return storedRun(
            "DEADHEAD_BEFORE_TIME, DEADHEAD_AFTER_TIME, DEADHEAD_MILES_BEFORE, "
            "DEADHEAD_MILES_AFTER, DEADHEAD_BEFORE_STARTTIME, DEADHEAD_AFTER_STARTTIME, "
            "SHOW_BOTH_BEG, SHOW_BOTH_END",
            run);
    }
    static std::vector<std::string> routeMarks() {
        return rows("SELECT ROUTEID, DEADERROR FROM ROUTE ORDER BY ROUTEID");
    }
};

}  // namespace

TEST_F(DeadHeadTest, FindsTravelEitherWayRoundThenAnyFromTheFirstStop) {
    EXPECT_EQ(Get_DeadHead_Travel(900, 2), (Travel{20.5, 8}));
    EXPECT_EQ(Get_DeadHead_Travel(2, 900), (Travel{20.5, 8}));
    EXPECT_EQ(Get_DeadHead_Travel(7, 900), (Travel{77, 30}));
    EXPECT_EQ(Get_DeadHead_Travel(900, 7), Travel{});
    EXPECT_EQ(Get_DeadHead_Travel(6, 8), Travel{});
}

TEST_F(DeadHeadTest, WritesARouteInTheOrderOfItsStartTimes) {
    support::StoreWatch::commits = 0;
    EXPECT_TRUE(Calc_Route_DeadHead(1, 900));
    EXPECT_EQ(support::StoreWatch::commits, 1);
    EXPECT_EQ(deadHead("A1"), "10.1|5|4.3|2|6:49:54 AM|7:35:00 AM|False|False");
    EXPECT_EQ(deadHead("A2"), "5|77|2|30|7:40:00 AM|9:17:00 AM|True|False");
    EXPECT_EQ(deadHead("B1"), "4|Null|Null|Null|Null|Null|False|False");
    EXPECT_FALSE(Calc_Route_DeadHead(2, 0));
    EXPECT_EQ(deadHead("B1"), "-3|-3|-3|-3|Null|Null|True|False");
    EXPECT_TRUE(Calc_Route_DeadHead(99, 900)) << "a route without runs";
}

TEST_F(DeadHeadTest, RefusesTheFiftyFirstRunAndKeepsWhatWasWritten) {
    for (int i = 3; i <= 50; ++i) {
        byOthers(
            fmt::format("INSERT INTO RUN(RUN, INT_ROUTEID, FirstStop, LastStop, STARTTIME, "
                        "ENDTIME) VALUES ('X{0}', 1, 7, 7, '1899-12-30 08:{0}:00', "
                        "'1899-12-30 08:{0}:30')",
                        i + 6));
    }
    EXPECT_TRUE(Calc_Route_DeadHead(1, 900));
    byOthers("INSERT INTO RUN(RUN, INT_ROUTEID) VALUES ('ONE-MORE', 1)");
    EXPECT_EQ(support::errorOf([] { return Calc_Route_DeadHead(1, 900); }),
              base::errors::SubscriptOutOfRange);
    EXPECT_EQ(deadHead("A1"), "0|0|Null|Null|Null|Null|False|False") << "cleared before the fault";
    EXPECT_NO_THROW(startup::gcnRouting->Execute("UPDATE ROUTE SET COMMENT = 'unlocked'"));

    // In a calculation of all routes it has failed, and the others are calculated.
    FakeProgress progress;
    const auto outcome = calculateAllRoutes(data(), true, progress);
    EXPECT_EQ(outcome.done * 10 + outcome.failed, 22);
    EXPECT_EQ(deadHead("A1"), "-2|-2|Null|Null|Null|Null|False|False");
    EXPECT_EQ(deadHead("B1"), "-3|-3|-3|-3|Null|Null|True|False");
    EXPECT_EQ(openLegsTable(outcome, *startup::gcnRouting).text(0, 3),
              "The route has 51 runs; 50 are possible. It was left as it was");
}

TEST_F(DeadHeadTest, CalculatesAllRoutesAndSaysWhatIsMissing) {
    FakeProgress progress;
    const auto outcome = calculateAllRoutes(data(), true, progress);
    EXPECT_EQ(closingMessage(outcome),
              "Dead Head Time calculated for 2.  1 Routes had 1 or more runs where the dead head "
              "time could not be calculated.");
    EXPECT_EQ(progress.texts.front(), "Calculating Dead Head Time for all runs in Route: A.");
    EXPECT_EQ(progress.percents, (std::vector<double>{50, 100}));
    EXPECT_THAT(routeMarks(), ElementsAre("A|False", "B|True")) << "the reset marks all";
    EXPECT_EQ(deadHead("LOOSE"), "-2|-2|Null|Null|Null|Null|False|False");
    EXPECT_EQ(lastCalculation(*startup::gcnRouting), "Last calculated 1/31/2026 8:05:09 AM.");
    const auto open = openLegsTable(outcome, *startup::gcnRouting);
    ASSERT_EQ(open.rowCount(), 2U);
    EXPECT_EQ(open.text(0, 0) + open.text(0, 1) + open.text(0, 2) + open.text(0, 3),
              "BB1beforeThe stop it starts from is not set");
    EXPECT_EQ(open.text(1, 3), "The stop it ends at is not set");
}

TEST_F(DeadHeadTest, LeavesTheRestAloneAfterAStop) {
    FakeProgress afterOne([](int turn) { return turn == 2; });
    const auto outcome = calculateAllRoutes(data(), false, afterOne);
    EXPECT_EQ(whatWasLeft(outcome, deadHeadWording(outcome.wasReset)),
              "1 of 2 routes calculated and saved.\n\nYou stopped the calculation.  The runs of "
              "the others are as they were before.  A calculation of all routes is still due.");
    EXPECT_THAT(deadHeadWording(true).rest, HasSubstr("are marked as not calculated."));
    EXPECT_THAT(routeMarks(), ElementsAre("A|False", "B|False"));
    EXPECT_EQ(deadHead("B1"), "4|Null|Null|Null|Null|Null|False|False");
    EXPECT_EQ(lastCalculation(*startup::gcnRouting), "Not calculated yet.");

    FakeProgress quiet;
    calculateAllRoutes(data(), false, quiet);
    FakeProgress atOnce([](int) { return true; });
    calculateAllRoutes(data(), true, atOnce);
    EXPECT_THAT(lastCalculation(*startup::gcnRouting), HasSubstr("A new calculation is due."));
}

}  // namespace groupops
