#include "workfiles/DelWrkFiles.h"

#include "platform/base/ports.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/session.h"

#include "ui_DelWrkFiles.h"

namespace workfiles {

namespace {

constexpr auto Module = "DelWrkFiles";
constexpr int TickMilliseconds = 1000;
constexpr int TicksAtMost = 60;

/// With no file of a run in use it is the list itself that stays.
QString stillInUse(int held) {
    return held == 0 ? DelWrkFiles::tr("The list of the runs is still in use. Trying again...")
           : held == 1
               ? DelWrkFiles::tr("1 file is still in use by the mapping software. Trying again...")
               : DelWrkFiles::tr(
                     "%1 files are still in use by the mapping software. "
                     "Trying again...")
                     .arg(held);
}

}  // namespace

DelWrkFiles::DelWrkFiles()
    : TrappedForm(Module),
      ui_(std::make_unique<Ui::DelWrkFiles>()),
      cleanUp_(runedit::WorkFiles(startup::gProgPath), startup::logLine) {
    ui_->setupUi(this);
    ui_->Attempts->setRange(0, TicksAtMost);
    Timer1.setInterval(TickMilliseconds);
    setCancelButton(ui_->Exit);
    on(ui_->DelFile, &QPushButton::clicked, "DelFile_Click", &DelWrkFiles::DelFile_Click);
    on(ui_->SetFile, &QPushButton::clicked, "SetFile_Click", &DelWrkFiles::SetFile_Click);
    on(ui_->Exit, &QPushButton::clicked, "closeForm", &DelWrkFiles::closeForm);
    on(&Timer1, &forms::Timer::tick, "Timer1_Timer", &DelWrkFiles::Timer1_Timer);
}

DelWrkFiles::~DelWrkFiles() = default;

void DelWrkFiles::Form_Load() { trap("DelFile_Click", &DelWrkFiles::DelFile_Click); }

void DelWrkFiles::DelFile_Click() {
    ticks_ = 0;
    cleanUp_.deleteFiles();
    showFiles(tr("Removing the work files..."));
    Timer1.setEnabled(true);
}

/// Shows what stands in the request list, and which files are there, without deleting any.
void DelWrkFiles::SetFile_Click() {
    Timer1.setEnabled(false);
    cleanUp_.look();
    showFiles(tr("Stopped. Nothing is deleted until you press Delete Files."));
}

void DelWrkFiles::Timer1_Timer() {
    if (cleanUp_.retry()) {
        startup::ShutDown();
    }
    if (++ticks_ >= TicksAtMost) {
        startup::logLine("In DelWrkFiles - giving up, files are still in use.  The time is: " +
                         base::Now().text());
        startup::ShutDown(1);
    }
    showFiles(stillInUse(cleanUp_.heldFiles()));
}

void DelWrkFiles::showFiles(const QString& status) {
    if (shown_ != cleanUp_.files()) {
        shown_ = cleanUp_.files();
        ui_->FileList->setTable(tableOf(shown_));
    }
    ui_->StatMsg->setText(status);
    ui_->Attempts->setValue(ticks_);
}

/// Closing the window ends the program; what is still held stays.
bool DelWrkFiles::Form_QueryUnload() {
    trap("Form_Unload", [] { startup::ShutDown(); });
    return true;
}

}  // namespace workfiles
