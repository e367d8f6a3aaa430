#include "stops/triprecord/frmStopTripType.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "fixture.h"
#include "platform/controls/layoutmemory.h"
#include "platform/forms/formregistry.h"

namespace stops {
namespace {

using base::MsgAnswer;
using testing::HasSubstr;

class StopTripForm : public TripRecordTest {
protected:
    StopTripForm() { forms::Application::instance().startAfresh(); }
    ~StopTripForm() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    frmStopTripType& form() { return forms::FormRegistry::instance().make<frmStopTripType>(); }
    void open(int id) {
        form().edit(id);
        form().whenSaved([this] { ++saved; });
        form().load();
    }
    template <class Control>
    Control& control(const char* name) {
        return *form().findChild<Control*>(name);
    }
    void type(const char* name, const std::string& text) {
        if (auto* box = form().findChild<QLineEdit*>(name)) {
            box->setText(QString::fromStdString(text));
        } else {
            control<QPlainTextEdit>(name).setPlainText(QString::fromStdString(text));
        }
    }
    std::string shown(const char* name) { return control<QLineEdit>(name).text().toStdString(); }
    std::string label(const char* name) { return control<QLabel>(name).text().toStdString(); }
    void click(const char* name) { control<QAbstractButton>(name).click(); }
    bool isEnabled(const char* name) { return control<QWidget>(name).isEnabled(); }
    std::string lastTitle() {
        return session.boxes.shown.empty() ? "" : session.boxes.shown.back().title;
    }

    int saved = 0;
};

TEST_F(StopTripForm, SavesWhatWasChangedAndChecksTheRun) {
    open(43);
    EXPECT_EQ(shown("LOAD_TIME"), "2.35");
    EXPECT_EQ(shown("TIME_AT_STOP"), "07:10 AM");
    EXPECT_THAT(label("RunHead"), HasSubstr("stop 3 of 4"));
    type("NUM_STUDENTS", " 12 ");
    type("TIME_AT_STOP", "8:05 am");
    control<QComboBox>("RUN_PICKUP_SIDE").setCurrentText("Right");
    click("OK");
    // What was rounded for the eye only keeps its decimals.
    EXPECT_EQ(record(43), "12|2.3533332|9|0|8:05:00 AM|right|True|Gate code 7|PLANNER");
    EXPECT_EQ(label("Status"), "Stop B saved.");
    EXPECT_EQ(rowsOf("SELECT WARNINGTYPE FROM RUNWARNING WHERE RUN='R' ORDER BY WARNINGTYPE"),
              "CONFLICTING TIME LATE BELL");
    EXPECT_EQ(lastTitle(), "Run has Stops with Overlapping Times.");
    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_EQ(saved, 1);
    EXPECT_TRUE(form().closeForm());
}

TEST_F(StopTripForm, LeavesTheRowAsItWasForBadInput) {
    open(43);
    const struct {
        const char* box;
        std::string typed;
    } cases[] = {{"NUM_STUDENTS", ""},          {"NUM_STUDENTS", "five"},
                 {"NUM_STUDENTS", "2.5"},       {"NUM_STUDENTS", "99999999999999999999"},
                 {"LOAD_TIME", "1e2"},          {"LOAD_TIME", "-1"},
                 {"TIME_TOSTOP", "nan"},        {"TIME_TOSTOP", "1,5"},
                 {"DIST_TOSTOP", "0.123"},      {"DIST_TOSTOP", "' OR 1=1"},
                 {"TIME_AT_STOP", "25:00"},     {"TIME_AT_STOP", "  "},
                 {"TIME_AT_STOP", "1/31/2026"}, {"TIME_AT_STOP", "#7:00#"},
                 {"Comment", "\x01"},           {"Comment", std::string(300, 'x')}};
    for (const auto& bad : cases) {
        session.boxes.shown.clear();
        type(bad.box, bad.typed);
        click("OK");
        EXPECT_EQ(session.boxes.shown.size(), 1U) << bad.box << ": " << bad.typed;
        EXPECT_EQ(control<QWidget>(bad.box).palette().color(QPalette::Base), QColor(255, 0, 0));
        EXPECT_EQ(record(43), RecordB) << bad.box << ": " << bad.typed;
        session.boxes.answers.push_back(MsgAnswer::No);
        form().edit(43);
    }
    EXPECT_EQ(saved, 0);
}

TEST_F(StopTripForm, ShowsBothSidesOfAConflictAndSavesOnTheNextOk) {
    open(43);
    type("NUM_STUDENTS", "9");
    sql("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 7, LOAD_TIME = 3, ChangedBy = 'CLERK', "
        "changeddt = '2026-01-31 08:05:00' WHERE ID = 43");
    for (const auto& [answer, boxes] :
         {std::pair(MsgAnswer::Cancel, "9 2.35"), std::pair(MsgAnswer::Yes, "9 3")}) {
        session.boxes.answers.push_back(answer);
        click("OK");
        EXPECT_THAT(session.boxes.shown.back().text,
                    HasSubstr("Oops, CLERK has changed this stop's trip record since you opened it."
                              "  Nothing was saved yet.\n\n"
                              "Passengers: now 7, it was 5; you entered 9\nLoad time: now 3,"));
        EXPECT_EQ(shown("NUM_STUDENTS") + " " + shown("LOAD_TIME"), boxes);
    }
    EXPECT_EQ(saved, 0);
    click("OK");
    EXPECT_EQ(record(43), "9|3|9|0|7:10:00 AM|left|True|Gate code 7|PLANNER");

    sql("DELETE FROM STOP_TRIPTYPE WHERE ID = 43");
    click("OK");
    EXPECT_EQ(lastTitle(), "Trip Record Deleted");
    EXPECT_FALSE(isEnabled("OK"));
    EXPECT_TRUE(form().closeForm());
}

TEST_F(StopTripForm, RecalculatesAroundWhatWasTyped) {
    open(43);
    type("TIME_AT_STOP", "720");
    click("CalcTimes");
    EXPECT_EQ(timesOfRun(), "7:10:00 AM Null 7:20:00 AM 7:32:21 AM");
    EXPECT_EQ(label("Status"), "Times of run R recalculated.");
    EXPECT_THAT(label("RunHead"), HasSubstr("Starts 07:10 AM, ends 07:32 AM"));
    sql("UPDATE STOP_TRIPTYPE SET TIME_TOSTOP = NULL WHERE ID = 44");
    type("TIME_AT_STOP", "7:30");
    click("CalcTimes");
    EXPECT_EQ(lastTitle(), "Minutes Missing");
    EXPECT_THAT(session.boxes.shown.back().text, HasSubstr("stop SCH"));
    EXPECT_EQ(timesOfRun(), "7:10:00 AM Null 7:30:00 AM 7:32:21 AM");
    EXPECT_EQ(saved, 2);
}

TEST_F(StopTripForm, WalksAlongTheRunAndAsksBeforeTypedTextIsLost) {
    open(41);
    EXPECT_FALSE(isEnabled("PreviousStop"));
    click("NextStop");
    EXPECT_FALSE(isEnabled("CalcTimes"));
    click("NextStop");
    type("Comment", "");
    for (const auto answer : {MsgAnswer::Cancel, MsgAnswer::Yes}) {
        session.boxes.answers.push_back(answer);
        click("NextStop");
        EXPECT_EQ(lastTitle(), "Stop Not Saved");
        EXPECT_EQ(label("Heading"), answer == MsgAnswer::Cancel ? "Stop B" : "Stop SCH");
    }
    EXPECT_EQ(record(43), "5|2.3533332|9|0|7:10:00 AM|left|True||PLANNER");
    EXPECT_FALSE(isEnabled("NextStop"));
    type("NUM_STUDENTS", "x");
    session.boxes.answers.push_back(MsgAnswer::Cancel);
    click("Exit_StopTrip");
    EXPECT_TRUE(form().isLoaded());
}

TEST_F(StopTripForm, EditsARecordThatIsOnNoRun) {
    open(50);
    EXPECT_EQ(label("RunHead"), "On no run");
    EXPECT_FALSE(isEnabled("CalcTimes"));
    EXPECT_EQ(control<QComboBox>("RUN_PICKUP_SIDE").currentText(), "both");
    type("DIST_TOSTOP", "1.5");
    click("OK");
    EXPECT_EQ(record(50), "3|1|0|1.5|Null|both|True|Gate code 7|PLANNER");
    EXPECT_TRUE(session.boxes.shown.empty());
}

}  // namespace
}  // namespace stops
