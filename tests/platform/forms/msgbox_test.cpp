#include <QMessageBox>

#include "fixture.h"
#include "platform/forms/qtmsgbox.h"

namespace {

using base::MsgAnswer;
using base::MsgButtons;
using base::MsgIcon;

/// Waits for the open box, then does something with it.
void withOpenBox(std::function<void(QMessageBox&)> act) {
    QTimer::singleShot(0, qApp, [act = std::move(act)] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(widget); box != nullptr) {
                act(*box);
            }
        }
    });
}

TEST_F(FormsTest, EnterGivesTheDefaultAndEscapeTheAnswerThatChangesNothing) {
    forms::QtMsgBox boxes;
    const auto answered = [&](MsgButtons buttons, Qt::Key key) {
        withOpenBox([key](QMessageBox& box) { QTest::keyClick(&box, key); });
        return boxes.show({"Text", "Title", MsgIcon::Question, buttons});
    };
    EXPECT_EQ(answered(MsgButtons::Ok, Qt::Key_Escape), MsgAnswer::Ok);
    EXPECT_EQ(answered(MsgButtons::YesNo, Qt::Key_Escape), MsgAnswer::No);
    EXPECT_EQ(answered(MsgButtons::YesNo, Qt::Key_Return), MsgAnswer::Yes);
    EXPECT_EQ(answered(MsgButtons::YesNoCancel, Qt::Key_Escape), MsgAnswer::Cancel);
    EXPECT_EQ(answered(MsgButtons::RetryCancel, Qt::Key_Return), MsgAnswer::Retry);
    EXPECT_EQ(answered(MsgButtons::OkCancel, Qt::Key_Escape), MsgAnswer::Cancel);
}

TEST_F(FormsTest, TextsStandAsTheyAre) {
    forms::QtMsgBox boxes;
    withOpenBox([](QMessageBox& box) {
        EXPECT_EQ(box.text(), "Oops, <b>two</b>  blanks & more");
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        box.accept();
    });
    boxes.show({"Oops, <b>two</b>  blanks & more", "Title", MsgIcon::Critical, MsgButtons::Ok});
}

TEST_F(FormsTest, AProgramThatEndsUnderAnOpenBoxDoesNotGoOnBehindIt) {
    forms::QtMsgBox boxes;
    DemoForm& form = shown("main");
    bool wentOn = false;
    form.onClick = [&] {
        QTimer::singleShot(0, qApp, [] { app().guarded([] { throw base::EndProgram{2}; }); });
        boxes.show({"Text", "Title", MsgIcon::Information, MsgButtons::Ok});
        wentOn = true;
    };
    QTimer::singleShot(0, &form, [&form] { form.button.click(); });
    EXPECT_EQ(app().run(), 2);
    EXPECT_FALSE(wentOn);
}

}  // namespace
