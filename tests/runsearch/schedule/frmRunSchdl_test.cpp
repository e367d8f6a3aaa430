#include "runsearch/schedule/frmRunSchdl.h"

#include <QAccessible>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>

#include "platform/forms/filedialog.h"
#include "runsearch/schedule/scheduleview.h"
#include "runsearch/schedule/summarypage.h"
#include "startup/base/session.h"
#include "support/formtest.h"
#include "support/runbuilder.h"
#include "support/wheel.h"

namespace schedule {

namespace {

using support::RunBuilder;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto SearchedRuns =
    "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM, 'Smith, Ann' AS EMPNAME FROM ROUTE "
    "RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID WHERE RUN.RUN LIKE 'S%'";

void fillSchedule(const support::TestDistrict& district) {
    fillSmall(district);
    const auto add = [&](const char* run, int route, const char* start, const char* end) {
        RunBuilder(run)
            .school("OAK")
            .starts(start)
            .ends(end)
            .with("INT_ROUTEID", route)
            .with("DEADHEAD_BEFORE_TIME", 10)
            .with("DEADHEAD_AFTER_TIME", 10)
            .with("TOTAL_STUDENTS", 12)
            .with("monday", route == 1)
            .into(district);
    };
    add("S1", 1, "7:00", "7:30");
    add("S2", 1, "7:35", "8:00");
    add("S3", 2, "7:10", "7:50");
    RunBuilder("S4").starts("15:00").ends("15:00").into(district);
    RunBuilder("S5").into(district);
}

class RunSchedule : public support::FormTest<> {
protected:
    RunSchedule() : FormTest(fillSchedule) { startup::RunSearchSchoolSQL = SearchedRuns; }
    frmRunSchdl& form() override {
        return loaded<frmRunSchdl>(
            RunListPort{.chosen = [this] { return chosen; },
                        .choose = [this](const std::string& run) { chosen = run; },
                        .edit = [this](const std::string& run) { edited = run; }});
    }
    ScheduleView& view() { return control<ScheduleView>("TimeLine"); }
    void show() {
        form().showForm();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form()));
    }
    QPoint middleOf(const char* run) { return view().barRect(placeOf(run)).center(); }
    int placeOf(const std::string& run) {
        const auto& runs = view().plan()->runs;
        return static_cast<int>(std::ranges::find(runs, run, &ScheduledRun::id) - runs.begin());
    }
    std::string selected() {
        const int run = view().selected();
        return run == None ? "" : view().plan()->run(run).id;
    }
    void key(Qt::Key pressed, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(&view(), pressed, with);
    }

    std::string chosen, edited;
};

TEST_F(RunSchedule, ShowsTheSearchedRunsAndFollowsTheListAndLeadsIt) {
    chosen = "S3";
    show();
    EXPECT_EQ(text("Counts"), "5 runs on 2 routes · AM · 1 short");
    EXPECT_EQ(selected(), "S3");
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, middleOf("S2"));
    EXPECT_EQ(chosen, "S2");
    form().follow("S1");
    EXPECT_EQ(selected(), "S1");
    QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, middleOf("S2"));
    EXPECT_EQ(edited, "S2");
}

TEST_F(RunSchedule, GoesFromBarToBarByKeysAndReadsEachOut) {
    show();
    form().follow("S1");
    key(Qt::Key_Right);
    EXPECT_EQ(selected(), "S2");
    key(Qt::Key_Right);
    EXPECT_EQ(selected(), "S2");
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), "S3");
    key(Qt::Key_N);
    EXPECT_EQ(selected(), "S2");
    EXPECT_TRUE(view().isCardShown());
    key(Qt::Key_Escape);
    EXPECT_FALSE(view().isCardShown());
    EXPECT_TRUE(form().isVisible());
    key(Qt::Key_Return);
    EXPECT_EQ(edited, "S2");
    auto* access = QAccessible::queryAccessibleInterface(&view());
    ASSERT_EQ(access->childCount(), 5);
    EXPECT_THAT(access->focusChild()->text(QAccessible::Name).toStdString(),
                testing::StartsWith("Run S2, change short by 5 min after S1"));
}

TEST_F(RunSchedule, TheWheelKeepsTheTimeUnderThePointerAndAFitShowsAllRows) {
    show();
    const auto turn = [&](int notches, Qt::KeyboardModifiers with = {}) {
        const QPointF at(view().frame().plot.left() + 300, view().frame().plot.top() + 20);
        support::turnWheel(*view().viewport(), at, notches, with);
    };
    const auto before = view().frame().scale;
    turn(3, Qt::ControlModifier);
    EXPECT_LT(view().frame().scale.secondsPerPixel, before.secondsPerPixel);
    EXPECT_NEAR(view().frame().scale.timeAt(300), before.timeAt(300), 60);
    auto& across = *view().horizontalScrollBar();
    across.setValue(across.minimum());
    turn(-1, Qt::ShiftModifier);
    EXPECT_EQ(across.value(), across.minimum() + 3 * across.singleStep());
    key(Qt::Key_F);
    EXPECT_EQ(view().frame().rowsInView(), std::pair(0, 4));
    for (const auto& bar : view().chart()->bars) {
        EXPECT_TRUE(view().frame().plot.contains(view().frame().rectOf(bar))) << bar.run;
    }
}

TEST_F(RunSchedule, FiltersFindsAndSumsUpAllRuns) {
    show();
    type("Find", "smith");
    EXPECT_EQ(text("FindCount"), "3 found");
    type("Find", "s3");
    EXPECT_EQ(chosen, "S3");
    control<QTabWidget>("ScheduleTab").setCurrentIndex(1);
    auto& page = control<SummaryPage>("SchoolPage");
    EXPECT_THAT(support::joined({page.list().cellText(0, 0), page.list().cellText(0, 1),
                                 page.list().cellText(0, 9), page.list().cellText(1, 0),
                                 page.list().cellText(1, 1), page.list().cellText(1, 9)},
                                "|"),
                "Oak School|3|2|No school|2|0");
    control<QComboBox>("Day").setCurrentIndex(1);
    EXPECT_EQ(text("Counts"), "2 runs on 1 route · AM · 1 short");
    EXPECT_EQ(page.list().rows(), 1);
    control<QComboBox>("Day").setCurrentIndex(5);
    EXPECT_EQ(text("Counts"), "0 runs on 0 routes · all trip types · no problems");
    EXPECT_FALSE(isEnabled("PrintIt") || isEnabled("NextProblem"));
    control<QTabWidget>("ScheduleTab").setCurrentIndex(0);
    EXPECT_FALSE(form().grab().isNull());
}

TEST_F(RunSchedule, KeepsTheSelectionWhereOthersDeletedAnotherRun) {
    chosen = "S3";
    show();
    byOthers("DELETE FROM RUN WHERE RUN = 'S1'");
    form().Reload();
    EXPECT_EQ(selected(), "S3");
    EXPECT_EQ(text("Counts"), "4 runs on 2 routes · AM · no problems");
    byOthers("DELETE FROM RUN WHERE RUN LIKE 'S%'");
    form().Reload();
    EXPECT_EQ(selected(), "");
    key(Qt::Key_Right);
    key(Qt::Key_N);
    key(Qt::Key_F);
    EXPECT_FALSE(form().grab().isNull());
}

TEST_F(RunSchedule, SketchesByDragAndByKeysAndSavesOnlyOnApply) {
    show();
    EXPECT_FALSE(isShown("SketchBar"));
    const auto from = middleOf("S3");
    const auto to = QPoint(from.x(), middleOf("S1").y());
    QTest::mousePress(view().viewport(), Qt::LeftButton, {}, from);
    QTest::mouseMove(view().viewport(), to);
    ASSERT_TRUE(view().drag().has_value());
    EXPECT_EQ(view().plan()->route(view().drag()->route).id, "R1");
    EXPECT_FALSE(form().grab().isNull());
    key(Qt::Key_Escape);
    QTest::mouseRelease(view().viewport(), Qt::LeftButton, {}, to);
    EXPECT_FALSE(isShown("SketchBar"));
    form().follow("S2");
    key(Qt::Key_Right, Qt::ControlModifier);
    key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(text("SketchText"), "1 change kept: S2 at 7:37 AM.  Nothing is saved before Apply.");
    EXPECT_EQ(text("Counts"), "5 runs on 2 routes · AM · no problems");
    EXPECT_EQ(storedRun("STARTTIME", "S2"), "7:35:00 AM");
    click("UndoSketch");
    EXPECT_EQ(text("SketchText"), "1 change kept: S2 at 7:36 AM.  Nothing is saved before Apply.");
    answer(base::MsgAnswer::No);
    form().Exit_Click();
    EXPECT_TRUE(form().isLoaded());
    click("ApplySketch");
    EXPECT_EQ(storedRun("STARTTIME", "S2"), "7:36:00 AM");
    EXPECT_FALSE(isShown("SketchBar"));
    EXPECT_TRUE(startup::RefreshRunList);
}

TEST_F(RunSchedule, BreaksPagesBetweenRowsAndLosesNone) {
    show();
    for (const auto* order : {"ByRoute", "BySchool"}) {
        check(order);
        Pages pages(view().frame(), form().font(), {});
        // Room for two rows a page.
        pages.breakFor({800, 210 + 2.4 * view().frame().rowHeight / view().frame().unit});
        int next = 0;
        for (int page = 0; page < pages.count(); ++page) {
            const auto [first, last] = pages.rowsOf(page);
            EXPECT_EQ(first, next);
            EXPECT_LT(first, last);
            EXPECT_LE(last - first, 2);
            EXPECT_NE(view().chart()->rows[static_cast<std::size_t>(last - 1)].kind,
                      RowKind::School);
            next = last;
        }
        EXPECT_EQ(next, static_cast<int>(view().chart()->rows.size()));
    }
}

/// The words of a picture in the order painted, with rows of a height.
std::string wordsOf(Frame frame, double rowHeight, const std::string& file) {
    frame.rowHeight = rowHeight;
    Pages pages(frame, QApplication::font(), {});
    EXPECT_EQ(savePages(pages, QString::fromStdString(file), FileKind::Svg), QString());
    const auto svg = QString::fromStdString(support::contentsOf(file));
    QStringList words;
    for (const auto& text : QRegularExpression("([^<>]+)</text>").globalMatch(svg)) {
        words << text.captured(1).trimmed();
    }
    return words.join('|').toStdString();
}

TEST_F(RunSchedule, APictureSaysWhatStandsInIt) {
    show();
    const auto words = [&](double rowHeight) {
        Frame frame = view().frame();
        frame.scale = {6.5 * Hour, 5};
        return wordsOf(frame, rowHeight * frame.unit, district.folder() + "words.svg");
    };
    EXPECT_THAT(words(40), AllOf(HasSubstr("|5 min short|no times|R1|Smith, Ann|B7|R2|"),
                                 HasSubstr("|Idle|9|Under 15 min|Overlap|")));
    EXPECT_THAT(words(4), AllOf(HasSubstr("no times|Route|"), HasSubstr("Under 15 min")));
    check("BySchool");
    EXPECT_THAT(words(40), HasSubstr("|Oak School|R1|Smith, Ann|R2|Smith, Ann|"));
    EXPECT_THAT(words(4), HasSubstr("No school|School|"));
}

TEST_F(RunSchedule, ExportsFilesThatSayWhatTheyAre) {
    show();
    const auto begins = [&](const char* name) {
        auto file = QString::fromStdString(district.folder() + name);
        forms::setFileChooser([&](const forms::FileQuestion& asked) {
            EXPECT_TRUE(asked.isToWrite);
            return file;
        });
        click("ExportIt");
        QFile written(file);
        return written.open(QIODevice::ReadOnly) ? written.read(5).toStdString() : "none";
    };
    EXPECT_EQ(begins("a.pdf"), "%PDF-");
    EXPECT_EQ(begins("a.svg"), "<?xml");
    EXPECT_EQ(begins("a.PNG").substr(1, 3), "PNG");
    EXPECT_TRUE(titles().empty());
    EXPECT_EQ(begins("a.doc"), "none");
    EXPECT_EQ(begins("no/such/a.pdf"), "none");
    EXPECT_THAT(lastText(), HasSubstr("could not be written: No such file or directory."));
    EXPECT_THAT(titles(), ElementsAre("Not Exported", "Not Exported"));
    forms::setFileChooser({});
}

TEST_F(RunSchedule, ClosesASchoolToOneRow) {
    show();
    check("BySchool");
    const auto rows = view().chart()->rows.size();
    const auto& frame = view().frame();
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {},
                      QPoint(10, static_cast<int>(frame.y(1) + 5)));
    EXPECT_EQ(view().chart()->rows.size(), rows - 3);
    click("CollapseAll");
    EXPECT_EQ(view().chart()->rows.size(), rows);
}

}  // namespace

}  // namespace schedule
