#include <QMenu>
#include <QTest>

#include "platform/store/open/open.h"
#include "startup/forms/changewatch.h"
#include "support/runbuilder.h"
#include "support/storewatch.h"
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

    list("RunList").toggleSort(0);
    choose("102-AM");
    click("Delete");
    EXPECT_EQ(lastText(),
              "Are you sure you want to remove this run?\n\n102-AM, Pine 100%\n"
              "School PINE, trip type AM, bell 12:15 AM");
    EXPECT_EQ(chosen(), "102-AM") << "No is the default";
    choose("103-PM");
    startup::gSecurityOn = true;
    click("Delete");
    EXPECT_EQ(lastTitle(), "Do Not Have Authority");
    startup::gSecurityOn = false;
    answer(base::MsgAnswer::Yes);
    const auto other = store::open(district.path(data::DatabaseFile::Routing), 1);
    support::StoreWatch::before = [&](std::string_view statement) {
        if (statement.starts_with("DELETE") && !statement.ends_with("WHERE 0")) {
            EXPECT_THROW(other->execute("INSERT INTO STOP_TRIPTYPE(RUN) VALUES ('103-PM')"),
                         store::StoreError);
        }
    };
    click("Delete");
    support::StoreWatch::before = {};
    EXPECT_EQ(lastText(),
              "Are you sure you want to remove this run?\n\n103-PM\nSchool ASH, trip type PM");
    EXPECT_EQ(text("TotSel"), "3");
    EXPECT_EQ(row("103-PM"), "");
    EXPECT_EQ(list("RunList").sortColumn(), 0) << "order and place stay";
    EXPECT_EQ(chosen(), "201-PM") << "the next row";
}

TEST_F(ActionsTest, GoesToTheRowThatWasClickedLastByAnyButton) {
    form().showForm();
    auto& runs = list("RunList");
    const auto centre = [&](const char* run) {
        return runs.visualRect(runs.model()->index(rowOf("RunList", run), 0)).center();
    };
    QTest::mouseClick(runs.viewport(), Qt::LeftButton, {}, centre("101-AM"));
    QTest::mouseClick(runs.viewport(), Qt::RightButton, {}, centre("103-PM"));
    EXPECT_EQ(text("ChosenRun"), "103-PM");
    QTest::mouseClick(runs.viewport(), Qt::LeftButton, Qt::ControlModifier, centre("101-AM"));
    EXPECT_EQ(text("ChosenRun") + ", " + text("ChosenDescription"), "101-AM, Oak morning");
    QTest::mouseClick(runs.viewport(), Qt::RightButton, {}, centre("103-PM"));
    EXPECT_EQ(text("SelectedCount"), "2 selected") << "they stay selected";
    answer(base::MsgAnswer::Yes);
    click("Delete");
    EXPECT_EQ(column("RunList").size(), 3U);
    EXPECT_EQ(row("103-PM"), "");
    EXPECT_THAT(form().selectedRuns(), ElementsAre("101-AM"));
}

TEST_F(ActionsTest, OffersInTheMenuOfTheListWhatGoesToTheChosenRun) {
    const auto offered = [&] {
        QMenu menu;
        list("RunList").fillMenu(menu);
        std::string texts;
        for (auto* action : menu.actions()) {
            texts += action->text().remove('&').toStdString() + (action->isEnabled() ? " " : "- ");
        }
        return texts;
    };
    EXPECT_THAT(offered(),
                testing::StartsWith("Edit Delete Merge Runs Map Run Log Print  Copy Rows- "));
    startup::gSecurityOn = true;
    found();
    EXPECT_THAT(offered(), testing::StartsWith("Edit Delete- Merge Runs Map Run Log Print- "));
    startup::gSecurityOn = false;

    list("RunList").actions().at(4)->trigger();
    EXPECT_EQ(lastTitle(), "No Run Selected");
    choose("101-AM");
    list("RunList").actions().at(4)->trigger();
    ASSERT_NE(opened("RunLogInquiry"), nullptr);
    list("RunList").actions().at(3)->trigger();
    ASSERT_NE(opened("Run"), nullptr) << "it hands the run over and waits for the answer";
}

TEST_F(ActionsTest, RefusesToDeleteARunWithStops) {
    support::RunBuilder("NEW").bell("8:00").stop("S3", {.load = 2, .at = "7:10"}).into(district);
    found();
    EXPECT_THAT(row("NEW"), testing::StartsWith("NEW| |||08:00 AM|"));
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

TEST_F(ActionsTest, KeepsOrderSelectionAndChoiceWhenItSearchesAgain) {
    auto& runs = list("RunList");
    runs.toggleSort(0);
    runs.toggleSort(0);
    runedit::RunSequence& sequence = form();
    EXPECT_EQ(sequence.count() - sequence.placeOf("101-AM"), 0) << "in the order shown";
    EXPECT_EQ(sequence.placeOf("NONE"), 0);
    EXPECT_EQ(sequence.choose(3), "102-AM");
    select("RunList", {0, 2});
    EXPECT_THAT(form().selectedRuns(), ElementsAre("201-PM", "102-AM"));
    byOthers("DELETE FROM RUN WHERE RUN = '103-PM'");
    form().Form_Activate();
    EXPECT_EQ(text("TotSel"), "4") << "nobody asked for a new search";
    byOthers("UPDATE RUN SET DESCRIPTION = 'Elm' WHERE RUN = '102-AM'");
    const auto* note = form().findChild<QWidget*>("ChangedNote");
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return text("ChangedText").find("2 runs of") != std::string::npos; }));
    startup::RefreshRunList = true;
    form().Form_Activate();
    EXPECT_FALSE(startup::RefreshRunList);
    EXPECT_TRUE(note->isHidden());
    emit startup::ChangeWatch::instance().changed(
        {true, true, {{"RUN", "102-am"}, {"STOP_TRIPTYPE", "102-AM"}, {"RUN", "900-AM"}}});
    EXPECT_THAT(text("ChangedText"), HasSubstr("1 run of"));
    EXPECT_EQ(text("TotSel"), "3");
    EXPECT_THAT(form().selectedRuns(), ElementsAre("201-PM", "102-AM"));
    EXPECT_EQ(runs.sortOrder(), Qt::DescendingOrder);
    EXPECT_EQ(chosen(), "102-AM");
    EXPECT_EQ(runs.chosenRow(), 1);

    byOthers("DELETE FROM RUN WHERE RUN = '102-AM'");
    form().searchAgain();
    EXPECT_EQ(chosen(), "") << "nobody picked another one";
    EXPECT_THAT(form().selectedRuns(), ElementsAre("201-PM"));
    found();
    EXPECT_EQ(chosen(), "");
    EXPECT_EQ(runs.sortColumn(), -1);
}

}  // namespace
}  // namespace runsearch
