#include <QLabel>
#include <QLineEdit>

#include "runfixture.h"
#include "stops/search/frmSelStops.h"

namespace {

using base::MsgAnswer;
using testing::ElementsAre;
using testing::IsEmpty;

using RunStopsTest = RunTest;

TEST_F(RunStopsTest, OpensTheTripRecordOfTheChosenStop) {
    open();
    EXPECT_FALSE(isEnabled("StopEdit"));
    list("StopList").choose(1);
    EXPECT_TRUE(isEnabled("StopEdit"));
    emit list("StopList").rowActivated(1);
    EXPECT_NE(opened("frmStopTripType"), nullptr);
    byOthers("UPDATE STOP_TRIPTYPE SET TIME_AT_STOP='1899-12-30 09:09:00' WHERE RUN='101-AM'");
    form().Form_Activate();
    form().Form_Activate();
    EXPECT_EQ(list("StopList").cellText(1, 2), "09:09 AM");
    EXPECT_EQ(list("StopList").chosenRow(), 1);
}

TEST_F(RunStopsTest, TakesStopsOffTheRunOnceConfirmed) {
    open();
    EXPECT_FALSE(isEnabled("Remove"));
    type("RunDesc", "not saved");
    list("StopList").choose(0);
    session.boxes.answers = {MsgAnswer::No, MsgAnswer::Yes};
    click("Remove");
    EXPECT_THAT(column("StopList"), ElementsAre("S3", "S1"));
    click("Remove");
    EXPECT_THAT(column("StopList"), ElementsAre("S1"));
    EXPECT_EQ(lastText(),
              "Are you sure you want to take the stop S3 off this run?\n\nRun 101-AM: Oak "
              "morning\nS3, Elm and Main");
    EXPECT_EQ(stored("Select Count(*) From RUNLOG Where RUNID='101-AM' And ACTIVITYCODE=2"), "1");
    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_EQ(text("RunDesc"), "not saved");
    EXPECT_FALSE(isEnabled("Remove"));
}

TEST_F(RunStopsTest, PutsTheStopsThatAreChosenBehindTheLastOne) {
    byOthers(
        "INSERT INTO STOP_TRIPTYPE(INT_STOPID, TRIPTYPE, RUN, RUNSEQ, ACTIVE) VALUES "
        "(2, 'AM', ' ', 0, 1)");
    byOthers("UPDATE SYSTEM SET NEEDDEADHEADBUILD=0");
    open();
    type("RunDesc", "not saved");
    click("GetStops");
    auto* search = dynamic_cast<stops::frmSelStops*>(opened("frmSelStops"));
    ASSERT_NE(search, nullptr);
    search->findChild<QAbstractButton*>("cmdSearch")->click();
    search->SelectAll_Click();
    support::ControlsOf chooser(*search);
    auto held = heldByOthers();
    chooser.click("cmdChoose");
    EXPECT_EQ(lastTitle(), "Database in Use");
    EXPECT_THAT(column("StopList"), ElementsAre("S3", "S1"));
    held.reset();
    chooser.click("cmdChoose");
    EXPECT_FALSE(search->isLoaded());
    EXPECT_THAT(column("StopList"), ElementsAre("S3", "S1", "S2"));
    EXPECT_EQ(text("RunDesc"), "not saved");
    EXPECT_EQ(stored("Select NEEDDEADHEADBUILD From SYSTEM"), "True");
}

TEST_F(RunStopsTest, OpensTheOtherFormsForTheRun) {
    open();
    for (const auto& [button, name, label] : {std::tuple{"AddStops", "Add_Remove_Stops", "RunID"},
                                              {"Merge", "MergeRun", "OrigRun"},
                                              {"Log", "RunLogInquiry", "RunID"}}) {
        click(button);
        auto* other = opened(name);
        ASSERT_NE(other, nullptr) << name;
        EXPECT_EQ(support::ControlsOf(*other).text(label), "101-AM") << name;
        other->closeForm();
    }
    EXPECT_TRUE(form().isLoaded());
}

}  // namespace
