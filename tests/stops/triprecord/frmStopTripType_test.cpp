#include "stops/triprecord/frmStopTripType.h"

#include <QAbstractItemModel>

#include "startup/base/session.h"
#include "stops/triprecord/stopstudents.h"
#include "stops/triprecord/triptimes.h"
#include "support/formtest.h"
#include "support/runbuilder.h"

namespace stops {
namespace {

using base::MsgAnswer;
using support::joined;
using support::RunBuilder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Run R brings students to school; its stop B, record 43, may be served from the right side only,
/// and Kim, who has two needs, and Lee board there. Record 50 is B's in the afternoon, on no run.
void fillTrips(const support::TestDistrict& district) {
    fillSmall(district);
    RunBuilder("R")
        .with("PICKUP", true)
        .bell("8:00")
        .starts("7:00")
        .ends("7:30")
        .stop("A", {.load = 1, .drive = 0, .students = 10, .at = "7:00", .id = 41, .stop = 11})
        .stop("TURN", {.load = 0, .drive = 3, .type = "DIRECTIONAL", .id = 42})
        .stop("B", {.load = 2.3533332,
                    .drive = 9,
                    .students = 5,
                    .at = "7:10",
                    .id = 43,
                    .stop = 13,
                    .more = {{"RUN_PICKUP_SIDE", "left"}},
                    .ofStop = {{"RIGHTSIDE", true}, {"COMMENT", "Gate code 7"}}})
        .stop("SCH", {.load = 1, .drive = 10, .at = "7:30", .type = "SCHOOL", .id = 44})
        .into(district);
    RunBuilder("")
        .tripType("PM")
        .stop("B", {.load = 1, .students = 3, .id = 50, .more = {{"RUN_PICKUP_SIDE", "both"}}})
        .into(district);
    for (const auto* sql :
         {"UPDATE District SET CHECKRUNLATEBELL = 1, CHECKSTOPOVERLAP = 1",
          "INSERT INTO STUDENT(INT_STUID, STUID, LASTNAME, FIRSTNAME, SCHOOL) VALUES "
          "(502, 'ST2', 'Adams', 'Lee', 'OAK')",
          "INSERT INTO STU_ADDR_TRIPTYPE(INT_STUID, ADDRESSID, TRIPTYPE, INT_STOPID) VALUES "
          "(501, 1, 'AM', 13), (501, 2, 'AM', 13), (502, 3, 'AM', 13), (502, 3, 'PM', 11)",
          "INSERT INTO STU_SPECIALNEEDS(INT_STUID, SPECIALNEEDS_CODE) VALUES "
          "(501, 'WC'), (501, 'AIDE')"}) {
        district.sql(data::DatabaseFile::Routing, sql);
    }
}

constexpr auto RecordB = "5|2.3533332|9|0|7:10:00 AM|left|True|Gate code 7|Null";

class StopTripForm : public support::FormTest<> {
protected:
    StopTripForm() : FormTest(fillTrips) { startup::gCommandLine = "PLANNER"; }

    frmStopTripType& form() override { return made<frmStopTripType>(); }
    void open(int id) {
        form().edit(id);
        form().whenSaved([this] { ++saved; });
        form().load();
    }
    static std::string record(int id) {
        return stored(
            "SELECT NUM_STUDENTS, LOAD_TIME, TIME_TOSTOP, DIST_TOSTOP, TIME_AT_STOP,"
            " RUN_PICKUP_SIDE, STOP_TRIPTYPE.ACTIVE, COMMENT, ChangedBy FROM STOP INNER JOIN"
            " STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE ID=" +
            std::to_string(id));
    }
    static std::string timesOfRun() {
        return joined(rows("SELECT TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUN='R' ORDER BY RUNSEQ"));
    }
    static std::string spanOfRun() {
        return stored("SELECT STARTTIME, ENDTIME, ChangedBy FROM RUN WHERE RUN='R'");
    }
    static TripRecord read(int id) {
        return TripRecord(*data::readRecord(*startup::gcnRouting, tripFields(), tripRecordSql(id)));
    }
    /// Another program holds the file from the moment that the saved record is shown.
    void holdOnceSaved() {
        QObject::connect(list("StudentList").model(), &QAbstractItemModel::modelReset, &form(),
                         [this] { held = held ? held : heldByOthers(); });
    }

    int saved = 0;
    std::shared_ptr<void> held;
};

TEST_F(StopTripForm, SavesWhatWasChangedAndChecksTheRun) {
    open(43);
    EXPECT_EQ(text("LOAD_TIME") + text("TIME_AT_STOP") + text("RUN_PICKUP_SIDE"),
              "2.3507:10 AMLeft");
    EXPECT_TRUE(isShown("RightSideOnly"));
    EXPECT_THAT(text("RunHead"), HasSubstr("stop 3 of 4"));
    type("NUM_STUDENTS", " 12 ");
    type("TIME_AT_STOP", "8:05 am");
    type("RUN_PICKUP_SIDE", "Right");
    click("OK");
    // What was rounded for the eye only keeps its decimals.
    EXPECT_EQ(record(43), "12|2.3533332|9|0|8:05:00 AM|right|True|Gate code 7|PLANNER");
    const auto* stamps = "SELECT STATUSCHGDT, changeddt FROM STOP_TRIPTYPE WHERE ID=43";
    EXPECT_EQ(stored(stamps), "Null|1/31/2026 8:05:09 AM");
    EXPECT_EQ(text("Status"), "Stop B saved.");
    EXPECT_THAT(rows("SELECT WARNINGTYPE FROM RUNWARNING WHERE RUN='R' ORDER BY WARNINGTYPE"),
                ElementsAre("CONFLICTING TIME", "LATE BELL"));
    EXPECT_EQ(lastTitle(), "Run has Stops with Overlapping Times.");
    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_EQ(saved, 1);

    type("TIME_TOSTOP", "8.5");
    type("DIST_TOSTOP", "2.345");
    leave("DIST_TOSTOP");
    EXPECT_EQ(text("DIST_TOSTOP"), "2.35");
    type("TIME_AT_STOP", "7:20");
    type("Comment", "Ask for O'Hara's \"gate\"");
    check("Active", false);
    click("OK");
    EXPECT_EQ(record(43),
              "12|2.3533332|8.5|2.35|7:20:00 AM|right|False|Ask for O'Hara's \"gate\"|PLANNER");
    EXPECT_EQ(stored(stamps), "1/31/2026 8:05:09 AM|1/31/2026 8:05:09 AM");
    EXPECT_TRUE(form().closeForm());
}

TEST_F(StopTripForm, RefusesWhatCannotBeSaved) {
    open(43);
    const struct {
        const char* box;
        std::string typed;
        std::string title;
    } cases[] = {{"NUM_STUDENTS", "", "Invalid Number of Passengers"},
                 {"NUM_STUDENTS", "2.5", "Invalid Number of Passengers"},
                 {"LOAD_TIME", "1e2", "Invalid Load Time"},
                 {"TIME_TOSTOP", "1000", "Invalid Driving Time"},
                 {"DIST_TOSTOP", "999.996", "Invalid Distance"},
                 {"TIME_AT_STOP", "25:00", "Invalid Time at Stop"},
                 {"TIME_AT_STOP", "  ", "Blank Time at Stop"},
                 {"Comment", "\x1b[2J", "Invalid Comment"},
                 {"Comment", std::string(256, 'x'), "Comment Too Long"}};
    for (const auto& [box, typed, title] : cases) {
        type(box, typed);
        click("OK");
        EXPECT_THAT(titles(), ElementsAre(title)) << typed;
        EXPECT_TRUE(isRed(box)) << typed;
        EXPECT_EQ(form().focusWidget(), &control(box));
        EXPECT_EQ(record(43), RecordB) << box << ": " << typed;
        answer(MsgAnswer::No);
        form().edit(43);
        EXPECT_FALSE(isRed(box));
        titles();
    }
    EXPECT_EQ(saved, 0);
}

TEST_F(StopTripForm, TellsThatOthersMovedTheStopBeforeItSaves) {
    for (const auto& [change, told] :
         {std::pair("RUN = '101-AM'", "Run: was \"R\", is now \"101-AM\""),
          std::pair("RUNSEQ = 9", "Place on the run: was 3, is now 9")}) {
        open(43);
        type("DIST_TOSTOP", "2.5");
        byOthers(std::string("UPDATE STOP_TRIPTYPE SET ") + change + " WHERE ID = 43");
        answer(MsgAnswer::No);
        click("OK");
        EXPECT_THAT(texts(), ElementsAre(HasSubstr("\n\n" + std::string(told) + "\n\n")));
        EXPECT_EQ(record(43), RecordB);
        EXPECT_EQ(text("DIST_TOSTOP"), "0");
    }
    EXPECT_THAT(text("RunHead"), HasSubstr("Run 101-AM"));
    EXPECT_EQ(saved, 0);
}

TEST_F(StopTripForm, ShowsBothSidesOfAConflictAndSavesOnTheNextOk) {
    open(43);
    type("NUM_STUDENTS", "9");
    byOthers(
        "UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 7, LOAD_TIME = 3, ChangedBy = 'CLERK', "
        "changeddt = '2026-01-31 08:05:00' WHERE ID = 43");
    for (const auto& [given, boxes] :
         {std::pair(MsgAnswer::Cancel, "9 2.35"), std::pair(MsgAnswer::Yes, "9 3")}) {
        answer(given);
        click("OK");
        EXPECT_THAT(lastText(),
                    HasSubstr("Oops, CLERK has changed this stop's trip record since you opened it."
                              "  Nothing was saved yet.\n\n"
                              "Passengers: was 5, is now 7, you entered 9\nLoad time: was 2.35"));
        EXPECT_EQ(text("NUM_STUDENTS") + " " + text("LOAD_TIME"), boxes);
    }
    EXPECT_EQ(saved, 0);
    click("OK");
    EXPECT_EQ(record(43), "9|3|9|0|7:10:00 AM|left|True|Gate code 7|PLANNER");

    byOthers("DELETE FROM STOP_TRIPTYPE WHERE ID = 43");
    click("OK");
    EXPECT_EQ(lastTitle(), "Trip Record Deleted");
    EXPECT_FALSE(isEnabled("OK"));
    EXPECT_TRUE(form().closeForm());
}

TEST_F(StopTripForm, SaysWhatWasSavedBeforeALock) {
    open(43);
    holdOnceSaved();
    type("NUM_STUDENTS", "9");
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Run Not Checked"));
    held.reset();
    type("TIME_AT_STOP", "7:20");
    click("CalcTimes");
    EXPECT_THAT(titles(), ElementsAre("Times Not Calculated"));
    EXPECT_EQ(record(43), "9|2.3533332|9|0|7:20:00 AM|left|True|Gate code 7|PLANNER");
    EXPECT_EQ(spanOfRun(), "7:00:00 AM|7:30:00 AM|Null");
    EXPECT_TRUE(form().closeForm());
}

TEST_F(StopTripForm, RecalculatesAroundWhatWasTyped) {
    open(43);
    // 7:00 + load 1 + drive 9 is 7:10; 7:10 + load 2:21 + drive 10 is 7:22:21.
    type("TIME_AT_STOP", "720");
    click("CalcTimes");
    EXPECT_EQ(timesOfRun(), "7:10:00 AM Null 7:20:00 AM 7:32:21 AM");
    EXPECT_EQ(spanOfRun(), "7:10:00 AM|7:32:21 AM|PLANNER");
    EXPECT_EQ(text("Status"), "Times of run R recalculated.");
    EXPECT_THAT(text("RunHead"), HasSubstr("Starts 07:10 AM, ends 07:32 AM"));
    // It stays the fixed point where an earlier stop has the same time.
    type("TIME_AT_STOP", "7:10");
    click("CalcTimes");
    EXPECT_EQ(timesOfRun(), "7:00:00 AM Null 7:10:00 AM 7:22:21 AM");
    EXPECT_EQ(spanOfRun(), "7:00:00 AM|7:22:21 AM|PLANNER");

    byOthers("UPDATE STOP_TRIPTYPE SET TIME_TOSTOP = NULL WHERE ID = 44");
    type("TIME_AT_STOP", "7:12");
    click("CalcTimes");
    EXPECT_EQ(lastTitle(), "Minutes Missing");
    EXPECT_THAT(lastText(), HasSubstr("stop SCH"));
    EXPECT_EQ(timesOfRun(), "7:00:00 AM Null 7:12:00 AM 7:22:21 AM");
    EXPECT_EQ(saved, 3);
}

TEST_F(StopTripForm, WalksAlongTheRunAndAsksBeforeTypedTextIsLost) {
    open(41);
    EXPECT_FALSE(isEnabled("PreviousStop"));
    click("NextStop");
    EXPECT_FALSE(isEnabled("CalcTimes"));
    click("NextStop");
    type("Comment", "");
    for (const auto given : {MsgAnswer::Cancel, MsgAnswer::Yes}) {
        answer(given);
        click("NextStop");
        EXPECT_EQ(lastTitle(), "Stop Not Saved");
        EXPECT_EQ(text("Heading"), given == MsgAnswer::Cancel ? "Stop B" : "Stop SCH");
    }
    EXPECT_EQ(record(43), "5|2.3533332|9|0|7:10:00 AM|left|True|Null|PLANNER");
    EXPECT_FALSE(isEnabled("NextStop"));
    type("NUM_STUDENTS", "x");
    answer(MsgAnswer::Cancel);
    click("Exit_StopTrip");
    EXPECT_TRUE(form().isLoaded());
}

TEST_F(StopTripForm, EditsARecordThatIsOnNoRun) {
    byOthers("UPDATE STOP_TRIPTYPE SET LOAD_TIME = 5000 WHERE ID = 50");
    open(50);
    EXPECT_EQ(text("RunHead"), "On no run");
    EXPECT_EQ(list("StudentList").rows(), 0);
    EXPECT_FALSE(isEnabled("CalcTimes"));
    EXPECT_EQ(text("RUN_PICKUP_SIDE"), "both");
    EXPECT_TRUE(isRed("RUN_PICKUP_SIDE"));
    EXPECT_EQ(text("Status"), "Pick-up side: \"both\" is none of the choices.");
    type("DIST_TOSTOP", "1.5");
    click("OK");
    EXPECT_EQ(record(50), "3|5000|0|1.5|Null|both|True|Gate code 7|PLANNER");
    EXPECT_TRUE(isRed("RUN_PICKUP_SIDE"));
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(StopTripForm, ListsEachStudentOnce) {
    open(43);
    EXPECT_EQ(row("NeedsList", 0) + " " + row("NeedsList", 1), "AIDE| |1 WC|Wheelchair|1");
    EXPECT_EQ(row("StudentList", 0), "Adams, Lee||ST2|OAK");
    EXPECT_EQ(row("StudentList", 1), "Hill, Kim|AIDE, WC|ST1|OAK");
    EXPECT_EQ(list("StudentList").rows(), 2);
}

TEST_F(StopTripForm, FixesNoTimesOfARunThatItTakesNoPartIn) {
    for (const int id : {42, 50}) {
        byOthers("UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = '1899-12-30 07:05:00' WHERE ID = " +
                 std::to_string(id));
        EXPECT_FALSE(timeRunAround(*startup::gcnRouting, read(id), {}, [](const auto&) {}));
    }
    EXPECT_EQ(spanOfRun(), "7:00:00 AM|7:30:00 AM|Null");
}

}  // namespace
}  // namespace stops
