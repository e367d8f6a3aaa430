#include <QLabel>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include <gmock/gmock.h>

#include "data/schema/version.h"
#include "platform/files/files.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "startup/base/COSInfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/districts/knowndistricts.h"
#include "support/access.h"
#include "support/formtest.h"
#include "tools/launcher/districtchooser.h"
#include "tools/launcher/districtlook.h"
#include "tools/launcher/newdistrict.h"
#include "tools/launcher/newdistrictform.h"

namespace tools::launcher {

namespace {

using data::DatabaseFile;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

bool becomes(const std::function<bool()>& so) {
    constexpr int PatienceMs = 30000;
    return QTest::qWaitFor(so, PatienceMs);
}

/// A desktop of its own that knows no district.
class Desktop : public support::FormTest<> {
protected:
    Desktop() {
        startup::COSInfo::useFolder({});
        ::setenv("HOME", home_.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (home_.path() + "config").c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", home_.path().c_str(), 1);
        ::unsetenv(startup::DistrictVariable);
        session.processes.started.clear();
    }

    /// The folder of the small district.
    [[nodiscard]] std::string folder() const {
        return district.folder().substr(0, district.folder().size() - 1);
    }
    [[nodiscard]] static DistrictLook lookAt(const std::string& folder) {
        return lookAtDistrict(folder);
    }
    [[nodiscard]] static std::string chosenDistrict() {
        const char* chosen = std::getenv(startup::DistrictVariable);
        return chosen == nullptr ? "" : chosen;
    }

    support::TemporaryFolder home_;
};

class ChooserTest : public Desktop {
protected:
    DistrictChooser& form() override { return loaded<DistrictChooser>(); }
    void waitUntilLooked() {
        ASSERT_TRUE(
            becomes([&] { return row("DistrictList", 0).find("Looking") == std::string::npos; }));
    }
};

TEST_F(ChooserTest, OpensTheChosenDistrictWithTheLogonProgram) {
    startup::KnownDistricts().add(home_.path() + "gone", "Gone");
    startup::KnownDistricts().use(folder(), "", "ANN");
    form().showForm();
    EXPECT_THAT(support::accessFindings(form()), testing::IsEmpty());
    ASSERT_TRUE(becomes(
        [&] { return row("DistrictList", 1).find("Cannot be opened") != std::string::npos; }));
    waitUntilLooked();
    EXPECT_THAT(row("DistrictList", 0), HasSubstr("|Ready|1/31/2026 8:05:09 AM|ANN|" + folder()));
    activate("DistrictList", "Gone");
    ASSERT_TRUE(becomes([&] { return !session.boxes.shown.empty(); }));
    EXPECT_THAT(lastText(), HasSubstr("There is no folder " + home_.path() + "gone"));
    EXPECT_FALSE(ending());
    list("DistrictList").choose(0);
    auto settings = files::read(startup::settingsIn(folder()));
    settings.replace(settings.find("Software=None"), 13, "Software=ArcView3.2");
    files::write(startup::settingsIn(folder()), settings);
    click("Open");
    ASSERT_TRUE(becomes(ending));
    EXPECT_THAT(session.processes.started,
                ElementsAre(EndsWith("vireo-map --waiting"), EndsWith("Logon.Exe TARN")));
    EXPECT_EQ(chosenDistrict(), folder());
}

TEST_F(ChooserTest, BringsAnOlderDistrictUpAndLeavesANewerOneAlone) {
    store::open(district.path(DatabaseFile::Trip))
        ->setMark({data::markOf(DatabaseFile::Trip).kind});
    startup::closeConnections();
    answer(base::MsgAnswer::No);
    form().openWithoutAsking(folder());
    ASSERT_TRUE(becomes([&] { return !session.boxes.shown.empty(); }));
    EXPECT_TRUE(form().isVisible());
    EXPECT_FALSE(ending());
    answer(base::MsgAnswer::Yes);
    click("Open");
    ASSERT_TRUE(becomes(ending)) << lastText() << text("Message");
    EXPECT_EQ(lookAt(folder()).condition, Condition::Ready);
    EXPECT_EQ(chosenDistrict(), folder());
    const auto mark = data::markOf(DatabaseFile::Trip);
    store::open(district.path(DatabaseFile::Trip))->setMark({mark.kind, mark.version + 1});
    EXPECT_EQ(lookAt(folder()).condition, Condition::Newer);
    EXPECT_THAT(lookAt(folder()).says, HasSubstr("newer than the program"));
}

TEST_F(ChooserTest, ACopyWorksOnItsOwnFilesBeforeItIsOpened) {
    startup::closeConnections();
    const std::string copy = home_.path() + "copy";
    std::filesystem::copy(folder(), copy, std::filesystem::copy_options::recursive);
    EXPECT_EQ(lookAt(copy).condition, Condition::Moved);
    answer(base::MsgAnswer::Yes);
    form().openWithoutAsking(copy);
    ASSERT_TRUE(becomes(ending));
    EXPECT_THAT(support::contentsOf(copy + "/vireo/route.ini"), HasSubstr(copy + "/data/"));
    EXPECT_EQ(lookAt(copy).condition, Condition::Ready);
    EXPECT_EQ(districtFolderOf(copy + "/vireo/route.ini"), copy);
    EXPECT_EQ(districtFolderOf(copy + "/data/"), copy);
    std::filesystem::remove(copy + "/common/trip.mdb");
    EXPECT_THAT(lookAt(copy).says, HasSubstr("trip.mdb"));
    std::filesystem::remove(copy + "/vireo/route.ini");
    EXPECT_THAT(lookAt(copy).says, HasSubstr("There is no district in"));
}

TEST_F(ChooserTest, TakesADistrictFromTheListAndLeavesItsFiles) {
    startup::KnownDistricts().add(folder(), "A");
    form().showForm();
    waitUntilLooked();
    press("DistrictList", Qt::Key_Delete);
    EXPECT_EQ(list("DistrictList").rows(), 0);
    EXPECT_FALSE(isEnabled("Open"));
    EXPECT_THAT(startup::KnownDistricts().all(), IsEmpty());
    EXPECT_EQ(lookAt(folder()).condition, Condition::Ready);
}

class FirstStart : public Desktop {
protected:
    NewDistrictForm& form() override { return loaded<NewDistrictForm>(); }
};

TEST_F(FirstStart, MakesAnEmptyDistrictWithAnAdministratorAndOpensIt) {
    form().showForm();
    EXPECT_THAT(support::accessFindings(form()), testing::IsEmpty());
    check("Empty");
    click("Start");
    EXPECT_TRUE(isRed("DistrictName"));
    type("DistrictName", "Four / Towns");
    QTest::keyClicks(&control("DistrictName"), "!");
    EXPECT_EQ(text("Folder"), home_.path() + "Vireo/Four  Towns!");
    type("Password", "Blue Bus");
    type("PasswordAgain", "blue bus");
    click("Start");
    EXPECT_TRUE(isRed("PasswordAgain"));
    type("PasswordAgain", "Blue Bus");
    click("Start");
    ASSERT_TRUE(becomes(ending));
    const std::string made = home_.path() + "Vireo/Four  Towns!";
    EXPECT_EQ(lookAt(made).name, "Four / Towns!");
    const auto known = startup::KnownDistricts().all();
    ASSERT_EQ(known.size(), 1U);
    EXPECT_EQ(known[0].lastUser, "ADMIN");
    EXPECT_EQ(chosenDistrict(), made);
}

TEST_F(FirstStart, EscapeStopsTheMakingAndLeavesNothing) {
    form().showForm();
    QTimer impatience;
    QObject::connect(&impatience, &QTimer::timeout, [this] {
        if (form().isBusy()) {
            QTest::keyClick(&form(), Qt::Key_Escape);
        }
    });
    impatience.start(0);
    click("Start");
    EXPECT_EQ(text("Message"), "Stopped.  Nothing was made.");
    EXPECT_FALSE(std::filesystem::exists(text("Folder")));
}

TEST_F(FirstStart, WhatCannotBeMadeIsToldAndTheFormStays) {
    form().showForm();
    type("Folder", home_.path());
    home_.write("full/x", "");
    type("Folder", home_.path() + "full");
    click("Start");
    EXPECT_TRUE(isRed("Folder"));
    type("Folder", "/proc/nowhere");
    click("Start");
    EXPECT_THAT(text("Message"), HasSubstr("Oops, nothing was made."));
    EXPECT_TRUE(form().isVisible());
    check("Existing");
    type("Folder", home_.path());
    click("Start");
    EXPECT_TRUE(isRed("Folder"));
    type("Folder", folder() + "/vireo");
    click("Start");
    ASSERT_TRUE(becomes(ending));
    EXPECT_EQ(chosenDistrict(), folder());
}

}  // namespace

}  // namespace tools::launcher
