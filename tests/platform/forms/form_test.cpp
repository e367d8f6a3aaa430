#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QTabWidget>

#include "fixture.h"
#include "platform/forms/operation.h"
#include "platform/forms/timer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_F(FormsTest, IsLoadedOnceAndFoundByItsName) {
    DemoForm& form = shown("frmTarn");
    EXPECT_EQ(&shown("frmTarn"), &form);
    EXPECT_EQ(registry().find("FRMTARN"), &form);
    EXPECT_EQ(registry().find("frmRun"), nullptr);
    EXPECT_THAT(log, ElementsAre("frmTarn loaded", "frmTarn activated"));
}

TEST_F(FormsTest, ActivationIsAReturnFromAnotherFormNotFromABox) {
    DemoForm& main = shown("main");
    log.clear();
    QMessageBox box(&main);
    QTimer::singleShot(0, &box, [&box] { box.accept(); });
    box.exec();
    main.activateWindow();
    settle();
    EXPECT_THAT(log, IsEmpty());

    OtherForm& other = otherShown("other", &main);
    EXPECT_THAT(log, ElementsAre("other loaded", "other activated"));
    log.clear();
    other.close();
    waitUntilActive(main);
    settle();
    EXPECT_THAT(log, UnorderedElementsAre("other unloaded", "main activated", "other destroyed"));
}

TEST_F(FormsTest, AFormThatUnloadsInItsOwnSlotLivesUntilTheSlotIsThrough) {
    DemoForm& main = shown("main");
    OtherForm& other = otherShown("other", &main);
    log.clear();
    other.onClick = [&] {
        other.unload();
        for (int turn = 0; turn < 5; ++turn) {
            app().yield();
        }
        log.emplace_back("slot went on in " + other.name());
    };
    other.button.click();
    settle();
    EXPECT_THAT(log, ElementsAre("other unloaded", "main activated", "slot went on in other",
                                 "other destroyed"));
}

TEST_F(FormsTest, AnUnloadedFormIsSilentAndANewOneTakesItsPlace) {
    DemoForm& main = shown("main");
    OtherForm* first = &otherShown("other", &main);
    int clicks = 0;
    first->onClick = [&] { ++clicks; };
    app().guarded([&] {
        first->unload();
        first->button.click();
        OtherForm& second = otherShown("other", &main);
        EXPECT_NE(&second, first);
        EXPECT_EQ(registry().find("other"), &second);
    });
    EXPECT_EQ(clicks, 0);
}

TEST_F(FormsTest, TheUserClosesWhatAllowsItAndTheProgramClosesAll) {
    DemoForm& form = shown("main");
    form.mayClose = false;
    form.close();
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(form.isLoaded());
    registry().unloadAll();
    EXPECT_THAT(registry().loaded(), IsEmpty());
    EXPECT_FALSE(form.isVisible());
}

TEST_F(FormsTest, AFormTakesTheFormsItOwnsWithIt) {
    DemoForm& main = shown("main");
    otherShown("other", &main);
    log.clear();
    main.close();
    settle();
    EXPECT_THAT(log, UnorderedElementsAre("other unloaded", "main unloaded", "main destroyed",
                                          "other destroyed"));
}

TEST_F(FormsTest, AnOperationShowsItselfIsStoppedByEscapeAndLeavesTheFormAsItWas) {
    DemoForm& form = shown("main");
    QProgressBar bar(&form);
    QLabel status(&form);
    QLineEdit never(&form);
    forms::Timer timer;
    never.setEnabled(false);
    form.button.setFocus();
    const forms::OperationPanel panel{{&bar}, &status, &form.stop, &timer, 60'000, "Idle"};
    form.stop.setEnabled(false);
    panel.clear();
    timer.setEnabled(true);
    {
        forms::Form::Operation operation(form, panel);
        EXPECT_FALSE(form.button.isEnabled());
        EXPECT_FALSE(timer.isEnabled());
        EXPECT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_TRUE(bar.isVisible() && status.isVisible());
        EXPECT_EQ(status.text(), "Idle");
        operation.progress(49.6);
        EXPECT_EQ(bar.value(), 50);
        operation.progress(250);
        EXPECT_EQ(bar.value(), 100);
        operation.status("Run R1");
        EXPECT_FALSE(operation.yield());
        QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_TRUE(operation.yield());
        form.close();
        EXPECT_TRUE(form.isLoaded());
    }
    EXPECT_EQ(status.text(), "Run R1");
    EXPECT_TRUE(bar.isVisible() && timer.isEnabled());
    EXPECT_TRUE(form.button.isEnabled() && form.button.hasFocus());
    EXPECT_FALSE(form.stop.isEnabled() || never.isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    panel.clear();
    EXPECT_EQ(status.text(), "Idle");
    EXPECT_FALSE(bar.isVisible() || status.isVisible() || timer.isEnabled());
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_TRUE(form.isLoaded()) << "Escape has no other button here";
    form.close();
    EXPECT_FALSE(form.isLoaded());
}

// Of three forms, each owned by the one before, it runs in the middle one.
TEST_F(FormsTest, AnOperationCountsAsOneOfOwnersAndOwnedForms) {
    DemoForm& owner = shown("main");
    OtherForm& form = otherShown("other", &owner);
    auto& owned = registry().load<ThirdForm>("third", log, &form);
    owned.showForm();
    owner.button.setEnabled(false);
    owner.stop.setFocus();
    {
        const forms::Form::Operation operation(form, {.stop = &form.stop});
        for (DemoForm* beside : {&owner, static_cast<DemoForm*>(&owned)}) {
            EXPECT_TRUE(beside->isBusy());
            EXPECT_FALSE(beside->stop.isEnabled());
            EXPECT_FALSE(beside->closeForm());
            EXPECT_THROW(forms::Form::Operation{*beside}, std::logic_error);
        }
        EXPECT_TRUE(form.stop.isEnabled());
        owner.stop.setEnabled(true);
        EXPECT_FALSE(owner.stop.isEnabled());
    }
    EXPECT_FALSE(owner.isBusy() || owned.isBusy());
    EXPECT_TRUE(owner.stop.isEnabled() && owned.button.isEnabled() && form.button.isEnabled());
    EXPECT_FALSE(owner.button.isEnabled());
    EXPECT_EQ(owner.focusWidget(), &owner.stop);

    form.setWindowModality(Qt::WindowModal);
    const forms::Form::Operation operation(form);
    EXPECT_TRUE(owner.isBusy());
    EXPECT_TRUE(owner.stop.isEnabled()) << "it cannot be reached under a modal form";
}

TEST_F(FormsTest, AFaultWhileLoadingLeavesNoFormBehind) {
    auto& broken = registry().make<DemoForm>("broken", log);
    broken.onLoad = [] { base::raise(base::errors::SubscriptOutOfRange); };
    EXPECT_THROW(broken.load(), base::RunTimeError);
    EXPECT_EQ(registry().find("broken"), nullptr);
    settle();
    EXPECT_THAT(log, ElementsAre("broken loaded", "broken destroyed"));
}

TEST_F(FormsTest, IsOnTheScreenHoweverLargeItIsAndWhereverItWasLeft) {
    const auto onScreen = [](const QWidget& form) {
        return form.screen()->availableGeometry().contains(form.frameGeometry());
    };
    DemoForm& main = shown("main");
    OtherForm* other = &otherShown("other", &main);
    other->setGeometry(5000, 4000, 517, 323);
    other->close();
    settle();
    other = &otherShown("other", &main);
    EXPECT_TRUE(onScreen(*other));
    const QPoint gap =
        other->screen()->availableGeometry().bottomRight() - other->frameGeometry().bottomRight();
    EXPECT_EQ(gap.x(), gap.y()) << "as near to the corner as it was";
    EXPECT_EQ(other->size(), QSize(517, 323)) << "as it was left";
    auto& large = registry().load<ThirdForm>("large", log, nullptr);
    large.button.setMinimumSize(300, 2000);
    large.showForm();
    waitUntilActive(large);
    EXPECT_TRUE(onScreen(large));
    large.stop.setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(large.rect().contains(large.stop.mapTo(&large, QPoint(1, 1)))) << "it scrolls";
}

TEST_F(FormsTest, EnterPressesTheButtonThatHasTheFocusAndAltWithADigitLeadsIntoAPage) {
    auto& form = registry().make<ThirdForm>("main", log, nullptr);
    form.stop.setDefault(true);
    QTabWidget tabs(&form);
    QWidget plain;
    auto* page = new QWidget;
    auto* box = new QLineEdit(page);
    tabs.addTab(&plain, "One");
    tabs.addTab(page, "Two");
    form.pages(tabs);
    form.showForm();
    waitUntilActive(form);
    int clicks = 0;
    form.onClick = [&] { ++clicks; };
    form.button.setFocus();
    EXPECT_TRUE(form.stop.isDefault());
    QTest::keyClick(&form.button, Qt::Key_Return);
    EXPECT_EQ(clicks, 1);
    QTest::keyClick(&form.button, Qt::Key_2, Qt::AltModifier);
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(FormsTest, GrowsWithTheFont) {
    const QFont usual = QApplication::font();
    QApplication::setFont(QFont(usual.family(), 20));
    auto& form = registry().make<DemoForm>("main", log);
    QLabel heading("Search Runs", &form);
    heading.setFont(QFont(usual.family(), 13, QFont::Bold));
    form.stop.setMaximumWidth(10);
    form.load();
    EXPECT_EQ(heading.font().pointSizeF(), 26);
    EXPECT_EQ(form.stop.maximumWidth(), form.stop.minimumSizeHint().width());
    QApplication::setFont(usual);
}

TEST_F(FormsTest, ControlsAreNamedAfterTheirLabels) {
    auto& form = registry().make<DemoForm>("main", log);
    auto* edit = new QLineEdit(&form);
    auto* label = new QLabel("&Selected Run Id:", &form);
    label->setBuddy(edit);
    form.load();
    EXPECT_EQ(edit->accessibleName(), "Selected Run Id:");
}

}  // namespace
