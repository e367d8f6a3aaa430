#include "groupops/deadhead/frmCalcDeadHead.h"

#include "groupops/deadhead/districtdeadhead.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
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
    setWindowModality(Qt::WindowModal);
    setCancelButton(ui_->CloseIt);
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
}

void frmCalcDeadHead::Calculate_Click() {
    Timer1->setEnabled(false);
    ui_->OpenLegs->clearAll();
    ui_->StatusMsg->show();
    ui_->ProgressBar1->show();
    calculate();
    Timer1->startOnce(ClosingMessageMs);
}

void frmCalcDeadHead::calculate() {
    DeadHeadOutcome outcome;
    {
        const Operation operation(*this, ui_->Stop);
        forms::Progress progress(ui_->ProgressBar1, ui_->StatusMsg, ui_->Stop);
        outcome = calculateAllRoutes({*startup::gcnRouting, *startup::gcnDeadCross},
                                     ui_->ResetDeadHead->isChecked(), progress);
        ui_->Stop->setEnabled(false);
    }
    startup::RefreshRunList = true;
    ui_->OpenLegs->setTable(openLegsTable(outcome, *startup::gcnRouting));
    if (outcome.openLegs.empty() && !outcome.stopped) {
        ui_->OpenLegs->setEmptyText(AllCalculated);
    }
    ui_->LastBuild->setText(toQt(lastCalculation(*startup::gcnRouting)));
    ui_->StatusMsg->setText(toQt(closingMessage(outcome)));
    if (outcome.stopped) {
        base::MsgBox(stoppedMessage(outcome), StoppedTitle, base::MsgIcon::Information);
    }
}

void frmCalcDeadHead::CloseIt_Click() { closeForm(); }

void frmCalcDeadHead::Timer1_Timer() {
    ui_->StatusMsg->clear();
    ui_->StatusMsg->hide();
    ui_->ProgressBar1->hide();
}

}  // namespace groupops
