#include <QTest>

#include "runfixture.h"

namespace {

using base::MsgAnswer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(RunTest, ShowsEveryFieldOfTheRun) {
    byOthers(
        "UPDATE RUN SET COMMENT='Ice''s road', friday=1, OverFill=3, "
        "GIS_CLOSEDSTREETFILENAME='/maps/closed.avl' WHERE RUN='101-AM'");
    open();
    const std::vector<std::pair<const char*, std::string>> fields = {
        {"RunID", "101-AM"},
        {"RunDesc", "Oak morning"},
        {"cmbSchool", "OAK"},
        {"cmbTripType", "AM"},
        {"cmbRunFamily", "REG"},
        {"cmbLOCCODE", "NORTH"},
        {"cmbVEHTYPE", "SMALL"},
        {"cmbCapacity", "High"},
        {"BellTime", "08:00 AM"},
        {"OverFill", "3"},
        {"TimeToUse", "Start Time"},
        {"StartTime", "07:05 AM"},
        {"EndTime", "07:45 AM"},
        {"TotalPass", "31"},
        {"TotalDistance", "12.5"},
        {"TotalRideTime", "40"},
        {"TotalStops", "6"},
        {"SchoolName", "Oak School"},
        {"Audit", "Created  by BO"},
        {"Heading", "Run 101-AM: Oak morning"},
        {"GIS_CLOSEDSTREETFILENAME", "/maps/closed.avl"}};
    for (const auto& [name, shown] : fields) {
        EXPECT_EQ(text(name), shown) << name;
    }
    EXPECT_EQ(control<QPlainTextEdit>("Comment").toPlainText(), "Ice's road");
    EXPECT_TRUE(control<QAbstractButton>("Pickup").isChecked());
    EXPECT_TRUE(control<QAbstractButton>("Active").isChecked());
    EXPECT_TRUE(control<QAbstractButton>("chkFriday").isChecked());
    EXPECT_FALSE(control<QAbstractButton>("chkMonday").isChecked());
    EXPECT_TRUE(control<QLineEdit>("RunID").isReadOnly());
    EXPECT_EQ(list("StopList").rows(), 2);

    form().edit("103-PM");
    EXPECT_EQ(text("TimeToUse"), "End Time");
    EXPECT_EQ(text("cmbCapacity"), "");
    EXPECT_EQ(text("BellTime"), "");
    EXPECT_TRUE(control<QAbstractButton>("DropOff").isChecked());
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(RunTest, SavesWhatWasEnteredAndValidatesTheRun) {
    open();
    type("RunDesc", "Oak's \"first\" run");
    type("Comment", "'; DROP");
    type("cmbSchool", "pine");
    type("cmbCapacity", "Low");
    type("BellTime", "8:10 am");
    check("chkMonday");
    check("Active", false);
    click("OK");
    EXPECT_EQ(storedRun("DESCRIPTION"), "Oak's \"first\" run");
    EXPECT_EQ(storedRun("[COMMENT]"), "'; DROP");
    EXPECT_EQ(storedRun("SCHOOL"), "PINE");
    EXPECT_EQ(storedRun("Capacity"), "Low");
    EXPECT_EQ(storedRun("BELLTIME"), "8:10:00 AM");
    EXPECT_EQ(storedRun("monday"), "True");
    EXPECT_EQ(storedRun("ACTIVE"), "False");
    EXPECT_EQ(storedRun("STATUSCHGDT"), "1/31/2026 8:05:09 AM");
    EXPECT_EQ(storedRun("CreatedBy"), "BO");
    EXPECT_EQ(storedRun("ChangedBy"), "ANN");
    // 50 passengers for 12 seats: told, listed, and the total taken over from the row.
    EXPECT_THAT(titles(), ElementsAre("Too Many Passengers for Vehicle / Vehicle Type"));
    EXPECT_EQ(text("TotalPass"), "50");
    EXPECT_EQ(list("WarningList").rows(), 1);
    EXPECT_EQ(control<QTabWidget>("RunTab").tabText(2), " * Warnings *");
    EXPECT_EQ(text("Status"), "Run 101-AM saved.");
    EXPECT_EQ(control<QLabel>("Status").palette().color(QPalette::Window), QColor(0, 255, 0));
    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_EQ(startup::TotSavedRuns, 1);
    form().Timer3_Timer();
    EXPECT_TRUE(control<QLabel>("Status").isHidden());
    // The validation's own write is no change by others.
    type("RunDesc", "Oak");
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Too Many Passengers for Vehicle / Vehicle Type"));
    EXPECT_EQ(storedRun("DESCRIPTION"), "Oak");
    EXPECT_TRUE(form().closeForm());
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(RunTest, MakesANewRun) {
    open("");
    EXPECT_TRUE(control<QAbstractButton>("Active").isChecked());
    EXPECT_TRUE(control<QAbstractButton>("Pickup").isChecked());
    EXPECT_EQ(text("TimeToUse"), "Start Time");
    for (const auto* name : {"MapIt", "AddStops", "CalcTimes"}) {
        EXPECT_FALSE(isEnabled(name)) << name;
    }
    EXPECT_EQ(list("StopList").rows(), 0);
    type("RunID", " 101-am ");
    click("OK");
    EXPECT_EQ(lastTitle(), "Conflicting RunID");
    EXPECT_THAT(session.boxes.shown.back().text, HasSubstr("run is: Oak morning.  Please"));
    type("RunID", " 104-AM ");
    type("BellTime", "8:00");
    type("StartTime", "7:00");
    type("EndTime", "7:30");
    titles();
    click("OK");
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(storedRun("RUN", "104-AM"), "104-AM");
    EXPECT_EQ(storedRun("CreatedBy", "104-AM"), "ANN");
    EXPECT_EQ(storedRun("INT_ROUTEID", "104-AM"), "Null");
    EXPECT_EQ(text("Status"), "Run 104-AM saved.");
    EXPECT_TRUE(control<QLineEdit>("RunID").isReadOnly());
    EXPECT_TRUE(isEnabled("MapIt"));
    EXPECT_TRUE(isEnabled("CalcTimes"));
}

TEST_F(RunTest, RefusesBadInputInEveryField) {
    open("");
    type("RunID", "105-AM");
    for (const auto* time : {"BellTime", "StartTime", "EndTime"}) {
        type(time, "8:00");
    }
    const std::vector<std::pair<const char*, std::string>> bad = {
        {"RunID", ""},
        {"RunID", "1/2"},
        {"RunID", "102-AM"},
        {"RunDesc", std::string(300, 'x')},
        {"cmbSchool", "O'K"},
        {"cmbTripType", "?"},
        {"cmbRunFamily", "?"},
        {"cmbLOCCODE", "' OR ''='"},
        {"cmbVEHTYPE", "HUGE"},
        {"BellTime", "noon"},
        {"StartTime", ""},
        {"EndTime", "7:60"},
        {"OverFill", "many"},
        {"Comment", std::string(5000, 'x')},
        {"GIS_CLOSEDSTREETFILENAME", std::string(300, 'x')}};
    const char* red = "RunDesc";
    for (const auto& [name, entered] : bad) {
        const std::string before = name == std::string("Comment") ? "" : text(name);
        type(name, entered);
        click("OK");
        EXPECT_EQ(titles().size(), 1U) << name;
        EXPECT_FALSE(isRed(red) && red != std::string(name)) << red;
        EXPECT_TRUE(isRed(name)) << name << ": " << entered;
        EXPECT_EQ(form().focusWidget(), &control<QWidget>(name)) << name;
        type(name, before);
        red = name;
    }
    EXPECT_EQ(stored("Select Count(*) From RUN"), "4");
    EXPECT_FALSE(startup::RefreshRunList);
    EXPECT_EQ(form().Check_For_Error(), 0);
    EXPECT_FALSE(isRed(red));
}

TEST_F(RunTest, TellsWhatAnotherProgramHasChangedBeforeSavingOverIt) {
    open();
    type("RunDesc", "mine");
    byOthers(
        "UPDATE RUN SET DESCRIPTION='theirs', BELLTIME='1899-12-30 08:30:00', friday=1 WHERE "
        "RUN='101-AM'");
    session.boxes.answers = {MsgAnswer::Cancel};
    click("OK");
    EXPECT_THAT(session.boxes.shown.back().text,
                HasSubstr("\n\nDescription: was \"Oak morning\", is now \"theirs\", you entered "
                          "\"mine\"\nBell Time: was \"08:00 AM\", is now \"08:30 AM\"\nFriday: was "
                          "No, is now Yes\n\n"));
    EXPECT_EQ(text("BellTime"), "08:00 AM");
    // Cancel has settled nothing.
    session.boxes.answers = {MsgAnswer::Yes};
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Run Changed Meanwhile", "Run Changed Meanwhile"));
    EXPECT_EQ(storedRun("DESCRIPTION"), "theirs");
    EXPECT_EQ(text("RunDesc"), "mine");
    EXPECT_EQ(text("BellTime"), "08:30 AM");
    click("OK");
    EXPECT_EQ(storedRun("DESCRIPTION"), "mine");
    EXPECT_EQ(storedRun("BELLTIME"), "8:30:00 AM");
    EXPECT_EQ(storedRun("friday"), "True");

    type("RunDesc", "mine again");
    byOthers("UPDATE RUN SET COMMENT='theirs' WHERE RUN='101-AM'");
    session.boxes.answers = {MsgAnswer::No};
    click("OK");
    EXPECT_EQ(text("RunDesc"), "mine");
    EXPECT_EQ(control<QPlainTextEdit>("Comment").toPlainText(), "theirs");
}

TEST_F(RunTest, OffersToSaveADeletedRunAgain) {
    open();
    type("RunDesc", "mine");
    byOthers("DELETE FROM RUN WHERE RUN='101-AM'");
    session.boxes.answers = {MsgAnswer::Cancel, MsgAnswer::Yes};
    click("OK");
    EXPECT_EQ(storedRun("RUN"), "no row");
    click("OK");
    EXPECT_EQ(storedRun("DESCRIPTION"), "mine");
    EXPECT_EQ(storedRun("CreatedBy"), "ANN");

    byOthers("DELETE FROM RUN WHERE RUN='101-AM'");
    titles();
    session.boxes.answers = {MsgAnswer::No};
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Run Deleted Meanwhile"));
    EXPECT_EQ(storedRun("RUN"), "no row");
    EXPECT_EQ(forms::FormRegistry::instance().find("Run"), nullptr);
}

TEST_F(RunTest, AsksBeforeItClosesWithUnsavedChanges) {
    open();
    EXPECT_TRUE(form().closeForm());
    EXPECT_THAT(titles(), IsEmpty());

    open();
    type("BellTime", "noon");
    session.boxes.answers = {MsgAnswer::Cancel, MsgAnswer::Yes};
    click("Exit_Run");
    EXPECT_TRUE(form().isLoaded());
    EXPECT_FALSE(form().closeForm());  // what cannot be saved is not closed
    EXPECT_THAT(titles(), ElementsAre("Run Not Saved", "Run Not Saved", "Invalid Bell Time"));
    type("BellTime", "8:20");
    session.boxes.answers = {MsgAnswer::Yes};
    EXPECT_TRUE(form().closeForm());
    EXPECT_EQ(storedRun("BELLTIME"), "8:20:00 AM");

    open();
    type("BellTime", "8:40");
    session.boxes.answers = {MsgAnswer::No};
    EXPECT_TRUE(form().closeForm());
    EXPECT_EQ(storedRun("BELLTIME"), "8:20:00 AM");
}

TEST_F(RunTest, IsNotShownForARunThatIsNotThere) {
    auto& form = open("999");
    EXPECT_FALSE(form.isLoaded());
    EXPECT_FALSE(form.isVisible());
    EXPECT_THAT(titles(), ElementsAre("Run Not Found"));
    EXPECT_TRUE(startup::RefreshRunList);
}

TEST_F(RunTest, KeepsWhatWasEnteredWhenOtherFormsHaveChangedTheRun) {
    open();
    form().Form_Activate();
    type("RunDesc", "mine");
    byOthers(
        "UPDATE RUN SET DESCRIPTION='theirs', TOTAL_STUDENTS=12, STARTTIME='1899-12-30 "
        "07:10:00' WHERE RUN='101-AM'");
    byOthers("UPDATE STOP_TRIPTYPE SET RUN=' ' WHERE RUN='101-AM' AND RUNSEQ=1");
    form().Form_Activate();
    EXPECT_EQ(text("RunDesc"), "mine");
    EXPECT_EQ(text("TotalPass"), "12");
    EXPECT_EQ(text("StartTime"), "07:10 AM");
    EXPECT_EQ(list("StopList").rows(), 1);
    // Only the description is in conflict now.
    session.boxes.answers = {MsgAnswer::Cancel};
    click("OK");
    EXPECT_THAT(session.boxes.shown.back().text,
                HasSubstr("\n\nDescription: was \"Oak morning\", is now \"theirs\", you entered "
                          "\"mine\"\n\n"));
}

}  // namespace
