#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/ado/recordset.h"
#include "platform/base/ports.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "startup/base/session.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace runedit {
namespace {

using data::DatabaseFile;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// Run R-AM brings students to school by 8:00 and breaks every rule that it can: it is on route 1,
/// whose vehicle B7 is of type LARGE (60 seats at "Medium", 2 wheelchairs).
///
/// | Stop | Students | At | Ridden | |
/// |---|---|---|---|---|
/// | A | 60 | 7:30 | 10 | right side only, served from the left |
/// | B | 1 | 7:30 | 70 | 3 wheelchairs |
/// | TURN | 500 | 9:00 | 90 | a turn point |
/// | SCH | 9 | 8:00:01 | 20 | the school |
class CheckRunTest : public testing::Test {
protected:
    CheckRunTest() {
        support::fillSmall(district_);
        routing(
            "UPDATE District SET MaxRideTime = 60, CHECKRUNNUMPASS = 1, CHECKRUNRIGHT = 1, "
            "CHECKRUNEARLYBELL = 1, CHECKRUNLATEBELL = 1, CHECKRUNRIDETIME = 1, "
            "CHECKRUNSPECIAL = 1, CHECKSTOPOVERLAP = 1");
        routing(
            "INSERT INTO STOP(INT_STOPID, STOPID, STOPTYPE, RIGHTSIDE) VALUES "
            "(11, 'A', 'REGULAR', 1), (12, 'B', 'REGULAR', 1), (13, 'TURN', 'DIRECTIONAL', 0), "
            "(14, 'SCH', 'SCHOOL', 0)");
        routing(
            "INSERT INTO RUN(RUN, INT_ROUTEID, VEHTYPE, Capacity, OverFill, PICKUP, BELLTIME, "
            "TOTAL_STUDENTS) VALUES "
            "('R-AM', 1, 'SMALL', ' ', 100, 1, '1899-12-30 08:00:00', NULL)");
        routing(
            "INSERT INTO STOP_TRIPTYPE(RUN, TRIPTYPE, RUNSEQ, INT_STOPID, NUM_STUDENTS, "
            "TIME_AT_STOP, CUM_TIME, RUN_PICKUP_SIDE) VALUES "
            "('R-AM', 'AM', 1, 11, 60, '1899-12-30 07:30:00', 10, 'left'), "
            "('R-AM', 'AM', 2, 12, 1, '1899-12-30 07:30:00', 70, 'Right'), "
            "('R-AM', 'AM', 3, 13, 500, '1899-12-30 09:00:00', 90, 'left'), "
            "('R-AM', 'AM', 4, 14, 9, '1899-12-30 08:00:01', 20, 'left')");
        routing(
            "INSERT INTO STU_ADDR_TRIPTYPE(INT_STUID, TRIPTYPE, INT_STOPID) VALUES "
            "(501, 'AM', 12), (501, 'PM', 12)");
        routing(
            "INSERT INTO STU_SPECIALNEEDS(INT_STUID, SPECIALNEEDS_CODE) VALUES "
            "(501, 'WC'), (501, 'wc'), (501, 'WC')");
        session_.start(district_.configFolder());
    }

    void routing(const std::string& sql) const { district_.sql(DatabaseFile::Routing, sql); }

    /// The rows of a query, cells apart by "|".
    static std::vector<std::string> rowsOf(const std::string& sql) {
        ado::Recordset rows;
        rows.Open(sql, *startup::gcnRouting);
        std::vector<std::string> texts;
        for (; !rows.Eof(); rows.MoveNext()) {
            std::string text;
            for (int i = 0; i < rows.fieldCount(); ++i) {
                const auto value = rows.Fields(i).Value();
                text += (i == 0 ? "" : "|") + (value.isNull() ? "Null" : value.asText());
            }
            texts.push_back(text);
        }
        return texts;
    }

    static std::vector<std::string> warningTypes() {
        return rowsOf("SELECT WARNINGTYPE FROM RUNWARNING WHERE RUN='R-AM' ORDER BY WARNINGTYPE");
    }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> titles;
        for (const auto& box : session_.boxes.shown) {
            EXPECT_EQ(box.icon, base::MsgIcon::Information);
            titles.push_back(box.title);
        }
        return titles;
    }

    support::TestDistrict district_;
    support::TestSession session_;
};

TEST_F(CheckRunTest, RecordsAndShowsEveryBreachInOrder) {
    EXPECT_EQ(CheckRun("R-AM", 0, true, "Y"), "YYYNYYYY");
    EXPECT_THAT(warningTypes(), ElementsAre("CONFLICTING TIME", "LATE BELL", "PASSENGERS",
                                            "RIDETIME", "RIGHTSIDE", "SPECIAL"));
    EXPECT_THAT(titles(), ElementsAre("Too Many Passengers for Vehicle / Vehicle Type",
                                      "Picking up Right Hand Side Pickup Stops on Left Side",
                                      "Run Arriving After Bell Time of the Run",
                                      "Run has Passengers Riding Too Long.",
                                      "Run has Special Needs Passengers that Vehicle Can't Handle.",
                                      "Run has Stops with Overlapping Times."));
    const auto& shown = session_.boxes.shown;
    EXPECT_THAT(shown[0].text, StartsWith("       *** StopID: B has added more passengers"));
    EXPECT_THAT(shown[0].text,
                HasSubstr("vehicle assigned to this run is: B7 with a capacity of: 60."));
    EXPECT_THAT(shown[4].text, StartsWith("      *** StopID: B has 3 passengers with the special "
                                          "need of: WC bringing the total"));
    EXPECT_THAT(rowsOf("SELECT RUN, WARNINGDATETIME, WARNINGTEXT FROM RUNWARNING WHERE "
                       "WARNINGTYPE='RIDETIME'"),
                ElementsAre("R-AM|1/31/2026 8:05:09 AM|StopID: B has a ride time greater than the "
                            "max allowed.  Stop's total ride time: 70 minutes max allowed: 60 "
                            "minutes."));
    EXPECT_THAT(rowsOf("SELECT TOTAL_STUDENTS FROM RUN WHERE RUN='R-AM'"), ElementsAre("61"));
}

TEST_F(CheckRunTest, TheNextValidationReplacesOnlyWhatItChecks) {
    CheckRun("R-AM", 0, false, "Y");
    CheckRun("R-AM", 0, false, "Y");
    EXPECT_EQ(warningTypes().size(), 6U);
    routing("INSERT INTO RUNWARNING(RUN, WARNINGTYPE) VALUES ('OTHER', 'LATE BELL')");
    routing("UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = NULL, CUM_TIME = NULL, NUM_STUDENTS = NULL");
    EXPECT_EQ(CheckRun("R-AM", 0, true, "NNNYYNNY"), "NNNNNNNN");
    EXPECT_THAT(warningTypes(), ElementsAre("PASSENGERS", "RIDETIME", "RIGHTSIDE", "SPECIAL"));
    EXPECT_THAT(rowsOf("SELECT RUN FROM RUNWARNING WHERE WARNINGTYPE='LATE BELL'"),
                ElementsAre("OTHER"));
    EXPECT_THAT(rowsOf("SELECT TOTAL_STUDENTS FROM RUN WHERE RUN='R-AM'"), ElementsAre("61"));
    EXPECT_EQ(CheckRun("r-am ", 0, true, "Y"), "YNYNNNYN");
    EXPECT_THAT(rowsOf("SELECT TOTAL_STUDENTS FROM RUN WHERE RUN='R-AM'"), ElementsAre("0"));
}

TEST_F(CheckRunTest, SwitchesAskForChecksByPlace) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"Y", "YYYNYYYY"},         {"YNNNNNNN", "YYYNYYYY"}, {"NNNYYNNY", "YNNNYNNY"},
        {"NNNNNYNN", "YNNNNYNN"},  {"NNNNNY", "YNNNNYNN"},   {"NNY", "YNYNNNNN"},
        {"NNNNNNNNY", "NNNNNNNN"}, {"NYyyyyyy", "YYNNNNNN"}, {"y", "NNNNNNNN"},
        {"", "NNNNNNNN"},          {"N", "NNNNNNNN"}};
    for (const auto& [switches, flags] : cases) {
        EXPECT_EQ(CheckRun("R-AM", 0, false, switches), flags) << switches;
    }
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(CheckRunTest, TheDistrictSwitchesACheckOffAndItsWarningsStay) {
    CheckRun("R-AM", 0, false, "Y");
    routing("UPDATE District SET CHECKRUNRIGHT = 0, CHECKRUNLATEBELL = 0");
    routing("UPDATE STOP SET RIGHTSIDE = 0");
    EXPECT_EQ(CheckRun("R-AM", 0, false, "Y"), "YYNNNYYY");
    EXPECT_THAT(warningTypes(), Contains("RIGHTSIDE"));
    EXPECT_THAT(warningTypes(), Contains("LATE BELL"));
}

TEST_F(CheckRunTest, ARunHomeIsOnlyCheckedForEarliness) {
    routing("UPDATE RUN SET PICKUP = 0 WHERE RUN = 'R-AM'");
    EXPECT_EQ(CheckRun("R-AM", 0, false, "NNNYY"), "YNNYNNNN");
    EXPECT_THAT(warningTypes(), ElementsAre("EARLY BELL", "EARLY BELL"));
    routing("UPDATE RUN SET BELLTIME = NULL WHERE RUN = 'R-AM'");
    EXPECT_EQ(CheckRun("R-AM", 0, false, "NNNYY"), "NNNNNNNN");
    EXPECT_THAT(warningTypes(), IsEmpty());
}

TEST_F(CheckRunTest, ForARouteOnlyPassengersAndNeedsAreItsWarnings) {
    routing(
        "INSERT INTO ROUTEWARNING(INT_ROUTEID, RUNID1, WARNINGTYPE) VALUES "
        "(1, 'R-AM', 'SPECIAL'), (2, 'R-AM', 'SPECIAL')");
    EXPECT_EQ(CheckRun("R-AM", 1, false, "Y"), "YYYNYYYY");
    EXPECT_THAT(warningTypes(),
                ElementsAre("CONFLICTING TIME", "LATE BELL", "RIDETIME", "RIGHTSIDE"));
    const auto rows = rowsOf(
        "SELECT INT_ROUTEID, RUNID1, WARNINGTYPE, WARNINGDATETIME, WARNINGTEXT FROM ROUTEWARNING "
        "ORDER BY INT_ROUTEID, WARNINGTYPE");
    EXPECT_THAT(
        rows, ElementsAre(StartsWith("1|R-AM|PASSENGERS|1/31/2026 8:05:09 AM|In Run: R-AMStopID: "),
                          StartsWith("1|R-AM|SPECIAL|1/31/2026 8:05:09 AM|In Run: R-AM stopID: B "),
                          StartsWith("2|R-AM|SPECIAL|Null")));
}

TEST_F(CheckRunTest, TheCapacityIsThatOfTheLevelExactlyAsWritten) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"NULL", "60"}, {"'High'", "72"}, {"' Low '", "48"}, {"'high'", "0"}, {"'Some'", "0"}};
    routing("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 100 WHERE RUN = 'R-AM'");
    for (const auto& [level, seats] : cases) {
        routing(fmt::format("UPDATE RUN SET Capacity = {} WHERE RUN = 'R-AM'", level));
        CheckRun("R-AM", 0, false, "NY");
        EXPECT_THAT(rowsOf("SELECT WARNINGTEXT FROM RUNWARNING"),
                    testing::Each(HasSubstr("with a capacity of: " + seats + ".")))
            << level;
    }
}

TEST_F(CheckRunTest, AVehicleTypeThatIsGoneIsToldOnceAndHasNoSeats) {
    routing("UPDATE RUN SET INT_ROUTEID = NULL, VEHTYPE = 'GONE' WHERE RUN = 'R-AM'");
    EXPECT_EQ(CheckRun("R-AM", 0, false, "NYNNNNY"), "YYNNNNYN");
    ASSERT_THAT(titles(), ElementsAre("Vehicle Type Not Found"));
    EXPECT_EQ(session_.boxes.shown[0].text,
              "Warning,  the vehicle type that you assigned to this run is no longer in your "
              "vehicle type table.  Please select a different vehicle type before save this run!");
    EXPECT_THAT(warningTypes(), ElementsAre("PASSENGERS", "PASSENGERS", "SPECIAL"));
}

TEST_F(CheckRunTest, WithoutAVehicleTypeThereAreNoSeatsAndNothingIsAsked) {
    routing("UPDATE RUN SET INT_ROUTEID = 0, VEHTYPE = NULL WHERE RUN = 'R-AM'");
    EXPECT_EQ(CheckRun("R-AM", 0, false, "NY"), "YYNNNNNN");
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(rowsOf("SELECT WARNINGTEXT FROM RUNWARNING"),
                Contains(HasSubstr("The  vehicle type assigned to this run is:   with a capacity "
                                   "of: 0.")));
}

TEST_F(CheckRunTest, AnUnknownVehicleKeepsTheRunsOwnType) {
    routing("UPDATE ROUTE SET VEHICLE = 'B99'");
    CheckRun("R-AM", 0, false, "NY");
    EXPECT_THAT(
        rowsOf("SELECT WARNINGTEXT FROM RUNWARNING"),
        Contains(HasSubstr(" vehicle assigned to this run is: B99 with a capacity of: 16.")));
}

TEST_F(CheckRunTest, ARunThatIsNotThereHasNothingToFind) {
    EXPECT_EQ(CheckRun("GONE", 0, true, "Y"), "NNNNNNNN");
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
            district_.sql(DatabaseFile::Routing,
                          fmt::format("UPDATE RUN SET COMMENT = '{}'", ++boxes));
            return base::defaultAnswer(request.buttons);
        }
        int boxes = 0;

    private:
        const support::TestDistrict& district_;
    };
    routing("UPDATE RUN SET INT_ROUTEID = NULL, VEHTYPE = 'GONE' WHERE RUN = 'R-AM'");
    {
        WritingBoxes boxes(district_);
        EXPECT_EQ(CheckRun("R-AM", 0, true, "Y"), "YYYNYYYY");
        EXPECT_EQ(boxes.boxes, 7);
    }
    base::ports().msgBox = &session_.boxes;
    EXPECT_THAT(rowsOf("SELECT COMMENT, TOTAL_STUDENTS FROM RUN WHERE RUN='R-AM'"),
                ElementsAre("7|61"));
}

TEST_F(CheckRunTest, ACheckThatFailsEndsTheProgramAndKeepsWhatWasFoundBefore) {
    for (int i = 0; i < 101; ++i) {
        routing(
            fmt::format("INSERT INTO STOP_TRIPTYPE(RUN, TRIPTYPE, RUNSEQ, INT_STOPID) VALUES "
                        "('R-AM', 'AM', {}, 14)",
                        i + 5));
    }
    EXPECT_THROW(CheckRun("R-AM", 0, false, "Y"), base::EndProgram);
    ASSERT_FALSE(session_.boxes.shown.empty());
    EXPECT_THAT(session_.boxes.shown.back().text,
                HasSubstr("Check_StopTimeConflict of Module: mdlValidate_Runs."));
    session_.start(district_.configFolder());
    EXPECT_EQ(warningTypes().size(), 5U);
}

}  // namespace
}  // namespace runedit
