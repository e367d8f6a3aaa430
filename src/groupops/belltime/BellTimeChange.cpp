#include "groupops/belltime/BellTimeChange.h"

#include <QCheckBox>
#include <QTableView>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "groupops/deadhead/frmCalcDeadHead.h"
#include "platform/base/text.h"
#include "platform/base/timetext.h"
#include "platform/controls/grid.h"
#include "platform/controls/notebox.h"
#include "platform/controls/numberbox.h"
#include "platform/controls/qtext.h"
#include "platform/controls/timebox.h"
#include "platform/controls/tones.h"
#include "platform/forms/flowrow.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/timer.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/session.h"

#include "ui_BellTimeChange.h"

namespace groupops {

namespace {

using base::Date;
using base::MsgIcon;
using controls::toRich;

constexpr auto BellForm = "BellTimeChange";
constexpr int ClearStatusMs = 8000;

// Columns of the grid.
constexpr int CurrentBell = 1;
constexpr int NewBell = 3;
constexpr int AfterBell = 4;
// Columns of the runs before and after.
constexpr int PreviewDescription = 1;
constexpr int PreviewEnd = 5;
constexpr int PreviewAgainst = 6;

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
    "be changed; this screen closes afterwards.  Do you want to change them?";

constexpr auto TooManyTitle = "Too Many Runs";
constexpr auto TooManyRunsText =
    "Oops, one school and bell has more runs than this screen can change.";
constexpr auto TooManyGroupsText =
    "Oops, the runs found have more schools and bells than this screen can change.";
constexpr auto NothingChanged = "No run was changed.  Please find fewer runs and try again.";
constexpr auto ChangeIsDone =
    "The change is done.  This screen closes; find fewer runs to change more.";
constexpr auto DeadHeadIsDue = "The dead-head times of the changed runs were not calculated anew.";

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

/// Tells the planner what is too many, and where.
void tellTooMany(const BellExtent& extent, const char* whatIsWritten) {
    const auto& crowd = extent.crowd;
    const std::string where =
        crowd ? fmt::format(
                    "School {}, bell {}: {} runs\n{} runs of one school and bell are possible.",
                    named(crowd->school), named(base::tidyTime(crowd->bellTime)), crowd->runs,
                    BellGroup::MaxRuns)
              : fmt::format("{} schools and bells\n{} are possible.", extent.groups,
                            BellGroups::MaxGroups);
    base::MsgBox({.text = crowd ? TooManyRunsText : TooManyGroupsText,
                  .title = TooManyTitle,
                  .icon = MsgIcon::Information,
                  .concerns = fmt::format("{}\n{}", where, whatIsWritten)});
}

std::string hhmm(const std::optional<Date>& time) { return time ? time->hhmm() : ""; }

std::vector<std::string> previewRow(const RunForecast& run) {
    return {run.run,
            run.description,
            hhmm(run.now.start),
            hhmm(run.now.end),
            hhmm(run.after.start),
            hhmm(run.after.end),
            againstBellText(run)};
}

std::vector<controls::GridColumn> previewColumns(const std::string& bell) {
    return {{"Run ID", "Run"},
            {"Description", "Description"},
            {"Start Now", "StartNow", false, true},
            {"End Now", "EndNow", false, true},
            {"Start New", "StartNew", false, true},
            {"End New", "EndNew", false, true},
            {"Against " + bell, "AgainstBell", false, true}};
}

constexpr controls::CellNote Wrong{controls::Tone::Wrong, controls::Sign::Warning};
constexpr controls::CellNote Mixed{controls::Tone::Look, controls::Sign::Warning};
constexpr controls::CellNote Fine{controls::Tone::Plain, controls::Sign::Tick};

bool isWrong(const RunForecast& run) { return run.verdict != RunForecast::Verdict::Fine; }

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
    for (QHBoxLayout* row : {ui_->selectRow, ui_->minutesRow, ui_->buttonRow}) {
        forms::FlowRow::in(*row);
    }
    ui_->BellTimeGrid->setColumns({{"School", "School"},
                                   {"Current Bell Time", "Current_Bell_Time"},
                                   {"Number of Runs", "NumRuns", false, true},
                                   {"New Bell Time", "New_Bell_Time", true},
                                   {"After the Bell", "After_Bell"}});
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

void BellTimeChange::formDress() {
    QPalette red = palette();
    red.setColor(QPalette::WindowText, inkOf(controls::Tone::Wrong, red));
    ui_->StatMsg->setPalette(red);
}

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
    on(ui_->BellTimeGrid->view().selectionModel(), &QItemSelectionModel::currentRowChanged,
       "showOutlook", &BellTimeChange::showOutlook);
    on(ui_->TimeToUse, &QComboBox::currentIndexChanged, "showOutlook",
       &BellTimeChange::showOutlook);
    on(ui_->NumOfMinutes, &QLineEdit::textChanged, "showOutlook", &BellTimeChange::showOutlook);
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
    makeRoom();
    if (buildIfItFits(NothingChanged)) {
        Change_Run_Time_Click();
        panel_.clear();
        ui_->BellTimeGrid->setFocus();
    }
}

void BellTimeChange::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    constexpr int RoomyCharacters = 175;
    constexpr int LeanInCharacters = 135;
    const int characters = width() / fontMetrics().averageCharWidth();
    if (narrow_ != (characters < RoomyCharacters) || lean_ != (characters < LeanInCharacters)) {
        narrow_ = characters < RoomyCharacters;
        lean_ = characters < LeanInCharacters;
        arrange();
    }
}

/// Where there is little width, long captions stand in two lines and the runs before and after go
/// without their descriptions; where there is less, the grid stands above what is done to it.
void BellTimeChange::arrange() {
    for (QAbstractButton* button :
         std::initializer_list<QAbstractButton*>{ui_->AddMin, ui_->SameGap}) {
        QString caption = button->text().replace(u'\n', u' ');
        const auto middle = caption.indexOf(u' ', caption.size() / 2);
        button->setText(narrow_ ? caption.replace(middle, 1, u'\n') : caption);
    }
    ui_->RunsBeforeAfter->view().setColumnHidden(PreviewDescription, narrow_);
    ui_->mainRow->setDirection(lean_ ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    ui_->mainRow->setStretch(0, lean_ ? 1 : 2);
    ui_->mainRow->setStretch(1, lean_ ? 1 : 3);
    makeRoom();
}

/// Both lists show at least three rows; what is beside the grid scrolls where the
/// screen is too low.
void BellTimeChange::makeRoom() {
    constexpr int HeaderAndThreeRows = 9;  // in line heights
    const int least = HeaderAndThreeRows * fontMetrics().height();
    ui_->RunsBeforeAfter->setMinimumHeight(least);
    ui_->BellTimeGrid->setMinimumHeight(least);
}

/// Counts first; where the runs are too many the planner is told and the form goes.
bool BellTimeChange::buildIfItFits(const char* whatIsWritten) {
    if (!startup::RunSearchSchoolSQL.empty()) {
        const auto extent = bellExtent(*startup::gcnRouting, startup::RunSearchSchoolSQL);
        if (!extent.fits()) {
            tellTooMany(extent, whatIsWritten);
            unload();
            return false;
        }
    }
    trap("Build_Time_List", &BellTimeChange::Build_Time_List);
    return true;
}

void BellTimeChange::Build_Time_List() {
    forecaster_.reset();
    groups_ = std::make_unique<BellGroups>();
    changed_.clear();
    ui_->BellTimeGrid->setRows({});
    if (!startup::RunSearchSchoolSQL.empty()) {
        readBellGroups(*startup::gcnRouting, startup::RunSearchSchoolSQL, *groups_);
    }
    std::vector<std::vector<std::string>> rows;
    for (int group = 1; group <= groups_->count(); ++group) {
        rows.push_back(gridRow((*groups_)[group]));
    }
    ui_->BellTimeGrid->setRows(std::move(rows));
    forecaster_ = std::make_unique<BellForecaster>(*startup::gcnRouting, *groups_);
    showOutlook();
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
    showOutlook();
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
    showOutlook();
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
    showOutlook();
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
    showOutlook();
}

void BellTimeChange::SameGap_Click() {
    ui_->NumOfMinutes->setEnabled(false);
    ui_->NumOfMinutes_Caption->setEnabled(false);
    showOutlook();
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

BellTimeChange::NewBells BellTimeChange::enteredBells() const {
    NewBells bells;
    for (int row = 0; row < ui_->BellTimeGrid->rows(); ++row) {
        bells.push_back(timeOf(ui_->BellTimeGrid->cellText(row, NewBell)));
    }
    return bells;
}

std::optional<BellMethod> BellTimeChange::enteredMethod() const {
    BellMethod method;
    method.fromEnd = base::trim(controls::fromQt(ui_->TimeToUse->currentText())) == "End Time";
    if (ui_->FixedMinutes->isChecked()) {
        const auto minutes = ui_->NumOfMinutes->number();
        if (!minutes) {
            return std::nullopt;
        }
        method.gap = BellMethod::Gap::FixedMinutes;
        method.minutes = static_cast<std::int32_t>(*minutes);
    }
    return method;
}

std::optional<BellMethod> BellTimeChange::method() {
    if (ui_->FixedMinutes->isChecked() && !minutesIn(*ui_->NumOfMinutes)) {
        return std::nullopt;
    }
    return enteredMethod();
}

/// What the entries would do now; in a form that is being filled or closed, nothing.
void BellTimeChange::showOutlook() {
    if (!forecaster_) {
        return;
    }
    const forms::BusyCursor busy;
    const NewBells bells = enteredBells();
    const auto how = enteredMethod();
    const BellChange change{*groups_, how ? bells : NewBells(), how.value_or(BellMethod())};
    BellChange fromOtherEnd = change;
    fromOtherEnd.method.fromEnd = !change.method.fromEnd;
    const auto groups = forecaster_->forecast(change);
    const auto outlook = outlookOf(groups);
    ui_->OutlookCount->say(controls::Tone::Plain, toRich(countText(outlook)));
    showWarnings(
        warningsOf(outlook, change.method, outlookOf(forecaster_->forecast(fromOtherEnd))));
    ui_->OutlookRest->setText(controls::toQt(restText(outlook)));
    ui_->BesideChange->say(
        controls::Tone::Plain, toRich(shortText(outlook)),
        outlook.isFine() ? std::nullopt : std::optional(controls::Sign::Warning));
    showJudgements(groups);
    showChosen(groups, bells);
}

void BellTimeChange::showWarnings(const std::vector<BellWarning>& warnings) {
    QString text;
    for (const BellWarning& warning : warnings) {
        text += (text.isEmpty() ? "<b>" : "<br><b>") + toRich(warning.headline) + "</b> " +
                toRich(warning.explanation);
    }
    ui_->OutlookWarning->say(controls::Tone::Wrong, text, controls::Sign::Warning);
    ui_->OutlookWarning->setVisible(!warnings.empty());
}

/// Beside the new bells; beside the others how many runs the last change has moved there.
void BellTimeChange::showJudgements(const std::vector<GroupForecast>& groups) {
    auto& grid = *ui_->BellTimeGrid;
    for (int row = 0; row < grid.rows(); ++row) {
        const GroupForecast& group = groups[static_cast<std::size_t>(row)];
        const int all = (*groups_)[row + 1].runCount;
        const int moved = changed_.contains(row) ? changed_.at(row) : 0;
        if (!group.runs.empty()) {
            const bool wrong = std::ranges::any_of(group.runs, isWrong);
            grid.setCellText(row, AfterBell, judgementText(group));
            grid.setNote(row, AfterBell, wrong ? Wrong : Fine);
        } else {
            grid.setCellText(row, AfterBell,
                             moved == 0     ? ""
                             : moved == all ? "changed"
                                            : fmt::format("{} of {} changed", moved, all));
            grid.setNote(row, AfterBell,
                         moved == 0     ? controls::CellNote()
                         : moved == all ? Fine
                                        : Mixed);
        }
    }
}

/// The row that the planner stands on, else the first one that changes.
void BellTimeChange::showChosen(const std::vector<GroupForecast>& groups, const NewBells& bells) {
    const auto changing =
        std::ranges::find_if(bells, [](const auto& entered) { return entered.has_value(); });
    const int current = ui_->BellTimeGrid->view().currentIndex().row();
    const auto row = current >= 0 ? current : static_cast<int>(changing - bells.begin());
    auto& list = *ui_->RunsBeforeAfter;
    const bool any =
        row < std::ssize(groups) && !groups[static_cast<std::size_t>(row)].runs.empty();
    const std::string bell =
        any ? base::tidyTime(bells[static_cast<std::size_t>(row)]->timeValue().text()) : "";
    list.setColumns(previewColumns(any ? bell : "the Bell"));
    list.setWideColumn(PreviewDescription);
    list.view().setColumnHidden(PreviewDescription, narrow_);
    ui_->ChosenGroup->setVisible(any);
    if (!any) {
        return;
    }
    const auto& runs = groups[static_cast<std::size_t>(row)].runs;
    const BellGroup& group = (*groups_)[row + 1];
    ui_->ChosenGroup->say(
        controls::Tone::Plain,
        tr("Chosen row: <b>%1, %2 to %3</b>, its %4 before and after")
            .arg(toRich(named(group.school)), toRich(named(base::tidyTime(group.bellTime))),
                 toRich(bell), toRich(countOf(runs.size(), "run"))));
    std::vector<std::vector<std::string>> rows;
    std::ranges::transform(runs, std::back_inserter(rows), previewRow);
    list.setRows(std::move(rows));
    for (int at = 0; at < list.rows(); ++at) {
        if (isWrong(runs[static_cast<std::size_t>(at)])) {
            list.setNote(at, 0, {controls::Tone::Plain, controls::Sign::Warning});
            list.setNote(at, PreviewEnd, {controls::Tone::Wrong});
            list.setNote(at, PreviewAgainst, {controls::Tone::Wrong});
        }
    }
    list.fitColumns();
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
    const bool deadHeadFollows =
        ui_->Change_Run_Time->isChecked() && outcome.done > 0 && !outcome.stopped;
    if (deadHeadFollows) {
        calculateDeadHead();
    }
    rebuild(asked, outcome.stopped);
    selection_.searchAgain();
    tellWhatWasLeft(outcome, outcome.done > 0 && !deadHeadFollows);
}

/// Marks the rows that runs were moved to. After a stop the new bell times stay with the groups
/// that still have their old one; one that got runs of another group loses it, for these would be
/// moved once more.
void BellTimeChange::rebuild(const BellChange& change, bool stopped) {
    const auto placeOf = [](const BellGroup& group) { return group.school + "|" + group.bellTime; };
    std::map<std::string, std::string> entered;
    std::map<std::string, std::string> target;
    for (int group = 1; group <= groups_->count(); ++group) {
        const BellGroup& from = (*groups_)[group];
        const auto bell = newBellOf(change, group);
        for (int slot = 1; bell && bell->text() != from.bellTime && slot <= from.runCount; ++slot) {
            target[from.runs[slot]] = from.school + "|" + bell->text();
        }
        entered[placeOf(from)] = ui_->BellTimeGrid->cellText(group - 1, NewBell);
    }
    if (!buildIfItFits(ChangeIsDone)) {
        return;
    }
    for (int group = 1; group <= groups_->count(); ++group) {
        const BellGroup& now = (*groups_)[group];
        for (int slot = 1; slot <= now.runCount; ++slot) {
            const auto place = target.find(now.runs[slot]);
            changed_[group - 1] += place != target.end() && place->second == placeOf(now) ? 1 : 0;
        }
        if (stopped && changed_[group - 1] == 0) {
            ui_->BellTimeGrid->setCellText(group - 1, NewBell, entered[placeOf(now)]);
        }
    }
    showOutlook();
}

Outcome BellTimeChange::change(const BellChange& change) {
    ui_->BesideChange->say(controls::Tone::Plain, {});
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

/// The words about the dead-head stay in the form until the planner enters something.
void BellTimeChange::tellWhatWasLeft(const Outcome& outcome, bool deadHeadIsDue) {
    if (deadHeadIsDue) {
        ui_->OutlookWarning->say(controls::Tone::Look,
                                 tr("<b>%1</b> Calculate Dead Head on the main form does it.")
                                     .arg(toRich(DeadHeadIsDue)),
                                 controls::Sign::Warning);
        ui_->OutlookWarning->show();
    }
    const auto left = whatWasLeft(outcome, runChangeWording());
    if (!left.empty()) {
        base::MsgBox(left + (deadHeadIsDue ? fmt::format("\n\n{}", DeadHeadIsDue) : ""),
                     "Bell Time Change", MsgIcon::Information);
    }
}

void BellTimeChange::Exit_Change_Click() { closeForm(); }

void BellTimeChange::Timer1_Timer() { panel_.clear(); }

}  // namespace groupops
