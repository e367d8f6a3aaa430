#include "workfiles/DelWrkFiles.h"

#include <QTest>

#include "../runedit/map/mapsession.h"
#include "platform/forms/timer.h"
#include "support/access.h"
#include "support/formtest.h"

namespace {

class DelWrkFilesTest : public support::FormTest<MapSession> {
protected:
    DelWrkFilesTest() { forms::Timer::setSpeed(500); }
    void TearDown() override {
        forms::Timer::setSpeed(1);
        FormTest::TearDown();
    }
    workfiles::DelWrkFiles& form() override { return loaded<workfiles::DelWrkFiles>(); }

    [[nodiscard]] bool exists(const std::string& name) const {
        return files::exists(district.progPath() + name);
    }
};

TEST_F(DelWrkFilesTest, GivesUpOnAFileThatStaysInUse) {
    write("Runs.txt", "R1|Run");
    write("R1.dbf", "");
    const files::Hold held(district.progPath() + "R1.dbf");
    form();
    ASSERT_TRUE(QTest::qWaitFor(ending));
    EXPECT_TRUE(exists("Runs.txt") && exists("R1.dbf"));
    EXPECT_THAT(file("log.txt"),
                testing::HasSubstr("In DelWrkFiles - giving up, files are still in use."));
    EXPECT_EQ(forms::Application::instance().exitCode(), 1);
}

TEST_F(DelWrkFilesTest, ShowingStopsTheDeletingUntilItIsAskedFor) {
    write("Runs.txt", "R1|Run");
    write("R1.dbf", "");
    auto held = std::make_unique<files::Hold>(district.progPath() + "R1.dbf");
    form();
    click("SetFile");
    form().showForm();
    EXPECT_THAT(support::accessFindings(form()), testing::IsEmpty());
    held.reset();
    QTest::qWait(50);
    const auto states = [this] { return support::joined(column("FileList", 2), ","); };
    EXPECT_EQ(states(), "there,not there,not there,not there");
    EXPECT_TRUE(exists("R1.dbf") && !ending());
    click("DelFile");
    EXPECT_EQ(states(), "deleted,not there,not there,not there");
    ASSERT_TRUE(QTest::qWaitFor(ending));
    EXPECT_FALSE(exists("Runs.txt"));
    EXPECT_EQ(forms::Application::instance().exitCode(), 0);
}

}  // namespace
