#include <algorithm>
#include <iterator>

#include "map/small/smallmap.h"
#include "map/small/streetplaces.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "runedit/editor/Run.h"
#include "runedit/editor/crowdeddelegate.h"
#include "runedit/editor/runlists.h"
#include "runedit/validation/checkedrun.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"

#include "ui_Run.h"

namespace runedit {

using controls::fromQt;
using controls::toQt;
using startup::gcnRouting;

constexpr int StatusMilliseconds = 8000;
const auto NotSavedYet = QStringLiteral("The run has no stops before it is saved.");

void Run::showHead() {
    const auto id = ui_->RunID->text().trimmed();
    const auto description = ui_->RunDesc->text().trimmed();
    const auto title = isNew() ? tr("New Run") : tr("Run %1").arg(id);
    setWindowTitle(title);
    ui_->Heading->setText(description.isEmpty() || isNew() ? title : title + ": " + description);
}

/// Where the run stands in the list that it was opened from.
void Run::showPlace() {
    const int place = runs_ == nullptr || isNew() ? 0 : runs_->placeOf(run());
    const int count = place == 0 ? 0 : runs_->count();
    ui_->Place->setText(place == 0 ? QString() : tr("%1 of %2").arg(place).arg(count));
    for (auto* button : {ui_->PreviousRun, ui_->NextRun}) {
        button->setVisible(place > 0);
    }
    ui_->PreviousRun->setEnabled(place > 1);
    ui_->NextRun->setEnabled(place < count);
}

/// The capacity level that counts.
std::string Run::level() const { return fromQt(ui_->cmbCapacity->currentText()); }

/// The vehicle of the run's route decides on the seats, as in the validation.
void Run::readVehicle() { vehicle_ = readCheckedRun(run(), 0, {*gcnRouting, *startup::gcnTrip}); }

/// Blank where the run's route has no vehicle.
std::string Run::routeVehType() const {
    return vehicle_.hasVehicle() ? vehicle_.vehType : std::string();
}

/// What the vehicle and the seats are looked up by, where they are found as before.
RunReads Run::vehicleAndSeatsReads() const {
    RunReads reads{seatsReads({ui_->cmbVEHTYPE->text(), routeVehType()}), vehicleReads(vehicle_)};
    std::ranges::copy(routeReads(vehicle_), std::back_inserter(reads.routing));
    return reads;
}

void Run::seatsChanged() {
    if (!isFilling_) {
        showTotals();
    }
}

void Run::showTotals() {
    const ado::ReadAhead ahead(*gcnRouting, seatsReads({ui_->cmbVEHTYPE->text(), routeVehType()}));
    ui_->TotalPass->setText(QString::number(totals_.passengers));
    ui_->TotalStops->setText(QString::number(totals_.stops));
    ui_->TotalDistance->setText(QString::number(totals_.miles, 'f', 2));
    ui_->TotalRideTime->setText(QString::number(totals_.minutes, 'f', 2));

    const auto typed = seatsOf(ui_->cmbVEHTYPE->text(), level());
    ui_->LevelSeats->setText(typed ? tr("%1 seats").arg(*typed) : QString());
    const auto ofRoute = routeVehType();
    const bool isSame =
        ofRoute.empty() || base::trim(ofRoute) == base::trim(ui_->cmbVEHTYPE->text());
    const auto seats = isSame ? typed : seatsOf(ofRoute, level());
    ui_->Seats->setText(seats ? tr("of %1 seats").arg(*seats) : QString());
    ui_->Seats->setToolTip(
        ofRoute.empty()
            ? tr("The seats of the run's vehicle type.")
            : tr("The vehicle of the run's route decides: %1.").arg(toQt(base::trim(ofRoute))));
    ui_->PassengerBar->setValues(static_cast<double>(totals_.passengers),
                                 static_cast<double>(seats.value_or(0)));
    onTheBus_->setSeats(seats);
    ui_->StopList->viewport()->update();
    const auto beyond = seats ? totals_.passengers - *seats : 0;
    ui_->TooMany->setText(beyond > 0 ? tr("%1 too many").arg(beyond) : QString());
}

/// What the chosen keys stand for.
void Run::showNames() {
    const auto show = [](const controls::MultiColumnCombo& combo, QLabel& label) {
        const auto name = toQt(combo.columnText(1));
        label.setText(name);
        label.setToolTip(name);
    };
    show(*ui_->cmbSchool, *ui_->SchoolName);
    show(*ui_->cmbTripType, *ui_->TripTypeName);
    show(*ui_->cmbRunFamily, *ui_->RunFamilyName);
    show(*ui_->cmbLOCCODE, *ui_->LocationName);
}

void Run::showAudit(const data::Record& run) {
    QStringList lines;
    const auto tell = [&](const QString& what, const char* when, const QString& who) {
        const auto date = toQt(run.text(when));
        if (!date.isEmpty() || !who.isEmpty()) {
            lines << (who.isEmpty() ? QString("%1 %2").arg(what, date)
                                    : tr("%1 %2 by %3").arg(what, date, who));
        }
    };
    tell(tr("Created"), "CREATEDDT", toQt(run.text("CreatedBy")));
    tell(tr("Changed"), "changeddt", toQt(run.text("ChangedBy")));
    tell(tr("Status changed"), "STATUSCHGDT", {});
    ui_->Audit->setText(lines.join("     "));
}

void Run::showButtons() {
    const bool saved = !isNew();
    const bool anyStop = ui_->StopList->selectedCount() > 0;
    for (auto* button :
         {ui_->CalcTimes, ui_->Command1, ui_->AddStops, ui_->GetStops, ui_->Merge, ui_->Log}) {
        button->setEnabled(saved);
    }
    ui_->MapIt->setEnabled(saved && allPlaced_);
    ui_->StopEdit->setEnabled(saved && anyStop);
    ui_->Remove->setEnabled(saved && anyStop);
    const bool mayPrint = startup::HasAuthority("RTG270", false);
    for (auto* button : {ui_->PrintStops, ui_->PrintDir, ui_->PrintOrg, ui_->PrintWarn}) {
        button->setEnabled(saved && mayPrint);
    }
}

void Run::showStatus(const QString& text, bool green) {
    QPalette palette;
    if (green) {
        palette.setColor(QPalette::Window, QColor(0, 255, 0));
        palette.setColor(QPalette::WindowText, Qt::black);
    }
    ui_->Status->setPalette(palette);
    ui_->Status->setMinimumWidth(0);  // its hint is never below it
    ui_->Status->setText(text);
    ui_->Status->setMinimumWidth(std::min(ui_->Status->sizeHint().width(), width() / 3));
    ui_->Status->show();
    saysSaved_ = green;
    Timer3.setEnabled(false);
    if (!answer_.isWaiting()) {
        Timer3.startOnce(StatusMilliseconds);
    }
}

void Run::Timer3_Timer() {
    Timer3.setEnabled(false);
    saysSaved_ = false;
    ui_->Status->hide();
}

/// What is being done now may be refused: the last saving is no longer the news.
void Run::hideSaved() {
    if (saysSaved_) {
        Timer3_Timer();
    }
}

void Run::refuseUnknownKey(controls::MultiColumnCombo* combo) {
    if (const auto* field = boxes_->refuseUnknownKey(*combo)) {
        showStatus(tr("%1: \"%2\" is not in the list.")
                       .arg(toQt(field->caption), combo->currentText().trimmed()));
    }
}

void Run::Build_StopList() {
    ui_->StopList->setEmptyText(isNew() ? NotSavedYet : tr("The run has no stops."));
    auto stops = isNew() ? StopList() : readStopList(*gcnRouting, run(), ui_->Pickup->isChecked());
    allPlaced_ = stops.unplaced.empty();
    totals_ = stops.totals;
    const auto ahead = askTogether(vehicleAndSeatsReads());
    readVehicle();
    showTotals();
    const auto chosen = chosenStopTrip();
    ui_->StopList->setTable(std::move(stops.table));
    showUnplaced(stops.unplaced);
    chooseStopTrip(chosen);
    showButtons();
}

void Run::showUnplaced(const std::vector<std::size_t>& rows) {
    const auto& table = ui_->StopList->table();
    QStringList names;
    for (const auto row : rows) {
        const auto id = toQt(table.text(row, "StopID")).trimmed();
        const auto place = toQt(table.text(row, "Addr1")).trimmed();
        names << (place.isEmpty() || rows.size() > 1 ? id : id + ", " + place);
    }
    ui_->Unplaced->setText(
        rows.empty() ? QString()
        : rows.size() == 1
            ? tr("1 stop has no place on the map: %1").arg(names.first())
            : tr("%1 stops have no place on the map: %2").arg(names.size()).arg(names.join(", ")));
    ui_->Unplaced->setToolTip(ui_->Unplaced->text());
}

std::string Run::chosenStopTrip() const {
    const int row = ui_->StopList->chosenRow();
    return row < 0 ? std::string() : ui_->StopList->cellValue(row, "ID").asText();
}

void Run::chooseStopTrip(const std::string& id) {
    for (int row = 0; !id.empty() && row < ui_->StopList->rows(); ++row) {
        if (ui_->StopList->cellValue(row, "ID").asText() == id) {
            ui_->StopList->choose(row);
            return;
        }
    }
}

void Run::Build_DirList() {
    const auto style = directionStyle(fromQt(ui_->cmbDirType->currentText()));
    ui_->DirList->setEmptyText(tr("The run has no directions. They come from the map."));
    ui_->DirList->setTable(isNew() ? table::TextTable()
                                   : readDirections(*gcnRouting, run(), style));
}

void Run::Build_WarnList() {
    ui_->WarningList->setEmptyText(tr("Nothing was found when the run was last checked."));
    auto warnings = isNew() ? table::TextTable() : readWarnings(*gcnRouting, run());
    const int page = ui_->RunTab->indexOf(ui_->WarnPage);
    ui_->RunTab->setTabText(page, toQt(warningsCaption(warnings.rowCount() > 0)));
    ui_->WarningList->setTable(std::move(warnings));
    if (ui_->WarningList->rows() > 0) {
        ui_->WarningList->choose(0);
    }
    showWarning(ui_->WarningList->chosenRow());
}

void Run::Build_SpecialNeedsList() {
    ui_->SpecialNeedsList->setEmptyText(tr("None of the run's passengers has a special need."));
    ui_->SpecialNeedsList->setTable(isNew() ? table::TextTable()
                                            : readSpecialNeeds(*gcnRouting, run()));
}

void Run::buildLists() {
    trap("Build_StopList", &Run::Build_StopList);
    trap("Build_DirList", &Run::Build_DirList);
    trap("Build_WarnList", &Run::Build_WarnList);
    trap("Build_SpecialNeedsList", &Run::Build_SpecialNeedsList);
    trap("showSmallMap", &Run::showSmallMap);
}

void Run::showSmallMap() {
    if (ui_->RunTab->currentWidget() != ui_->MorePage) {
        return;
    }
    if (isNew()) {
        ui_->SmallMap->say(tr("A new run is on the map when it has been saved with its stops."));
        return;
    }
    auto shown = maps_.mapOf(*gcnRouting, run(), map::streetsOfSession());
    if (shown.reason.empty()) {
        ui_->SmallMap->showScene(std::move(shown.ground), std::move(shown.scene), toQt(shown.told));
    } else {
        ui_->SmallMap->say(toQt(shown.reason));
    }
}

}  // namespace runedit
