#include "platform/controls/timebox.h"

#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

using controls::TimeBox;

TEST(TimeBox, TidiesOnLeavingAndOnEnterAndKeepsWhatIsNoTime) {
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    TimeBox start;
    TimeBox end;
    layout->addWidget(&start);
    layout->addWidget(&end);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));

    start.setFocus();
    QTest::keyClicks(&start, "7:5 am");
    EXPECT_EQ(start.text(), "7:5 am");
    EXPECT_EQ(start.tidied(), "07:05 AM");
    end.setFocus();
    EXPECT_EQ(start.text(), "07:05 AM");

    QTest::keyClicks(&end, "soon");
    start.setFocus();
    EXPECT_EQ(end.text(), "soon");

    start.clear();
    QTest::keyClicks(&start, "1530");
    QTest::keyClick(&start, Qt::Key_Return);
    EXPECT_EQ(start.text(), "03:30 PM");
    start.setText("  ");
    end.setFocus();
    EXPECT_EQ(start.text(), "");
}

}  // namespace
