#include "groupops/groupchange/frmGroupRunChange.h"

#include <QLineEdit>
#include <algorithm>

#include <fmt/format.h>

#include "data/lookups/mdlLOAD_lstcmb.h"
#include "platform/base/text.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/numberbox.h"
#include "platform/controls/qtext.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"

#include "ui_frmGroupRunChange.h"

namespace groupops {

namespace {

using controls::MultiColumnCombo;
using controls::NumberBox;
using controls::toQt;
using controls::toRich;

constexpr auto Form_ = "frmGroupRunChange";
constexpr auto InitialStatus = "Changing Run Information";
constexpr int ClearStatusMs = 8000;

constexpr auto NotInList =
    "Oops, \"{}\" is not in the list of this field.  Please choose an entry of the list and try "
    "again.  No run was changed.";
constexpr auto NoNumber =
    "Oops, the overfill must be a whole number from 0 to 999.  Please enter one and try again.  "
    "No run was changed.";

bool isEmptied(const RunChange& change) { return change.value.asText().empty(); }

/// "Vehicle Type becomes BUS54".
std::string wordsFor(const RunChange& change, const char* name) {
    return isEmptied(change) ? fmt::format("{} is emptied", name)
                             : fmt::format("{} becomes {}", name, change.value.asText());
}

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
        if (auto* combo = qobject_cast<MultiColumnCombo*>(attribute.value)) {
            on(combo, &QComboBox::currentTextChanged, "showWhatWillHappen",
               &frmGroupRunChange::showWhatWillHappen);
        } else if (auto* number = qobject_cast<NumberBox*>(attribute.value)) {
            on(number, &QLineEdit::textChanged, "showWhatWillHappen",
               &frmGroupRunChange::showWhatWillHappen);
        }
    }
    panel_ = {{ui_->ProgressBar1}, ui_->StatMsg, ui_->StopIt, Timer1, ClearStatusMs, InitialStatus};
    ui_->StopIt->hide();
    on(ui_->ChangeIt, &QPushButton::clicked, "ChangeIt_Click", &frmGroupRunChange::ChangeIt_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", &frmGroupRunChange::CloseIt_Click);
    on(Timer1, &forms::Timer::tick, "Timer1_Timer", &frmGroupRunChange::Timer1_Timer);
    setCancelButton(ui_->CloseIt);
}

frmGroupRunChange::~frmGroupRunChange() = default;

std::vector<frmGroupRunChange::Attribute> frmGroupRunChange::attributes() const {
    using F = frmGroupRunChange;
    const auto& ui = *ui_;
    return {
        {ui.ChangeRunFamily, ui.cmbRunFamily, ui.NowRunFamily, "RunFamily", "Run Family",
         "ChangeRunFamily_Click", &F::ChangeRunFamily_Click},
        {ui.ChangeLocation, ui.cmbLOCCODE, ui.NowLocation, "LocCode", "Location",
         "ChangeLocation_Click", &F::ChangeLocation_Click},
        {ui.ChangeSchool, ui.cmbSchool, ui.NowSchool, "School", "School", "ChangeSchool_Click",
         &F::ChangeSchool_Click},
        {ui.ChangeTripType, ui.cmbTripType, ui.NowTripType, "TripType", "Trip Type",
         "ChangeTripType_Click", &F::ChangeTripType_Click},
        {ui.ChangeVehType, ui.cmbVEHTYPE, ui.NowVehType, "VehType", "Vehicle Type",
         "ChangeVehType_Click", &F::ChangeVehType_Click},
        {ui.ChangeCapacity, ui.cmbCapacity, ui.NowCapacity, "Capacity", "Capacity",
         "ChangeCapacity_Click", &F::ChangeCapacity_Click},
        {ui.ChangeOverfill, ui.OverFill, ui.NowOverfill, "OverFill", "Overfill",
         "ChangeOverfill_Click", &F::ChangeOverfill_Click},
    };
}

void frmGroupRunChange::Form_Load() {
    data::Load_cmbRunFamily(*this);
    data::Load_cmbLOCCODE(*this);
    data::Load_cmbSchool(*this);
    data::Load_cmbTRIPTYPE(*this);
    data::Load_cmbVehType(*this);
    ui_->cmbCapacity->setTable(capacities());
    enableTicked();
    panel_.clear();
    readRuns();
}

void frmGroupRunChange::Form_Activate() { readRuns(); }

void frmGroupRunChange::readRuns() {
    const auto selected = selection_.selectedRuns();
    runs_ = std::make_unique<RunsNow>(*startup::gcnRouting, selected);
    showSelected();
    showWhatWillHappen();
}

void frmGroupRunChange::showSelected() {
    const auto count = selection_.selectedRuns().size();
    ui_->ChangeIt->setEnabled(count > 0);
    ui_->SelectedRuns->setText(toQt(selectedText(count)));
}

/// The value of each ticked attribute can be entered, no other one.
void frmGroupRunChange::enableTicked() {
    for (const Attribute& attribute : attributes()) {
        attribute.value->setEnabled(attribute.box->isChecked());
    }
}

void frmGroupRunChange::tick() {
    enableTicked();
    showWhatWillHappen();
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

std::vector<RunChange> frmGroupRunChange::enteredChanges() const {
    std::vector<RunChange> changes;
    for (const Attribute& attribute : attributes()) {
        if (auto value = attribute.box->isChecked() ? valueOf(attribute) : std::nullopt) {
            changes.push_back({attribute.column, std::move(*value)});
        }
    }
    return changes;
}

/// What a ticked empty field does is said in the field and beside it.
void frmGroupRunChange::showNow(const Attribute& attribute) const {
    const auto value = attribute.box->isChecked() ? valueOf(attribute) : std::nullopt;
    const bool emptied = value && value->asText().empty();
    if (auto* combo = qobject_cast<MultiColumnCombo*>(attribute.value)) {
        combo->lineEdit()->setPlaceholderText(attribute.box->isChecked() ? tr("(will be emptied)")
                                                                         : QString());
    }
    attribute.now->say(controls::Tone::Plain,
                       runs_->count() == 0 ? QString() : toRich(runs_->text(attribute.column)),
                       emptied ? std::optional(controls::Sign::Warning) : std::nullopt);
    attribute.now->setEnabled(attribute.box->isChecked());
}

void frmGroupRunChange::showWhatWillHappen() {
    if (!runs_) {
        return;
    }
    for (const Attribute& attribute : attributes()) {
        showNow(attribute);
    }
    const auto changes = enteredChanges();
    const bool any = runs_->count() > 0 && !changes.empty();
    ui_->WhatWillHappen->setVisible(any);
    if (!any) {
        return;
    }
    QStringList parts;
    for (const Attribute& attribute : attributes()) {
        const auto change = std::ranges::find(changes, attribute.column, &RunChange::column);
        if (change != changes.end()) {
            parts << toRich(wordsFor(*change, attribute.name));
        }
    }
    QString text = tr("%1: %2.").arg(toRich(countOf(std::size_t(runs_->count()), "run")),
                                     parts.join(QStringLiteral(", ")));
    const bool seatsChange = std::ranges::any_of(changes, [](const RunChange& change) {
        return change.column == "VehType" || change.column == "Capacity";
    });
    const int tooFull = seatsChange ? runs_->tooFullAfter(changes, seatsOf) : 0;
    if (tooFull > 0) {
        text += tr("<br><b>%1 of them will carry more passengers than they have seats then.</b>")
                    .arg(tooFull);
    }
    text += tr("<br>There is no undo.");
    const bool look = tooFull > 0 || std::ranges::any_of(changes, isEmptied);
    ui_->WhatWillHappen->say(look ? controls::Tone::Look : controls::Tone::Plain, text,
                             look ? std::optional(controls::Sign::Warning) : std::nullopt);
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
    Outcome outcome;
    {
        Operation operation(*this, panel_);
        outcome = changeRuns(*startup::gcnRouting, runs, changes, operation);
        operation.status(fmt::format("Changed selected information on {} runs.", outcome.done));
        selection_.searchAgain();
    }
    readRuns();
    const auto left = whatWasLeft(outcome, runChangeWording());
    if (!left.empty()) {
        base::MsgBox(left, "Group Run Change", base::MsgIcon::Information);
    }
}

void frmGroupRunChange::CloseIt_Click() { closeForm(); }

void frmGroupRunChange::Timer1_Timer() { panel_.clear(); }

}  // namespace groupops
