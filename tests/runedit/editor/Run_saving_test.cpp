#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <algorithm>

#include "platform/controls/notebox.h"
#include "platform/controls/refusalnote.h"
#include "runfixture.h"

namespace {

using base::MsgAnswer;
using support::joined;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RunSavingTest : public RunTest {
protected:
    /// Types into a box; ticks or unticks a button for "True" and "False".
    void enter(const char* name, const std::string& entered) {
        if (form().findChild<QAbstractButton*>(name) != nullptr) {
            check(name, entered == "True");
        } else {
            type(name, entered);
        }
    }
    std::string shown(const char* name) {
        return form().findChild<QAbstractButton*>(name) == nullptr ? text(name)
               : isChecked(name)                                   ? "True"
                                                                   : "False";
    }
    void openNew(const std::string& id) {
        open("");
        type("RunID", id);
        type("BellTime", "8:00");
        type("StartTime", "7:00");
        type("EndTime", "7:30");
        check("chkMonday");
    }
};

TEST_F(RunSavingTest, SaysInALineWhatOthersHaveStoredMeanwhile) {
    open();
    auto* note = form().findChild<QWidget*>("ChangedNote");
    const auto says = [&](const char* what) {
        return QTest::qWaitFor([&] {
            const auto* line = note->findChild<controls::NoteBox*>();
            return !note->isHidden() && line->plainText().contains(what);
        });
    };
    type("Comment", "mine");
    byOthers("UPDATE RUN SET DESCRIPTION='Elm' WHERE RUN='102-AM'");
    QTest::qWait(1000);
    EXPECT_TRUE(note->isHidden()) << "another run";
    byOthers("UPDATE RUN SET DESCRIPTION='Elm', ChangedBy='ANN' WHERE RUN='101-AM'");
    EXPECT_TRUE(says("by ANN"));
    click("ReadAnew");
    EXPECT_TRUE(note->isHidden());
    EXPECT_EQ(text("RunDesc"), "Elm");
    EXPECT_EQ(text("Comment"), "mine");
    byOthers("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS=40 WHERE RUN='101-AM'");
    EXPECT_TRUE(says("stops of this run"));
    click("OK");
    EXPECT_TRUE(note->isHidden()) << "its own";
    byOthers("DELETE FROM RUN WHERE RUN='101-AM'");
    EXPECT_TRUE(says("deleted"));
}

TEST_F(RunSavingTest, ShowsAndSavesEveryField) {
    byOthers(
        "UPDATE RUN SET COMMENT='Ice''s road', friday=1, OverFill=3, TOTAL_TIME=41, "
        "GIS_CLOSEDSTREETFILENAME='/maps/closed.avl', BELLTIME='1899-12-30 08:00:30' "
        "WHERE RUN='101-AM'");
    open();
    const struct {
        const char* control;
        const char* column;
        std::string before;
        std::string entered;
        std::string stored;
    } fields[] = {
        {"RunDesc", "DESCRIPTION", "Oak morning", "Oak's \"1st\"", "Oak's \"1st\""},
        {"cmbSchool", "SCHOOL", "OAK", "pine", "PINE"},
        {"cmbTripType", "TRIPTYPE", "AM", "PM", "PM"},
        {"cmbRunFamily", "RUNFAMILY", "REG", "", "Null"},
        {"cmbLOCCODE", "LOCCODE", "NORTH", "SHUT", "SHUT"},
        {"cmbVEHTYPE", "VEHTYPE", "SMALL", "LARGE", "LARGE"},
        {"cmbCapacity", "Capacity", "High", "Low", "Low"},
        {"BellTime", "BELLTIME", "08:00:30 AM", "8:10 am", "8:10:00 AM"},
        {"OverFill", "OverFill", "3", " 4 ", "4"},
        {"DropOff", "PICKUP", "False", "True", "False"},
        {"TimeToUse", "TimeToUse", "Start Time", "End Time", "End Time"},
        {"StartTime", "STARTTIME", "07:05 AM", "1/31/2026 7:00", "7:00:00 AM"},
        {"EndTime", "ENDTIME", "07:45 AM", "0750", "7:50:00 AM"},
        {"Comment", "[COMMENT]", "Ice's road", "'; DROP", "'; DROP"},
        {"GIS_CLOSEDSTREETFILENAME", "GIS_CLOSEDSTREETFILENAME", "/maps/closed.avl", " ", "Null"},
        {"chkMonday", "monday", "False", "True", "True"},
        {"chkTuesday", "tuesday", "False", "True", "True"},
        {"chkWednesday", "wednesday", "False", "True", "True"},
        {"chkThursday", "thursday", "False", "True", "True"},
        {"chkFriday", "friday", "True", "False", "False"},
        {"Regenerate", "REGENERATE", "False", "True", "True"},
        {"Active", "ACTIVE", "True", "False", "False"}};
    for (const auto& field : fields) {
        EXPECT_EQ(shown(field.control), field.before) << field.control;
        enter(field.control, field.entered);
        click("OK");
        EXPECT_EQ(storedRun(field.column), field.stored) << field.column;
    }
    EXPECT_EQ(joined({text("RunID"), text("TotalPass"), text("TotalDistance"),
                      text("TotalRideTime"), text("TotalStops")}),
              "101-AM 50 0.00 12.00 2");
    EXPECT_EQ(text("SchoolName"), "Pine School");
    EXPECT_EQ(text("Heading"), "Run 101-AM: Oak's \"1st\"");
}

TEST_F(RunSavingTest, ValidatesWhatItSaved) {
    open();
    EXPECT_EQ(text("Audit"), "Created  by BO");
    type("cmbCapacity", "Low");
    click("OK");
    EXPECT_EQ(storedRun("CreatedBy, ChangedBy, changeddt, STATUSCHGDT"),
              "BO|ANN|1/31/2026 8:05:09 AM|Null");
    // 50 passengers for 12 seats: told, listed, and the total taken over from the row.
    EXPECT_THAT(titles(), ElementsAre("Too Many Passengers for Vehicle / Vehicle Type"));
    EXPECT_EQ(text("TotalPass"), "50");
    EXPECT_EQ(list("WarningList").rows(), 1);
    auto& tabs = control<QTabWidget>("RunTab");
    EXPECT_EQ(tabs.tabText(2), " * Warnings *");
    EXPECT_EQ(
        joined({text("Seats"), text("TooMany"), text("WarningHead"), text("WarningStop")}, "|"),
        "of 48 seats|2 too many|Warning 1 of 1: PASSENGERS|Stop 1 of 2 on the run: S3, Elm "
        "and Main");
    tabs.setCurrentIndex(2);
    click("GoToField");
    EXPECT_EQ(form().focusWidget(), &combo("cmbVEHTYPE"));
    activate("WarningList", row("WarningList", 0).substr(0, row("WarningList", 0).find('|')));
    EXPECT_EQ(tabs.currentIndex(), 0);
    EXPECT_EQ(list("StopList").chosenRow(), 0);
    EXPECT_EQ(text("Status"), "Run 101-AM saved.");
    EXPECT_EQ(control("Status").palette().color(QPalette::Window), QColor(0, 255, 0));
    type("StartTime", "soon");
    click("OK");
    EXPECT_TRUE(isRed("StartTime") && !isShown("Status"));
    type("StartTime", "7:05");
    EXPECT_FALSE(isRed("StartTime"));
    EXPECT_THAT(titles(), ElementsAre("Invalid Start Time"));
    click("OK");
    titles();
    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_EQ(startup::TotSavedRuns, 2);
    form().Timer3_Timer();
    EXPECT_FALSE(isShown("Status"));
    // The validation's own write is no change by others.
    check("Active", false);
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Too Many Passengers for Vehicle / Vehicle Type"));
    EXPECT_EQ(storedRun("STATUSCHGDT"), "1/31/2026 8:05:09 AM");
    EXPECT_THAT(text("Audit"), HasSubstr("Status changed 1/31/2026 8:05:09 AM"));
    EXPECT_TRUE(form().closeForm());
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(RunSavingTest, ShowsWhatIsNotThere) {
    byOthers("UPDATE RUN SET DESCRIPTION=' ', OverFill=NULL WHERE RUN='103-PM'");
    open("103-PM");
    EXPECT_EQ(joined({text("RunDesc"), text("cmbCapacity"), text("BellTime"), text("TimeToUse"),
                      text("OverFill"), text("TotalStops")},
                     "|"),
              "|||End Time|0|0");
    EXPECT_TRUE(isChecked("DropOff"));
    EXPECT_TRUE(form().closeForm());
    EXPECT_FALSE(open("999").isLoaded());
    EXPECT_THAT(titles(), ElementsAre("Run Not Found"));
    EXPECT_TRUE(startup::RefreshRunList);
}

TEST_F(RunSavingTest, MakesANewRun) {
    openNew(" 104-AM ");
    EXPECT_TRUE(isChecked("Active") && isChecked("Pickup"));
    for (const auto* name : {"MapIt", "AddStops", "CalcTimes"}) {
        EXPECT_FALSE(isEnabled(name)) << name;
    }
    EXPECT_EQ(list("StopList").rows(), 0);
    check("Regenerate");
    click("OK");
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(storedRun("RUN, CreatedBy, CREATEDDT, ChangedBy, STATUSCHGDT", "104-AM"),
              "104-AM|ANN|1/31/2026 8:05:09 AM|ANN|1/31/2026 8:05:09 AM");
    EXPECT_EQ(storedRun("INT_ROUTEID, SCHOOL, TimeToUse, total_stops, REGENERATE", "104-AM"),
              "Null|Null|Start Time|0|True");
    EXPECT_TRUE(control<QLineEdit>("RunID").isReadOnly());
    EXPECT_TRUE(isEnabled("MapIt") && isEnabled("CalcTimes"));
}

const std::string IllegalCharacter =
    "Oops, you have entered a RunID using one of the following characters: (#, %, *, /, \\\\, \", "
    "') these are not allowed.  Please change your Run ID.";
std::string notListed(const std::string& name) {
    return "Oops, you have entered a " + name + " that is not in the list.  Please do so.";
}
std::string noTime(const std::string& name) {
    return "Oops, you have entered an Invalid " + name +
           ".  Please reenter the time, making sure to include the ':' to seperate the hour from "
           "minutes (hh:mm:ss AM format).";
}
std::string tooLong(const std::string& name, int most) {
    return "Oops, the " + name + " may not be longer than " + std::to_string(most) +
           " characters.  Please leave out the part that begins with \"x\".";
}

/// In the order in which the checks are made.
const struct {
    const char* control;
    std::string entered;
    int code;
    std::string title;
    std::string text;
} Refusals[] = {
    {"RunID", "  ", 1, "Blank RunID", "Oops, you have not entered a RunID.  Please do so."},
    {"RunID", "104\"AM", 7, "Illegal Character in the RUNID", IllegalCharacter},
    {"RunID", " 101-am ", 2, "Conflicting RunID",
     "Oops, you have entered a RunID that is already being used by another run.  The description "
     "of the other conflicting run is: Oak morning.  Please change the RunID."},
    {"cmbRunFamily", "X", 3, "Invalid Run Family ID", notListed("Run Family ID")},
    {"cmbSchool", "X", 4, "Invalid School", notListed("School")},
    {"cmbSchool", "ST MARY'S", 4, "Invalid School", notListed("School")},
    {"cmbTripType", "X", 5, "Invalid Trip Type", notListed("Trip Type")},
    {"cmbLOCCODE", "' OR ''='", 6, "Invalid Location", notListed("Location")},
    {"cmbVEHTYPE", "HUGE", 7, "Invalid Vehicle Type", notListed("Vehicle Type")},
    {"BellTime", "", 8, "Invalid Bell Time", noTime("Bell Time")},
    {"StartTime", "soon", 8, "Invalid Start Time", noTime("Start Time")},
    {"EndTime", "25:00", 8, "Invalid End Time", noTime("End Time")},
    {"OverFill", "-1", 9, "Invalid Over Fill",
     "Oops, you have entered an Over Fill that is not a number of seats.  Please enter a whole "
     "number from 0 to 999."},
    {"RunID", std::string(31, 'x'), 10, "Run ID Too Long", tooLong("Run ID", 30)},
    {"Comment", std::string(4001, 'x'), 10, "Comment Too Long", tooLong("Comment", 4000)}};

TEST_F(RunSavingTest, RefusesTheFirstFieldThatIsWrongInItsOwnWords) {
    openNew("105-AM");
    std::vector<std::string> good;
    for (const auto& refusal : Refusals) {
        good.push_back(text(refusal.control));
    }
    for (const auto& refusal : Refusals) {
        type(refusal.control, refusal.entered);
    }
    const char* before = "Active";
    // All are wrong and mended one by one.
    for (std::size_t i = 0; i < std::size(Refusals); ++i) {
        const auto& [name, entered, code, title, message] = Refusals[i];
        type(name, entered);
        EXPECT_EQ(form().Check_For_Error(), code) << title;
        EXPECT_EQ(lastTitle(), title);
        EXPECT_EQ(texts(), std::vector{message});
        EXPECT_TRUE(isRed(name) && control(name).isVisible()) << title;
        EXPECT_EQ(form().focusWidget(), &control(name)) << title;
        EXPECT_FALSE(before != std::string(name) && isRed(before)) << before;
        const auto notes = form().findChildren<controls::RefusalNote*>();
        ASSERT_EQ(notes.size(), 1) << title;
        EXPECT_TRUE(notes[0]->isVisible() && form().rect().contains(notes[0]->geometry()));
        EXPECT_FALSE(notes[0]->geometry().contains(
            control(name).mapTo(&form(), control(name).rect().center())));
        EXPECT_EQ(control(name).accessibleDescription(), notes[0]->plainText());
        EXPECT_THAT(notes[0]->plainText().toStdString(), testing::Not(HasSubstr("Oops")));
        click("OK");
        EXPECT_EQ(titles().size(), 1U);
        type(name, good[i]);
        before = name;
    }
    EXPECT_EQ(form().Check_For_Error(), 0);
    EXPECT_TRUE(form().findChildren<controls::RefusalNote*>().isEmpty());
    EXPECT_EQ(control(before).accessibleDescription(), "");
    EXPECT_EQ(stored("Select Count(*) From RUN"), "4");
    EXPECT_FALSE(startup::RefreshRunList);
}

TEST_F(RunSavingTest, HoldsOwnLimitsAgainstWhatWasEnteredAlone) {
    byOthers(
        "INSERT INTO RUN(RUN, DESCRIPTION, OverFill, Capacity, BELLTIME, STARTTIME, ENDTIME) "
        "SELECT 'an id that is longer than a new one may be', '" +
        std::string(300, 'x') +
        "', 5000, 'high', BELLTIME, STARTTIME, ENDTIME FROM RUN WHERE RUN='101-AM'");
    open("an id that is longer than a new one may be");
    EXPECT_EQ(text("cmbCapacity"), "High");
    type("Comment", "new");
    click("OK");
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(storedRun("[COMMENT], Capacity, OverFill, TimeToUse",
                        "an id that is longer than a new one may be"),
              "new|High|5000|Null");
    EXPECT_EQ(text("RunDesc").size(), 300U);

    byOthers("UPDATE RUN SET Capacity='Tall' WHERE OverFill=5000");
    click("Command1");
    open(text("RunID"));
    EXPECT_EQ(text("cmbCapacity"), "Tall");
    EXPECT_TRUE(isRed("cmbCapacity"));
    EXPECT_EQ(text("Status"), "Capacity: \"Tall\" is none of the choices.");
    EXPECT_TRUE(form().closeForm());
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(RunSavingTest, TellsWhatAnotherProgramHasChangedBeforeSavingOverIt) {
    open();
    type("RunDesc", "mine");
    byOthers(
        "UPDATE RUN SET DESCRIPTION='theirs', BELLTIME='1899-12-30 08:30:00', friday=1, "
        "TOTAL_MILES=13, DEADHEAD_BEFORE_TIME=7 WHERE RUN='101-AM'");
    answer(MsgAnswer::Cancel);
    click("OK");
    EXPECT_THAT(
        lastText(),
        HasSubstr("Oops, another program has changed this run since you opened it.  Nothing "
                  "was saved yet.\n\nDescription: was \"Oak morning\", is now \"theirs\", "
                  "you entered \"mine\"\nBell Time: was \"08:00 AM\", is now \"08:30 "
                  "AM\"\nFriday: was No, is now Yes\n\nYes - "));
    EXPECT_EQ(text("BellTime"), "08:00 AM");
    // Cancel has settled nothing.
    answer(MsgAnswer::Yes);
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Run Changed Meanwhile", "Run Changed Meanwhile"));
    EXPECT_EQ(storedRun("DESCRIPTION"), "theirs");
    EXPECT_EQ(text("RunDesc"), "mine");
    EXPECT_EQ(text("BellTime"), "08:30 AM");
    click("OK");
    EXPECT_EQ(storedRun("DESCRIPTION, BELLTIME, friday, TOTAL_MILES, DEADHEAD_BEFORE_TIME"),
              "mine|8:30:00 AM|True|13|7");

    type("RunDesc", "mine again");
    byOthers("UPDATE RUN SET COMMENT='theirs' WHERE RUN='101-AM'");
    answer(MsgAnswer::No);
    click("OK");
    EXPECT_EQ(text("RunDesc"), "mine");
    EXPECT_EQ(text("Comment"), "theirs");
}

TEST_F(RunSavingTest, OffersToSaveADeletedRunAgain) {
    open();
    type("RunDesc", "mine");
    byOthers("DELETE FROM RUN WHERE RUN='101-AM'");
    session.boxes.answers = {MsgAnswer::Cancel, MsgAnswer::Yes};
    click("OK");
    EXPECT_EQ(storedRun("RUN"), "no row");
    click("OK");
    EXPECT_EQ(storedRun("DESCRIPTION, SCHOOL, TOTAL_MILES, CreatedBy"), "mine|OAK|12.5|ANN");

    byOthers("DELETE FROM RUN WHERE RUN='101-AM'");
    titles();
    click("Command1");
    EXPECT_THAT(titles(), ElementsAre("Run Not Found"));
    EXPECT_EQ(text("RunDesc"), "mine");
    answer(MsgAnswer::No);
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Run Deleted Meanwhile"));
    EXPECT_EQ(storedRun("RUN"), "no row");
    EXPECT_EQ(opened("Run"), nullptr);
}

TEST_F(RunSavingTest, AsksBeforeItClosesWithUnsavedChanges) {
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
    answer(MsgAnswer::Yes);
    EXPECT_TRUE(form().closeForm());
    EXPECT_EQ(storedRun("BELLTIME"), "8:20:00 AM");

    open();
    type("BellTime", "8:40");
    answer(MsgAnswer::No);
    EXPECT_TRUE(form().closeForm());
    EXPECT_EQ(storedRun("BELLTIME"), "8:20:00 AM");
}

TEST_F(RunSavingTest, KeepsWhatWasEnteredWhenOtherFormsHaveChangedTheRun) {
    open();
    form().Form_Activate();
    type("RunDesc", "mine");
    byOthers(
        "UPDATE RUN SET DESCRIPTION='theirs', TOTAL_STUDENTS=12, STARTTIME='1899-12-30 "
        "07:10:00' WHERE RUN='101-AM'");
    byOthers("UPDATE STOP_TRIPTYPE SET RUN=' ' WHERE RUN='101-AM' AND RUNSEQ=1");
    form().Form_Activate();
    EXPECT_EQ(joined({text("RunDesc"), text("StartTime")}), "mine 07:10 AM");
    // Totals are those of the list.
    EXPECT_EQ(list("StopList").rows(), 1);
    EXPECT_EQ(text("TotalStops") + text("TotalPass"), "10");
    // Only the description is in conflict now.
    answer(MsgAnswer::Cancel);
    click("OK");
    EXPECT_THAT(lastText(),
                HasSubstr("\n\nDescription: was \"Oak morning\", is now \"theirs\", you "
                          "entered \"mine\"\n\n"));
}

TEST_F(RunSavingTest, NamesTheKeysAndRefusesOneThatIsNotListedOnLeaving) {
    open();
    const auto typeKey = [&](const char* name, const char* key) {
        combo(name).lineEdit()->selectAll();
        QTest::keyClicks(combo(name).lineEdit(), key);
    };
    typeKey("cmbSchool", "pine");
    EXPECT_EQ(text("SchoolName"), "Pine School");
    typeKey("cmbLOCCODE", "nort");
    leave("cmbLOCCODE");
    EXPECT_EQ(text("cmbLOCCODE") + text("LocationName"), "NORTHNorth yard");
    typeKey("cmbTripType", "ml");
    leave("cmbTripType");
    EXPECT_TRUE(isRed("cmbTripType"));
    EXPECT_EQ(form().focusWidget(), &combo("cmbTripType"));
    EXPECT_EQ(text("Status"), "Trip Type: \"ml\" is not in the list.");
    typeKey("cmbTripType", "morn");
    EXPECT_FALSE(isRed("cmbTripType"));
    EXPECT_EQ(form().Check_For_Error(), 0);
    EXPECT_EQ(text("cmbTripType"), "AM");
    // A key that others have stored is theirs, listed or not.
    byOthers("UPDATE RUN SET LOCCODE='SHUT', RUNFAMILY='SPORT' WHERE RUN='101-AM'");
    click("Command1");
    leave("cmbLOCCODE");
    EXPECT_EQ(joined({text("cmbLOCCODE"), text("LocationName"), text("cmbRunFamily")}, "|"),
              "SHUT||SPORT");
    EXPECT_FALSE(isRed("cmbLOCCODE"));
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(RunSavingTest, AsksAboutWhatLooksLikeASlip) {
    openNew("104-AM");
    check("chkMonday", false);
    type("BellTime", "1/5/2026");
    type("EndTime", "6:30");
    answer(MsgAnswer::No);
    click("OK");
    EXPECT_THAT(lastText(),
                HasSubstr("The Bell Time, 1/5/2026, is a day without a time of day.  It is saved "
                          "as 12:00 AM.\nThe run starts at 07:00 AM, after it ends at 06:30 "
                          "AM.\nNo day is ticked, so"));
    EXPECT_EQ(storedRun("RUN", "104-AM"), "no row");
    answer(MsgAnswer::Yes);
    click("OK");
    EXPECT_EQ(storedRun("BELLTIME", "104-AM"), "12:00:00 AM");
    // What is stored is not asked about again.
    titles();
    type("Comment", "late");
    click("OK");
    EXPECT_THAT(titles(), IsEmpty());
}

/// Four runs, one of which is gone.
struct ListedRuns : runedit::RunSequence {
    int placeOf(const std::string& run) const override {
        return static_cast<int>(std::ranges::find(runs, run) - runs.begin() + 1) % 5;
    }
    int count() const override { return 4; }
    std::string choose(int place) override {
        return chosen = runs.at(static_cast<std::size_t>(place - 1));
    }
    std::vector<std::string> runs{"102-AM", "GONE", "201-PM", "101-AM"};
    std::string chosen;
};

TEST_F(RunSavingTest, GoesThroughTheRunsOfTheList) {
    ListedRuns runs;
    open("101-AM", &runs);
    EXPECT_EQ(text("Place"), "4 of 4");
    EXPECT_FALSE(isEnabled("NextRun"));
    type("RunDesc", "mine");
    session.boxes.answers = {MsgAnswer::Cancel, MsgAnswer::Yes};
    click("PreviousRun");
    EXPECT_EQ(text("RunID"), "101-AM");
    click("PreviousRun");
    EXPECT_EQ(joined({text("RunID"), text("Place"), runs.chosen}, "|"), "201-PM|3 of 4|201-PM");
    EXPECT_EQ(storedRun("DESCRIPTION", "101-AM"), "mine");
    titles();
    click("PreviousRun");
    EXPECT_THAT(titles(), ElementsAre("Run Not Found"));
    EXPECT_EQ(joined({text("RunID"), runs.chosen}), "201-PM 201-PM");
    open("103-PM", &runs);
    EXPECT_FALSE(isShown("NextRun") || isEnabled("PreviousRun"));
}

TEST_F(RunSavingTest, SaysWhatWasDoneBeforeALock) {
    openNew("104-AM");
    std::shared_ptr<void> held;
    // The saved run gives the window its title, the calculated times the box its text.
    QObject::connect(&form(), &QWidget::windowTitleChanged, &form(),
                     [&] { held = heldByOthers(); });
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Run Not Checked"));
    EXPECT_EQ(text("Status"), "Run 104-AM saved.");
    click("OK");
    EXPECT_THAT(titles(), ElementsAre("Database in Use"));
    held.reset();
    click("OK");
    EXPECT_THAT(titles(), IsEmpty());

    open("101-AM");
    held.reset();
    type("BellTime", "7:00");
    QObject::connect(&control<QLineEdit>("EndTime"), &QLineEdit::textChanged, &form(),
                     [&] { held = heldByOthers(); });
    click("CalcTimes");
    EXPECT_THAT(titles(), ElementsAre("Database in Use"));
    EXPECT_EQ(text("EndTime"), "07:17 AM");
    EXPECT_EQ(column("StopList", 2).back(), "07:17 AM");
}

}  // namespace
