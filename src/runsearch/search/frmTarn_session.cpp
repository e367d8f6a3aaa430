#include <QMenu>
#include <string>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "platform/process/process.h"
#include "platform/process/programs.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/session.h"
#include "startup/logon/logonprogram.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

constexpr auto Launcher = "vireo";

void startLauncher() {
    const std::string launcher = process::programOfSuite(Launcher);
    process::host().start(launcher.empty() ? Launcher : launcher, {"--choose"});
}

/// False where a program that is to go on in this one's place cannot be started, which is told.
bool starts(void (*program)(), const char* title, const char* text) {
    try {
        program();
        return true;
    } catch (const base::RunTimeError& error) {
        base::MsgBox({.text = text,
                      .title = title,
                      .icon = base::MsgIcon::Exclamation,
                      .concerns = error.what()});
        return false;
    }
}

}  // namespace

/// Above Exit, which ends the menu, and open to the user while Exit is.
void frmTarn::addSession(QMenu& file) {
    QAction* exit = file.actions().empty() ? nullptr : file.actions().last();
    const auto add = [&](const QString& text) {
        auto* action = new QAction(text, &file);
        file.insertAction(exit, action);
        return action;
    };
    auto* user = add({});
    auto* logOff = add(tr("&Log Off"));
    auto* switchDistrict = add(tr("&Switch District\u2026"));
    file.insertSeparator(exit);
    user->setEnabled(false);
    on(logOff, &QAction::triggered, "LogOff_Click", &frmTarn::LogOff_Click);
    on(switchDistrict, &QAction::triggered, "SwitchDistrict_Click", &frmTarn::SwitchDistrict_Click);
    on(&file, &QMenu::aboutToShow, "aboutToShow", [=, this] {
        user->setText(tr("Logged on as %1").arg(controls::toQt(startup::gCommandLine)));
        logOff->setEnabled(ui_->Exit->isEnabled());
        switchDistrict->setEnabled(ui_->Exit->isEnabled());
    });
}

void frmTarn::LogOff_Click() {
    if (starts(startup::startLogonProgram, "Not Logged Off",
               "Oops, the logon program cannot be started.  You are still logged on.")) {
        Exit_Click();
    }
}

void frmTarn::SwitchDistrict_Click() {
    if (starts(startLauncher, "District Not Switched",
               "Oops, the list of districts cannot be shown.  You are still on this one.")) {
        Exit_Click();
    }
}

}  // namespace runsearch
