#include <QHeaderView>
#include <QTest>

#include "support/runbuilder.h"
#include "tarnform.h"

namespace runsearch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The main form with every run listed and the boxes' answers prepared.
class ActionsTest : public TarnForm {
protected:
    ActionsTest() { found(); }

    void choose(const std::string& run) { Controls::choose("RunList", run); }
    std::string chosen() { return text("Tarn"); }
};

TEST_F(ActionsTest, OpensTheFormOfEachAction) {
    const std::vector<std::pair<const char*, const char*>> launchers{
        {"cmdNew", "Run"},
        {"Edit", "Run"},
        {"MergeRuns", "MergeRun"},
        {"ChangeBell", "BellTimeChange"},
        {"GroupChange", "frmGroupRunChange"},
        {"GroupSolve", "Group_Run_Solve"},
        {"DeadHead", "frmCalcDeadHead"}};
    form().showForm();
    for (const auto& [button, name] : launchers) {
        choose("102-AM");
        click(button);
        auto* made = opened(name);
        ASSERT_NE(made, nullptr) << name;
        EXPECT_EQ(made->parentWidget(), &form()) << name;
        EXPECT_FALSE(isChecked("chkNew")) << name;
        made->unload();
    }
    EXPECT_THAT(titles(), ElementsAre());
}

TEST_F(ActionsTest, EditsTheRunOfTheRowThatIsActivated) {
    form().showForm();
    choose("201-PM");
    QTest::keyClick(&list("RunList"), Qt::Key_Return);
    auto* editor = opened("Run");
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->findChild<QLineEdit*>("RunID")->text(), "201-PM");
    editor->unload();

    list("RunList").choose(-1);
    form().Edit_Click();
    click("MergeRuns");
    EXPECT_THAT(titles(), ElementsAre("No Run Selected", "No Run Selected"));
}

TEST_F(ActionsTest, DeletesTheChosenRunOnceConfirmed) {
    click("Delete");
    EXPECT_EQ(lastText(),
              "Oops, you did not select run to delete.  Please click on the desired run and try "
              "again.");
    EXPECT_THAT(titles(), ElementsAre("No Run Selected"));

    choose("103-PM");
    answer(base::MsgAnswer::No);
    click("Delete");
    EXPECT_EQ(chosen(), "103-PM");
    answer(base::MsgAnswer::Yes);
    click("Delete");
    EXPECT_THAT(titles(), ElementsAre("Please Confirm Removal of this Run",
                                      "Please Confirm Removal of this Run"));
    EXPECT_EQ(text("TotSel"), "3");
    EXPECT_EQ(text("SelectedCount"), "") << "nothing is selected in the new list";
    EXPECT_EQ(chosen(), "");
    EXPECT_EQ(row("103-PM"), "");
}

TEST_F(ActionsTest, RefusesToDeleteARunWithStops) {
    support::RunBuilder("NEW").bell("8:00").stop("S3", {.load = 2, .at = "7:10"}).into(district);
    found();
    EXPECT_THAT(row("NEW"), testing::StartsWith("NEW| |||08:00 AM|"));
    EXPECT_EQ(stored("SELECT INT_STOPID, LOAD_TIME, TIME_TOSTOP, TIME_AT_STOP, ACTIVE, RUNSEQ FROM "
                     "STOP_TRIPTYPE WHERE RUN='NEW'"),
              "3|2|0|7:10:00 AM|True|1");
    choose("NEW");
    answer(base::MsgAnswer::Yes);
    form().showForm();
    QCoreApplication::processEvents();
    list("RunList").setFocus();
    QTest::keyClick(&list("RunList"), Qt::Key_Delete);
    EXPECT_EQ(lastTitle(), "Cannot Delete - Run Has Stops Assigned to it");
    EXPECT_EQ(lastText(),
              "Oops, this run has stops assigned to it.  Sorry but you cannot delete a run with "
              "stops assigned to it.");
    EXPECT_EQ(found().size(), 5U);
}

TEST_F(ActionsTest, TellsWhenAnotherUserWasFaster) {
    choose("103-PM");
    byOthers("DELETE FROM RUN WHERE RUN = '103-PM'");
    answer(base::MsgAnswer::Yes);
    click("Delete");
    EXPECT_THAT(lastText(), HasSubstr("103-PM"));
    EXPECT_THAT(titles(), ElementsAre("Please Confirm Removal of this Run", "Run Not Found"));
    EXPECT_EQ(text("TotSel"), "3");

    for (const char* button : {"Edit", "MergeRuns"}) {
        choose("102-AM");
        byOthers("DELETE FROM RUN WHERE RUN = '102-AM'");
        click(button);
        EXPECT_THAT(titles(), ElementsAre("Run Not Found")) << button;
        EXPECT_EQ(text("TotSel"), "2");
        support::RunBuilder("102-AM").into(district);
        found();
    }
}

TEST_F(ActionsTest, AsksForTheAuthorityBeforeItDeletes) {
    startup::gSecurityOn = true;
    choose("103-PM");
    click("Delete");
    EXPECT_THAT(titles(), ElementsAre("Do Not Have Authority"));
}

TEST_F(ActionsTest, KeepsOrderSelectionAndChoiceWhenItSearchesAgain) {
    auto& runs = list("RunList");
    runs.toggleSort(0);
    runs.toggleSort(0);
    choose("102-AM");
    select("RunList", {0, 2});
    EXPECT_THAT(form().selectedRuns(), ElementsAre("201-PM", "102-AM"));
    byOthers("DELETE FROM RUN WHERE RUN = '103-PM'");
    form().searchAgain();
    EXPECT_THAT(form().selectedRuns(), ElementsAre("201-PM", "102-AM"));
    EXPECT_EQ(runs.sortOrder(), Qt::DescendingOrder);
    EXPECT_EQ(chosen(), "102-AM");
    EXPECT_EQ(runs.chosenRow(), 1);

    byOthers("DELETE FROM RUN WHERE RUN = '102-AM'");
    form().searchAgain();
    EXPECT_EQ(chosen(), "101-AM");
    found();
    EXPECT_EQ(chosen(), "");
    EXPECT_EQ(runs.sortColumn(), -1);
}

}  // namespace
}  // namespace runsearch
