#include "groupops/groupchange/frmGroupRunChange.h"

#include <fmt/format.h>

#include "data/lookups/mdlLOAD_lstcmb.h"
#include "platform/base/text.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/numberbox.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
#include "startup/base/session.h"

#include "ui_frmGroupRunChange.h"

namespace groupops {

namespace {

using controls::MultiColumnCombo;
using controls::NumberBox;
using controls::toQt;

constexpr auto Form_ = "frmGroupRunChange";
constexpr auto InitialStatus = "Changing Run Information";
constexpr int ClearStatusMs = 8000;

constexpr auto NotInList =
    "Oops, \"{}\" is not in the list of this field.  Please choose an entry of the list and try "
    "again.  No run was changed.";
constexpr auto NoNumber =
    "Oops, the overfill must be a whole number from 0 to 999.  Please enter one and try again.  "
    "No run was changed.";

table::TextTable capacities() {
    table::TextTable table;
    table.columns = {{"Vehicle Capacity", 2000}};
    for (const auto* capacity : {"High", "Medium", "Low"}) {
        table.setText(table.addRow(), 0, capacity);
    }
    return table;
}

}  // namespace

frmGroupRunChange::frmGroupRunChange(RunSelection& selection, forms::Form* owner)
    : TrappedForm(Form_, owner),
      selection_(selection),
      ui_(std::make_unique<Ui::frmGroupRunChange>()),
      Timer1(new forms::Timer(this)) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    for (const Attribute& attribute : attributes()) {
        on(attribute.box, &QCheckBox::toggled, attribute.procedure, attribute.click);
        attribute.value->setEnabled(false);
    }
    on(ui_->ChangeIt, &QPushButton::clicked, "ChangeIt_Click", &frmGroupRunChange::ChangeIt_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", &frmGroupRunChange::CloseIt_Click);
    on(Timer1, &forms::Timer::tick, "Timer1_Timer", &frmGroupRunChange::Timer1_Timer);
    setCancelButton(ui_->CloseIt);
}

frmGroupRunChange::~frmGroupRunChange() = default;

std::vector<frmGroupRunChange::Attribute> frmGroupRunChange::attributes() const {
    using F = frmGroupRunChange;
    return {
        {ui_->ChangeRunFamily, ui_->cmbRunFamily, "RunFamily", "Run Family",
         "ChangeRunFamily_Click", &F::ChangeRunFamily_Click},
        {ui_->ChangeLocation, ui_->cmbLOCCODE, "LocCode", "Location", "ChangeLocation_Click",
         &F::ChangeLocation_Click},
        {ui_->ChangeSchool, ui_->cmbSchool, "School", "School", "ChangeSchool_Click",
         &F::ChangeSchool_Click},
        {ui_->ChangeTripType, ui_->cmbTripType, "TripType", "Trip Type", "ChangeTripType_Click",
         &F::ChangeTripType_Click},
        {ui_->ChangeVehType, ui_->cmbVEHTYPE, "VehType", "Vehicle Type", "ChangeVehType_Click",
         &F::ChangeVehType_Click},
        {ui_->ChangeCapacity, ui_->cmbCapacity, "Capacity", "Capacity", "ChangeCapacity_Click",
         &F::ChangeCapacity_Click},
        {ui_->ChangeOverfill, ui_->OverFill, "OverFill", "Overfill", "ChangeOverfill_Click",
         &F::ChangeOverfill_Click},
    };
}

void frmGroupRunChange::Form_Load() {
    data::Load_cmbRunFamily(*this);
    data::Load_cmbLOCCODE(*this);
    data::Load_cmbSchool(*this);
    data::Load_cmbTRIPTYPE(*this);
    data::Load_cmbVehType(*this);
    ui_->cmbCapacity->setTable(capacities());
    Timer1_Timer();
    showSelected();
}

void frmGroupRunChange::Form_Activate() { showSelected(); }

void frmGroupRunChange::showSelected() {
    const auto count = selection_.selectedRuns().size();
    ui_->ChangeIt->setEnabled(count > 0);
    ui_->SelectedRuns->setText(toQt(selectedText(count)));
}

void frmGroupRunChange::ChangeRunFamily_Click() {
    ui_->cmbRunFamily->setEnabled(ui_->ChangeRunFamily->isChecked());
}

void frmGroupRunChange::ChangeLocation_Click() {
    ui_->cmbLOCCODE->setEnabled(ui_->ChangeLocation->isChecked());
}

void frmGroupRunChange::ChangeSchool_Click() {
    ui_->cmbSchool->setEnabled(ui_->ChangeSchool->isChecked());
}

void frmGroupRunChange::ChangeTripType_Click() {
    ui_->cmbTripType->setEnabled(ui_->ChangeTripType->isChecked());
}

void frmGroupRunChange::ChangeVehType_Click() {
    ui_->cmbVEHTYPE->setEnabled(ui_->ChangeVehType->isChecked());
}

void frmGroupRunChange::ChangeCapacity_Click() {
    ui_->cmbCapacity->setEnabled(ui_->ChangeCapacity->isChecked());
}

void frmGroupRunChange::ChangeOverfill_Click() {
    ui_->OverFill->setEnabled(ui_->ChangeOverfill->isChecked());
}

/// Nothing where the planner has to choose anew. An empty list field is a value: it empties the
/// column.
std::optional<base::Value> frmGroupRunChange::valueOf(const Attribute& attribute) {
    if (const auto* number = qobject_cast<const NumberBox*>(attribute.value)) {
        const auto typed = number->number();
        return typed ? std::optional<base::Value>(*typed) : std::nullopt;
    }
    const auto* combo = qobject_cast<const MultiColumnCombo*>(attribute.value);
    const std::string typed(base::trim(combo->text()));
    if (combo->chosenRow() >= 0) {
        return std::string(base::trim(combo->columnText(0)));
    }
    return typed.empty() ? std::optional<base::Value>("") : std::nullopt;
}

/// Tells what is wrong with a value and goes there.
void frmGroupRunChange::refuse(const Attribute& attribute) {
    const auto* combo = qobject_cast<const MultiColumnCombo*>(attribute.value);
    base::MsgBox(combo == nullptr ? NoNumber : fmt::format(NotInList, base::trim(combo->text())),
                 fmt::format("Invalid {}", attribute.name), base::MsgIcon::Information);
    attribute.value->setFocus();
}

std::optional<std::vector<RunChange>> frmGroupRunChange::changes() {
    std::vector<RunChange> changes;
    for (const Attribute& attribute : attributes()) {
        if (!attribute.box->isChecked()) {
            continue;
        }
        auto value = valueOf(attribute);
        if (!value) {
            refuse(attribute);
            return std::nullopt;
        }
        changes.push_back({attribute.column, std::move(*value)});
    }
    return changes;
}

void frmGroupRunChange::ChangeIt_Click() {
    const auto runs = selection_.selectedRuns();
    showSelected();
    const auto wanted = changes();
    if (wanted && !runs.empty()) {
        change(runs, *wanted);
    }
}

void frmGroupRunChange::change(const std::vector<std::string>& runs,
                               const std::vector<RunChange>& changes) {
    GroupOutcome outcome;
    Timer1_Timer();
    ui_->ProgressBar1->show();
    ui_->StatMsg->show();
    {
        ui_->StopIt->show();
        setCancelButton(ui_->StopIt);
        const Operation operation(*this, ui_->StopIt);
        forms::Progress progress(ui_->ProgressBar1, ui_->StatMsg, ui_->StopIt);
        outcome = changeRuns(*startup::gcnRouting, runs, changes, progress);
        progress.status(fmt::format("Changed selected information on {} runs.", outcome.changed));
        selection_.searchAgain();
    }
    ui_->StopIt->hide();
    setCancelButton(ui_->CloseIt);
    showSelected();
    Timer1->startOnce(ClearStatusMs);
    if (const auto left = whatWasLeft(outcome); !left.empty()) {
        base::MsgBox(left, "Group Run Change", base::MsgIcon::Information);
    }
}

void frmGroupRunChange::CloseIt_Click() { closeForm(); }

void frmGroupRunChange::Timer1_Timer() {
    Timer1->setEnabled(false);
    ui_->ProgressBar1->hide();
    ui_->StopIt->hide();
    ui_->StatMsg->setText(InitialStatus);
    ui_->StatMsg->hide();
}

}  // namespace groupops
