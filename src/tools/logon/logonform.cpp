#include "tools/logon/logonform.h"

#include <QKeyEvent>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "platform/files/installation.h"
#include "platform/password/password.h"
#include "platform/process/process.h"
#include "platform/process/programs.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"
#include "startup/districts/knowndistricts.h"
#include "startup/logon/logonticket.h"

#include "ui_logonform.h"

namespace tools::logon {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto Module = "LogonForm";
constexpr auto LastUserKey = "logon/User";
constexpr int OneSecond = 1000;

/// A letter's case against the Shift key tells of Caps Lock on every kind of desktop.
bool tellsOfCapsLock(const QKeyEvent& key) {
    const QString text = key.text();
    if (text.size() != 1 || !text[0].isLetter() || text[0].toUpper() == text[0].toLower()) {
        return false;
    }
    return text[0].isUpper() != key.modifiers().testFlag(Qt::ShiftModifier);
}

bool mustGetPassword(const User& user) {
    return startup::requiresPassword() && password::kindOf(user.password) == password::Stored::None;
}

QString withoutPassword() {
    return startup::requiresPassword() ? LogonForm::tr("No password yet")
                                       : LogonForm::tr("No password needed");
}

bool isLetter(const QKeyEvent& key) { return key.text().size() == 1 && key.text()[0].isLetter(); }

}  // namespace

LogonForm::LogonForm(std::string program)
    : TrappedForm("Logon"), ui_(std::make_unique<Ui::Logon>()), program_(std::move(program)) {
    ui_->setupUi(this);
    setCancelButton(ui_->Cancel);
    ui_->Password->installEventFilter(this);
    ui_->Password->setMaxLength(static_cast<int>(password::Longest));
    waiting_.setInterval(OneSecond);
    on(&waiting_, &forms::Timer::tick, "waitOneSecond", &LogonForm::waitOneSecond);
    on(ui_->UserId, &QComboBox::editTextChanged, "showUser", &LogonForm::showUser);
    on(ui_->ShowPassword, &QCheckBox::toggled, "ShowPassword_Click", [this](bool shown) {
        ui_->Password->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
    });
    on(ui_->LogOn, &QPushButton::clicked, "logOn", &LogonForm::logOn);
    on(ui_->Cancel, &QPushButton::clicked, "closeForm", &LogonForm::closeForm);
}

LogonForm::~LogonForm() = default;

void LogonForm::Form_Load() {
    fillUsers();
    const startup::KnownDistrict district =
        startup::KnownDistricts().find(startup::districtInForce());
    if (!district.name.empty()) {
        ui_->Heading->setText(tr("Log On to %1").arg(toQt(district.name)));
    }
    const std::string last =
        district.lastUser.empty()
            ? fromQt(controls::LayoutMemory::instance().recall(LastUserKey).toString())
            : district.lastUser;
    ui_->UserId->setText(findUser(users_, last) != nullptr || users_.empty() ? last : users_[0].id);
    showUser();
    if (users_.empty()) {
        showMessage(tr("There is no user yet in %1. Whoever looks after the district adds one with "
                       "vireo-district users.")
                        .arg(toQt(startup::gVIREOPath + "ZBQDSC1.mdb")));
    }
    (ui_->Password->isEnabled() && !last.empty() ? static_cast<QWidget*>(ui_->Password)
                                                 : ui_->UserId)
        ->setFocus();
}

void LogonForm::fillUsers() {
    users_ = readUsers(*startup::gcnQDSC);
    table::TextTable table;
    table.columns = {{.caption = "User"}};
    for (const User& user : users_) {
        table.setText(table.addRow(), 0, user.id);
    }
    ui_->UserId->setTable(std::move(table));
}

/// A password is asked for where the user has one; of an unknown user nothing is told.
void LogonForm::showUser() {
    const User* user = findUser(users_, ui_->UserId->text());
    const bool asks = user == nullptr || password::kindOf(user->password) != password::Stored::None;
    ui_->Password->setEnabled(asks);
    ui_->ShowPassword->setEnabled(asks);
    ui_->Password->setPlaceholderText(asks ? QString() : withoutPassword());
    if (!asks) {
        ui_->Password->clear();
    }
    if (secondsLeft_ == 0) {
        showMessage({});
    }
    ui_->LogOn->setEnabled(secondsLeft_ == 0 && !fromQt(ui_->UserId->currentText()).empty());
}

void LogonForm::logOn() {
    users_ = readUsers(*startup::gcnQDSC);
    const User* user = findUser(users_, ui_->UserId->text());
    const Verdict verdict = admit(user, fromQt(ui_->Password->text()));
    if (verdict == Verdict::Admitted && mustGetPassword(*user)) {
        showMessage(
            tr("Oops, %1 has no password yet, and nobody works here without one. Whoever looks "
               "after the district sets it with vireo-district users.")
                .arg(toQt(user->id)));
    } else if (verdict == Verdict::Admitted) {
        startProgram(*user);
    } else {
        refuse(verdict);
    }
}

void LogonForm::refuse(Verdict verdict) {
    if (verdict == Verdict::Uncheckable) {
        showMessage(
            tr("This user's password was set by another program and cannot be checked "
               "here. Whoever looks after the district sets it anew with vireo-district "
               "password."));
        return;
    }
    letWait(secondsToWait(++wrongInARow_));
    ui_->Password->selectAll();
    ui_->Password->setFocus();
}

void LogonForm::letWait(int seconds) {
    secondsLeft_ = seconds;
    const QString wait = seconds == 0   ? QString()
                         : seconds == 1 ? tr("  Try again in a second.")
                                        : tr("  Try again in %1 seconds.").arg(seconds);
    showMessage(tr("Oops, the user or the password is wrong.") + wait);
    ui_->LogOn->setEnabled(seconds == 0);
    waiting_.setEnabled(seconds > 0);
}

void LogonForm::waitOneSecond() { letWait(secondsLeft_ - 1); }

void LogonForm::startProgram(const User& user) {
    std::vector<std::string> folders = process::foldersOfPath();
    folders.insert(folders.begin(), {files::installation().programs, startup::gProgPath});
    const std::string program = process::findProgram(program_, folders);
    if (program.empty()) {
        showMessage(tr("The program %1 is neither in %2, in %3 nor on the search path.")
                        .arg(toQt(program_), toQt(folders[0]), toQt(folders[1])));
        return;
    }
    if (startup::requiresPassword()) {
        startup::leaveTicket(user.id, user.password);
    }
    process::host().start(program, {user.id});
    controls::LayoutMemory::instance().remember(LastUserKey, toQt(user.id));
    startup::ShutDown();
}

void LogonForm::showMessage(const QString& text) { ui_->Message->setText(text); }

bool LogonForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->Password && event->type() == QEvent::KeyPress) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.key() == Qt::Key_CapsLock) {
            ui_->CapsLock->clear();
        } else if (isLetter(key)) {
            ui_->CapsLock->setText(tellsOfCapsLock(key) ? tr("Caps Lock is on.") : QString());
        }
    }
    return Form::eventFilter(watched, event);
}

}  // namespace tools::logon
