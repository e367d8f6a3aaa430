#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include "fixture.h"
#include "platform/forms/messagebox.h"
#include "platform/forms/qtmsgbox.h"

namespace {

using base::MsgAnswer;
using base::MsgButtons;
using base::MsgIcon;
using base::MsgRequest;

/// Shows a box and does something with it; its answer.
MsgAnswer shownAnd(const MsgRequest& request, std::function<void(forms::MessageBox&)> act) {
    QTimer::singleShot(0, qApp, [act = std::move(act)] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<forms::MessageBox*>(widget); box != nullptr) {
                act(*box);
            }
        }
    });
    return forms::QtMsgBox().show(request);
}

QStringList labels(const QWidget& box) {
    QStringList texts;
    for (const QLabel* label : box.findChildren<QLabel*>()) {
        if (!label->text().isEmpty()) {
            texts << (label->font().bold() ? "*" : "") + label->text();
        }
    }
    return texts;
}

TEST_F(FormsTest, KeysGiveTheDefaultTheAnswerThatChangesNothingAndTheLetter) {
    const auto answered = [&](const MsgRequest& request, Qt::Key key) {
        return shownAnd(request,
                        [key](forms::MessageBox& box) { QTest::keyClick(box.focusWidget(), key); });
    };
    EXPECT_EQ(answered({.buttons = MsgButtons::Ok}, Qt::Key_Escape), MsgAnswer::Ok);
    EXPECT_EQ(answered({.buttons = MsgButtons::YesNo}, Qt::Key_Escape), MsgAnswer::No);
    EXPECT_EQ(answered({.buttons = MsgButtons::YesNo}, Qt::Key_Return), MsgAnswer::Yes);
    EXPECT_EQ(answered({.buttons = MsgButtons::YesNoCancel}, Qt::Key_Escape), MsgAnswer::Cancel);
    EXPECT_EQ(answered({.buttons = MsgButtons::RetryCancel}, Qt::Key_Return), MsgAnswer::Retry);
    const MsgRequest loss{.buttons = MsgButtons::YesNo, .preferred = MsgAnswer::No};
    EXPECT_EQ(answered(loss, Qt::Key_Return), MsgAnswer::No);
    EXPECT_EQ(answered(loss, Qt::Key_Y), MsgAnswer::Yes);
}

TEST_F(FormsTest, TextsStandAsTheyAreInTheirOrder) {
    shownAnd(
        {.text = "Oops, <b>two</b>  blanks & more.  The rest.", .icon = MsgIcon::Critical},
        [](forms::MessageBox& box) {
            EXPECT_EQ(labels(box), QStringList({"*Oops, <b>two</b>  blanks & more.", "The rest."}));
            QTest::keySequence(&box, QKeySequence::Copy);
            box.reject();
        });
    EXPECT_EQ(QApplication::clipboard()->text(), "Oops, <b>two</b>  blanks & more.  The rest.");
    forms::QtMsgBox desktop;
    base::ports().msgBox = &desktop;
    QTimer::singleShot(0, qApp, [] {
        QWidget& box = *QApplication::activeModalWidget();
        EXPECT_EQ(labels(box), QStringList({"Sure?  Really?", "*101-2", "School OAK\nno stops"}));
        box.close();
    });
    EXPECT_FALSE(base::confirmLoss("Sure?  Really?", "Title", "101-2\nSchool OAK\nno stops"));
    base::ports().msgBox = &recorded;
}

TEST_F(FormsTest, ATextHigherThanTheScreenScrollsAboveItsButtons) {
    std::string text = "Are you sure?\n";
    while (text.size() < 20'000) {
        text += "Stop 100902 has more passengers than seats.\n";
    }
    shownAnd({.text = text, .icon = MsgIcon::Question, .buttons = MsgButtons::YesNo},
             [](forms::MessageBox& box) {
                 EXPECT_TRUE(box.screen()->availableGeometry().contains(box.frameGeometry()));
                 auto* yes = box.findChild<QPushButton*>("", Qt::FindChildrenRecursively);
                 EXPECT_TRUE(box.rect().contains(yes->mapTo(&box, yes->rect().bottomRight())));
                 const auto* bar = box.findChild<QScrollArea*>()->verticalScrollBar();
                 EXPECT_GT(bar->maximum(), 0);
                 QTest::keyClick(box.focusWidget(), Qt::Key_End);
                 EXPECT_EQ(bar->value(), bar->maximum());
                 box.reject();
             });
}

TEST_F(FormsTest, DetailsAreFoldedAwayWithATextThatHasPlainerWords) {
    shownAnd({.text = "Error (9)", .details = "SELECT", .plainWords = "Oops.  Nothing is lost."},
             [](forms::MessageBox& box) {
                 EXPECT_EQ(labels(box), QStringList({"*Oops.", "Nothing is lost."}));
                 const auto closed = box.height();
                 box.findChild<QPushButton*>("Details")->click();
                 settle();
                 EXPECT_GT(box.height(), closed);
                 EXPECT_TRUE(box.screen()->availableGeometry().contains(box.geometry()));
                 box.findChild<QPushButton*>("Copy")->click();
                 box.reject();
             });
    EXPECT_EQ(QApplication::clipboard()->text(), "Error (9)\n\nSELECT");
}

TEST_F(FormsTest, AWaitForAnotherProgramTakesInputForItsCancelAlone) {
    DemoForm& form = shown("main");
    int clicks = 0;
    form.onClick = [&] { ++clicks; };
    auto box = base::ports().waitBox("Waiting for the map.");
    auto& dialog = dynamic_cast<QDialog&>(*box);
    EXPECT_TRUE(box->goesOn());
    EXPECT_TRUE(dialog.isVisible() && dialog.isModal());
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(box->goesOn());
    box.reset();
    form.button.click();
    EXPECT_EQ(clicks, 1);
}

TEST_F(FormsTest, AProgramThatEndsUnderAnOpenBoxDoesNotGoOnBehindIt) {
    forms::QtMsgBox boxes;
    DemoForm& form = shown("main");
    bool wentOn = false;
    form.onClick = [&] {
        QTimer::singleShot(0, qApp, [] { app().guarded([] { throw base::EndProgram{2}; }); });
        boxes.show({.text = "Text"});
        wentOn = true;
    };
    QTimer::singleShot(0, &form, [&form] { form.button.click(); });
    EXPECT_EQ(app().run(), 2);
    EXPECT_FALSE(wentOn);
}

}  // namespace
