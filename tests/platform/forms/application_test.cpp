#include "fixture.h"

namespace {

using testing::ElementsAre;

TEST_F(FormsTest, AnEndAskedForBeforeTheLoopStartsIsNotLost) {
    app().guarded([] { throw base::EndProgram{3}; });
    EXPECT_TRUE(app().ending());
    EXPECT_EQ(app().run(), 3);
}

TEST_F(FormsTest, TheProgramEndsWithTheLastFormAndTheFormsAreDestroyedAfterwards) {
    DemoForm& form = shown("main");
    QTimer::singleShot(0, &form, [&form] { form.close(); });
    EXPECT_EQ(app().run(), 0);
    EXPECT_THAT(log,
                ElementsAre("main loaded", "main activated", "main unloaded", "main destroyed"));
}

TEST_F(FormsTest, AnEndFromASlotInsideAYieldUnwindsTheYieldingProcedure) {
    DemoForm& form = shown("main");
    int rounds = 0;
    bool unwound = false;
    form.onClick = [&] {
        struct Unwinding {
            bool& flag;
            ~Unwinding() { flag = true; }
        } unwinding{unwound};
        QTimer::singleShot(0, &form.stop, [&form] { form.stop.click(); });
        for (; rounds < 100; ++rounds) {
            app().yield();
        }
    };
    forms::on(&form.stop, &QPushButton::clicked, &form, [] {
        base::ports().forms->unloadAll();
        throw base::EndProgram{7};
    });
    QTimer::singleShot(0, &form, [&form] { form.button.click(); });
    EXPECT_EQ(app().run(), 7);
    EXPECT_TRUE(unwound);
    EXPECT_LT(rounds, 5);
}

TEST_F(FormsTest, AnUntrappedErrorIsShownAndEndsTheProgram) {
    DemoForm& form = shown("main");
    form.onClick = [] { base::raise(base::errors::TypeMismatch); };
    QTimer::singleShot(0, &form, [&form] { form.button.click(); });
    EXPECT_EQ(app().run(), 1);
    ASSERT_EQ(recorded.shown.size(), 1U);
    EXPECT_EQ(recorded.shown[0].text, "Run-time error 13:\n\nType mismatch");
    EXPECT_EQ(recorded.shown[0].title, "Test Program");
    EXPECT_THAT(log, testing::Contains("main unloaded"));
}

TEST_F(FormsTest, ProceduresTakeAsManyOfASignalsArgumentsAsTheyLikeUntilTheProgramEnds) {
    DemoForm& form = shown("main");
    bool checked = false;
    int calls = 0;
    form.button.setCheckable(true);
    forms::on(&form.button, &QPushButton::clicked, &form, [&](bool now) { checked = now; });
    forms::on(&form.button, &QPushButton::clicked, &form, [&] { ++calls; });
    form.button.click();
    app().endProgram(0);
    form.button.click();
    EXPECT_TRUE(checked);
    EXPECT_EQ(calls, 1);
}

TEST_F(FormsTest, ShiftAndF10OpenTheMenuOfWhatHasTheFocus) {
    auto& form = shown("A");
    QWidget inner(&form);
    inner.setContextMenuPolicy(Qt::CustomContextMenu);
    int menus = 0;
    QObject::connect(&inner, &QWidget::customContextMenuRequested, [&] { ++menus; });
    QTest::keyClick(&inner, Qt::Key_F10);
    EXPECT_EQ(menus, 0);
    QTest::keyClick(&inner, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(menus, 1);
}

}  // namespace
