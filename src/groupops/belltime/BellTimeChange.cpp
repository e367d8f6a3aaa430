#include "groupops/belltime/BellTimeChange.h"

#include <QCheckBox>
#include <cmath>
#include <map>

#include <fmt/format.h>

#include "groupops/deadhead/frmCalcDeadHead.h"
#include "platform/base/text.h"
#include "platform/base/timetext.h"
#include "platform/controls/grid.h"
#include "platform/controls/numberbox.h"
#include "platform/controls/qtext.h"
#include "platform/controls/timebox.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/timer.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/session.h"

#include "ui_BellTimeChange.h"

namespace groupops {

namespace {

using base::Date;
using base::MsgIcon;

constexpr auto BellForm = "BellTimeChange";
constexpr int ClearStatusMs = 8000;

// Columns of the grid.
constexpr int CurrentBell = 1;
constexpr int NewBell = 3;

constexpr auto NoRowsText =
    "Oops, no row is selected.  Please select the rows whose new bell time is to be set, or press "
    "Select All, and try again.";
constexpr auto NoTimeText =
    "Oops, \"{}\" is not a time.  Please enter a time such as 07:30 AM and try again.";
constexpr auto NoMinutesText =
    "Oops, please enter a whole number of minutes from -1439 to 1439 and try again.";
constexpr auto BadNewBellText =
    "Oops, \"{}\" is not a time.  It is the new bell time of row {}, school {}, current bell time "
    "{}.  Please enter a time such as 07:30 AM and try again.  No run was changed.";
constexpr auto NoNewBellText =
    "Oops, no row has a new bell time yet.  Please enter one in the column New Bell Time, or "
    "select rows and set it for all of them, and try again.  No run was changed.";

constexpr auto CrowdText =
    "School {} will have {} runs at {} then, and this screen holds no more than {}.  The runs can "
    "be changed, but the program will end afterwards and has to be started again.  Do you want to "
    "change them?";

std::optional<Date> timeOf(std::string_view text) {
    const auto date = Date::parse(base::tidyTime(text));
    return date && *date == date->timeValue() ? date : std::nullopt;
}

bool isBlank(std::string_view text) { return base::trim(text).empty(); }

/// "None" in a sentence about a run without a bell time.
std::string named(const std::string& text) { return isBlank(text) ? "none" : text; }

/// The minutes in a box; tells the planner where there are none.
std::optional<std::int32_t> minutesIn(controls::NumberBox& box) {
    if (const auto number = box.number()) {
        return static_cast<std::int32_t>(*number);
    }
    base::MsgBox(NoMinutesText, "Invalid Number of Minutes", MsgIcon::Information);
    box.setFocus();
    box.selectAll();
    return std::nullopt;
}

/// Whether the planner wants the change even where its groups cannot be shown any more.
bool wanted(const BellChange& change) {
    const auto crowd = crowdAfter(change);
    return !crowd ||
           base::MsgBox(fmt::format(CrowdText, named(crowd->school), crowd->runs,
                                    named(base::tidyTime(crowd->bellTime)), BellGroup::MaxRuns),
                        "Many Runs at One Bell Time", MsgIcon::Question,
                        base::MsgButtons::YesNo) == base::MsgAnswer::Yes;
}

std::vector<std::string> gridRow(const BellGroup& group) {
    return {group.school, base::tidyTime(group.bellTime), std::to_string(group.runCount)};
}

}  // namespace

BellTimeChange::BellTimeChange(RunSelection& selection, forms::Form* owner)
    : TrappedForm(BellForm, owner),
      selection_(selection),
      ui_(std::make_unique<Ui::BellTimeChange>()),
      Timer1(new forms::Timer(this)),
      groups_(std::make_unique<BellGroups>()) {
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    QPalette red = ui_->StatMsg->palette();
    red.setColor(QPalette::WindowText, QColor(214, 32, 32));
    ui_->StatMsg->setPalette(red);
    ui_->BellTimeGrid->setColumns({{"School", "School"},
                                   {"Current Bell Time", "Current_Bell_Time"},
                                   {"Number of Runs", "NumRuns", false, true},
                                   {"New Bell Time", "New_Bell_Time", true}});
    panel_ = {{ui_->ProgressBar1, ui_->ProgressBar2},
              ui_->StatMsg,
              ui_->StopChange,
              Timer1,
              ClearStatusMs,
              ChangingBells};
    ui_->StopChange->hide();
    wire();
}

BellTimeChange::~BellTimeChange() = default;

void BellTimeChange::wire() {
    on(ui_->SetTimes, &QPushButton::clicked, "SetTimes_Click", &BellTimeChange::SetTimes_Click);
    on(ui_->SetTime, &QLineEdit::returnPressed, "SetTimes_Click", &BellTimeChange::SetTimes_Click);
    on(ui_->AddMin, &QPushButton::clicked, "AddMin_Click", &BellTimeChange::AddMin_Click);
    on(ui_->MinChanged, &QLineEdit::returnPressed, "AddMin_Click", &BellTimeChange::AddMin_Click);
    on(ui_->cmdSelectAll, &QPushButton::clicked, "cmdSelectAll_Click",
       [this] { ui_->BellTimeGrid->selectAllRows(); });
    on(ui_->cmdSelectNone, &QPushButton::clicked, "cmdSelectNone_Click",
       [this] { ui_->BellTimeGrid->selectNone(); });
    on(ui_->BellTimeGrid, &controls::Grid::cellEdited, "BellTimeGrid_AfterEdit",
       [this](int row, int) { BellTimeGrid_AfterEdit(row); });
    on(ui_->BellTimeGrid, &controls::Grid::selectionCountChanged, "showSelected",
       &BellTimeChange::showSelected);
    on(ui_->Change_Run_Time, &QCheckBox::toggled, "Change_Run_Time_Click",
       &BellTimeChange::Change_Run_Time_Click);
    on(ui_->FixedMinutes, &QRadioButton::clicked, "FixedMinutes_Click",
       &BellTimeChange::FixedMinutes_Click);
    on(ui_->SameGap, &QRadioButton::clicked, "SameGap_Click", &BellTimeChange::SameGap_Click);
    on(ui_->ChangeBell, &QPushButton::clicked, "ChangeBell_Click",
       &BellTimeChange::ChangeBell_Click);
    on(ui_->Exit_Change, &QPushButton::clicked, "Exit_Change_Click",
       &BellTimeChange::Exit_Change_Click);
    on(Timer1, &forms::Timer::tick, "Timer1_Timer", &BellTimeChange::Timer1_Timer);
    setCancelButton(ui_->Exit_Change);
}

void BellTimeChange::Form_Load() {
    ui_->TimeToUse->addItems({QStringLiteral("Start Time"), QStringLiteral("End Time")});
    // From the end every stop moves by what the bell moves by, whatever the run.
    ui_->TimeToUse->setCurrentIndex(1);
    trap("Build_Time_List", &BellTimeChange::Build_Time_List);
    Change_Run_Time_Click();
    panel_.clear();
    ui_->BellTimeGrid->setFocus();
}

void BellTimeChange::Build_Time_List() {
    groups_ = std::make_unique<BellGroups>();
    ui_->BellTimeGrid->setRows({});
    if (!startup::RunSearchSchoolSQL.empty()) {
        readBellGroups(*startup::gcnRouting, startup::RunSearchSchoolSQL, *groups_);
    }
    std::vector<std::vector<std::string>> rows;
    for (int group = 1; group <= groups_->count(); ++group) {
        rows.push_back(gridRow((*groups_)[group]));
    }
    ui_->BellTimeGrid->setRows(std::move(rows));
    if (groups_->count() == 1) {
        ui_->BellTimeGrid->selectAllRows();
    }
}

void BellTimeChange::showSelected() {
    ui_->SelectedRows->setText(tr("%1 of %2 rows selected")
                                   .arg(ui_->BellTimeGrid->selectedRows().size())
                                   .arg(ui_->BellTimeGrid->rows()));
}

void BellTimeChange::BellTimeGrid_AfterEdit(int row) {
    auto& grid = *ui_->BellTimeGrid;
    const std::string typed = grid.cellText(row, NewBell);
    grid.setCellText(row, NewBell, base::tidyTime(typed));
    grid.setRed(row, NewBell, !isBlank(typed) && !timeOf(typed));
}

void BellTimeChange::setNewBell(int row, Date time) {
    ui_->BellTimeGrid->setCellText(row, NewBell, base::tidyTime(time.timeValue().text()));
    ui_->BellTimeGrid->setRed(row, NewBell, false);
}

std::vector<int> BellTimeChange::rowsToSet() {
    ui_->BellTimeGrid->finishTyping();
    auto rows = ui_->BellTimeGrid->selectedRows();
    if (rows.empty()) {
        base::MsgBox(NoRowsText, "No Rows Selected", MsgIcon::Information);
        ui_->BellTimeGrid->setFocus();
    }
    return rows;
}

void BellTimeChange::SetTimes_Click() {
    const auto time = timeOf(controls::fromQt(ui_->SetTime->text()));
    if (!time) {
        base::MsgBox(fmt::format(NoTimeText, controls::fromQt(ui_->SetTime->text())),
                     "Invalid Time", MsgIcon::Information);
        ui_->SetTime->setFocus();
        ui_->SetTime->selectAll();
        return;
    }
    for (const int row : rowsToSet()) {
        setNewBell(row, *time);
    }
}

/// Counts from the current bell time, not from a new one entered before: pressed twice it does not
/// add twice, as is meant. A row without a current bell time stays.
void BellTimeChange::AddMin_Click() {
    const auto minutes = minutesIn(*ui_->MinChanged);
    if (!minutes) {
        return;
    }
    for (const int row : rowsToSet()) {
        if (const auto bell = Date::parse((*groups_)[row + 1].bellTime)) {
            setNewBell(row, bell->plusSeconds(std::int64_t{*minutes} * 60));
        }
    }
}

void BellTimeChange::Change_Run_Time_Click() {
    const bool on = ui_->Change_Run_Time->isChecked();
    for (QWidget* control : std::initializer_list<QWidget*>{
             ui_->CalcMethod, ui_->SetTimes, ui_->SetTime, ui_->AddMin, ui_->MinChanged}) {
        control->setEnabled(on);
    }
    const bool minutes = on && ui_->FixedMinutes->isChecked();
    ui_->NumOfMinutes->setEnabled(minutes);
    ui_->NumOfMinutes_Caption->setEnabled(minutes);
}

void BellTimeChange::FixedMinutes_Click() {
    ui_->NumOfMinutes->setEnabled(true);
    ui_->NumOfMinutes_Caption->setEnabled(true);
}

void BellTimeChange::SameGap_Click() {
    ui_->NumOfMinutes->setEnabled(false);
    ui_->NumOfMinutes_Caption->setEnabled(false);
}

void BellTimeChange::refuseNewBell(int row) {
    const auto& grid = *ui_->BellTimeGrid;
    base::MsgBox(
        fmt::format(BadNewBellText, grid.cellText(row, NewBell), row + 1,
                    named((*groups_)[row + 1].school), named(grid.cellText(row, CurrentBell))),
        "Invalid New Bell Time", MsgIcon::Information);
    ui_->BellTimeGrid->typeInto(row, NewBell);
}

/// All cells are looked at before anything is written. A cell that was never filled reads as a
/// single blank: its group stays.
std::optional<BellTimeChange::NewBells> BellTimeChange::newBells() {
    auto& grid = *ui_->BellTimeGrid;
    grid.finishTyping();
    NewBells bells;
    bool any = false;
    for (int row = 0; row < grid.rows(); ++row) {
        const std::string text = grid.cellText(row, NewBell);
        bells.push_back(timeOf(text));
        if (!isBlank(text) && !bells.back()) {
            refuseNewBell(row);
            return std::nullopt;
        }
        any = any || bells.back();
    }
    if (!any) {
        base::MsgBox(NoNewBellText, "No New Bell Time", MsgIcon::Information);
        grid.setFocus();
        return std::nullopt;
    }
    return bells;
}

std::optional<BellMethod> BellTimeChange::method() {
    BellMethod method;
    method.fromEnd = base::trim(controls::fromQt(ui_->TimeToUse->currentText())) == "End Time";
    if (ui_->FixedMinutes->isChecked()) {
        const auto minutes = minutesIn(*ui_->NumOfMinutes);
        if (!minutes) {
            return std::nullopt;
        }
        method.gap = BellMethod::Gap::FixedMinutes;
        method.minutes = *minutes;
    }
    return method;
}

void BellTimeChange::ChangeBell_Click() {
    auto bells = newBells();
    const auto how = bells ? method() : std::nullopt;
    if (!how) {
        return;
    }
    const BellChange asked{*groups_, std::move(*bells), *how};
    if (!wanted(asked)) {
        return;
    }
    const Outcome outcome = change(asked);
    if (ui_->Change_Run_Time->isChecked() && outcome.done > 0 && !outcome.stopped) {
        calculateDeadHead();
    }
    rebuild(outcome.stopped);
    selection_.searchAgain();
    tellWhatWasLeft(outcome);
}

/// After a stop the new bell times stay with the groups that still have their old one.
void BellTimeChange::rebuild(bool keepsNewBells) {
    auto& grid = *ui_->BellTimeGrid;
    std::map<std::string, std::string> entered;
    const auto group = [&](int row) {
        return grid.cellText(row, 0) + "|" + grid.cellText(row, CurrentBell);
    };
    for (int row = 0; keepsNewBells && row < grid.rows(); ++row) {
        entered[group(row)] = grid.cellText(row, NewBell);
    }
    trap("Build_Time_List", &BellTimeChange::Build_Time_List);
    for (int row = 0; keepsNewBells && row < grid.rows(); ++row) {
        grid.setCellText(row, NewBell, entered[group(row)]);
    }
}

Outcome BellTimeChange::change(const BellChange& change) {
    Operation operation(*this, panel_);
    const auto showGroups = [this](double percent) {
        ui_->ProgressBar2->setValue(static_cast<int>(std::lround(percent)));
    };
    auto outcome =
        changeBellTimes(*startup::gcnRouting, change, {operation, showGroups, startup::logLine});
    operation.status(fmt::format("Bell Times Changed. {} Runs changed.", outcome.done));
    return outcome;
}

/// Its form stays open with what it has found, beside this one.
void BellTimeChange::calculateDeadHead() {
    auto& form = forms::FormRegistry::instance().load<frmCalcDeadHead>(this);
    form.ResetDeadHead().setChecked(false);
    form.setWindowModality(Qt::NonModal);
    form.showForm();
    form.Calculate_Click();
}

void BellTimeChange::tellWhatWasLeft(const Outcome& outcome) {
    auto left = whatWasLeft(outcome, runChangeWording());
    if (left.empty()) {
        return;
    }
    if (outcome.stopped && outcome.done > 0 && ui_->Change_Run_Time->isChecked()) {
        left += "\n\nThe dead-head times of the changed runs were not calculated anew.";
    }
    base::MsgBox(left, "Bell Time Change", MsgIcon::Information);
}

void BellTimeChange::Exit_Change_Click() { closeForm(); }

void BellTimeChange::Timer1_Timer() { panel_.clear(); }

}  // namespace groupops
