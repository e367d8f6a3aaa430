#include <QHeaderView>
#include <optional>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "runsearch/search/frmTarn.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

using controls::fromQt;
using controls::toQt;

std::string typed(const QLineEdit* box) { return fromQt(box->text()); }

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

void frmTarn::wireCriteria() {
    const auto changed = [this] { showFilledCriteria(); };
    for (auto* box : ui_->RunTab->findChildren<QLineEdit*>()) {
        on(box, &QLineEdit::textChanged, "showFilledCriteria", changed);
    }
    for (auto* box : ui_->RunTab->findChildren<QCheckBox*>()) {
        on(box, &QCheckBox::toggled, "showFilledCriteria", changed);
    }
    for (auto* list : {ui_->lstSchool, ui_->lstTripType}) {
        on(list, &controls::MultiColumnList::selectionCountChanged, "showFilledCriteria", changed);
    }
    on(ui_->SearchStops, &QCheckBox::toggled, "SearchStops_Click", &frmTarn::SearchStops_Click);
    on(ui_->Search_Stops_TripType, &QCheckBox::toggled, "Search_Stops_TripType_Click",
       &frmTarn::Search_Stops_TripType_Click);
    pageKeys(*ui_->RunTab);
}

void frmTarn::wireRoute() {
    using controls::MultiColumnCombo;
    on(ui_->UseRoute, &QCheckBox::toggled, "UseRoute_Click", &frmTarn::UseRoute_Click);
    on(ui_->cmbEmployee, &MultiColumnCombo::chosen, "cmbEmployee_Click",
       &frmTarn::cmbEmployee_Click);
    on(ui_->cmbEmployee, &MultiColumnCombo::left, "cmbEmployee_LostFocus",
       &frmTarn::cmbEmployee_LostFocus);
    on(ui_->cmbVehicle, &MultiColumnCombo::chosen, "cmbVehicle_Click", &frmTarn::cmbVehicle_Click);
    on(ui_->cmbVehicle, &MultiColumnCombo::left, "cmbVehicle_LostFocus",
       &frmTarn::cmbVehicle_LostFocus);
    on(ui_->cmbAid, &MultiColumnCombo::chosen, "cmbAid_Click", &frmTarn::cmbAid_Click);
    on(ui_->cmbAid, &MultiColumnCombo::left, "cmbAid_LostFocus", &frmTarn::cmbAid_LostFocus);
}

RunSearchCriteria frmTarn::criteria() const {
    RunSearchCriteria result;
    result.runId = typed(ui_->RunId);
    result.description = typed(ui_->RunDesc);
    result.startTime = range(*ui_->Start_BegTime, *ui_->Start_EndTime);
    result.endTime = range(*ui_->End_BegTime, *ui_->End_EndTime);
    result.bellTime = range(*ui_->Bell_BegTime, *ui_->Bell_EndTime);
    result.runFamily = ui_->cmbRunFamily->text();
    for (int row = 0; row < ui_->lstSchool->rows(); ++row) {
        result.schools.push_back({.code = ui_->lstSchool->cellText(row, 0),
                                  .schoolType = ui_->lstSchool->cellText(row, 2),
                                  .name = ui_->lstSchool->cellText(row, 1)});
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

bool frmTarn::isFilled(const controls::TimeBox& box) const { return typed(&box) != EmptyTimeText; }

TimeRange frmTarn::range(const controls::TimeBox& from, const controls::TimeBox& to) const {
    const auto time = [this](const controls::TimeBox& box) {
        return isFilled(box) ? base::Date::parse(box.tidied()) : std::nullopt;
    };
    return {time(from), time(to)};
}

std::vector<controls::TimeBox*> frmTarn::endsWithinMinutes() const {
    constexpr int SecondsOfMinute = 60;
    std::vector<controls::TimeBox*> ends;
    for (auto* box : {ui_->Start_EndTime, ui_->End_EndTime, ui_->Bell_EndTime}) {
        const auto time = isFilled(*box) ? base::Date::parse(box->tidied()) : std::nullopt;
        if (time && time->seconds % SecondsOfMinute == 0) {
            ends.push_back(box);
        }
    }
    return ends;
}

void frmTarn::WholeMinutes_Click() {
    constexpr int RestOfMinute = 59;
    for (auto* box : endsWithinMinutes()) {
        box->setText(toQt(base::Date::parse(box->tidied())->plusSeconds(RestOfMinute).text()));
    }
    trap("cmdSearch_Click", &frmTarn::cmdSearch_Click);
}

/// The names take the width that the codes leave, so that nothing scrolls sideways.
void frmTarn::stretchNames() {
    for (auto* list : {ui_->lstSchool, ui_->lstTripType}) {
        list->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    }
    ui_->lstSchool->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
}

/// Tells the planner of the first time box whose text is no time and goes there.
bool frmTarn::refuseBrokenTimes() {
    for (auto* box : ui_->RunPage->findChildren<controls::TimeBox*>()) {
        if (isFilled(*box) && !base::Date::parse(box->tidied())) {
            base::MsgBox(fmt::format("Oops, \"{}\" is not a time.  Please enter a time such as "
                                     "07:30 AM and try again.",
                                     typed(box)),
                         "Invalid Time", base::MsgIcon::Information);
            ui_->RunTab->setCurrentWidget(ui_->RunPage);
            box->setFocus();
            box->selectAll();
            return true;
        }
    }
    return false;
}

bool frmTarn::refuseUnknownRouteKeys() {
    for (auto* combo : {ui_->cmbRoute, ui_->cmbEmployee, ui_->cmbVehicle, ui_->cmbAid}) {
        combo->takeOnlyFit();
        if (combo->isEnabled() && combo->isUnknown()) {
            base::MsgBox(fmt::format("Oops, \"{}\" is not in the list.  Please choose a row of it, "
                                     "or leave the field empty.",
                                     base::trim(combo->text())),
                         "Not in the List", base::MsgIcon::Information);
            ui_->RunTab->setCurrentWidget(ui_->RoutePage);
            combo->setFocus();
            combo->lineEdit()->selectAll();
            return true;
        }
    }
    return false;
}

void frmTarn::emptyTimes() {
    for (auto* box : ui_->RunPage->findChildren<controls::TimeBox*>()) {
        box->clear();
    }
    EmptyTimeText = typed(ui_->Start_BegTime);
}

void frmTarn::UseRoute_Click() {
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
}

void frmTarn::SearchStops_Click() {
    if (ui_->SearchStops->isChecked()) {
        ui_->Search_Stops_TripType->setChecked(false);
    }
}

void frmTarn::Search_Stops_TripType_Click() {
    if (ui_->Search_Stops_TripType->isChecked()) {
        ui_->SearchStops->setChecked(false);
    }
}

void frmTarn::cmbEmployee_Click() { showSecondColumn(*ui_->cmbEmployee, *ui_->EmpName); }

void frmTarn::cmbEmployee_LostFocus() { leaveCombo(*ui_->cmbEmployee, *ui_->EmpName); }

void frmTarn::cmbVehicle_Click() { showSecondColumn(*ui_->cmbVehicle, *ui_->VehDescription); }

void frmTarn::cmbVehicle_LostFocus() { leaveCombo(*ui_->cmbVehicle, *ui_->VehDescription); }

void frmTarn::cmbAid_Click() { showSecondColumn(*ui_->cmbAid, *ui_->AidName); }

void frmTarn::cmbAid_LostFocus() { leaveCombo(*ui_->cmbAid, *ui_->AidName); }

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

}  // namespace runsearch
