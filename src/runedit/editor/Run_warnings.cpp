#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "runedit/editor/Run.h"
#include "runedit/editor/warningtext.h"

#include "ui_Run.h"

namespace runedit {

namespace {

using controls::MultiColumnList;
using controls::toQt;

QString trimmedCell(const MultiColumnList& list, int row, std::string_view column) {
    return toQt(list.table().text(list.tableRow(row), column)).trimmed();
}

std::string warningIn(const MultiColumnList& list, int row) {
    return row < 0 ? std::string() : list.table().text(list.tableRow(row), "WarningText");
}

/// Which stop of the run it is, and where.
QString stopInWords(const MultiColumnList& stops, int row) {
    QStringList words;
    for (const auto* column : {"StopID", "Description", "Addr1", "Time_At_Stop"}) {
        if (const auto word = trimmedCell(stops, row, column); !word.isEmpty()) {
            words << word;
        }
    }
    return MultiColumnList::tr("Stop %1 of %2 on the run: %3")
        .arg(row + 1)
        .arg(stops.rows())
        .arg(words.join(", "));
}

QString statementLines(const std::string& warning) {
    QStringList lines;
    for (const auto& statement : statementsOf(warning)) {
        lines << toQt(statement);
    }
    return lines.join('\n');
}

}  // namespace

/// The chosen warning in full below the list, with what to do about it.
void Run::showWarning(int row) {
    ui_->WarningPanel->setVisible(row >= 0);
    if (row < 0) {
        return;
    }
    const auto& list = *ui_->WarningList;
    const auto type = trimmedCell(list, row, "WarningType");
    const auto warning = warningIn(list, row);
    ui_->WarningHead->setText(tr("Warning %1 of %2: %3").arg(row + 1).arg(list.rows()).arg(type));
    ui_->WarningFull->setText(statementLines(warning));
    const int stop = rowOfStop(stopNamedIn(warning));
    ui_->WarningStop->setText(stop < 0
                                  ? tr("The stop is no longer on the run. OK checks the run anew.")
                                  : stopInWords(*ui_->StopList, stop));
    ui_->GoToStop->setEnabled(stop >= 0);
    const auto* field = mendingFieldOf(controls::fromQt(type));
    ui_->GoToField->setVisible(field != nullptr);
    if (field != nullptr) {
        ui_->GoToField->setText(tr("Go to %1").arg(toQt(field->caption)));
    }
}

void Run::GoToStop_Click() {
    goToStop(stopNamedIn(warningIn(*ui_->WarningList, ui_->WarningList->chosenRow())));
}

void Run::GoToField_Click() {
    const int row = ui_->WarningList->chosenRow();
    const auto type = row < 0 ? QString() : trimmedCell(*ui_->WarningList, row, "WarningType");
    if (const auto* field = mendingFieldOf(controls::fromQt(type))) {
        findChild<QWidget*>(toQt(field->control))->setFocus(Qt::OtherFocusReason);
    }
}

/// The first row of that stop; -1 for none.
int Run::rowOfStop(const std::string& stopId) const {
    for (int row = 0; !stopId.empty() && row < ui_->StopList->rows(); ++row) {
        if (base::equalsNoCase(base::trim(ui_->StopList->cellText(row, 0)), stopId)) {
            return row;
        }
    }
    return -1;
}

/// Shows a stop in the list with the cursor on it.
void Run::goToStop(const std::string& stopId) {
    if (const int row = rowOfStop(stopId); row >= 0) {
        ui_->RunTab->setCurrentWidget(ui_->StopPage);
        ui_->StopList->choose(row);
        ui_->StopList->setFocus();
    }
}

}  // namespace runedit
