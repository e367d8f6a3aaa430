#include "platform/controls/datebox.h"

#include <QAction>
#include <QCalendarWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "platform/base/datetext.h"

namespace {

using controls::DateBox;

TEST(DateBox, TidiesDaysAndTakesThemFromACalendar) {
    DateBox box;
    box.show();
    box.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
    for (const auto& [typed, tidy] : {std::pair{"1/5/26", "1/5/2026"},
                                      {"2026-01-05", "1/5/2026"},
                                      {"2/30/2026", "2/30/2026"},
                                      {"1/5/2026 8 am", "1/5/2026 8 am"},
                                      {"8:00", "8:00"},
                                      {"  ", ""}}) {
        box.clear();
        QTest::keyClicks(&box, typed);
        QTest::keyClick(&box, Qt::Key_Return);
        EXPECT_EQ(box.text(), tidy);
    }
    box.setText("2/27/26");
    QTest::keyClick(&box, Qt::Key_F4);
    auto* calendar = box.findChild<QCalendarWidget*>();
    ASSERT_TRUE(calendar->isVisible());
    EXPECT_EQ(calendar->selectedDate(), QDate(2026, 2, 27));
    QTest::keyClick(calendar->focusWidget(), Qt::Key_Right);
    QTest::keyClick(calendar->focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(calendar->isVisible());
    EXPECT_EQ(box.text(), "2/28/2026");
}

}  // namespace
