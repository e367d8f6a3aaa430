#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include "platform/controls/multicolumncombo.h"

namespace {

using controls::MultiColumnCombo;
using table::TextTable;

class ComboTest : public testing::Test {
protected:
    ComboTest() {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&combo);
        layout->addWidget(&after);
        TextTable table;
        table.columns = {{"School", 1500}, {"School Name", 3000}};
        for (const auto& [code, name] :
             {std::pair{"012", "Lincoln Elementary"}, {"LIN2", "Grant High"}, {"040", "Adams"}}) {
            const std::size_t row = table.addRow();
            table.setText(row, 0, code);
            table.setText(row, 1, name);
        }
        combo.setTable(std::move(table));
        window.show();
        window.activateWindow();
        show();
    }
    void show() {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        combo.setFocus();
    }
    void type(const char* text) {
        combo.lineEdit()->selectAll();
        QTest::keyClicks(combo.lineEdit(), text);
    }
    QAbstractItemView* offered() { return combo.lineEdit()->completer()->popup(); }

    QWidget window;
    MultiColumnCombo combo;
    QLineEdit after;
};

TEST_F(ComboTest, TypedTextWithoutAMatchStaysAndLeavesNoRowCurrent) {
    QSignalSpy chosen(&combo, &MultiColumnCombo::chosen);
    combo.setText("012");
    type("0");
    EXPECT_EQ(combo.chosenRow(), -1);
    type("nowhere");
    offered()->hide();
    QTest::keyClick(&combo, Qt::Key_Return);
    after.setFocus();
    EXPECT_EQ(combo.text(), "nowhere");
    EXPECT_TRUE(combo.isUnknown());
    EXPECT_EQ(combo.count(), 3);
    EXPECT_EQ(chosen.count(), 0);
}

TEST_F(ComboTest, TheOneRowThatFitsIsTakenByEnterAndByLeaving) {
    QSignalSpy chosen(&combo, &MultiColumnCombo::chosen);
    const auto typedAndKey = [&](const char* text, Qt::Key key) {
        combo.setFocus();
        type(text);
        QTest::keyClick(offered()->isVisible() ? static_cast<QWidget*>(offered()) : &combo, key);
        return combo.text();
    };
    EXPECT_EQ(typedAndKey("adam", Qt::Key_Return), "040");
    EXPECT_EQ(typedAndKey("grant", Qt::Key_Tab), "LIN2");
    EXPECT_EQ(combo.columnText(1), "Grant High");
    EXPECT_TRUE(after.hasFocus());
    EXPECT_EQ(typedAndKey("lin", Qt::Key_Tab), "lin");  // of two
    EXPECT_TRUE(combo.isUnknown());
    combo.setText("adam");  // stored so, not typed
    combo.takeOnlyFit();
    EXPECT_EQ(combo.text(), "adam");
    EXPECT_EQ(chosen.count(), 2);
}

TEST_F(ComboTest, TypedKeyChoosesItsRowWithoutRegardToCase) {
    QSignalSpy chosen(&combo, &MultiColumnCombo::chosen);
    type("lin2");
    EXPECT_EQ(combo.chosenRow(), 1);
    EXPECT_EQ(combo.columnText(1), "Grant High");
    EXPECT_EQ(combo.text(), "lin2");
    EXPECT_EQ(chosen.count(), 1);
    QTest::keyClick(combo.lineEdit(), Qt::Key_Backspace);
    EXPECT_EQ(combo.chosenRow(), -1);
}

TEST_F(ComboTest, TypingOffersRowsThatContainTheTextInAnyColumn) {
    type("linc");
    ASSERT_TRUE(offered()->isVisible());
    ASSERT_EQ(offered()->model()->rowCount(), 1);
    EXPECT_EQ(offered()->model()->index(0, 1).data().toString(), "Lincoln Elementary");
    QTest::keyClick(offered(), Qt::Key_Down);
    QTest::keyClick(offered(), Qt::Key_Return);
    EXPECT_EQ(combo.text(), "012");
    EXPECT_EQ(combo.columnText(1), "Lincoln Elementary");
}

TEST_F(ComboTest, TheWheelChangesNothing) {
    combo.setText("012");
    QWheelEvent wheel({5, 5}, combo.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&combo, &wheel);
    EXPECT_EQ(combo.text(), "012");
}

TEST_F(ComboTest, ThePopupShowsAllColumnsAndFindsWhatIsTyped) {
    combo.showPopup();
    QAbstractItemView* popup = combo.view();
    ASSERT_TRUE(popup->isVisible());
    EXPECT_GE(popup->width(), 2 * combo.fontMetrics().horizontalAdvance("Lincoln Elementary"));
    EXPECT_EQ(popup->verticalScrollBar()->maximum(), 0);
    QTest::keyClicks(popup, "ad");
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(combo.text(), "040");
    EXPECT_EQ(combo.columnText(1), "Adams");
}

TEST_F(ComboTest, LeavingIsToldButOpeningThePopupIsNotLeaving) {
    QSignalSpy left(&combo, &MultiColumnCombo::left);
    combo.showPopup();
    combo.hidePopup();
    EXPECT_EQ(left.count(), 0);
    after.setFocus();
    EXPECT_EQ(left.count(), 1);
}

}  // namespace
