#include "groupops/merge/MergeRun.h"

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"

#include "ui_MergeRun.h"

namespace groupops {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto MergeForm = "MergeRun";
constexpr int MergedMessageMs = 15'000;

}  // namespace

MergeRun::MergeRun(forms::Form* owner)
    : TrappedForm(MergeForm, owner),
      ui_(std::make_unique<Ui::MergeRun>()),
      Timer1(new forms::Timer(this)) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->Exit);
    panel_ = {{ui_->ProgressBar1}, ui_->StatusMsg, ui_->Stop, Timer1, MergedMessageMs};
    forms::hideInPlace(*ui_->StatusMsg);
    forms::hideInPlace(*ui_->ProgressBar1);
    ui_->Stop->setEnabled(false);
    on(ui_->cmbRUN, &QComboBox::currentTextChanged, "cmbRUN_Change", &MergeRun::showSource);
    on(ui_->Merge, &QPushButton::clicked, "Merge_Click", &MergeRun::Merge_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &MergeRun::Exit_Click);
    on(Timer1, &forms::Timer::tick, "Timer1_Timer", &MergeRun::Timer1_Timer);
}

MergeRun::~MergeRun() = default;

void MergeRun::receive(const std::string& run) {
    ui_->OrigRun->setText(toQt(base::trim(run)));
    if (isLoaded()) {
        showRuns();
    }
}

void MergeRun::Form_Load() { showRuns(); }

void MergeRun::showRuns() {
    const std::string receiving = asked().receiving;
    ui_->OrigRunInfo->setText(toQt(runSummary(*startup::gcnRouting, receiving)));
    ui_->cmbRUN->setTable(readOtherRuns(*startup::gcnRouting, receiving));
    ui_->cmbRUN->setFocus();
}

void MergeRun::showSource() {
    ui_->SourceInfo->setText(toQt(runSummary(*startup::gcnRouting, asked().source)));
}

RunMerge MergeRun::asked() const {
    return {fromQt(ui_->OrigRun->text()), std::string(base::trim(ui_->cmbRUN->text())),
            startup::gCommandLine};
}

void MergeRun::Merge_Click() {
    const RunMerge wanted = asked();
    if (!refuse(wanted)) {
        merge(wanted);
    }
}

/// Tells the planner why two runs cannot be merged; two equal texts do nothing.
bool MergeRun::refuse(const RunMerge& merge) {
    const auto obstacle = mergeObstacle(*startup::gcnRouting, merge);
    if (const auto message = messageOf(obstacle, merge)) {
        base::MsgBox(message->text, message->title, base::MsgIcon::Information);
        ui_->cmbRUN->setFocus();
    }
    return obstacle != MergeObstacle::None;
}

void MergeRun::merge(const RunMerge& merge) {
    Outcome outcome;
    {
        Operation operation(*this, panel_);
        outcome = mergeRuns(*startup::gcnRouting, merge, operation);
        operation.status(outcome.complete() ? fmt::format("All stops of run: {} merged to run: {}.",
                                                          merge.source, merge.receiving)
                                            : howFar(outcome, mergeWording(merge)));
    }
    startup::RefreshRunList = true;
    ui_->OrigRunInfo->setText(toQt(runSummary(*startup::gcnRouting, merge.receiving)));
    trap("cmbRUN_Change", &MergeRun::showSource);
    if (const auto left = whatWasLeft(outcome, mergeWording(merge)); !left.empty()) {
        base::MsgBox(left, "Not All Stops Merged", base::MsgIcon::Information);
    }
}

void MergeRun::Exit_Click() { closeForm(); }

void MergeRun::Timer1_Timer() { panel_.clear(); }

}  // namespace groupops
