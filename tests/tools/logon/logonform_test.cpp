#include "tools/logon/logonform.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <filesystem>

#include <gmock/gmock.h>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/forms/formregistry.h"
#include "platform/password/password.h"
#include "startup/base/session.h"
#include "support/testdistrict.h"
#include "support/testsession.h"
#include "tools/logon/programs.h"

namespace tools::logon {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The form for a program "Probe.exe" in the program folder, with three users.
class LogonFormTest : public testing::Test {
protected:
    LogonFormTest() {
        forms::Application::instance().startAfresh();
        forms::Timer::setSpeed(100);
        district_.addUser("ANN", password::hashed("Blue Bus"), {});
        district_.addUser("BO", "", {});
        district_.addUser("CY", "plain text", {});
        session_.start(district_.configFolder());
        startup::gProgPath = programs_.path();
        probe_ = programs_.write("Probe.exe", "");
        std::filesystem::permissions(probe_, std::filesystem::perms::owner_all);
    }
    ~LogonFormTest() override {
        forms::Timer::setSpeed(1);
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    LogonForm& form() { return forms::FormRegistry::instance().load<LogonForm>("PROBE"); }
    template <class Control>
    Control& control(const char* name) {
        return *form().findChild<Control*>(name);
    }
    void logOn(const std::string& user, const QString& password = {}) {
        control<controls::MultiColumnCombo>("UserId").setText(user);
        control<QLineEdit>("Password").setText(password);
        control<QPushButton>("LogOn").click();
    }
    std::string message() { return control<QLabel>("Message").text().toStdString(); }
    bool mayTry() { return control<QPushButton>("LogOn").isEnabled(); }

    support::TestDistrict district_;
    support::TestSession session_;
    support::TemporaryFolder programs_;
    std::string probe_;
};

TEST_F(LogonFormTest, StartsTheProgramForTheUserAsTheSuiteSpellsIt) {
    logOn(" ann ", "Blue Bus");
    EXPECT_THAT(session_.processes.started, ElementsAre(probe_ + " ANN"));
    EXPECT_TRUE(forms::Application::instance().ending());
    EXPECT_FALSE(startup::gcnQDSC);

    forms::Application::instance().startAfresh();
    session_.start(district_.configFolder());
    EXPECT_EQ(control<controls::MultiColumnCombo>("UserId").text(), "ANN");
}

TEST_F(LogonFormTest, AsksForAPasswordWhereTheUserHasOne) {
    auto& users = control<controls::MultiColumnCombo>("UserId");
    EXPECT_EQ(users.count(), 3);
    for (const auto& [user, asks] : {std::pair{"ANN", true}, {"BO", false}, {"NOBODY", true}}) {
        users.setEditText(user);
        EXPECT_EQ(control<QLineEdit>("Password").isEnabled(), asks) << user;
    }
    logOn("BO");
    EXPECT_THAT(session_.processes.started, ElementsAre(probe_ + " BO"));
}

TEST_F(LogonFormTest, TellsTheSameOfAWrongUserAndAWrongPasswordAndSlowsDown) {
    logOn("NOBODY", "Blue Bus");
    const std::string unknown = message();
    EXPECT_FALSE(mayTry());
    QTRY_VERIFY(mayTry());
    logOn("ANN", "blue bus");
    EXPECT_THAT(message(), HasSubstr("Try again in 2 seconds"));
    EXPECT_EQ(message().substr(0, 40), unknown.substr(0, 40));
    control<controls::MultiColumnCombo>("UserId").setEditText("BO");
    EXPECT_FALSE(mayTry());
    QTRY_VERIFY(mayTry());
    EXPECT_THAT(session_.processes.started, IsEmpty());
    EXPECT_EQ(secondsToWait(4), 8);
    EXPECT_EQ(secondsToWait(1000), 30);
}

TEST_F(LogonFormTest, NeverComparesAPlainTextOfAnotherProgram) {
    logOn("CY", "plain text");
    EXPECT_THAT(session_.processes.started, IsEmpty());
    EXPECT_THAT(message(), HasSubstr("vireo-district password"));
    setPassword(*startup::gcnQDSC, "CY", "new");
    logOn("CY", "new");
    EXPECT_THAT(session_.processes.started, ElementsAre(probe_ + " CY"));
}

TEST_F(LogonFormTest, ShowsThePasswordOnRequestAndTellsOfCapsLock) {
    auto& box = control<QLineEdit>("Password");
    form().showForm();
    QTest::keyClick(&box, Qt::Key_A, Qt::NoModifier);
    EXPECT_EQ(control<QLabel>("CapsLock").text(), "");
    QKeyEvent locked(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "A");
    QCoreApplication::sendEvent(&box, &locked);
    EXPECT_EQ(control<QLabel>("CapsLock").text(), "Caps Lock is on.");
    control<QCheckBox>("ShowPassword").click();
    EXPECT_EQ(box.echoMode(), QLineEdit::Normal);
}

TEST_F(LogonFormTest, TellsWhereItLookedForTheProgram) {
    std::filesystem::permissions(probe_, std::filesystem::perms::owner_read);
    logOn("BO");
    EXPECT_THAT(message(), HasSubstr(programs_.path()));
    EXPECT_THAT(session_.processes.started, IsEmpty());
    EXPECT_FALSE(forms::Application::instance().ending());
    EXPECT_EQ(findProgram("../Probe", {programs_.path()}), "");
}

}  // namespace

}  // namespace tools::logon
