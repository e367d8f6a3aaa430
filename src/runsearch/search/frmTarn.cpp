#include "runsearch/search/frmTarn.h"

#include <QAction>
#include <QShortcut>
#include <algorithm>
#include <iterator>

#include "data/lookups/mdlLOAD_lstcmb.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
#include "runsearch/finder/finderbox.h"
#include "runsearch/search/runlist.h"
#include "runsearch/search/runtotals.h"
#include "runsearch/search/searchwords.h"
#include "startup/base/mdlNONULL.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

using controls::toQt;

const auto BeforeSearch = QStringLiteral(
    "Enter what you look for and press Find Now.\nWithout any criterion every run is listed.");
const auto Searching = QStringLiteral("Searching\u2026");
const auto NothingFound = QStringLiteral(
    "No run meets all criteria.\nThe numbers on the tabs tell where criteria are filled.");

const auto NoRunsYet = QStringLiteral(
    "The district has no runs yet.\nNew makes one; the command \"vireo-district import\" brings in "
    "those of another system.");
const auto NoSchoolsYet =
    QStringLiteral("No school is active yet.\n\"vireo-district import\" brings in your schools.");
const auto NoTripTypesYet = QStringLiteral(
    "No trip type is active yet.\n\"vireo-district import\" brings in your trip types.");
constexpr auto WholeMinutesHelp =
    "Times are compared to the second; Whole Minutes takes in the rest of the last minute.";

}  // namespace

frmTarn::frmTarn()
    : TrappedForm(Module, nullptr, startup::AfterError::FormStays),
      ui_(std::make_unique<Ui::frmTarn>()) {
    ui_->setupUi(this);
    ui_->lstSchool->setEmptyText(NoSchoolsYet);
    ui_->lstTripType->setEmptyText(NoTripTypesYet);
    wireCriteria();
    wireRoute();
    wireRunList();
    wireButtons();
    wireMenu();
    wireKeys();
    wireSearches();
    makeFinder();
    watchRuns();
    makeMenuBar();
    dress();
    showButtons();
}

frmTarn::~frmTarn() = default;

void frmTarn::wireRunList() {
    using controls::MultiColumnList;
    ui_->RunFilter->filters(*ui_->RunList);
    on(ui_->RunList, &MultiColumnList::filterChanged, "followFilter", &frmTarn::followFilter);
    on(ui_->RunList, &MultiColumnList::columnClicked, "RunList_ClickColumn",
       &frmTarn::RunList_ClickColumn);
    on(ui_->RunList, &MultiColumnList::rowClicked, "RunList_ClickItem",
       &frmTarn::RunList_ClickItem);
    on(ui_->RunList, &MultiColumnList::selectionCountChanged, "showSelectedCount",
       &frmTarn::showSelectedCount);
    on(ui_->RunList, &MultiColumnList::rowActivated, "RunList_DblClick",
       &frmTarn::RunList_DblClick);
    on(ui_->Tarn, &QLineEdit::textChanged, "showChosenRun", &frmTarn::showChosenRun);
    key(QKeySequence::Delete, ui_->Delete, ui_->RunList);
}

void frmTarn::wireButtons() {
    on(ui_->cmdSearch, &QPushButton::clicked, "cmdSearch_Click", &frmTarn::cmdSearch_Click);
    on(ui_->cmdReset, &QPushButton::clicked, "cmdReset_Click", &frmTarn::cmdReset_Click);
    on(ui_->cmdNew, &QPushButton::clicked, "cmdNew_Click", &frmTarn::cmdNew_Click);
    on(ui_->Edit, &QPushButton::clicked, "Edit_Click", &frmTarn::Edit_Click);
    on(ui_->Delete, &QPushButton::clicked, "Delete_Click", &frmTarn::Delete_Click);
    on(ui_->PrintIt, &QPushButton::clicked, "PrintIt_Click", &frmTarn::PrintIt_Click);
    on(ui_->TimeLine, &QPushButton::clicked, "TimeLine_Click", &frmTarn::TimeLine_Click);
    on(ui_->ChangeBell, &QPushButton::clicked, "ChangeBell_Click", &frmTarn::ChangeBell_Click);
    on(ui_->GroupChange, &QPushButton::clicked, "GroupChange_Click", &frmTarn::GroupChange_Click);
    on(ui_->GroupSolve, &QPushButton::clicked, "GroupSolve_Click", &frmTarn::GroupSolve_Click);
    on(ui_->MergeRuns, &QPushButton::clicked, "MergeRuns_Click", &frmTarn::MergeRuns_Click);
    on(ui_->DeadHead, &QPushButton::clicked, "DeadHead_Click", &frmTarn::DeadHead_Click);
    on(ui_->SelectAll, &QPushButton::clicked, "SelectAll_Click", &frmTarn::SelectAll_Click);
    on(ui_->WholeMinutes, &QPushButton::clicked, "WholeMinutes_Click",
       &frmTarn::WholeMinutes_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &frmTarn::Exit_Click);
    on(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, "cmdSearch_Click",
       &frmTarn::cmdSearch_Click);
    key(Qt::SHIFT | Qt::Key_F5, ui_->WholeMinutes);
    key(Qt::Key_F8, ui_->DeadHead);
}

/// What goes to the chosen run, in the menu of the list too, and the reports on all of them.
void frmTarn::wireMenu() {
    const auto press = [this](QPushButton* button) {
        auto* action = new QAction(button->text(), ui_->RunList);
        QObject::connect(action, &QAction::triggered, button, &QPushButton::click);
        ui_->RunList->addAction(action);
        offered_.emplace_back(action, button);
    };
    for (auto* button : {ui_->Edit, ui_->Delete, ui_->MergeRuns}) {
        press(button);
    }
    const auto offer = [this](const QString& text, const char* procedure, auto handler) {
        auto* action = new QAction(text, ui_->RunList);
        on(action, &QAction::triggered, procedure, handler);
        ui_->RunList->addAction(action);
        offered_.emplace_back(action, ui_->Edit);
    };
    offer(tr("Ma&p"), "Map_Click", &frmTarn::Map_Click);
    offer(tr("Run L&og"), "Log_Click", &frmTarn::Log_Click);
    press(ui_->PrintIt);
}

/// Down leads from a criterion into the list, F6 there and back.
void frmTarn::wireKeys() {
    for (auto* box : ui_->RunPage->findChildren<QLineEdit*>()) {
        if (box->parentWidget() == ui_->runBox) {
            auto* down = new QShortcut(Qt::Key_Down, box);
            down->setContext(Qt::WidgetShortcut);
            on(down, &QShortcut::activated, "enterList", &frmTarn::enterList);
        }
    }
    on(new QShortcut(Qt::Key_F6, this), &QShortcut::activated, "F6_KeyPress",
       [this] { ui_->RunList->hasFocus() ? enterCriteria() : enterList(); });
}

void frmTarn::enterList() { ui_->RunList->enter(); }

void frmTarn::enterCriteria() {
    ui_->RunTab->setCurrentWidget(ui_->RunPage);
    ui_->RunId->setFocus(Qt::ShortcutFocusReason);
    ui_->RunId->selectAll();
}

void frmTarn::Form_Load() {
    ui_->Tarn->clear();
    startup::SelectedRun.clear();
    ado::Recordset district("Select * From District", *startup::gcnRouting);
    startup::RunRefreshTime =
        static_cast<int>(startup::NoNullNumber(district["RUNREFRESHTIME"].Value()).asInteger());
    ui_->DistrictName->setText(toQt(startup::NoNullString(district["DistName"].Value()).asText()));
    district.Close();

    data::Load_lstSchool_With_SchoolType(*this);
    data::Load_cmbSCHOOLTYPE(*this);
    data::Load_lstTripType(*this);
    data::Load_cmbRunFamily(*this);
    data::Load_cmbLOCCODE(*this);
    data::Load_cmbEmployee(*this);
    data::Load_cmbVehicle(*this);
    data::Load_cmbAid(*this);
    data::Load_cmbRoute(*this);
    explainEmptyList(BeforeSearch);
    stretchNames();
    emptyTimes();
    ui_->RunTab->setCurrentIndex(0);
    ui_->RunId->setFocus();
    showFilledCriteria();
}

void frmTarn::Form_Activate() {
    finder_->forget();
    if (startup::RefreshRunList) {
        startup::RefreshRunList = false;
        refreshRunList();
    }
}

/// Closing the window is Exit.
bool frmTarn::Form_QueryUnload() {
    Exit_Click();
    return true;
}

void frmTarn::cmdSearch_Click() {
    if (refuseBrokenTimes() || refuseUnknownRouteKeys()) {
        return;
    }
    const forms::BusyCursor hourglass;
    const auto asked = criteria();
    if (const auto query = runSearchQuery(asked)) {
        search(*query, asked);
    } else {
        trap("cmdReset_Click", &frmTarn::cmdReset_Click);
        ui_->TotSel->setText("0");
        ui_->RunList->setEmptyText(tr("No school is of the type %1.\nThe criteria were reset.")
                                       .arg(toQt(base::trim(asked.schoolType))));
    }
}

void frmTarn::search(const RunSearchQuery& query, const RunSearchCriteria& asked) {
    ado::Recordset runs(query.runs, *startup::gcnRouting);
    ui_->WholeMinutes->setVisible(!endsWithinMinutes().empty());
    ui_->RunList->sortingOff();
    ui_->RunList->setFilter({});
    changedRuns_.end();
    showChangedRuns();
    // No row of the new list is chosen yet: an action must not go to a run of the former one.
    ui_->Tarn->clear();
    if (runs.Eof() && runs.Bof()) {
        ui_->RunList->clearAll();
        ui_->TotSel->setText("0");
        explainEmptyList(ui_->WholeMinutes->isHidden()
                             ? NothingFound
                             : NothingFound + '\n' + tr(WholeMinutesHelp));
        return showToResolve();
    }
    // The columns stay for now: a search with the same ones keeps their widths.
    ui_->RunList->clearRows();
    ui_->RunList->setEmptyText(Searching);
    ui_->RunList->setTable(readRuns(runs, asked.useRoute));
    changedRuns_.begin(ui_->RunList->table(), asked.useRoute, query.runs);
    ui_->TotSel->setText(QString::number(ui_->RunList->rowsInAll()));
    startup::RunSearchSQL = query.runs;
    startup::RunSearchSchoolSQL = query.runsSchool;
    found_ = {query.runs, inWords(asked), ui_->RunList->rowsInAll()};
    runs.Close();
    showToResolve();
    bringIntoSight(*ui_->RunList);
    buttons_.afterRunsFound(
        [](std::string_view task) { return startup::HasAuthority(std::string(task), false); });
    showButtons();
}

void frmTarn::cmdReset_Click() {
    for (auto* box : {ui_->Tarn, ui_->RunId, ui_->RunDesc}) {
        box->clear();
    }
    ui_->cmbRunFamily->clearChoice();
    data::Load_lstSchool_With_SchoolType(*this);
    ui_->cmbSchoolType->clearChoice();
    data::Load_lstTripType(*this);
    ui_->cmbLOCCODE->clearChoice();
    ui_->NeedResolve->setChecked(false);
    for (auto* combo : {ui_->cmbEmployee, ui_->cmbVehicle, ui_->cmbAid, ui_->cmbRoute}) {
        combo->clearChoice();
    }
    for (auto* label : {ui_->EmpName, ui_->VehDescription, ui_->AidName}) {
        label->clear();
    }
    ui_->UseRoute->setChecked(false);
    ui_->NotOnRoute->setChecked(false);
    emptyTimes();
    ui_->WholeMinutes->hide();
    ui_->TotSel->clear();
    ui_->RunTab->setCurrentIndex(0);
    ui_->RunList->setFilter({});
    ui_->RunList->clearAll();
    changedRuns_.end();
    showChangedRuns();
    explainEmptyList(BeforeSearch);
    showToResolve();
    buttons_.afterReset();
    showButtons();
    showFilledCriteria();
    ui_->RunId->setFocus();
}

/// What the run list says where it shows none: in a new district how runs come into it.
void frmTarn::explainEmptyList(const QString& otherwise) {
    ui_->RunList->setEmptyText(hasRuns(*startup::gcnRouting) ? otherwise : NoRunsYet);
}

void frmTarn::RunList_ClickColumn(int column) { ui_->RunList->toggleSort(column); }

void frmTarn::RunList_ClickItem() {
    if (ui_->RunList->chosenRow() >= 0) {
        ui_->Tarn->setText(toQt(ui_->RunList->chosenKey()));
    }
}

void frmTarn::RunList_DblClick() { trap("Edit_Click", &frmTarn::Edit_Click); }

void frmTarn::showButtons() {
    ui_->cmdNew->setEnabled(buttons_.cmdNew);
    ui_->Edit->setEnabled(buttons_.Edit);
    ui_->Delete->setEnabled(buttons_.Delete);
    ui_->PrintIt->setEnabled(buttons_.PrintIt);
    ui_->TimeLine->setEnabled(buttons_.TimeLine);
    ui_->ChangeBell->setEnabled(buttons_.ChangeBell);
    ui_->GroupChange->setEnabled(buttons_.GroupChange);
    ui_->GroupSolve->setEnabled(buttons_.GroupSolve);
    for (const auto& [action, button] : offered_) {
        action->setEnabled(button->isEnabled());
    }
}

void frmTarn::showSelectedCount() {
    const auto rows = ui_->RunList->selectedRows();
    const int count = static_cast<int>(rows.size());
    ui_->SelectedCount->setText(count == 0 ? QString() : tr("%n selected", nullptr, count));
    std::vector<std::size_t> selected;
    std::ranges::transform(rows, std::back_inserter(selected),
                           [this](int row) { return ui_->RunList->tableRow(row); });
    ui_->SelectedTotals->setText(count == 0 ? QString()
                                            : toQt(totalsInWords(ui_->RunList->table(), selected)));
}

/// What the filter hides is not chosen: no action goes to a run out of sight.
void frmTarn::followFilter() {
    if (ui_->RunList->chosenRow() >= 0 || !ui_->RunList->hiddenChoice().empty()) {
        ui_->Tarn->setText(toQt(ui_->RunList->chosenKey()));
    }
    showChosenRun();
}

void frmTarn::showToResolve() {
    const auto& runs = ui_->RunList->table();
    int count = 0;
    for (std::size_t row = 0; row < runs.rowCount(); ++row) {
        count += runs.isRed(row, 0) ? 1 : 0;
    }
    ui_->ToResolve->setText(tr("%1 to resolve").arg(count));
    ui_->ToResolve->setVisible(count > 0);
    ui_->ToResolveSign->setVisible(count > 0);
}

void frmTarn::showChosenRun() {
    const auto run = chosenRun();
    const auto hidden = toQt(ui_->RunList->hiddenChoice()).trimmed();
    const int row = placeOf(run) - 1;
    const auto description = row < 0 ? QString() : toQt(ui_->RunList->cellText(row, 1)).trimmed();
    ui_->ChosenRun->setText(hidden.isEmpty() ? toQt(run) : tr("none"));
    ui_->ChosenDescription->setText(
        hidden.isEmpty() ? description : tr("%1 is hidden by the filter").arg(hidden));
    const bool told = !run.empty() || !hidden.isEmpty();
    for (auto* part : {ui_->ChosenSign, ui_->ChosenRun}) {
        part->setVisible(told);
    }
    ui_->ChosenLabel->setVisible(told && arranged_ != Criteria::Lean);
}

}  // namespace runsearch
