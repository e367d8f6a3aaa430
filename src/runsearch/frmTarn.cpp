#include "runsearch/frmTarn.h"

#include <QShortcut>
#include <array>
#include <optional>

#include <fmt/format.h>

#include "data/mdlLOAD_lstcmb.h"
#include "platform/ado/recordset.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
#include "runsearch/runlist.h"
#include "startup/mdlDBConnection.h"
#include "startup/mdlNONULL.h"
#include "startup/mdlSecurity_Routines.h"
#include "startup/session.h"
#include "startup/trap.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

using controls::fromQt;
using controls::toQt;
using startup::trapped;

constexpr auto Module = "frmTarn";
constexpr auto SplitterKey = "frmTarn/Splitter";

const auto BeforeSearch = QStringLiteral(
    "Enter what you look for and press Find Now.\nWithout any criterion every run is listed.");
const auto NothingFound = QStringLiteral(
    "No run meets all criteria.\nThe numbers on the tabs tell where criteria are filled.");

/// Actions whose forms do not exist yet: they stay disabled whatever the permissions say.
constexpr std::array NotBuiltYet{"cmdNew",    "Edit",       "Delete",      "PrintIt",
                                 "TimeLine",  "ChangeBell", "GroupChange", "GroupSolve",
                                 "MergeRuns", "DeadHead"};

bool isBuilt(const QWidget& button) {
    return std::none_of(NotBuiltYet.begin(), NotBuiltYet.end(),
                        [&](const char* name) { return button.objectName() == name; });
}

std::string text(const QLineEdit* box) { return fromQt(box->text()); }

void showSecondColumn(const controls::MultiColumnCombo& combo, QLabel& label) {
    label.setText(toQt(combo.columnText(1)));
}

void leaveCombo(const controls::MultiColumnCombo& combo, QLabel& label) {
    if (base::trim(combo.text()).empty()) {
        label.clear();
    } else {
        showSecondColumn(combo, label);
    }
}

}  // namespace

frmTarn::frmTarn() : forms::Form(Module), ui_(std::make_unique<Ui::frmTarn>()) {
    ui_->setupUi(this);
    ui_->RunList->setEmptyText(BeforeSearch);
    for (const auto* name : NotBuiltYet) {
        auto* button = findChild<QPushButton*>(name);
        button->setEnabled(false);
        button->setToolTip(button->toolTip() + "\n" + tr("Not available yet."));
    }
    wireCriteria();
    wireRoute();
    wireRunList();
    wireButtons();
    restoreSplitter();
}

frmTarn::~frmTarn() = default;

void frmTarn::wireCriteria() {
    const auto changed = [this] { showFilledCriteria(); };
    for (auto* box : ui_->RunTab->findChildren<QLineEdit*>()) {
        on(box, &QLineEdit::textChanged, changed);
    }
    for (auto* box : ui_->RunTab->findChildren<QCheckBox*>()) {
        on(box, &QCheckBox::toggled, changed);
    }
    for (auto* list : {ui_->lstSchool, ui_->lstTripType}) {
        on(list, &controls::MultiColumnList::selectionCountChanged, changed);
    }
    on(ui_->SearchStops, &QCheckBox::toggled, [this] { SearchStops_Click(); });
    on(ui_->Search_Stops_TripType, &QCheckBox::toggled, [this] { Search_Stops_TripType_Click(); });
    for (int tab = 0; tab < ui_->RunTab->count(); ++tab) {
        ui_->RunTab->setTabToolTip(tab, tr("Alt+%1").arg(tab + 1));
        on(new QShortcut(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + tab), this),
           &QShortcut::activated, [this, tab] { ui_->RunTab->setCurrentIndex(tab); });
    }
}

void frmTarn::wireRoute() {
    using controls::MultiColumnCombo;
    on(ui_->UseRoute, &QCheckBox::toggled, [this] { UseRoute_Click(); });
    on(ui_->cmbEmployee, &MultiColumnCombo::chosen, [this] { cmbEmployee_Click(); });
    on(ui_->cmbEmployee, &MultiColumnCombo::left, [this] { cmbEmployee_LostFocus(); });
    on(ui_->cmbVehicle, &MultiColumnCombo::chosen, [this] { cmbVehicle_Click(); });
    on(ui_->cmbVehicle, &MultiColumnCombo::left, [this] { cmbVehicle_LostFocus(); });
    on(ui_->cmbAid, &MultiColumnCombo::chosen, [this] { cmbAid_Click(); });
    on(ui_->cmbAid, &MultiColumnCombo::left, [this] { cmbAid_LostFocus(); });
}

void frmTarn::wireRunList() {
    using controls::MultiColumnList;
    on(ui_->RunList, &MultiColumnList::columnClicked,
       [this](int column) { RunList_ClickColumn(column); });
    on(ui_->RunList, &MultiColumnList::rowClicked, [this] { RunList_ClickItem(); });
    on(ui_->RunList, &MultiColumnList::selectionCountChanged, [this] { showSelectedCount(); });
    on(ui_->Splitter, &QSplitter::splitterMoved, [this] {
        controls::LayoutMemory::instance().remember(SplitterKey, ui_->Splitter->saveState());
    });
}

void frmTarn::wireButtons() {
    on(ui_->cmdSearch, &QPushButton::clicked, [this] { cmdSearch_Click(); });
    on(ui_->cmdReset, &QPushButton::clicked, [this] { cmdReset_Click(); });
    on(ui_->SelectAll, &QPushButton::clicked, [this] { SelectAll_Click(); });
    on(ui_->Exit, &QPushButton::clicked, [this] { Exit_Click(); });
    on(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, [this] { cmdSearch_Click(); });
}

void frmTarn::Form_Load() {
    trapped("Form_Load", Module, [this] {
        ui_->Tarn->clear();
        startup::SelectedRun.clear();
        ado::Recordset district;
        district.Open("Select * From District", *startup::gcnRouting);
        startup::RunRefreshTime =
            static_cast<int>(startup::NoNullNumber(district["RUNREFRESHTIME"].Value()).asInteger());
        ui_->DistrictName->setText(
            toQt(startup::NoNullString(district["DistName"].Value()).asText()));
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
        ui_->Start_BegTime->clear();
        EmptyTimeText = text(ui_->Start_BegTime);
        ui_->RunTab->setCurrentIndex(0);
        ui_->RunId->setFocus();
        showFilledCriteria();
    });
}

void frmTarn::Form_Activate() {
    trapped("Form_Activate", Module, [this] {
        if (startup::RefreshRunList) {
            startup::RefreshRunList = false;
            const int position = ui_->RunList->chosenRow();
            cmdSearch_Click();
            ui_->RunList->choose(position);
        }
    });
}

/// Closing the window is Exit.
bool frmTarn::formQueryUnload() {
    Exit_Click();
    return true;
}

void frmTarn::cmdSearch_Click() {
    trapped("cmdSearch_Click", Module, [this] {
        if (refuseBrokenTimes()) {
            return;
        }
        const forms::BusyCursor hourglass;
        const auto asked = criteria();
        if (const auto query = runSearchQuery(asked)) {
            search(*query, asked.useRoute);
        } else {
            cmdReset_Click();
            ui_->TotSel->setText("0");
            ui_->RunList->setEmptyText(tr("No school is of the type %1.\nThe criteria were reset.")
                                           .arg(toQt(base::trim(asked.schoolType))));
        }
    });
}

void frmTarn::search(const RunSearchQuery& query, bool withRouting) {
    ado::Recordset runs;
    runs.Open(query.runs, *startup::gcnRouting);
    ui_->RunList->sortingOff();
    if (runs.Eof() && runs.Bof()) {
        ui_->RunList->clearAll();
        ui_->TotSel->setText("0");
        ui_->RunList->setEmptyText(NothingFound);
        return;
    }
    // The columns stay for now: a search with the same ones keeps their widths.
    ui_->RunList->clearRows();
    ui_->RunList->setTable(readRuns(RunListLayout(withRouting), runs));
    ui_->TotSel->setText(QString::number(ui_->RunList->rows()));
    startup::RunSearchSQL = query.runs;
    startup::RunSearchSchoolSQL = query.runsSchool;
    runs.Close();
    buttons_.afterRunsFound(
        [](std::string_view task) { return startup::HasAuthority(std::string(task), false); });
    showButtons();
}

RunSearchCriteria frmTarn::criteria() const {
    RunSearchCriteria result;
    result.runId = text(ui_->RunId);
    result.description = text(ui_->RunDesc);
    result.startTime = range(*ui_->Start_BegTime, *ui_->Start_EndTime);
    result.endTime = range(*ui_->End_BegTime, *ui_->End_EndTime);
    result.bellTime = range(*ui_->Bell_BegTime, *ui_->Bell_EndTime);
    result.runFamily = ui_->cmbRunFamily->text();
    for (int row = 0; row < ui_->lstSchool->rows(); ++row) {
        result.schools.push_back(
            {ui_->lstSchool->cellText(row, 0), ui_->lstSchool->cellText(row, 2)});
    }
    for (const int row : ui_->lstSchool->selectedRows()) {
        result.schools[static_cast<std::size_t>(row)].selected = true;
    }
    result.searchSchoolStops = ui_->SearchStops->isChecked();
    for (const int row : ui_->lstTripType->selectedRows()) {
        result.tripTypes.push_back(ui_->lstTripType->cellText(row, 0));
    }
    result.searchTripTypeStops = ui_->Search_Stops_TripType->isChecked();
    result.schoolType = ui_->cmbSchoolType->text();
    result.needsResolve = ui_->NeedResolve->isChecked();
    result.location = ui_->cmbLOCCODE->text();
    result.useRoute = ui_->UseRoute->isChecked();
    result.driver = ui_->cmbEmployee->text();
    result.vehicle = ui_->cmbVehicle->text();
    result.aid = ui_->cmbAid->text();
    result.route = ui_->cmbRoute->text();
    result.notOnRoute = ui_->NotOnRoute->isChecked();
    return result;
}

bool frmTarn::isFilled(const controls::TimeBox& box) const { return text(&box) != EmptyTimeText; }

TimeRange frmTarn::range(const controls::TimeBox& from, const controls::TimeBox& to) const {
    const auto time = [this](const controls::TimeBox& box) {
        return isFilled(box) ? base::Date::parse(box.tidied()) : std::nullopt;
    };
    return {time(from), time(to)};
}

/// Tells the planner of the first time box whose text is no time and goes there.
bool frmTarn::refuseBrokenTimes() {
    for (auto* box : ui_->RunPage->findChildren<controls::TimeBox*>()) {
        if (isFilled(*box) && !base::Date::parse(box->tidied())) {
            base::MsgBox(fmt::format("Oops, \"{}\" is not a time.  Please enter a time such as "
                                     "07:30 AM and try again.",
                                     text(box)),
                         "Invalid Time", base::MsgIcon::Information);
            ui_->RunTab->setCurrentWidget(ui_->RunPage);
            box->setFocus();
            box->selectAll();
            return true;
        }
    }
    return false;
}

void frmTarn::cmdReset_Click() {
    trapped("cmdReset_Click", Module, [this] {
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
        ui_->TotSel->clear();
        ui_->RunTab->setCurrentIndex(0);
        ui_->RunList->clearAll();
        ui_->RunList->setEmptyText(BeforeSearch);
        buttons_.afterReset();
        showButtons();
        showFilledCriteria();
        ui_->RunId->setFocus();
    });
}

void frmTarn::emptyTimes() {
    for (auto* box : ui_->RunPage->findChildren<controls::TimeBox*>()) {
        box->clear();
    }
    EmptyTimeText = text(ui_->Start_BegTime);
}

void frmTarn::SelectAll_Click() {
    trapped("SelectAll_Click", Module, [this] { ui_->RunList->selectAllRows(); });
}

void frmTarn::Exit_Click() {
    trapped("Exit_Click", Module, [] { startup::ShutDown(); });
}

void frmTarn::UseRoute_Click() {
    trapped("UseRoute_Click", Module, [this] {
        const bool checked = ui_->UseRoute->isChecked();
        for (auto* combo : {ui_->cmbEmployee, ui_->cmbVehicle, ui_->cmbAid, ui_->cmbRoute}) {
            combo->setEnabled(checked);
            if (!checked) {
                combo->clearChoice();
            }
        }
        if (!checked) {
            for (auto* label : {ui_->EmpName, ui_->VehDescription, ui_->AidName}) {
                label->clear();
            }
        }
    });
}

void frmTarn::SearchStops_Click() {
    trapped("SearchStops_Click", Module, [this] {
        if (ui_->SearchStops->isChecked()) {
            ui_->Search_Stops_TripType->setChecked(false);
        }
    });
}

void frmTarn::Search_Stops_TripType_Click() {
    trapped("Search_Stops_TripType_Click", Module, [this] {
        if (ui_->Search_Stops_TripType->isChecked()) {
            ui_->SearchStops->setChecked(false);
        }
    });
}

void frmTarn::cmbEmployee_Click() {
    trapped("cmbEmployee_Click", Module,
            [this] { showSecondColumn(*ui_->cmbEmployee, *ui_->EmpName); });
}

void frmTarn::cmbEmployee_LostFocus() {
    trapped("cmbEmployee_LostFocus", Module,
            [this] { leaveCombo(*ui_->cmbEmployee, *ui_->EmpName); });
}

void frmTarn::cmbVehicle_Click() {
    trapped("cmbVehicle_Click", Module,
            [this] { showSecondColumn(*ui_->cmbVehicle, *ui_->VehDescription); });
}

void frmTarn::cmbVehicle_LostFocus() {
    trapped("cmbVehicle_LostFocus", Module,
            [this] { leaveCombo(*ui_->cmbVehicle, *ui_->VehDescription); });
}

void frmTarn::cmbAid_Click() {
    trapped("cmbAid_Click", Module, [this] { showSecondColumn(*ui_->cmbAid, *ui_->AidName); });
}

void frmTarn::cmbAid_LostFocus() {
    trapped("cmbAid_LostFocus", Module, [this] { leaveCombo(*ui_->cmbAid, *ui_->AidName); });
}

void frmTarn::RunList_ClickColumn(int column) {
    trapped("RunList_ClickColumn", Module, [this, column] { ui_->RunList->toggleSort(column); });
}

void frmTarn::RunList_ClickItem() {
    trapped("RunList_ClickItem", Module, [this] {
        if (ui_->RunList->chosenRow() >= 0) {
            ui_->Tarn->setText(toQt(ui_->RunList->chosenKey()));
        }
    });
}

void frmTarn::showButtons() {
    const auto show = [](QPushButton& button, bool enabled) {
        button.setEnabled(enabled && isBuilt(button));
    };
    show(*ui_->cmdNew, buttons_.cmdNew);
    show(*ui_->Edit, buttons_.Edit);
    show(*ui_->Delete, buttons_.Delete);
    show(*ui_->PrintIt, buttons_.PrintIt);
    show(*ui_->TimeLine, buttons_.TimeLine);
    show(*ui_->ChangeBell, buttons_.ChangeBell);
    show(*ui_->GroupChange, buttons_.GroupChange);
}

/// Each tab tells how many criteria it holds, so that none is forgotten on a tab out of sight.
void frmTarn::showFilledCriteria() {
    const auto filled = filledCriteria(criteria());
    const auto show = [this](QWidget* page, const QString& caption, int count) {
        ui_->RunTab->setTabText(ui_->RunTab->indexOf(page),
                                count == 0 ? caption : tr("%1 (%2)").arg(caption).arg(count));
    };
    show(ui_->RunPage, tr("Run and Times"), filled.run);
    show(ui_->SchoolPage, tr("Schools and Trip Types"), filled.school);
    show(ui_->RoutePage, tr("Route"), filled.route);
    const auto selected = [](QLabel& label, const controls::MultiColumnList& list) {
        const int count = list.selectedCount();
        label.setText(count == 0 ? QString() : tr("%1 of %2").arg(count).arg(list.rows()));
    };
    selected(*ui_->SchoolCount, *ui_->lstSchool);
    selected(*ui_->TripTypeCount, *ui_->lstTripType);
}

void frmTarn::showSelectedCount() {
    const int count = ui_->RunList->selectedCount();
    ui_->SelectedCount->setText(count == 0 ? QString() : tr("%n selected", nullptr, count));
}

/// The criteria get the height they need, the list the rest, until the planner arranges it anew.
void frmTarn::restoreSplitter() {
    ui_->Splitter->setStretchFactor(1, 1);
    const auto arranged = controls::LayoutMemory::instance().recall(SplitterKey).toByteArray();
    if (!ui_->Splitter->restoreState(arranged)) {
        ui_->Splitter->setSizes({1, maximumHeight()});
    }
}

}  // namespace runsearch
