// How often the run editor waits for a server: at 1 ms of network that is most of what an action
// takes. The figures may fall, never grow.

#include <QLabel>

#include "farsession.h"
#include "runedit/editor/Run.h"
#include "support/formtest.h"

namespace {

class EditTrips : public support::FormTest<FarSession> {
protected:
    runedit::Run& form() override { return loaded<runedit::Run>(); }
};

TEST_F(EditTrips, OfTheRunEditorAreFew) {
    const auto opened = tripsOf([&] {
        forms::FormRegistry::instance().destroyAll();
        auto& run = made<runedit::Run>();
        run.edit("FAR");
        run.load();
    });
    EXPECT_EQ(opened, 3);
    EXPECT_EQ(text("Heading"), "Run FAR");
    int round = 0;
    const auto saved = tripsOf([&] {
        type("OverFill", std::to_string(++round));
        click("OK");
    });
    EXPECT_EQ(saved, 8);
    EXPECT_EQ(storedRun("OverFill", "FAR"), "2");
    EXPECT_EQ(tripsOf([&] { click("CalcTimes"); }), 7);
    EXPECT_THAT(titles(), testing::IsEmpty());
    const auto withWarnings = tripsOf([&] {
        type("BellTime", fmt::format("7:2{}", ++round));
        click("OK");
    });
    EXPECT_EQ(withWarnings, saved);
    EXPECT_EQ(stored("SELECT COUNT(*) FROM RUNWARNING WHERE RUN='FAR' AND WARNINGTYPE='LATE BELL' "
                     "AND WARNINGTEXT LIKE '%FAR-17%'"),
              "1");
}

}  // namespace
