#include "workfiles/DelWrkFiles.h"

#include <QTest>

#include "platform/files/files.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"
#include "support/formtest.h"

namespace {

class DelWrkFilesTest : public support::FormTest<> {
protected:
    DelWrkFilesTest() { forms::Timer::setSpeed(500); }
    void TearDown() override {
        forms::Timer::setSpeed(1);
        FormTest::TearDown();
    }
    workfiles::DelWrkFiles& form() override { return loaded<workfiles::DelWrkFiles>(); }

    void write(const std::string& name, std::string_view text = "") const {
        files::write(district.progPath() + name, text);
    }
    [[nodiscard]] bool exists(const std::string& name) const {
        return files::exists(district.progPath() + name);
    }
};

TEST_F(DelWrkFilesTest, GivesUpOnAFileThatStaysInUse) {
    write("Runs.txt", "R1|Run");
    write("R1.dbf");
    const files::Hold held(district.progPath() + "R1.dbf");
    form();
    ASSERT_TRUE(QTest::qWaitFor(ending));
    EXPECT_TRUE(exists("Runs.txt") && exists("R1.dbf"));
    EXPECT_THAT(support::contentsOf(district.progPath() + "log.txt"),
                testing::HasSubstr("In DelWrkFiles - giving up, files are still in use."));
    EXPECT_EQ(forms::Application::instance().exitCode(), 1);
}

TEST_F(DelWrkFilesTest, ShowingStopsTheDeletingUntilItIsAskedFor) {
    write("Runs.txt", "R1|Run");
    write("R1.dbf");
    auto held = std::make_unique<files::Hold>(district.progPath() + "R1.dbf");
    form();
    click("SetFile");
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

TEST_F(DelWrkFilesTest, TooManyRunsAreReportedAndEndIt) {
    write("Runs.txt", "1|\n2|\n3|\n4|\n5|\n6|\n7|\n8|\n9|\n0|\n1|\n2|\n3|\n4|\n5|\n6|\n7|\n");
    forms::Application::instance().guarded([&] { form(); });
    EXPECT_THAT(texts(), testing::ElementsAre(testing::HasSubstr("Error (9)")));
    EXPECT_TRUE(ending() && exists("Runs.txt"));
}

}  // namespace
