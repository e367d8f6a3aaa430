#include <map>

#include <fmt/format.h>

#include "runedit/validation/finding.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "support/districtsession.h"
#include "support/runbuilder.h"

namespace runedit {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// Run R-AM brings students to school by 8:00 and breaks every rule that it can: it is on route 1,
/// whose vehicle B7 is of type LARGE (60 seats at "Medium", 2 wheelchairs). A is to be served from
/// the right only, B has 3 wheelchairs, TURN is a turn point.
void fillRuns(const support::TestDistrict& district) {
    fillSmall(district);
    const auto sql = [&](const char* text) { district.sql(data::DatabaseFile::Routing, text); };
    sql("UPDATE District SET MaxRideTime = 60, CHECKRUNNUMPASS = 1, CHECKRUNRIGHT = 1, "
        "CHECKRUNEARLYBELL = 1, CHECKRUNLATEBELL = 1, CHECKRUNRIDETIME = 1, CHECKRUNSPECIAL = 1, "
        "CHECKSTOPOVERLAP = 1");
    const auto stop = [](int students, const char* at, int ridden, const char* side) {
        return support::RunStop{.students = students,
                                .at = at,
                                .more = {{"CUM_TIME", ridden}, {"RUN_PICKUP_SIDE", side}},
                                .ofStop = {{"RIGHTSIDE", true}}};
    };
    auto b = stop(1, "7:30", 70, "Right");
    b.stop = 12;
    auto turn = stop(500, "9:00", 90, "left");
    turn.type = "DIRECTIONAL";
    auto school = stop(9, "8:00:01", 20, "left");
    school.type = "SCHOOL";
    school.ofStop = {};
    support::RunBuilder("R-AM")
        .bell("8:00")
        .with("INT_ROUTEID", 1)
        .with("VEHTYPE", "SMALL")
        .with("Capacity", " ")
        .with("OverFill", 100)
        .with("PICKUP", true)
        .stop("A", stop(60, "7:30", 10, "left"))
        .stop("B", b)
        .stop("TURN", turn)
        .stop("SCH", school)
        .into(district);
    sql("INSERT INTO STU_ADDR_TRIPTYPE(INT_STUID, TRIPTYPE, INT_STOPID) VALUES (501, 'AM', 12), "
        "(501, 'PM', 12)");
    sql("INSERT INTO STU_SPECIALNEEDS(INT_STUID, SPECIALNEEDS_CODE) VALUES (501, 'WC'), "
        "(501, 'wc'), (501, 'WC')");
}

/// The places of the checks that found something, from 2 on.
std::string found(const std::string& flags) {
    std::string places;
    for (std::size_t i = 1; i < flags.size(); ++i) {
        places += flags[i] == 'Y' ? fmt::format("{}{}", places.empty() ? "" : " ", i + 1) : "";
    }
    EXPECT_EQ(flags.front(), places.empty() ? 'N' : 'Y');
    return places;
}

class CheckRunTest : public support::DistrictSession {
protected:
    CheckRunTest() : DistrictSession(fillRuns) {}

    static std::vector<std::string> warningTypes() {
        return rows("SELECT WARNINGTYPE FROM RUNWARNING WHERE RUN='R-AM' ORDER BY WARNINGTYPE");
    }
    static std::string total() { return storedRun("TOTAL_STUDENTS", "R-AM"); }
};

TEST_F(CheckRunTest, RecordsAndShowsEveryBreachInOrder) {
    EXPECT_EQ(found(CheckRun("R-AM", 0, true, "Y")), "2 3 5 6 7 8");
    EXPECT_THAT(warningTypes(), ElementsAre("CONFLICTING TIME", "LATE BELL", "PASSENGERS",
                                            "RIDETIME", "RIGHTSIDE", "SPECIAL"));
    const auto shown = session.boxes.shown;
    EXPECT_THAT(shown,
                testing::Each(testing::Field(&base::MsgRequest::icon, base::MsgIcon::Information)));
    EXPECT_THAT(titles(), ElementsAre("Too Many Passengers for Vehicle / Vehicle Type",
                                      "Picking up Right Hand Side Pickup Stops on Left Side",
                                      "Run Arriving After Bell Time of the Run",
                                      "Run has Passengers Riding Too Long.",
                                      "Run has Special Needs Passengers that Vehicle Can't Handle.",
                                      "Run has Stops with Overlapping Times."));
    EXPECT_THAT(shown[0].text, StartsWith("       *** StopID: B has added more passengers"));
    EXPECT_THAT(shown[0].plainWords, StartsWith("*** StopID: B has added more passengers"));
    EXPECT_EQ(onLines("     *** a.  ***     *** b", "     *** "), "*** a.  ***\n*** b");
    EXPECT_THAT(shown[0].text,
                HasSubstr("vehicle assigned to this run is: B7 with a capacity of: 60."));
    EXPECT_THAT(shown[4].text, StartsWith("      *** StopID: B has 3 passengers with the special "
                                          "need of: WC bringing the total"));
    EXPECT_THAT(rows("SELECT RUN, WARNINGDATETIME, WARNINGTEXT FROM RUNWARNING WHERE "
                     "WARNINGTYPE='RIDETIME'"),
                ElementsAre("R-AM|1/31/2026 8:05:09 AM|StopID: B has a ride time greater than the "
                            "max allowed.  Stop's total ride time: 70 minutes max allowed: 60 "
                            "minutes."));
    EXPECT_EQ(total(), "61");
}

TEST_F(CheckRunTest, TheNextValidationReplacesOnlyWhatItChecks) {
    CheckRun("R-AM", 0, false, "Y");
    CheckRun("R-AM", 0, false, "Y");
    EXPECT_EQ(warningTypes().size(), 6U);
    byOthers("INSERT INTO RUNWARNING(RUN, WARNINGTYPE) VALUES ('OTHER', 'LATE BELL')");
    byOthers("UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = NULL, CUM_TIME = NULL, NUM_STUDENTS = NULL");
    EXPECT_EQ(found(CheckRun("R-AM", 0, true, "NNNYYNNY")), "");
    EXPECT_THAT(warningTypes(), ElementsAre("PASSENGERS", "RIDETIME", "RIGHTSIDE", "SPECIAL"));
    EXPECT_THAT(rows("SELECT RUN FROM RUNWARNING WHERE WARNINGTYPE='LATE BELL'"),
                ElementsAre("OTHER"));
    EXPECT_EQ(total(), "61");
    EXPECT_EQ(found(CheckRun("r-am ", 0, true, "Y")), "3 7");
    EXPECT_EQ(total(), "0");
}

TEST_F(CheckRunTest, SwitchesAskForChecksByPlace) {
    for (const auto& [switches, places] :
         std::map<std::string, std::string>{{"Y", "2 3 5 6 7 8"},
                                            {"YNNNNNNN", "2 3 5 6 7 8"},
                                            {"NNNYYNNY", "5 8"},
                                            {"NNNNNY", "6"},
                                            {"NNNNNNNNY", ""},
                                            {"NYyyyyyy", "2"},
                                            {"y", ""},
                                            {"NNY", "3"},
                                            {"", ""}}) {
        EXPECT_EQ(found(CheckRun("R-AM", 0, false, switches)), places) << switches;
    }
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(CheckRunTest, TheDistrictSwitchesACheckOffAndItsWarningsStay) {
    CheckRun("R-AM", 0, false, "Y");
    byOthers("UPDATE District SET CHECKRUNRIGHT = 0, CHECKRUNLATEBELL = 0");
    byOthers("UPDATE STOP SET RIGHTSIDE = 0");
    EXPECT_EQ(found(CheckRun("R-AM", 0, false, "Y")), "2 6 7 8");
    EXPECT_THAT(warningTypes(), Contains("RIGHTSIDE"));
    EXPECT_THAT(warningTypes(), Contains("LATE BELL"));
}

TEST_F(CheckRunTest, ARunHomeIsOnlyCheckedForEarliness) {
    byOthers("UPDATE RUN SET PICKUP = 0 WHERE RUN = 'R-AM'");
    EXPECT_EQ(found(CheckRun("R-AM", 0, false, "NNNYY")), "4");
    EXPECT_THAT(warningTypes(), ElementsAre("EARLY BELL", "EARLY BELL"));
    byOthers("UPDATE RUN SET BELLTIME = NULL WHERE RUN = 'R-AM'");
    EXPECT_EQ(found(CheckRun("R-AM", 0, false, "NNNYY")), "");
    EXPECT_THAT(warningTypes(), IsEmpty());
}

TEST_F(CheckRunTest, ForARouteOnlyPassengersAndNeedsAreItsWarnings) {
    byOthers(
        "INSERT INTO ROUTEWARNING(INT_ROUTEID, RUNID1, WARNINGTYPE) VALUES "
        "(1, 'R-AM', 'SPECIAL'), (2, 'R-AM', 'SPECIAL')");
    EXPECT_EQ(found(CheckRun("R-AM", 1, false, "Y")), "2 3 5 6 7 8");
    EXPECT_THAT(warningTypes(),
                ElementsAre("CONFLICTING TIME", "LATE BELL", "RIDETIME", "RIGHTSIDE"));
    const auto found = rows(
        "SELECT INT_ROUTEID, RUNID1, WARNINGTYPE, WARNINGDATETIME, WARNINGTEXT FROM ROUTEWARNING "
        "ORDER BY INT_ROUTEID, WARNINGTYPE");
    EXPECT_THAT(
        found,
        ElementsAre(StartsWith("1|R-AM|PASSENGERS|1/31/2026 8:05:09 AM|In Run: R-AMStopID: "),
                    StartsWith("1|R-AM|SPECIAL|1/31/2026 8:05:09 AM|In Run: R-AM stopID: B "),
                    StartsWith("2|R-AM|SPECIAL|Null")));
}

TEST_F(CheckRunTest, AVehicleTypeThatIsGoneIsToldOnceAndHasNoSeats) {
    byOthers("UPDATE RUN SET INT_ROUTEID = NULL, VEHTYPE = 'GONE' WHERE RUN = 'R-AM'");
    EXPECT_EQ(found(CheckRun("R-AM", 0, false, "NYNNNNY")), "2 7");
    EXPECT_EQ(lastText(),
              "Warning,  the vehicle type that you assigned to this run is no longer in your "
              "vehicle type table.  Please select a different vehicle type before save this run!");
    EXPECT_THAT(titles(), ElementsAre("Vehicle Type Not Found"));
    EXPECT_THAT(warningTypes(), ElementsAre("PASSENGERS", "PASSENGERS", "SPECIAL"));
}

TEST_F(CheckRunTest, TheSeatsAreThoseOfTheKnownVehicleAtTheLevelExactlyAsWritten) {
    const std::string vehicle = "vehicle assigned to this run is: ";
    byOthers("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 100 WHERE RUN = 'R-AM'");
    for (const auto& [change, told] : std::vector<std::pair<std::string, std::string>>{
             {"RUN SET Capacity = NULL", vehicle + "B7 with a capacity of: 60."},
             {"RUN SET Capacity = 'High'", vehicle + "B7 with a capacity of: 72."},
             {"RUN SET Capacity = ' Low '", vehicle + "B7 with a capacity of: 48."},
             {"RUN SET Capacity = 'high'", vehicle + "B7 with a capacity of: 0."},
             {"RUN SET Capacity = NULL", vehicle + "B7 with a capacity of: 60."},
             {"ROUTE SET VEHICLE = 'B99'", vehicle + "B99 with a capacity of: 16."},
             {"RUN SET INT_ROUTEID = 0, VEHTYPE = NULL",
              "The  vehicle type assigned to this run is:   with a capacity of: 0."}}) {
        byOthers("UPDATE " + change);
        EXPECT_EQ(found(CheckRun("R-AM", 0, false, "NY")), "2");
        EXPECT_THAT(rows("SELECT WARNINGTEXT FROM RUNWARNING"), Contains(HasSubstr(told)))
            << change;
    }
    EXPECT_EQ(found(CheckRun("GONE", 0, true, "Y")), "");
    EXPECT_THAT(titles(), IsEmpty());
}

// Another connection must be able to write while the planner reads a box.
TEST_F(CheckRunTest, NoBoxIsShownWhileTheFileIsLocked) {
    class WritingBoxes : public base::MsgBoxPort {
    public:
        explicit WritingBoxes(const support::TestDistrict& district) : district_(district) {
            base::ports().msgBox = this;
        }
        base::MsgAnswer show(const base::MsgRequest& request) override {
            district_.sql(data::DatabaseFile::Routing,
                          fmt::format("UPDATE RUN SET COMMENT = '{}'", ++boxes));
            return base::defaultAnswer(request.buttons);
        }
        int boxes = 0;

    private:
        const support::TestDistrict& district_;
    };
    byOthers("UPDATE RUN SET INT_ROUTEID = NULL, VEHTYPE = 'GONE' WHERE RUN = 'R-AM'");
    {
        WritingBoxes boxes(district);
        EXPECT_EQ(found(CheckRun("R-AM", 0, true, "Y")), "2 3 5 6 7 8");
        EXPECT_EQ(boxes.boxes, 7);
    }
    base::ports().msgBox = &session.boxes;
    EXPECT_EQ(storedRun("COMMENT, TOTAL_STUDENTS", "R-AM"), "7|61");
}

TEST_F(CheckRunTest, ACheckThatFailsEndsTheProgramAndKeepsWhatWasFoundBefore) {
    byOthers(
        "WITH RECURSIVE n(i) AS (SELECT 5 UNION ALL SELECT i + 1 FROM n WHERE i < 105) INSERT INTO "
        "STOP_TRIPTYPE(RUN, TRIPTYPE, RUNSEQ, INT_STOPID) SELECT 'R-AM', 'AM', i, 14 FROM n");
    EXPECT_THROW(CheckRun("R-AM", 0, false, "Y"), base::EndProgram);
    EXPECT_THAT(lastText(), HasSubstr("Check_StopTimeConflict of Module: mdlValidate_Runs."));
    session.start(district.configFolder());
    EXPECT_EQ(warningTypes().size(), 5U);

    // A form has it counted first.
    EXPECT_EQ(found(checkRunOfAnyLength("R-AM", "Y")), "2 3 5 6 7");
    EXPECT_EQ(lastTitle(), "Too Many Stops");
    EXPECT_THAT(lastText(),
                HasSubstr("run R-AM has 104 stops, and the times of at most 100 stops"));
    titles();
    EXPECT_EQ(found(checkRunOfAnyLength("R-AM", "NY")), "2");
    byOthers("DELETE FROM STOP_TRIPTYPE WHERE RUN='R-AM' AND RUNSEQ > 101");
    EXPECT_EQ(found(checkRunOfAnyLength("R-AM", "NNNNNNNY")), "8");
    EXPECT_THAT(titles(), testing::Not(Contains("Too Many Stops")));
}

}  // namespace
}  // namespace runedit
