#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>

#include "fixture.h"
#include "platform/forms/operation.h"

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

TEST_F(FormsTest, ABusyFormIsNeitherClosedNorStartedTwice) {
    DemoForm& form = shown("main");
    {
        const forms::Form::Operation operation(form, &form.stop);
        EXPECT_FALSE(form.button.isEnabled());
        EXPECT_TRUE(form.stop.isEnabled());
        EXPECT_THROW(forms::Form::Operation(form, nullptr), std::logic_error);
        form.close();
        EXPECT_TRUE(form.isLoaded());
        EXPECT_NE(QApplication::overrideCursor(), nullptr);
    }
    EXPECT_TRUE(form.button.isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    form.close();
    EXPECT_FALSE(form.isLoaded());
}

TEST_F(FormsTest, ProgressShowsAndTellsOfTheStopButton) {
    DemoForm& form = shown("main");
    QProgressBar bar;
    QLabel status;
    forms::Progress progress(&bar, &status, &form.stop);
    progress.progress(49.6);
    EXPECT_EQ(bar.value(), 50);
    progress.progress(250);
    EXPECT_EQ(bar.value(), 100);
    progress.status("Run R1");
    EXPECT_EQ(status.text(), "Run R1");
    EXPECT_FALSE(progress.yield());
    form.stop.click();
    EXPECT_TRUE(progress.yield());
}

TEST_F(FormsTest, AFaultWhileLoadingLeavesNoFormBehind) {
    auto& broken = registry().make<DemoForm>("broken", log);
    broken.onLoad = [] { base::raise(base::errors::SubscriptOutOfRange); };
    EXPECT_THROW(broken.load(), base::RunTimeError);
    EXPECT_EQ(registry().find("broken"), nullptr);
    settle();
    EXPECT_THAT(log, ElementsAre("broken loaded", "broken destroyed"));
}

TEST_F(FormsTest, ComesBackInTheSizeItWasLeft) {
    DemoForm& main = shown("main");
    OtherForm* other = &otherShown("other", &main);
    other->resize(517, 323);
    settle();
    other->close();
    settle();
    other = &otherShown("other", &main);
    EXPECT_EQ(other->size(), QSize(517, 323));
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
