#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/forms/timer.h"
#include "startup/forms/trappedform.h"
#include "tools/logon/users.h"

namespace Ui {
class Logon;
}

namespace tools::logon {

/// Asks for a user and the user's password and starts a program with the user's identifier as its
/// command line. Where route.ini asks for passwords, a user without one is told so and starts
/// nothing. After a wrong password it waits, longer each time.
class LogonForm : public startup::TrappedForm {
    Q_OBJECT

public:
    /// `program` is a name such as "TARN"; see process::findProgram().
    explicit LogonForm(std::string program);
    ~LogonForm() override;

    void logOn();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void Form_Load() override;

private:
    void fillUsers();
    void showUser();
    void refuse(Verdict verdict);
    void letWait(int seconds);
    void waitOneSecond();
    void startProgram(const User& user);
    void showMessage(const QString& text);

    std::unique_ptr<Ui::Logon> ui_;
    std::string program_;
    std::vector<User> users_;
    int wrongInARow_ = 0;
    int secondsLeft_ = 0;
    forms::Timer waiting_;
};

}  // namespace tools::logon
