#include "startup/main/RunStartup.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include <gmock/gmock.h>
#include <unistd.h>

#include "data/lookups/mdlGetItems.h"
#include "data/schema/version.h"
#include "platform/base/error.h"
#include "platform/forms/application.h"
#include "platform/forms/form.h"
#include "platform/forms/formregistry.h"
#include "platform/password/password.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "startup/base/COSInfo.h"
#include "startup/base/session.h"
#include "startup/logon/logonticket.h"
#include "support/commandoutput.h"
#include "support/smalldistrict.h"
#include "support/testdistrict.h"
#include "support/testsession.h"

namespace {

using data::DatabaseFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Main as the program runs it: from the edge of the event loop.
class RunStartup : public testing::Test {
protected:
    void SetUp() override {
        application().startAfresh();
        district_.addUser("ANN", "secret", {"RTG210"});
        startup::COSInfo::useFolder(district_.configFolder());
    }
    void TearDown() override { application().startAfresh(); }

    static forms::Application& application() { return forms::Application::instance(); }
    static forms::Form* mainForm() { return forms::FormRegistry::instance().find("frmTarn"); }
    static void run(const std::string& commandLine) {
        application().guarded([&] { startup::Main(commandLine); });
    }
    [[nodiscard]] std::string box(std::size_t index) const {
        return index < session_.boxes.shown.size() ? session_.boxes.shown[index].text : "(no box)";
    }

    support::TestDistrict district_;
    support::TestSession session_;
};

TEST_F(RunStartup, AKnownUserGetsTheMainForm) {
    support::fillSmall(district_);
    run("ANN");
    ASSERT_NE(mainForm(), nullptr) << box(0);
    EXPECT_TRUE(mainForm()->isVisible());
    EXPECT_FALSE(application().ending());
    EXPECT_EQ(startup::gCommandLine, "ANN");
    EXPECT_THAT(session_.processes.started, IsEmpty());
    EXPECT_THAT(session_.boxes.shown, IsEmpty());
    EXPECT_EQ(mainForm()->windowTitle(), "Runs");
    EXPECT_EQ(QGuiApplication::applicationDisplayName().toStdString(),
              data::GetDistrictName() + " \u2014 ANN");
}

TEST_F(RunStartup, NobodyAndAnUnknownUserAreSentToTheLogonProgram) {
    for (const char* user : {"", "   ", "NOBODY", "ANN -x"}) {
        session_.processes.started.clear();
        application().startAfresh();
        startup::resetSession();
        run(user);
        EXPECT_THAT(session_.processes.started,
                    ElementsAre(district_.progPath() + "Logon.Exe TARN"))
            << user;
        EXPECT_EQ(mainForm(), nullptr) << user;
        EXPECT_TRUE(application().ending());
        EXPECT_EQ(application().run(), 0);
        EXPECT_EQ(startup::gCommandLine, user);
    }
    EXPECT_THAT(session_.boxes.shown, IsEmpty());
}

TEST_F(RunStartup, WhereAPasswordIsRequiredOnlyTheLogonProgramLetsAUserIn) {
    support::fillSmall(district_);
    const std::string hash = password::hashed("Blue Bus");
    district_.addUser("BO", hash, {});
    district_.writeIni(support::contentsOf(district_.configFolder() + "/route.ini") +
                       "RequirePassword=True\n");
    const auto starts = [&] {
        session_.processes.started.clear();
        application().startAfresh();
        startup::resetSession();
        run("BO");
        return session_.processes.started.empty();
    };
    EXPECT_FALSE(starts());
    startup::leaveTicket("ANN", "secret");
    EXPECT_FALSE(starts());
    startup::leaveTicket("BO", hash);
    EXPECT_TRUE(starts());
    EXPECT_NE(mainForm(), nullptr);
    EXPECT_FALSE(starts()) << "the ticket is good once";
}

TEST_F(RunStartup, AFailedHandOverIsToldAndEndsTheProgram) {
    session_.processes.failure = base::errors::FileNotFound;
    run("");
    EXPECT_THAT(box(0), HasSubstr("File not found"));
    EXPECT_EQ(application().run(), 1);
}

TEST_F(RunStartup, AFileThatMayOnlyBeReadIsToldAtTheStart) {
    support::fillSmall(district_);
    const std::string routing = district_.path(DatabaseFile::Routing);
    std::filesystem::permissions(routing, std::filesystem::perms::owner_read);
    constexpr uid_t Nobody = 65534;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(district_.folder())) {
        if (geteuid() == 0 && chown(entry.path().c_str(), Nobody, 0) != 0) {
            GTEST_SKIP() << "cannot give up the right to write everything";
        }
    }
    const bool gaveUp =
        geteuid() == 0 && chown(district_.folder().c_str(), Nobody, 0) == 0 && seteuid(Nobody) == 0;
    run("ANN");
    EXPECT_THAT(box(0), testing::EndsWith("\n\nrouting.mdb"));
    EXPECT_NE(mainForm(), nullptr);
    application().startAfresh();
    startup::resetSession();
    EXPECT_TRUE(!gaveUp || seteuid(0) == 0);
}

// A rule of the validation is a column of District: a district without it must not meet its first
// validation, nor any form.
TEST_F(RunStartup, ADistrictOfAnotherVersionIsToldBeforeAnyForm) {
    const auto current = data::markOf(DatabaseFile::Trip);
    const auto told = [&] {
        session_.boxes.shown.clear();
        application().startAfresh();
        run("ANN");
        EXPECT_EQ(session_.boxes.shown.size(), 1U);
        EXPECT_EQ(mainForm(), nullptr);
        EXPECT_FALSE(startup::gcnRouting);
        EXPECT_EQ(application().run(), 1);
        return box(0);
    };
    district_.sql(DatabaseFile::Routing, "ALTER TABLE District DROP COLUMN CHECKRUNLATEBELL");
    EXPECT_THAT(told(), HasSubstr("routing.mdb (lacks District.CHECKRUNLATEBELL)"));
    const std::string folder = district_.folder().substr(0, district_.folder().size() - 1);
    EXPECT_THAT(told(), HasSubstr("\n\nvireo-district upgrade \"" + folder + "\""));
    store::open(district_.path(DatabaseFile::Trip))->setMark({current.kind, current.version + 1});
    EXPECT_THAT(told(), HasSubstr("newer than the program"));
    store::open(district_.path(DatabaseFile::Trip))->setMark(data::markOf(DatabaseFile::QDSC));
    EXPECT_THAT(told(), HasSubstr("no files of a district under such a name: trip.mdb"));
}

TEST(CommandLine, IsTheArgumentsJoinedWithSingleBlanks) {
    const std::array words = {"tarn", "ANN", "two  words", "-style", "x"};
    EXPECT_EQ(startup::commandLineOf(static_cast<int>(words.size()), words.data()),
              "ANN two  words -style x");
    EXPECT_EQ(startup::commandLineOf(1, words.data()), "");
}

// Runs the program itself; its output ends in its exit status.
std::string endOf(const std::string& command) {
    return support::outputOf(command + "; echo \"status $?\"");
}

TEST(Program, WithoutADisplayItSaysSoAndEnds) {
    const std::string output = endOf(
        "env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb "
        "'" TARN_PROGRAM "' ANN");
    EXPECT_THAT(output, HasSubstr("tarn: No window can be opened."));
    EXPECT_THAT(output, testing::EndsWith("status 1\n"));
}

TEST(Program, TheMapsSideTellsOfAnOlderDistrict) {
    const support::TestDistrict district;
    store::open(district.path(DatabaseFile::Routing))->setMark({});
    const std::string output =
        endOf("XDG_CONFIG_HOME='" + district.folder() + "' '" MAP_PROGRAM "'");
    EXPECT_THAT(output, HasSubstr("vireo-map: This district is older than the program"));
    EXPECT_THAT(output, testing::EndsWith("status 1\n"));
}

TEST(Program, HandsOverToTheLogonProgramWithExactlyOneArgument) {
    const support::TestDistrict district;
    const support::TemporaryFolder programs;
    const std::string out = programs.path() + "out";
    const std::string logon =
        programs.write("Logon.Exe", "#!/bin/sh\n(printf '%s:' \"$#\" \"$@\") > '" + out + "'\n");
    std::filesystem::permissions(logon, std::filesystem::perms::owner_all);
    std::filesystem::copy(district.path(DatabaseFile::RouteWrk), programs.path());
    district.writeIniWithProgPath(programs.path());
    const std::string output = endOf("XDG_CONFIG_HOME='" + district.folder() +
                                     "' QT_QPA_PLATFORM=offscreen '" TARN_PROGRAM "' NOBODY");
    EXPECT_THAT(output, testing::EndsWith("status 0\n"));
    for (int tries = 0; tries < 500 && support::contentsOf(out).empty(); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(support::contentsOf(out), "1:TARN:");
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    forms::Application application(argc, argv);
    return RUN_ALL_TESTS();
}
