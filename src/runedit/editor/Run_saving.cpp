#include <tuple>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "runedit/editor/Run.h"
#include "runedit/editor/runfields.h"
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
    "Yes - save it and {0}.\n"
    "No - {0} without saving.\n"
    "Cancel - go on editing.";
constexpr auto DoubtTitle = "Please Confirm Saving of this Run";
constexpr auto DoubtText =
    "Please look at this before the run is saved.\n\n"
    "{}\n"
    "Yes - save it as it is.\n"
    "No - go back and change it.";
constexpr auto ChangedTitle = "Run Changed Meanwhile";
constexpr auto DeletedTitle = "Run Deleted Meanwhile";
constexpr auto DeletedText =
    "Oops, another program has deleted this run since you opened it.  Nothing was saved.\n\n"
    "Yes - save what is on the form as a new run.\n"
    "No - close without saving.\n"
    "Cancel - go back without changing anything.";
constexpr auto NotCheckedText =
    "Run {} was saved, but another program is writing to the routing database just now, so the run "
    "was not checked for warnings.  Please wait a moment and press OK again.";

}  // namespace

data::Entries Run::entries() const {
    auto entries = boxes_->entries();
    entries.isNew = isNew();
    return entries;
}

int Run::Check_For_Error() {
    hideSaved();
    for (auto* combo : findChildren<controls::MultiColumnCombo*>()) {
        combo->takeOnlyFit();
    }
    const auto entered = entries();
    const ado::ReadAhead keys(*gcnRouting, keyReads(entered.entered));
    const auto fault = boxes_->refuseFault(entered);
    return fault ? fault->code : 0;
}

void Run::OK_Click() { checkAndSave(); }

bool Run::confirmDoubts() {
    const auto doubts =
        doubtsAbout(entries(), [this](std::string_view column) { return boxes_->typed(column); });
    return doubts.empty() || base::MsgBox(fmt::format(DoubtText, doubts), DoubtTitle,
                                          MsgIcon::Question, MsgButtons::YesNo) == MsgAnswer::Yes;
}

bool Run::save() {
    const auto entered = entries();
    const auto [outcome, stored] =
        data::saveRecord(*gcnRouting, runSql(entered.entered.text("Run")), entered,
                         {startup::gCommandLine, base::Now()});
    switch (outcome) {
        case data::SaveOutcome::Saved:
            afterSaving(*stored);
            return true;
        case data::SaveOutcome::Taken:
            boxes_->refuse(conflictingRunId(stored->text("Description")));
            return false;
        case data::SaveOutcome::Changed:
            if (boxes_->settle(entered, *stored, ChangedTitle, "run")) {
                present(*stored);
            }
            buildLists();
            return false;
        case data::SaveOutcome::Deleted:
            break;
    }
    return askAboutDeletion();
}

void Run::afterSaving(const data::Record& stored) {
    startup::RefreshRunList = true;
    ++startup::TotSavedRuns;
    ui_->chkNew->setChecked(false);
    fill(stored);
    showStatus(tr("Run %1 saved.").arg(toQt(run())), true);
    const auto ahead = askTogether(likelyReads());
    std::ignore = unlessLocked({"Run Not Checked", fmt::format(NotCheckedText, run())}, [this] {
        trap("CheckRun", [this] { checkRunOfAnyLength(run(), "Y"); });
    });
    refresh();
}

/// What the checks ask where the vehicle is the one that is shown.
RunReads Run::likelyReads() const {
    auto found = vehicle_;
    if (!found.hasVehicle()) {
        found.vehType = ui_->cmbVEHTYPE->text();
    }
    return readsOfCheck(found);
}

bool Run::askAboutDeletion() {
    startup::RefreshRunList = true;
    const auto answer =
        base::MsgBox(DeletedText, DeletedTitle, MsgIcon::Exclamation, MsgButtons::YesNoCancel);
    if (answer == MsgAnswer::Yes) {
        ui_->chkNew->setChecked(true);
        return checkAndSave();
    }
    if (answer == MsgAnswer::No) {
        unload();
    }
    return false;
}

bool Run::Form_QueryUnload() { return mayLeave("close"); }

bool Run::mayLeave(const char* toDo) {
    if (!boxes_->areTouched()) {
        return true;
    }
    switch (base::MsgBox(fmt::format(UnsavedText, toDo), UnsavedTitle, MsgIcon::Question,
                         MsgButtons::YesNoCancel)) {
        case MsgAnswer::Yes:
            return checkAndSave();
        case MsgAnswer::No:
            return true;
        default:
            return false;
    }
}

void Run::Exit_Run_Click() { closeForm(); }

}  // namespace runedit
