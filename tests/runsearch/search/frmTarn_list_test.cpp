#include <QInputDialog>
#include <QTest>
#include <QTimer>

#include "runsearch/finder/runindex.h"
#include "startup/base/mdlDBConnection.h"
#include "support/runbuilder.h"
#include "tarnform.h"

namespace runsearch {
namespace {

using testing::ElementsAre;

class RunListTest : public TarnForm {
protected:
    RunListTest() { found(); }
    void filter(const char* words) { type("RunFilter", words); }
    controls::MultiColumnList& runs() { return list("RunList"); }
};

TEST_F(RunListTest, NoActionGoesToARunThatTheFilterHides) {
    click("SelectAll");
    Controls::choose("RunList", "102-AM");
    runs().selectAllRows();
    filter("morning");
    EXPECT_THAT(form().selectedRuns(), ElementsAre("101-AM"));
    EXPECT_EQ(text("Tarn"), "");
    EXPECT_EQ(text("ChosenRun") + ": " + text("ChosenDescription"),
              "none: 102-AM is hidden by the filter");
    EXPECT_EQ(text("TotSel"), "4") << "found are all";
    click("Delete");
    EXPECT_EQ(lastTitle(), "No Run Selected");
    click("SelectAll");
    EXPECT_EQ(text("SelectedCount"), "1 selected");

    form().searchAgain();
    EXPECT_EQ(runs().rows(), 1) << "what other forms changed";
    EXPECT_THAT(form().selectedRuns(), ElementsAre("101-AM"));
    filter("");
    EXPECT_EQ(text("Tarn"), "102-AM");
    EXPECT_THAT(form().selectedRuns(), ElementsAre("101-AM"));
    filter("morning");
    found();
    EXPECT_EQ(runs().rows(), 4) << "a new search";
    EXPECT_EQ(text("RunFilter"), "");
}

TEST_F(RunListTest, AsksBeforeAnActionTakesRunsThatTheFilterHides) {
    form().showForm();
    filter("morning");
    for (const auto* button : {"ChangeBell", "PrintIt", "TimeLine"}) {
        answer(base::MsgAnswer::Cancel);
        click(button);
        EXPECT_EQ(lastTitle(), "The List Is Filtered") << button;
    }
    EXPECT_EQ(opened("BellTimeChange"), nullptr);
    EXPECT_EQ(opened("frmRunSchdl"), nullptr);
    answer(base::MsgAnswer::Ok);
    click("ChangeBell");
    EXPECT_NE(opened("BellTimeChange"), nullptr);
}

TEST_F(RunListTest, TellsTheTotalsOfWhatIsSelectedWithRoutingToo) {
    startup::gcnRouting->Execute(
        "UPDATE RUN SET TOTAL_STUDENTS = 700, TOTAL_MILES = 1.25, TOTAL_TIME = 7");
    found();
    select("RunList", {0, 2});
    EXPECT_EQ(text("SelectedTotals"), "1,400 students, 2.50 miles, 14.00 minutes");
    check("UseRoute");
    found();
    select("RunList", {1});
    EXPECT_EQ(text("SelectedTotals"), "700 students, 1.25 miles, 7.00 minutes");
    runs().selectNone();
    EXPECT_EQ(text("SelectedTotals"), "");
}

TEST_F(RunListTest, FindsTheRunsThatFitBestFirstThoseOfAStopLast) {
    support::RunBuilder("777-X")
        .with("DESCRIPTION", "Early 10 from École")
        .school("PINE")
        .stop("Q1", {.ofStop = {{"DESCRIPTION", "Quarry Gate"}}})
        .into(district);
    RunIndex index(*startup::gcnRouting);
    int parts = 0;
    for (; !index.isWhole(); ++parts) {
        index.readOn(1);
        (void)index.find("10", 3);
    }
    EXPECT_GT(parts, 5);
    const auto ids = [&](const char* typed, std::size_t most = 9) {
        std::string text;
        for (const auto& found : index.find(typed, most)) {
            text += found.run + (found.why.empty() ? " " : "[" + found.why + "] ");
        }
        return text;
    };
    EXPECT_EQ(ids("10"), "101-AM 102-AM 103-PM 777-X ");
    EXPECT_EQ(ids("10", 2), "101-AM 102-AM ");
    EXPECT_EQ(ids("ÉCOLE early"), "777-X ");
    EXPECT_EQ(ids("gate quarry"), "777-X[stop Q1, Quarry Gate] ");
    EXPECT_EQ(ids("early gate"), "");
    EXPECT_EQ(ids("  "), "");
}

TEST_F(RunListTest, TheFinderOpensTheRunAndChoosesItWhereItIsListed) {
    form().showForm();
    type("RunId", "2");
    found();
    auto& box = control<QLineEdit>("FindRun");
    for (const auto& [typed, run, chosen] :
         {std::tuple{"101", "101-AM", ""}, {"201", "201-PM", "201-PM"}}) {
        box.setFocus();
        QTest::keyClicks(&box, typed);
        QTest::qWait(50);
        QTest::keyClick(&box, Qt::Key_Return);
        auto* editor = opened("Run");
        ASSERT_NE(editor, nullptr);
        EXPECT_EQ(editor->findChild<QLineEdit*>("RunID")->text().toStdString(), run);
        EXPECT_EQ(text("Tarn"), chosen);
        editor->unload();
    }
}

class SavedSearchTest : public RunListTest {
protected:
    void save(const QString& name) {
        QTimer::singleShot(0, [name] {
            auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->setTextValue(name);
            dialog->accept();
        });
        form().SaveSearch_Click();
    }
    void use(int number) {
        form().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form()));
        QTest::keyClick(&form(), static_cast<Qt::Key>(Qt::Key_0 + number), Qt::ControlModifier);
    }
};

TEST_F(SavedSearchTest, BringsBackEveryCriterionAndTellsOfCodesThatAreGone) {
    form().showForm();
    form().SaveSearch_Click();
    EXPECT_EQ(lastTitle(), "No Criteria");
    type("RunId", "1");
    type("Bell_EndTime", "11:00 PM");
    check("SearchStops", false);
    select("lstSchool", {rowOf("lstSchool", "PINE")});
    const auto ids = found();
    ASSERT_FALSE(ids.empty());
    save("Mornings");
    save("A first one");
    click("cmdReset");
    use(2);
    EXPECT_EQ(column("RunList"), ids);
    EXPECT_EQ(text("RunId") + ", " + text("Bell_EndTime"), "1, 11:00 PM");

    startup::gcnRouting->Execute("DELETE FROM SCHOOL WHERE SCHOOL = \"PINE\"");
    use(1);
    EXPECT_EQ(lastTitle(), "Criteria Left Out");
    EXPECT_THAT(lastText(), testing::HasSubstr("school PINE"));
    EXPECT_EQ(list("RunList").rows(), 0) << "it would find more";
    use(3);
    EXPECT_EQ(list("RunList").rows(), 0) << "there is none";
}

}  // namespace
}  // namespace runsearch
