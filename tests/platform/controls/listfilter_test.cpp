#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <random>

#include <gtest/gtest.h>

#include "platform/controls/filterline.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"

namespace {

using controls::MultiColumnList;
using table::CellKind;
using table::TextTable;

TextTable runs() {
    TextTable table;
    table.columns = {{"Run"}, {"Description", 2440}, {"Miles", 0, CellKind::Number}};
    for (const auto& [run, description, miles] :
         {std::tuple{"1-AM", "École Oak from 3rd Street", 12},
          {"2-AM", "Pine School", 7},
          {"3-PM", "oak to ÉCOLE", 12},
          {"4-PM", "Pine School by Oak Street", 3}}) {
        const auto row = table.addRow();
        table.setText(row, 0, run);
        table.setText(row, 1, description);
        table.set(row, 2, miles);
    }
    return table;
}

class ListFilterTest : public testing::Test {
protected:
    ListFilterTest() {
        window.setObjectName("window");
        list.setObjectName("Runs");
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&line);
        column->addWidget(&list);
        line.filters(list);
        window.resize(600, 300);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        list.setTable(runs());
    }
    ~ListFilterTest() override { controls::LayoutMemory::instance().forget(); }

    std::string ids() {
        std::string text;
        for (int row = 0; row < list.rows(); ++row) {
            text += list.cellText(row, 0).substr(0, 1);
        }
        return text;
    }
    std::string filtered(const char* words) {
        list.setFilter(words);
        return ids();
    }
    void clickCaption(int column, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(list.header()->viewport(), Qt::LeftButton, keys,
                          {list.header()->sectionViewportPosition(column) + 10, 5});
    }

    QWidget window;
    controls::FilterLine line;
    MultiColumnList list;
};

TEST_F(ListFilterTest, ShowsTheRowsWithAllWordsWhateverTheirCaseOrderAndColumn) {
    EXPECT_EQ(filtered("oak"), "134");
    EXPECT_EQ(filtered("OAK école"), "13");
    EXPECT_EQ(filtered("  12\tpm "), "3");
    EXPECT_EQ(filtered("AM École"), "1") << "no word goes from one cell into the next";
    EXPECT_EQ(filtered("nowhere"), "");
    EXPECT_EQ(filtered(" "), "1234");
    list.header()->setSectionHidden(2, true);
    list.showColumn(1, false);
    EXPECT_EQ(filtered("oak"), "") << "nobody sees why a row is shown";
    EXPECT_GT(line.minimumSizeHint().width(), line.fontMetrics().horizontalAdvance("12 PM école"));
}

TEST_F(ListFilterTest, WhatIsHiddenIsNeitherSelectedNorChosen) {
    list.selectAllRows();
    list.chooseAmongSelected(1);
    const QSignalSpy told(&list, &MultiColumnList::selectionCountChanged);
    list.setFilter("oak");
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(list.selectedCount(), 3);
    EXPECT_EQ(list.chosenKey(), "");
    EXPECT_EQ(list.hiddenChoice(), "2-AM");
    list.selectAllRows();
    list.toggleSort(0);
    list.toggleSort(0);
    EXPECT_EQ(ids(), "431");
    list.setFilter({});
    EXPECT_EQ(ids(), "4321");
    EXPECT_EQ(list.selectedRows(), (std::vector{0, 1, 3})) << "no row comes back selected";
    EXPECT_EQ(list.chosenKey(), "2-AM");
    list.setFilter("oak");
    list.choose(0);
    list.setFilter({});
    EXPECT_EQ(list.chosenKey(), "4-PM") << "chosen since";
    TextTable more = runs();
    list.setFilter("pine");
    list.appendRows(more);
    EXPECT_EQ(ids(), "4224");
    list.selectAllRows();
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QApplication::clipboard()->text().count('\n'), 4);
}

/// Against a plain search through the table.
TEST_F(ListFilterTest, AgreesWithAPlainSearchWhateverIsTypedSortedAndAdded) {
    std::mt19937 random(7);
    TextTable table;
    table.columns = {{"Run"}, {"Description"}};
    for (int i = 0; i < 300; ++i) {
        const auto row = table.addRow();
        table.setText(row, 0, std::to_string(random() % 1000));
        table.setText(row, 1, std::to_string(random() % 100'000));
    }
    list.setTable(table);
    for (int step = 0; step < 60; ++step) {
        list.setFilter(QString::number(random() % 40));
        random() % 2 == 0 ? list.toggleSort(static_cast<int>(random() % 2)) : list.selectAllRows();
        auto shown = list.shown().rows;
        std::sort(shown.begin(), shown.end());
        std::vector<std::size_t> plain;
        const std::string word = list.filter().toStdString();
        for (std::size_t row = 0; row < table.rowCount(); ++row) {
            if (table.text(row, 0).find(word) + 1 > 0 || table.text(row, 1).find(word) + 1 > 0) {
                plain.push_back(row);
            }
        }
        ASSERT_EQ(shown, plain) << word;
        ASSERT_LE(list.selectedCount(), list.rows());
    }
}

TEST_F(ListFilterTest, TheLineTellsTheCountAndItsKeysLeadToAndFro) {
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(line.hasFocus());
    QTest::keyClicks(&line, "pine");
    EXPECT_EQ(line.told(), "2 of 4 shown");
    QTest::keyClick(&line, Qt::Key_Down);
    EXPECT_TRUE(list.hasFocus());
    EXPECT_EQ(list.chosenKey(), "2-AM");
    QTest::keyClick(&list, Qt::Key_Escape);
    EXPECT_EQ(line.text(), "");
    EXPECT_EQ(line.told(), "");
    EXPECT_EQ(ids(), "1234");
}

TEST_F(ListFilterTest, ShiftAndCtrlSortByMore) {
    clickCaption(2);
    clickCaption(0, Qt::ShiftModifier);
    EXPECT_EQ(ids(), "4213");
    clickCaption(0, Qt::ControlModifier);
    EXPECT_EQ(ids(), "4231");
    clickCaption(2, Qt::ShiftModifier);
    EXPECT_EQ(ids(), "3124");
    EXPECT_EQ(list.sorting(), (std::vector<table::SortBy>{{2, true}, {0, true}}));
    clickCaption(1);
    EXPECT_EQ(list.sorting(), (std::vector<table::SortBy>{{1}}));
}

TEST_F(ListFilterTest, ColumnsStandWhereTheUserPutThemAndTheKeyStays) {
    list.header()->moveSection(2, 1);
    list.header()->moveSection(2, 0);
    list.showColumn(0, false);
    EXPECT_EQ(list.columnOrder(), (std::vector{0, 2, 1})) << "nothing stands before the key";
    EXPECT_FALSE(list.header()->isSectionHidden(0));
    const int width = list.header()->sectionSize(1);
    list.showColumn(1, false);
    list.choose(0);
    list.copyRows();
    EXPECT_EQ(QApplication::clipboard()->text(), "Run\tMiles\n1-AM\t12\n");
    list.clearAll();
    list.setTable(runs());
    EXPECT_EQ(list.columnOrder(), (std::vector{0, 2, 1}));
    EXPECT_TRUE(list.header()->isSectionHidden(1));
    list.showColumn(1, true);
    EXPECT_EQ(list.header()->sectionSize(1), width);
    list.resetColumns();
    EXPECT_EQ(list.columnOrder(), (std::vector{0, 1, 2}));
}

}  // namespace
