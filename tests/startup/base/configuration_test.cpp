#include <array>
#include <cstdlib>
#include <string>

#include <gmock/gmock.h>

#include "startup/base/COSInfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/mdlIniRoutines.h"
#include "startup/base/session.h"
#include "support/errors.h"
#include "support/testsession.h"

namespace {

using startup::COSInfo;

// Sets one variable of the environment for the length of a test.
class Environment {
public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* before = std::getenv(name)) {
            before_ = before;
        }
        setenv(name, value.c_str(), 1);
    }
    ~Environment() { setenv(name_, before_.c_str(), 1); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name_;
    std::string before_;
};

class ConfigurationFolder : public testing::Test {
protected:
    support::TemporaryFolder folder_;
    [[nodiscard]] std::string in(const std::string& name) const { return folder_.path() + name; }
    Environment user_{"XDG_CONFIG_HOME", in("user")};
    Environment machine_{"XDG_CONFIG_DIRS", in("first") + "::relative:" + in("second/")};
};

TEST_F(ConfigurationFolder, IsTheFirstThatHoldsTheFileAndElseTheUsers) {
    EXPECT_EQ(COSInfo().windowsDirectory(), in("user/vireo"));
    folder_.write("relative/vireo/route.ini", "");
    folder_.write("second/vireo/ROUTE.INI", "");
    EXPECT_EQ(COSInfo().windowsDirectory(), in("second/vireo"));
    folder_.write("first/vireo/route.ini", "");
    EXPECT_EQ(COSInfo().windowsDirectory(), in("first/vireo"));
    folder_.write("user/vireo/route.ini", "");
    EXPECT_EQ(COSInfo().windowsDirectory(), in("user/vireo"));
    const Environment district("VIREO_DISTRICT", in("chosen"));
    EXPECT_EQ(COSInfo().windowsDirectory(), in("user/vireo")) << "it holds none";
    folder_.write("chosen/vireo/route.ini", "");
    EXPECT_EQ(COSInfo().windowsDirectory(), in("chosen/vireo"));
}

TEST_F(ConfigurationFolder, IsInTheHomeFolderWhereTheVariableHoldsNoFullPath) {
    const Environment relative("XDG_CONFIG_HOME", "relative");
    const Environment home("HOME", in("home"));
    EXPECT_EQ(COSInfo().windowsDirectory(), in("home/.config/vireo"));
}

class Configuration : public testing::Test {
protected:
    void SetUp() override { COSInfo::useFolder(folder_.path() + "vireo"); }
    void writeIni(const std::string& text) const { folder_.write("vireo/route.ini", text); }
    void writeErrorHandling(const std::string& text) const {
        writeIni(
            "[AppPaths]\ndatapath=/d/\nprogpath=/p/\nVIREOpath=/v/\n[AppSettings]\n"
            "ERRORHANDLING=" +
            text + "\nMAPSoftware=ArcView3.2\n");
    }

    support::TestSession session_;
    support::TemporaryFolder folder_;
};

TEST_F(Configuration, ReadsFoldersSwitchAndMapSoftware) {
    writeErrorHandling("True");
    startup::SetPaths();
    startup::GetMapSoftware();
    EXPECT_EQ(startup::gIniFile, folder_.path() + "vireo/route.ini");
    EXPECT_EQ(startup::gDataPath, "/d/");
    EXPECT_EQ(startup::gProgPath, "/p/");
    EXPECT_EQ(startup::gVIREOPath, "/v/");
    EXPECT_EQ(startup::gReportPath, "/d/RouteRpts");
    EXPECT_TRUE(startup::gErrorHandling);
    EXPECT_EQ(startup::gMapSoftware, startup::ArcView);
    EXPECT_TRUE(session_.boxes.shown.empty());
}

TEST_F(Configuration, AMissingFileIsToldOnceForEachKey) {
    startup::SetPaths();
    const std::string text = "Error reading " + folder_.path() +
                             "vireo/route.ini.  Please make sure you have the lastest version of "
                             "the ini file in the correct path.\n\n";
    const std::array keys{"datapath in section [AppPaths]", "progpath in section [AppPaths]",
                          "VIREOpath in section [AppPaths]",
                          "ERRORHANDLING in section [AppSettings]"};
    ASSERT_EQ(session_.boxes.shown.size(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_THAT(session_.boxes.shown[i].text, testing::StartsWith(text + keys[i]));
        EXPECT_EQ(session_.boxes.shown[i].title, "INIGetSettingString");
    }
    EXPECT_EQ(startup::gDataPath, "");
    EXPECT_EQ(startup::gReportPath, "RouteRpts");
    EXPECT_FALSE(startup::gErrorHandling);
}

TEST_F(Configuration, AnEmptyValueIsToldAndReadingGoesOn) {
    writeIni(
        "[AppPaths]\ndatapath=\nprogpath=\"\"\nVIREOpath=/v/\n[AppSettings]\nERRORHANDLING=1\n");
    startup::SetPaths();
    EXPECT_EQ(session_.boxes.shown.size(), 2U);
    EXPECT_EQ(startup::gVIREOPath, "/v/");
    EXPECT_TRUE(startup::gErrorHandling);
}

TEST_F(Configuration, UnderstandsTheWordsOfTheErrorSwitch) {
    const std::pair<const char*, bool> cases[] = {
        {"True", true},   {"TRUE", true},   {"-1", true}, {"2", true}, {"0.5", true},
        {"False", false}, {"false", false}, {"0", false}, {"", false}};
    for (const auto& [word, expected] : cases) {
        startup::gErrorHandling = !expected;
        writeErrorHandling(word);
        startup::gErrHandler.reset();
        startup::SetPaths();
        EXPECT_EQ(startup::gErrorHandling, expected) << word;
    }
    writeErrorHandling("maybe");
    EXPECT_EQ(support::errorOf([] { return startup::SetPaths(), 0; }), base::errors::TypeMismatch);
}

}  // namespace
