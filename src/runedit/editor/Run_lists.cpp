#include "platform/controls/qtext.h"
#include "runedit/editor/Run.h"
#include "runedit/editor/runlists.h"
#include "startup/base/session.h"

#include "ui_Run.h"

namespace runedit {

namespace {

using controls::fromQt;
using controls::toQt;
using startup::gcnRouting;

constexpr int StatusMilliseconds = 8000;
const auto NotSavedYet = QStringLiteral("The run has no stops before it is saved.");

}  // namespace

void Run::showHead() {
    const auto id = ui_->RunID->text().trimmed();
    const auto description = ui_->RunDesc->text().trimmed();
    const auto title = isNew() ? tr("New Run") : tr("Run %1").arg(id);
    setWindowTitle(title);
    ui_->Heading->setText(description.isEmpty() || isNew() ? title : title + ": " + description);
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
    const auto enable = [](QPushButton* button, bool on) {
        button->setEnabled(on && isBuilt(*button));
    };
    for (auto* button :
         {ui_->CalcTimes, ui_->Command1, ui_->AddStops, ui_->GetStops, ui_->Merge, ui_->Log}) {
        enable(button, saved);
    }
    enable(ui_->MapIt, saved && allPlaced_);
    enable(ui_->StopEdit, saved && anyStop);
    enable(ui_->Remove, saved && anyStop);
}

void Run::showStatus(const QString& text, bool green) {
    QPalette palette;
    if (green) {
        palette.setColor(QPalette::Window, QColor(0, 255, 0));
        palette.setColor(QPalette::WindowText, Qt::black);
    }
    ui_->Status->setPalette(palette);
    ui_->Status->setText(text);
    ui_->Status->show();
    Timer3.setEnabled(false);
    if (!answer_.isWaiting()) {
        Timer3.startOnce(StatusMilliseconds);
    }
}

void Run::Timer3_Timer() {
    Timer3.setEnabled(false);
    ui_->Status->hide();
}

void Run::Build_StopList() {
    ui_->StopList->setEmptyText(isNew() ? NotSavedYet : tr("The run has no stops."));
    auto stops = isNew() ? StopList() : readStopList(*gcnRouting, run());
    allPlaced_ = stops.allPlaced;
    const auto chosen = chosenStopTrip();
    ui_->StopList->setTable(std::move(stops.table));
    chooseStopTrip(chosen);
    showButtons();
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
}

}  // namespace runedit
