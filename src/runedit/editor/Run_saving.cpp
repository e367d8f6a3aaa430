#include <fmt/format.h>

#include "data/lookups/mdlGetItems.h"
#include "platform/ado/locked.h"
#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "runedit/editor/Run.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "startup/base/session.h"

#include "ui_Run.h"

namespace runedit {

namespace {

using base::MsgAnswer;
using base::MsgButtons;
using base::MsgIcon;
using controls::toQt;
using startup::gcnRouting;

constexpr auto UnsavedTitle = "Run Not Saved";
constexpr auto UnsavedText =
    "You have changed this run and not saved it.\n\n"
    "Yes - save it and close.\n"
    "No - close without saving.\n"
    "Cancel - go on editing.";
constexpr auto ChangedTitle = "Run Changed Meanwhile";
constexpr auto ChangedText =
    "Oops, another program has changed this run since you opened it.  Nothing was saved yet.\n\n"
    "{}\n"
    "Yes - show the new values and keep what you have entered.  Look at them, then press OK again "
    "to save.\n"
    "No - throw away what you have entered and show the run as it is now.\n"
    "Cancel - go back without changing anything.";
constexpr auto DeletedTitle = "Run Deleted Meanwhile";
constexpr auto DeletedText =
    "Oops, another program has deleted this run since you opened it.  Nothing was saved.\n\n"
    "Yes - save what is on the form as a new run.\n"
    "No - close without saving.\n"
    "Cancel - go back without changing anything.";
constexpr auto LockedTitle = "Run Not Saved";
constexpr auto LockedText =
    "Oops, another program is writing to the routing database just now, and the run was not "
    "saved.  Nothing you have entered is lost.  Please wait a moment and try again.";

}  // namespace

int Run::Check_For_Error() {
    boxes_->clearRefusals();
    const KeyQuestions questions{data::GetRun,      data::GetRunFamily, data::GetSchool,
                                 data::GetTripType, data::GetLocCode,   data::GetVehType};
    const auto fault = findFault(boxes_->texts(), isNew(), questions);
    if (fault) {
        refuse(*fault);
    }
    return fault ? fault->code : 0;
}

void Run::refuse(const FieldFault& fault) {
    boxes_->refuse(fault.field);
    base::MsgBox(fault.text, fault.title, MsgIcon::Information);
}

void Run::OK_Click() {
    if (Check_For_Error() == 0) {
        save();
    }
}

bool Run::save() {
    const auto texts = boxes_->texts();
    const Author author{startup::gCommandLine, base::Now()};
    bool saved = false;
    ado::unlessLocked(
        [&] {
            saved = finish(isNew() ? createRun(*gcnRouting, texts, author)
                                   : changeRun(*gcnRouting, entries_, texts, author));
        },
        LockedText, LockedTitle);
    return saved;
}

bool Run::finish(const SaveResult& result) {
    switch (result.outcome) {
        case SaveOutcome::Saved:
            afterSaving(result.stored);
            return true;
        case SaveOutcome::IdTaken:
            refuse(conflictingRunId(result.stored.texts[RunField::Description]));
            return false;
        case SaveOutcome::Changed:
            askAboutChanges(result);
            return false;
        case SaveOutcome::Deleted:
            return askAboutDeletion();
    }
    return false;
}

void Run::afterSaving(const StoredRun& stored) {
    startup::RefreshRunList = true;
    ++startup::TotSavedRuns;
    ui_->chkNew->setChecked(false);
    fill(stored);
    showStatus(tr("Run %1 saved.").arg(toQt(run())), true);
    CheckRun(run(), 0, true, "Y");
    refresh();
}

void Run::askAboutChanges(const SaveResult& result) {
    const auto answer = base::MsgBox(fmt::format(ChangedText, describe(result.changes)),
                                     ChangedTitle, MsgIcon::Exclamation, MsgButtons::YesNoCancel);
    if (answer == MsgAnswer::Yes) {
        takeOver(result.stored);
        entries_.told(result.stored.texts);
    } else if (answer == MsgAnswer::No) {
        fill(result.stored);
    }
    buildLists();
}

bool Run::askAboutDeletion() {
    startup::RefreshRunList = true;
    const auto answer =
        base::MsgBox(DeletedText, DeletedTitle, MsgIcon::Exclamation, MsgButtons::YesNoCancel);
    if (answer == MsgAnswer::Yes) {
        ui_->chkNew->setChecked(true);
        return Check_For_Error() == 0 && save();
    }
    if (answer == MsgAnswer::No) {
        unload();
    }
    return false;
}

bool Run::Form_QueryUnload() { return mayLeave(); }

bool Run::mayLeave() {
    if (!isTouched()) {
        return true;
    }
    switch (base::MsgBox(UnsavedText, UnsavedTitle, MsgIcon::Question, MsgButtons::YesNoCancel)) {
        case MsgAnswer::Yes:
            return Check_For_Error() == 0 && save();
        case MsgAnswer::No:
            return true;
        default:
            return false;
    }
}

void Run::Exit_Run_Click() { closeForm(); }

}  // namespace runedit
