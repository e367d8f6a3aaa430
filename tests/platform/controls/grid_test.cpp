#include "platform/controls/grid.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QStyle>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>

#include <gmock/gmock.h>

#include "platform/controls/celldelegate.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GridTest : public testing::Test {
protected:
    GridTest() {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&grid);
        layout->addWidget(&after);
        grid.setColumns({{"School", "School"}, {"New Bell", "NewBell", true}});
        grid.setRows({{"OAK"}, {"PINE"}, {"ASH"}});
        window.resize(400, 300);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void click(int row, int column, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(grid.view().viewport(), Qt::LeftButton, keys,
                          grid.view().visualRect(grid.view().model()->index(row, column)).center());
    }
    /// To whatever has the focus, as the keyboard does.
    void keys(const char* text) {
        for (; *text != '\0'; ++text) {
            QTest::keyClick(QApplication::focusWidget(), *text);
        }
    }
    void key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    std::vector<std::string> newBells() {
        return {grid.cellText(0, 1), grid.cellText(1, 1), grid.cellText(2, 1)};
    }

    QWidget window;
    controls::Grid grid;
    QLineEdit after;
};

TEST_F(GridTest, TypingInARowGoesIntoItsEditableCellAndEnterGoesOn) {
    QSignalSpy edited(&grid, &controls::Grid::cellEdited);
    click(0, 0);
    keys("8:15");
    key(Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(grid.view().currentIndex().row(), 1);
    keys("9");
    key(Qt::Key_Return);
    QApplication::processEvents();
    keys("7");
    key(Qt::Key_Escape);
    EXPECT_THAT(newBells(), ElementsAre("8:15", "9", " "));
    ASSERT_EQ(edited.count(), 2);
    EXPECT_EQ(edited[1], (QList<QVariant>{1, 1}));

    grid.setCellText(0, 1, "program");
    EXPECT_EQ(edited.count(), 2);
}

TEST_F(GridTest, LeavingOrFinishingTakesOverWhatIsBeingTyped) {
    click(0, 0);
    keys("8:15");
    after.setFocus();
    EXPECT_THAT(newBells(), ElementsAre("8:15", " ", " "));
    click(2, 0);
    click(2, 1);  // a click on a row already selected must not swallow what follows
    keys("8:45");
    grid.finishTyping();
    EXPECT_THAT(newBells(), ElementsAre("8:15", " ", "8:45"));
}

TEST_F(GridTest, SelectsRowsEmptiesAndCopiesThem) {
    QSignalSpy counted(&grid, &controls::Grid::selectionCountChanged);
    click(0, 0);
    click(2, 0, Qt::ControlModifier);
    EXPECT_THAT(grid.selectedRows(), ElementsAre(0, 2));
    EXPECT_EQ(counted.back()[0].toInt(), 2);
    for (int row = 0; row < 3; ++row) {
        grid.setCellText(row, 1, "8:00");
    }
    QTest::keyClick(&grid.view(), Qt::Key_Delete);
    EXPECT_THAT(newBells(), ElementsAre(" ", "8:00", " "));

    grid.selectRows(std::vector{0, 1});
    QTest::keyClick(&grid.view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "School\tNew Bell\nOAK\t \nPINE\t8:00\n");
    QTest::keyClick(&grid.view(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(grid.selectedRows().size(), 3U);
    grid.setRows({{"OAK"}});
    EXPECT_THAT(grid.selectedRows(), IsEmpty());
    EXPECT_EQ(counted.back()[0].toInt(), 0);
}

TEST_F(GridTest, ShowsRedCellsAndGoesToThem) {
    grid.setCellText(1, 1, "soon");
    grid.setRed(1, 1, true);
    grid.typeInto(1, 1);
    EXPECT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
    key(Qt::Key_Escape);
    grid.selectNone();
    const QPoint corner = grid.view().visualRect(grid.view().model()->index(1, 1)).topRight();
    const QColor shown =
        grid.view().viewport()->grab().toImage().pixelColor(corner - QPoint(6, -4));
    EXPECT_GT(shown.red(), 200);
    EXPECT_LT(shown.green(), 50);
    grid.setRed(1, 1, false);
    EXPECT_FALSE(grid.isRed(1, 1));
}

TEST(CellDelegate, DrawsWhatTheStyleWould) {
    QStandardItemModel model(4, 2);
    model.setItem(0, 0, new QStandardItem("Øvre Fjord"));
    model.setItem(1, 0, new QStandardItem("Far more than its column has room for"));
    model.setItem(2, 0, new QStandardItem("12.30"));
    model.item(2)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    model.setItem(3, 0, new QStandardItem("Two\nlines"));
    model.setItem(
        3, 1,
        new QStandardItem(QApplication::style()->standardIcon(QStyle::SP_FileIcon), "A sign"));
    const auto picture = [&](QAbstractItemDelegate* delegate, bool enabled) {
        QTableView view;
        view.setModel(&model);
        view.setItemDelegate(delegate);
        view.selectRow(2);
        view.setEnabled(enabled);
        return view.grab().toImage();
    };
    controls::CellDelegate ours;
    QStyledItemDelegate styles;
    for (const bool enabled : {true, false}) {
        EXPECT_EQ(picture(&ours, enabled), picture(&styles, enabled));
        EXPECT_EQ(picture(&ours, enabled), picture(&styles, enabled)) << "from what was kept";
    }
}

}  // namespace
