#include "platform/controls/datebox.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QFocusEvent>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

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

TEST(DateBox, TidiesOnLeavingButNotUnderAPopupOfItsOwn) {
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* box = new DateBox;
    auto* after = new QLineEdit;
    layout->addWidget(box);
    layout->addWidget(after);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const auto& [reason, text] : {std::pair{Qt::PopupFocusReason, "1/5/26"},
                                       {Qt::TabFocusReason, "1/5/2026"},
                                       {Qt::MouseFocusReason, "1/5/2026"},
                                       {Qt::OtherFocusReason, "1/5/2026"}}) {
        box->setFocus();
        box->setText("1/5/26");
        QFocusEvent left(QEvent::FocusOut, reason);
        QApplication::sendEvent(box, &left);
        EXPECT_EQ(box->text(), text) << reason;
    }
    box->setText("1/5/26");
    box->openCalendar();
    auto* calendar = box->findChild<QCalendarWidget*>();
    ASSERT_TRUE(calendar->isVisible());
    emit calendar->clicked(QDate(2026, 1, 6));
    EXPECT_TRUE(box->hasFocus());
    box->setText("1/7/26");
    QTest::keyClick(box, Qt::Key_Tab);
    EXPECT_TRUE(after->hasFocus());
    EXPECT_EQ(box->text(), "1/7/2026");
}

}  // namespace
