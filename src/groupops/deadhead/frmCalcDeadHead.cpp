#include "groupops/deadhead/frmCalcDeadHead.h"

#include "groupops/deadhead/districtdeadhead.h"
#include "platform/controls/qtext.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"

#include "ui_frmCalcDeadHead.h"

namespace groupops {

namespace {

using controls::toQt;

constexpr auto DeadHeadForm = "frmCalcDeadHead";
constexpr int ClosingMessageMs = 30'000;
const auto AllCalculated = QStringLiteral("Nothing: all routes have their dead head.");
constexpr auto StoppedTitle = "Calculation Stopped";

}  // namespace

frmCalcDeadHead::frmCalcDeadHead(forms::Form* owner)
    : TrappedForm(DeadHeadForm, owner),
      ui_(std::make_unique<Ui::frmCalcDeadHead>()),
      Timer1(new forms::Timer(this)) {
    ui_->setupUi(this);
    ui_->OpenLegsFilter->filters(*ui_->OpenLegs);
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->CloseIt);
    panel_ = {{ui_->ProgressBar1}, ui_->StatusMsg, ui_->Stop, Timer1, ClosingMessageMs};
    forms::hideInPlace(*ui_->StatusMsg);
    forms::hideInPlace(*ui_->ProgressBar1);
    ui_->Stop->setEnabled(false);
    on(ui_->Calculate, &QPushButton::clicked, "Calculate_Click", &frmCalcDeadHead::Calculate_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", &frmCalcDeadHead::CloseIt_Click);
    on(Timer1, &forms::Timer::tick, "Timer1_Timer", &frmCalcDeadHead::Timer1_Timer);
}

frmCalcDeadHead::~frmCalcDeadHead() = default;

QCheckBox& frmCalcDeadHead::ResetDeadHead() const { return *ui_->ResetDeadHead; }

void frmCalcDeadHead::Form_Load() {
    ui_->LastBuild->setText(toQt(lastCalculation(*startup::gcnRouting)));
    showOutlook();
}

void frmCalcDeadHead::showOutlook() {
    const auto outlook = deadHeadOutlook(*startup::gcnRouting);
    QStringList lines;
    for (const std::string& line : textOf(outlook)) {
        lines << controls::toRich(line);
    }
    const bool fine = outlook.tooMany.empty();
    ui_->Outlook->say(fine ? controls::Tone::Plain : controls::Tone::Look,
                      lines.join(QStringLiteral("<br>")),
                      fine ? std::nullopt : std::optional(controls::Sign::Warning));
}

void frmCalcDeadHead::Calculate_Click() {
    ui_->OpenLegs->clearAll();
    showOutlook();
    DeadHeadOutcome outcome;
    {
        Operation operation(*this, panel_);
        outcome = calculateAllRoutes({*startup::gcnRouting, *startup::gcnDeadCross},
                                     ui_->ResetDeadHead->isChecked(), operation);
        operation.status(closingMessage(outcome));
    }
    startup::RefreshRunList = true;
    ui_->OpenLegs->setTable(openLegsTable(outcome, *startup::gcnRouting));
    if (outcome.openLegs.empty() && outcome.complete()) {
        ui_->OpenLegs->setEmptyText(AllCalculated);
    }
    ui_->LastBuild->setText(toQt(lastCalculation(*startup::gcnRouting)));
    const auto left = whatWasLeft(outcome, deadHeadWording(outcome.wasReset));
    if (!left.empty()) {
        base::MsgBox(left, StoppedTitle, base::MsgIcon::Information);
    }
}

void frmCalcDeadHead::CloseIt_Click() { closeForm(); }

void frmCalcDeadHead::Timer1_Timer() { panel_.clear(); }

}  // namespace groupops
