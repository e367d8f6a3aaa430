#include <QInputDialog>
#include <QJsonArray>
#include <QMenu>
#include <QShortcut>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "runsearch/search/frmTarn.h"
#include "runsearch/search/savedsearches.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr int NumberedSearches = 9;
constexpr auto NothingToSaveTitle = "No Criteria";
constexpr auto NothingToSave =
    "Oops, there is nothing to save.  Please enter what you look for and try again.";
constexpr auto ReplaceTitle = "Replace Saved Search";
constexpr auto Replace = "A search of that name is saved already.  Replace it?";
constexpr auto RemoveTitle = "Remove Saved Search";
constexpr auto Remove = "Remove this search?  Runs are not touched.";
constexpr auto UnknownTitle = "Criteria Left Out";
constexpr auto Unknown =
    "Some criteria of the search are not known any more and were left out, so it was not started: "
    "it could find more runs than you mean.  Look at the criteria and press Find Now.";

SavedSearches searchesOfPlanner() { return {startup::gCommandLine, startup::folderOfFiles()}; }

QString nameOf(const QWidget& control) {
    return control.accessibleName().isEmpty() ? control.objectName() : control.accessibleName();
}

QJsonArray selectedCodes(const controls::MultiColumnList& list) {
    QJsonArray codes;
    for (const int row : list.selectedRows()) {
        codes.append(toQt(list.cellText(row, 0)));
    }
    return codes;
}

/// Selects the rows with these codes; the codes that no row has.
QStringList selectCodes(controls::MultiColumnList& list, const QJsonArray& codes) {
    std::vector<int> rows;
    QStringList missing;
    for (const auto& value : codes) {
        const auto code = fromQt(value.toString());
        int row = 0;
        while (row < list.rows() && base::trim(list.cellText(row, 0)) != base::trim(code)) {
            ++row;
        }
        row < list.rows() ? rows.push_back(row) : missing.append(value.toString().trimmed());
    }
    std::ranges::sort(rows);
    list.selectRows(rows);
    return missing;
}

}  // namespace

/// A search by its number has a key.
void frmTarn::wireSearches() {
    for (int number = 1; number <= NumberedSearches; ++number) {
        on(new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + number)), this),
           &QShortcut::activated, "SavedSearch_Click", [this, number] {
               const auto names = searchesOfPlanner().names();
               if (number <= names.size()) {
                   useSearch(names[number - 1]);
               }
           });
    }
    on(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, "SaveSearch_Click",
       &frmTarn::SaveSearch_Click);
}

void frmTarn::addSearches(QMenu& menu) {
    on(&menu, &QMenu::aboutToShow, "fillSearches", [this, &menu] { fillSearches(menu); });
}

void frmTarn::fillSearches(QMenu& menu) {
    menu.clear();
    on(menu.addAction(tr("&Save Search As…\tCtrl+S")), &QAction::triggered, "SaveSearch_Click",
       &frmTarn::SaveSearch_Click);
    const auto names = searchesOfPlanner().names();
    auto* rename = menu.addMenu(tr("Re&name"));
    auto* remove = menu.addMenu(tr("&Remove"));
    rename->setEnabled(!names.isEmpty());
    remove->setEnabled(!names.isEmpty());
    menu.addSeparator();
    for (int place = 0; const QString& name : names) {
        const QString shown = QString(name).replace('&', "&&");
        const QString key = ++place <= NumberedSearches ? tr("\tCtrl+%1").arg(place) : QString();
        on(menu.addAction(shown + key), &QAction::triggered, "SavedSearch_Click",
           [this, name] { useSearch(name); });
        on(rename->addAction(shown), &QAction::triggered, "RenameSearch_Click",
           [this, name] { renameSearch(name); });
        on(remove->addAction(shown), &QAction::triggered, "RemoveSearch_Click", [name] {
            if (base::confirmLoss(Remove, RemoveTitle, fromQt(name))) {
                searchesOfPlanner().remove(name);
            }
        });
    }
}

/// The name, unless the planner gave up or keeps another search of that name.
QString frmTarn::askSearchName(const QString& title, const QString& former) {
    const QString name =
        QInputDialog::getText(this, title, tr("&Name of the search:"), QLineEdit::Normal, former)
            .trimmed();
    const bool isOther = name != former && searchesOfPlanner().names().contains(name);
    return isOther && !base::confirmLoss(Replace, ReplaceTitle, fromQt(name)) ? QString() : name;
}

void frmTarn::SaveSearch_Click() {
    const auto filled = filledCriteria(criteria());
    if (filled.run + filled.school + filled.route == 0) {
        base::MsgBox(NothingToSave, NothingToSaveTitle, base::MsgIcon::Information);
        return;
    }
    if (const QString name = askSearchName(tr("Save Search"), {}); !name.isEmpty()) {
        searchesOfPlanner().save(name, criteriaToSave());
    }
}

void frmTarn::renameSearch(const QString& name) {
    const QString other = askSearchName(tr("Rename Search"), name);
    if (!other.isEmpty() && other != name) {
        searchesOfPlanner().rename(name, other);
    }
}

/// By the names of their controls.
QJsonObject frmTarn::criteriaToSave() const {
    QJsonObject saved;
    for (const auto* box : ui_->RunTab->findChildren<QCheckBox*>()) {
        saved[box->objectName()] = box->isChecked();
    }
    for (const auto* combo : ui_->RunTab->findChildren<controls::MultiColumnCombo*>()) {
        saved[combo->objectName()] = combo->currentText().trimmed();
    }
    for (const auto* box : typedCriteria()) {
        saved[box->objectName()] = fromQt(box->text()) == EmptyTimeText ? QString() : box->text();
    }
    for (const auto* list : {ui_->lstSchool, ui_->lstTripType}) {
        saved[list->objectName()] = selectedCodes(*list);
    }
    return saved;
}

std::vector<QLineEdit*> frmTarn::typedCriteria() const {
    std::vector<QLineEdit*> boxes;
    for (auto* box : ui_->RunTab->findChildren<QLineEdit*>()) {
        if (ui_->runBox == box->parentWidget()) {
            boxes.push_back(box);
        }
    }
    return boxes;
}

/// Shows the saved criteria; those that are not known any more, as the planner calls them.
QStringList frmTarn::showSaved(const QJsonObject& saved) {
    QStringList missing;
    for (auto* box : ui_->RunTab->findChildren<QCheckBox*>()) {
        box->setChecked(saved[box->objectName()].toBool());
    }
    for (auto* combo : ui_->RunTab->findChildren<controls::MultiColumnCombo*>()) {
        combo->setText(fromQt(saved[combo->objectName()].toString()));
        if (combo->isUnknown()) {
            missing.append(nameOf(*combo) + ' ' + combo->currentText().trimmed());
            combo->clearChoice();
        }
    }
    for (auto* box : typedCriteria()) {
        if (const auto text = saved[box->objectName()].toString(); !text.isEmpty()) {
            box->setText(text);
        }
    }
    for (auto* list : {ui_->lstSchool, ui_->lstTripType}) {
        for (const auto& code : selectCodes(*list, saved[list->objectName()].toArray())) {
            missing.append((list == ui_->lstSchool ? tr("school ") : tr("trip type ")) + code);
        }
    }
    return missing;
}

/// What is left out widens the search, so the planner looks at it first.
void frmTarn::useSearch(const QString& name) {
    const auto saved = searchesOfPlanner().criteria(name);
    trap("cmdReset_Click", &frmTarn::cmdReset_Click);
    const auto missing = showSaved(saved);
    cmbEmployee_LostFocus();
    cmbVehicle_LostFocus();
    cmbAid_LostFocus();
    showFilledCriteria();
    if (missing.isEmpty()) {
        return trap("cmdSearch_Click", &frmTarn::cmdSearch_Click);
    }
    base::MsgBox({.text = Unknown,
                  .title = UnknownTitle,
                  .icon = base::MsgIcon::Information,
                  .concerns = fromQt(missing.join(QStringLiteral(", ")))});
}

}  // namespace runsearch
