#include "tools/logon/logonform.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include <gmock/gmock.h>

#include "platform/password/password.h"
#include "platform/process/programs.h"
#include "startup/base/session.h"
#include "startup/logon/logonticket.h"
#include "support/access.h"
#include "support/formtest.h"

namespace tools::logon {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

void fillUsers(const support::TestDistrict& district) {
    district.addUser("ANN", password::hashed("Blue Bus"), {});
    district.addUser("BO", "", {});
    district.addUser("CY", "plain text", {});
}

/// The form for a program "Probe.exe" in the program folder, with three users.
class LogonFormTest : public support::FormTest<> {
protected:
    LogonFormTest() : FormTest(fillUsers) {
        forms::Timer::setSpeed(100);
        startup::gProgPath = programs_.path();
        probe_ = programs_.write("Probe.exe", "");
        std::filesystem::permissions(probe_, std::filesystem::perms::owner_all);
    }
    ~LogonFormTest() override { forms::Timer::setSpeed(1); }

    LogonForm& form() override { return loaded<LogonForm>("PROBE"); }
    void logOn(const std::string& user, const QString& password = {}) {
        combo("UserId").setText(user);
        control<QLineEdit>("Password").setText(password);
        click("LogOn");
    }

    support::TemporaryFolder programs_;
    std::string probe_;
};

TEST_F(LogonFormTest, StartsTheProgramForTheUserAsTheSuiteSpellsIt) {
    logOn(" ann ", "Blue Bus");
    EXPECT_THAT(session.processes.started, ElementsAre(probe_ + " ANN"));
    EXPECT_TRUE(ending());
    EXPECT_FALSE(startup::gcnQDSC);

    forms::Application::instance().startAfresh();
    session.start(district.configFolder());
    EXPECT_EQ(combo("UserId").text(), "ANN");
}

TEST_F(LogonFormTest, AsksForAPasswordWhereTheUserHasOne) {
    form().showForm();
    EXPECT_THAT(support::accessFindings(form()), IsEmpty());
    EXPECT_EQ(combo("UserId").count(), 3);
    for (const auto& [user, asks] : {std::pair{"ANN", true}, {"BO", false}, {"NOBODY", true}}) {
        combo("UserId").setEditText(user);
        EXPECT_EQ(isEnabled("Password"), asks) << user;
    }
    logOn("BO");
    EXPECT_THAT(session.processes.started, ElementsAre(probe_ + " BO"));
}

TEST_F(LogonFormTest, TellsTheSameOfAWrongUserAndAWrongPasswordAndSlowsDown) {
    logOn("NOBODY", "Blue Bus");
    const std::string unknown = text("Message");
    EXPECT_FALSE(isEnabled("LogOn"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return isEnabled("LogOn"); }));
    logOn("ANN", "blue bus");
    EXPECT_THAT(text("Message"), HasSubstr("Try again in 2 seconds"));
    EXPECT_EQ(text("Message").substr(0, 40), unknown.substr(0, 40));
    combo("UserId").setEditText("BO");
    EXPECT_FALSE(isEnabled("LogOn"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return isEnabled("LogOn"); }));
    EXPECT_THAT(session.processes.started, IsEmpty());
    EXPECT_EQ(secondsToWait(4), 8);
    EXPECT_EQ(secondsToWait(1000), 30);
}

TEST_F(LogonFormTest, NeverComparesAPlainTextOfAnotherProgram) {
    logOn("CY", "plain text");
    EXPECT_THAT(session.processes.started, IsEmpty());
    EXPECT_THAT(text("Message"), HasSubstr("vireo-district password"));
    setPassword(*startup::gcnQDSC, "CY", "new");
    logOn("CY", "new");
    EXPECT_THAT(session.processes.started, ElementsAre(probe_ + " CY"));
}

TEST_F(LogonFormTest, LetsNobodyInWithoutAPasswordWhereTheSettingsSaySo) {
    district.writeIni(support::contentsOf(district.configFolder() + "/route.ini") +
                      "RequirePassword=True\n");
    logOn("BO");
    EXPECT_THAT(session.processes.started, IsEmpty());
    EXPECT_THAT(text("Message"), HasSubstr("BO has no password yet"));
    EXPECT_FALSE(startup::tookTicketFor("BO"));
    const std::string stored = findUser(readUsers(*startup::gcnQDSC), "ANN")->password;
    logOn("ann", "Blue Bus");
    EXPECT_THAT(session.processes.started, ElementsAre(probe_ + " ANN"));
    const std::string ticket = std::getenv("VIREO_LOGON_TICKET");
    const auto now = std::time(nullptr);
    EXPECT_TRUE(startup::isTicketFor(ticket, "ANN", stored, now));
    EXPECT_FALSE(startup::isTicketFor(ticket, "BO", stored, now));
    EXPECT_FALSE(startup::isTicketFor(ticket, "ANN", stored, now + startup::TicketSeconds + 1));
    EXPECT_FALSE(startup::isTicketFor(ticket, "ANN", stored, now - 1000));
    EXPECT_FALSE(startup::isTicketFor("9" + ticket, "ANN", stored, now));
}

TEST_F(LogonFormTest, ShowsThePasswordOnRequestAndTellsOfCapsLock) {
    auto& box = control<QLineEdit>("Password");
    form().showForm();
    QTest::keyClick(&box, Qt::Key_A, Qt::NoModifier);
    EXPECT_EQ(text("CapsLock"), "");
    QKeyEvent locked(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "A");
    QCoreApplication::sendEvent(&box, &locked);
    EXPECT_EQ(text("CapsLock"), "Caps Lock is on.");
    click("ShowPassword");
    EXPECT_EQ(box.echoMode(), QLineEdit::Normal);
}

TEST_F(LogonFormTest, TellsWhereItLookedForTheProgram) {
    std::filesystem::permissions(probe_, std::filesystem::perms::owner_read);
    logOn("BO");
    EXPECT_THAT(text("Message"), HasSubstr(programs_.path()));
    EXPECT_THAT(session.processes.started, IsEmpty());
    EXPECT_FALSE(ending());
    EXPECT_EQ(process::findProgram("../Probe", {programs_.path()}), "");
}

}  // namespace

}  // namespace tools::logon
