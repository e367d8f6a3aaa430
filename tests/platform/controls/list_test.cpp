#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"

namespace {

using controls::MultiColumnList;
using table::CellKind;
using table::TextTable;

TextTable runs(int count) {
    TextTable table;
    table.columns = {{"Run ID"}, {"Description", 2440}, {"Miles", 0, CellKind::Number}};
    for (int i = 0; i < count; ++i) {
        const std::size_t row = table.addRow();
        table.setText(row, 0, "R" + std::to_string(i));
        table.setText(row, 1, "Run number " + std::to_string(i));
        table.set(row, 2, (i * 7) % count);
    }
    return table;
}

class ListTest : public testing::Test {
protected:
    ListTest() {
        window.setObjectName("window");
        list.setObjectName("RunList");
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&before);
        layout->addWidget(&list);
        window.resize(600, 400);
        show();
    }
    ~ListTest() override { controls::LayoutMemory::instance().forget(); }

    void show() {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        before.setFocus();
    }
    void clickRow(int row, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, centre(row));
    }
    QPoint centre(int row) { return list.visualRect(list.model()->index(row, 0)).center(); }

    QWidget window;
    QLineEdit before;
    MultiColumnList list;
};

TEST_F(ListTest, TheWidestColumnOfTextsSparesTheListItsBarAndTakesBackItsWidth) {
    list.setTable(runs(30));
    const int given = list.header()->sectionSize(1);
    const QScrollBar& bar = *list.horizontalScrollBar();
    window.resize(window.width() - list.viewport()->width() + list.header()->length() - 15, 400);
    QApplication::processEvents();
    EXPECT_LT(list.header()->sectionSize(1), given);
    EXPECT_EQ(bar.maximum(), 0);
    window.resize(600, 400);
    QApplication::processEvents();
    EXPECT_EQ(list.header()->sectionSize(1), given);
}

TEST_F(ListTest, AFillIsOneResetAndForgetsWhatWasChosen) {
    list.setTable(runs(5));
    list.choose(3);
    list.toggleSort(2);
    const QSignalSpy resets(list.model(), &QAbstractItemModel::modelReset);
    list.setTable(runs(8));
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(list.rows(), 8);
    EXPECT_EQ(list.chosenRow(), -1);
    EXPECT_EQ(list.chosenKey(), "");
    EXPECT_EQ(list.selectedCount(), 0);
    EXPECT_EQ(list.sortColumn(), -1);
    list.clearAll();
    EXPECT_EQ(list.model()->columnCount(), 0);
}

TEST_F(ListTest, SelectsTwentyThousandRowsAsOneRange) {
    list.setTable(runs(20000));
    std::vector<int> everyOther;
    for (int row = 0; row < 20000; row += 2) {
        everyOther.push_back(row);
    }
    list.selectRows(everyOther);
    EXPECT_EQ(list.selectedCount(), 10000);
    list.selectAllRows();
    EXPECT_EQ(list.selectionModel()->selection().size(), 1);
    EXPECT_EQ(list.selectedCount(), 20000);
    list.toggleSort(2);
    EXPECT_EQ(list.selectionModel()->selection().size(), 1);
    EXPECT_EQ(list.selectedCount(), 20000);
    list.selectNone();
    EXPECT_EQ(list.selectedCount(), 0);
}

TEST_F(ListTest, TabbingInChoosesNothingAndTheArrowKeyThenChoosesTheFirstRow) {
    list.setTable(runs(5));
    const QSignalSpy clicked(&list, &MultiColumnList::rowClicked);
    QTest::keyClick(&before, Qt::Key_Tab);
    ASSERT_TRUE(list.hasFocus());
    EXPECT_EQ(list.chosenRow(), -1);
    EXPECT_EQ(clicked.count(), 0);
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.chosenKey(), "R0");
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.chosenKey(), "R1");
    EXPECT_EQ(clicked.count(), 2);
}

TEST_F(ListTest, ClicksChooseAndDoubleClickOrEnterActivates) {
    list.setTable(runs(5));
    QSignalSpy clicked(&list, &MultiColumnList::rowClicked);
    QSignalSpy activated(&list, &MultiColumnList::rowActivated);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(activated.count(), 0);
    clickRow(2);
    ASSERT_EQ(clicked.count(), 1);
    EXPECT_EQ(clicked.takeFirst().at(0).toInt(), 2);
    clickRow(4, Qt::ControlModifier);
    EXPECT_EQ(list.selectedRows(), (std::vector{2, 4}));
    EXPECT_EQ(list.chosenKey(), "R4");
    clickRow(1);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, centre(1));
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.takeFirst().at(0).toInt(), 1);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(activated.count(), 1);
}

TEST_F(ListTest, OnlyWhatTheUserDoesChooses) {
    list.setTable(runs(12));
    QSignalSpy clicked(&list, &MultiColumnList::rowClicked);
    const auto current = [&](int row) { return list.model()->index(row, 0); };
    list.selectRows(std::vector{1, 2});
    list.setCurrentIndex(current(3));
    EXPECT_EQ(list.chosenRow(), -1) << "the program selects";
    list.choose(5);
    list.selectNone();
    list.setCurrentIndex(current(2));
    EXPECT_EQ(list.chosenRow(), 5);
    EXPECT_EQ(clicked.count(), 0);

    QTest::mouseClick(list.viewport(), Qt::RightButton, {}, centre(4));
    EXPECT_EQ(list.chosenRow(), 4);
    EXPECT_EQ(clicked.count(), 1);
    QTest::mousePress(list.viewport(), Qt::LeftButton, {}, centre(1));
    QMouseEvent drag(QEvent::MouseMove, centre(3), list.viewport()->mapToGlobal(centre(3)),
                     Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &drag);
    EXPECT_EQ(list.selectedRows(), (std::vector{1, 2, 3}));
    EXPECT_EQ(list.chosenRow(), 3);
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, centre(3));

    clicked.clear();
    list.setFocus();
    QTest::keyClicks(&list, "R7");
    EXPECT_EQ(list.chosenKey(), "R7");
    EXPECT_EQ(clicked.back()[0].toInt(), 7);
    QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(list.selectedCount(), 12);
    EXPECT_EQ(list.chosenKey(), "R7");
    list.setCurrentIndex(current(0));
    EXPECT_EQ(list.chosenKey(), "R7") << "the user's act has ended with its key";
}

TEST_F(ListTest, TypingGoesToACodeOrANameAndSelectsNothingWhereClicksToggle) {
    list.setSelectionMode(QAbstractItemView::MultiSelection);
    list.setTable(runs(20));
    list.setFocus();
    const auto typed = [&](const char* letters) {
        QTest::keyClicks(&list, letters);
        const int row = list.currentIndex().row();
        EXPECT_EQ(list.selectedCount(), 0) << letters;
        QTest::keyClick(&list, Qt::Key_Space);
        EXPECT_EQ(list.selectedRows(), std::vector{row}) << letters;
        QTest::keyClick(&list, Qt::Key_Space);
        return list.chosenKey();
    };
    EXPECT_EQ(typed("r17"), "R17");
    EXPECT_EQ(typed("14"), "R14") << "a word of the name";
    EXPECT_EQ(typed("zz"), "R14");
}

TEST_F(ListTest, MarksTheChosenRowAmongSelectedOnes) {
    const auto accent = list.palette().color(QPalette::Highlight);
    list.setMarksRows(true);
    TextTable table = runs(4);
    table.colourRed(3, 0, 2);
    list.setTable(std::move(table));
    list.choose(1);
    list.selectRows(std::vector{1, 2});
    const auto white = list.palette().color(QPalette::HighlightedText);
    const auto row = [&](int number) {
        const QRect cell = list.visualRect(list.model()->index(number, 0));
        return list.viewport()->grab({0, cell.top(), cell.right(), cell.height()}).toImage();
    };
    const auto cell = [&](int number) {
        const QImage image = row(number);
        return image.pixelColor(image.width() - 3, 4);
    };
    const auto gutterHas = [&](int number, const QColor& ink) {
        const QImage image = row(number);
        bool has = false;
        for (int at = 0; at < list.indentation() * image.height(); ++at) {
            has |= image.pixelColor(at % list.indentation(), at / list.indentation()) == ink;
        }
        return has;
    };
    EXPECT_EQ(cell(1), accent);
    EXPECT_NE(cell(2), accent) << "selected, but not chosen";
    EXPECT_NE(cell(2), list.palette().color(QPalette::Base));
    EXPECT_TRUE(gutterHas(1, white));
    EXPECT_FALSE(gutterHas(2, white));
    EXPECT_TRUE(gutterHas(3, Qt::black)) << "a warning on red";
    EXPECT_EQ(cell(3), QColor(255, 0, 0));
    list.chooseAmongSelected(0);
    EXPECT_TRUE(gutterHas(0, accent));
    EXPECT_EQ(list.selectedRows(), (std::vector{1, 2}));
    list.selectAllRows();
    EXPECT_GT(cell(3).red(), 100);
    EXPECT_LT(cell(3).blue(), 20);
}

TEST_F(ListTest, HeaderClicksSortBothWaysWithTheRowsKeptTogether) {
    list.setTable(runs(10));
    const std::vector<int> two{1, 2};
    list.choose(2);
    list.selectRows(two);
    QTest::mouseClick(list.header()->viewport(), Qt::LeftButton, {},
                      {list.header()->sectionViewportPosition(2) + 10, 5});
    EXPECT_EQ(list.sortColumn(), 2);
    EXPECT_EQ(list.sortOrder(), Qt::AscendingOrder);
    EXPECT_EQ(list.cellText(0, 2), "0");
    EXPECT_EQ(list.cellText(9, 2), "9");
    EXPECT_EQ(list.chosenKey(), "R2");
    std::vector<std::string> selected;
    for (const int row : list.selectedRows()) {
        selected.push_back(list.cellText(row, 0));
    }
    EXPECT_EQ(selected, (std::vector<std::string>{"R2", "R1"}));

    list.toggleSort(2);
    EXPECT_EQ(list.sortOrder(), Qt::DescendingOrder);
    EXPECT_EQ(list.cellText(0, 2), "9");
    list.toggleSort(0);
    EXPECT_EQ(list.sortOrder(), Qt::AscendingOrder);
    EXPECT_EQ(list.header()->sortIndicatorSection(), 0);
    EXPECT_EQ(list.chosenKey(), "R2");
}

TEST_F(ListTest, AddedRowsStandBelowTheOthersAndLeaveThePlannersPlaceAlone) {
    list.setTable(runs(30));
    list.choose(2);
    list.toggleSort(0);
    list.toggleSort(0);
    TextTable more = runs(2);
    more.colourRed(1, 0, 0);
    list.appendRows(more);
    EXPECT_EQ(list.rows(), 32);
    EXPECT_EQ(list.sortColumn(), -1);
    EXPECT_EQ(list.cellText(0, 1), "Run number 9");
    EXPECT_EQ(list.cellText(31, 1), "Run number 1");
    EXPECT_TRUE(list.isRed(31, 0));
    EXPECT_EQ(list.chosenKey(), "R2");
    EXPECT_EQ(list.selectedRows(), std::vector{list.chosenRow()});
    list.toggleSort(2);
    EXPECT_EQ(list.cellText(31, 2), "29");
}

TEST_F(ListTest, GutterAndFirstColumnStayWhenTheOthersScrollSideways) {
    list.setMarksRows(true);
    list.setTable(runs(30));
    list.header()->resizeSection(1, 900);
    list.choose(1);
    QApplication::processEvents();
    QWidget& cells = *list.viewport();
    QWidget& captions = *list.header()->viewport();
    const int width = list.header()->sectionSize(0) - 2;
    const auto strip = [&](QWidget& of) {
        return of.grab({0, 0, width, std::min(of.height(), 200)}).toImage();
    };
    const auto seen = std::pair(strip(cells), strip(captions));
    QScrollBar& bar = *list.horizontalScrollBar();
    bar.setValue(bar.maximum());
    QApplication::processEvents();
    EXPECT_TRUE(strip(cells) == seen.first && strip(captions) == seen.second);

    clickRow(4);
    EXPECT_EQ(list.chosenKey(), "R4");
    EXPECT_EQ(list.indexAt({5, centre(6).y()}).column(), 0);
    EXPECT_EQ(list.indexAt({width + 30, centre(6).y()}).row(), 6);
    EXPECT_NE(list.indexAt({width + 30, centre(6).y()}).column(), 0);
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.chosenKey(), "R5");
    EXPECT_EQ(bar.value(), bar.maximum()) << "the row was in sight";
    QTest::mouseClick(&captions, Qt::LeftButton, {}, {width / 2, 5});
    EXPECT_EQ(list.sortColumn(), 0);
    // Its edge is its own, from either side and wherever the others have scrolled.
    const int hidden = list.header()->sectionSize(1);
    for (const int beside : {-1, 1}) {
        const int edge = list.header()->sectionSize(0);
        QTest::mousePress(&captions, Qt::LeftButton, {}, {edge + beside, 5});
        QTest::mouseMove(&captions, {edge + beside + 15, 5});
        QTest::mouseMove(&captions, {edge + beside + 20, 5});
        QTest::mouseRelease(&captions, Qt::LeftButton, {}, {edge + beside + 20, 5});
        EXPECT_EQ(list.header()->sectionSize(0), edge + 20);
        EXPECT_EQ(list.header()->sectionSize(1), hidden);
    }
    // Half of the width is left to the others.
    list.header()->resizeSection(0, list.viewport()->width());
    QApplication::processEvents();
    bar.setValue(bar.maximum());
    EXPECT_NE(list.indexAt({5, centre(0).y()}).column(), 0);
}

TEST_F(ListTest, CopiesTheSelectionWithItsCaptionsInTheOrderShown) {
    list.setTable(runs(4));
    list.toggleSort(0);
    list.toggleSort(0);
    const std::vector<int> rows{0, 2};
    list.selectRows(rows);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text(),
              "Run ID\tDescription\tMiles\nR3\tRun number 3\t1\nR1\tRun number 1\t3\n");
    EXPECT_TRUE(copied->html().contains("<th>Miles</th>"));
}

TEST_F(ListTest, RemembersTheUsersWidthsForEachSetOfColumns) {
    list.setTable(runs(4));
    const int given = list.header()->sectionSize(1);
    list.header()->resizeSection(1, given + 37);
    TextTable other;
    other.columns = {{"Stop"}, {"Street", 3000}};
    list.setTable(other);
    EXPECT_NE(list.header()->sectionSize(1), given + 37);
    list.setTable(runs(4));
    EXPECT_EQ(list.header()->sectionSize(1), given + 37);
}

}  // namespace
