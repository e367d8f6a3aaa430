#include "workfiles/DelWrkFiles.h"

#include <QAbstractButton>
#include <QTest>

#include <gmock/gmock.h>

#include "platform/controls/multicolumnlist.h"
#include "platform/files/files.h"
#include "platform/forms/formregistry.h"
#include "startup/base/session.h"
#include "support/testdistrict.h"
#include "support/testsession.h"

namespace {

class DelWrkFilesTest : public testing::Test {
protected:
    DelWrkFilesTest() {
        forms::Application::instance().startAfresh();
        session.start(district.configFolder());
        startup::gProgPath = district.progPath();
        forms::Timer::setSpeed(500);
    }
    ~DelWrkFilesTest() override {
        forms::Timer::setSpeed(1);
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
    }

    void write(const std::string& name, std::string_view text = "") const {
        files::write(district.progPath() + name, text);
    }
    [[nodiscard]] bool exists(const std::string& name) const {
        return files::exists(district.progPath() + name);
    }
    workfiles::DelWrkFiles& form() {
        return forms::FormRegistry::instance().load<workfiles::DelWrkFiles>();
    }
    void click(const char* button) { form().findChild<QAbstractButton*>(button)->click(); }
    static bool ended() { return forms::Application::instance().ending(); }

    support::TestDistrict district;
    support::TestSession session;
};

TEST_F(DelWrkFilesTest, DeletesAtOnceAndEndsWhenTheListIsGone) {
    write("Runs.txt", "R1|Run");
    write("R1.dbf");
    form();
    EXPECT_FALSE(exists("R1.dbf"));
    EXPECT_TRUE(exists("Runs.txt"));
    ASSERT_TRUE(QTest::qWaitFor(ended));
    EXPECT_FALSE(exists("Runs.txt"));
    EXPECT_EQ(forms::Application::instance().exitCode(), 0);
}

TEST_F(DelWrkFilesTest, GivesUpOnAFileThatStaysInUse) {
    write("Runs.txt", "R1|Run");
    write("R1.dbf");
    const files::Hold held(district.progPath() + "R1.dbf");
    form();
    ASSERT_TRUE(QTest::qWaitFor(ended));
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
    const auto& list = *form().findChild<controls::MultiColumnList*>("FileList");
    ASSERT_EQ(list.rows(), 4);
    EXPECT_EQ(list.cellText(0, 2), "there");
    EXPECT_TRUE(exists("R1.dbf") && !ended());
    click("DelFile");
    EXPECT_EQ(list.cellText(0, 2), "deleted");
    ASSERT_TRUE(QTest::qWaitFor(ended));
}

TEST_F(DelWrkFilesTest, TooManyRunsAreReportedAndEndIt) {
    std::string list;
    for (int i = 0; i < 17; ++i) {
        list += "R|\n";
    }
    write("Runs.txt", list);
    forms::Application::instance().guarded([&] { form(); });
    ASSERT_THAT(session.boxes.shown, testing::SizeIs(1));
    EXPECT_THAT(session.boxes.shown[0].text,
                testing::AllOf(testing::HasSubstr("DelFile_Click of Module: DelWrkFiles."),
                               testing::HasSubstr("Error (9)")));
    EXPECT_TRUE(ended());
    EXPECT_TRUE(exists("Runs.txt"));
}

}  // namespace
