#include "stops/search/stopsearchpanel.h"

#include <QEvent>
#include <QScrollBar>
#include <QShortcut>
#include <utility>

#include "data/lookups/mdlLOAD_lstcmb.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"
#include "platform/controls/signdelegate.h"
#include "platform/forms/application.h"
#include "platform/forms/operation.h"
#include "platform/jet/error.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

#include "ui_StopSearchPanel.h"

namespace stops {

namespace {

using controls::fromQt;
using controls::MultiColumnList;
using controls::SignDelegate;
using startup::trapped;

/// How long a slice of reading may hold up the form: most searches are done in the first, and the
/// others leave the form free to answer between two.
constexpr int FirstSliceMs = 50;
constexpr int SliceMs = 20;
constexpr std::size_t RowsAtOnce = 250;
/// A list that is longer than a slice gets room for so many: moving tens of megabytes to make room
/// would hold up the form. Room that is not used takes no memory.
constexpr std::size_t RowsToExpect = 450'000;
/// Sorting longer lists would hold up the form; they stay as the database gives them until the
/// planner sorts them.
constexpr int MostSorted = 200'000;

const auto BeforeSearch = QStringLiteral(
    "Enter what you look for and press Find Now.\nWithout any criterion every stop is listed.");
const auto NothingFound = QStringLiteral("No stop meets all criteria.");

Either either(const QComboBox& combo) { return static_cast<Either>(combo.currentIndex()); }
std::string text(const QLineEdit* box) { return fromQt(box->text()); }

}  // namespace

StopSearchPanel::StopSearchPanel(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::StopSearchPanel>()) {
    ui_->setupUi(this);
    makeNarrow();
    turn_.setInterval(0);
    turn_.setSingleShot(true);
    for (QWidget* choice : {ui_->cmbGeocoded, ui_->cmbActive}) {
        choice->installEventFilter(this);
    }
    ui_->lstStop->showFirst({"Map", "STOPID", "ADDR1", "DESCRIPTION", "STOPTYPE"}, 2);
    ui_->lstSTOP_TRIPTYPE->showFirst(
        {"Map", "STOPID", "ADDR1", "RUN", "DESCRIPTION", "NUM_STUDENTS"}, 2);
    for (auto* list : {ui_->lstStop, ui_->lstSTOP_TRIPTYPE}) {
        list->setEmptyText(BeforeSearch);
        list->drawColumnBy("Map", new SignDelegate(controls::Sign::NoPlace,
                                                   SignDelegate::Place::InsteadOfText, list));
    }
    ui_->StopFilter->filters(*ui_->lstStop);
    ui_->TripTypeFilter->filters(*ui_->lstSTOP_TRIPTYPE);
    fitCriteria();
    ui_->Criteria->installEventFilter(this);
    wire();
    startFrom({});
}

StopSearchPanel::~StopSearchPanel() = default;

/// The boxes share what width there is, however long the texts in them are.
void StopSearchPanel::makeNarrow() {
    constexpr int Characters = 11;
    ui_->Criteria->setAutoFillBackground(false);
    ui_->CriteriaArea->viewport()->setAutoFillBackground(false);
    for (auto* box : ui_->Criteria->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (qobject_cast<QLineEdit*>(box) != nullptr || qobject_cast<QComboBox*>(box) != nullptr) {
            box->setMinimumWidth(Characters * fontMetrics().averageCharWidth());
        }
    }
}

void StopSearchPanel::setLean(bool lean) {
    if (lean_ == lean) {
        return;
    }
    lean_ = lean;
    auto& grid = *ui_->criteriaGrid;
    const std::pair<QWidget*, QWidget*> second[]{{ui_->cmbLOCCODELabel, ui_->cmbLOCCODE},
                                                 {ui_->cmbSchoolLabel, ui_->cmbSchool},
                                                 {ui_->cmbSTOPTYPELabel, ui_->cmbSTOPTYPE},
                                                 {ui_->cmbActiveLabel, ui_->cmbActive},
                                                 {ui_->cmbRUNLabel, ui_->cmbRUN}};
    constexpr int RowsOfFirst = 6;
    int row = 0;
    for (const auto& [label, box] : second) {
        grid.addWidget(label, lean ? RowsOfFirst + row : row, lean ? 0 : 2);
        grid.addWidget(box, lean ? RowsOfFirst + row : row, lean ? 1 : 3);
        ++row;
    }
    grid.addWidget(ui_->chkTRIPTYPES, lean ? RowsOfFirst + row++ : 5, lean ? 0 : 2, 1, 2);
    grid.addWidget(ui_->chkUnassigned, lean ? RowsOfFirst + row++ : 6, lean ? 0 : 2, 1, 2);
    grid.addWidget(ui_->chkNoStudents, lean ? RowsOfFirst + row : 6, 0, 1, 2);
    grid.setColumnStretch(3, lean ? 0 : 1);
    ui_->searchGrid->removeItem(ui_->searchRow);
    ui_->searchGrid->addLayout(ui_->searchRow, lean ? 1 : 0, lean ? 0 : 1);
    fitCriteria();
}

/// As high as the criteria, or as a few of them that scroll; never too narrow for them.
void StopSearchPanel::fitCriteria() {
    constexpr int FewRows = 3;
    ui_->criteriaGrid->activate();
    const int all = ui_->Criteria->sizeHint().height();
    const int row = ui_->StopId->sizeHint().height() + ui_->criteriaGrid->verticalSpacing();
    const int bar = lean_ ? ui_->CriteriaArea->verticalScrollBar()->sizeHint().width() : 0;
    ui_->CriteriaArea->setMinimumSize(ui_->Criteria->minimumSizeHint().width() + bar,
                                      lean_ ? FewRows * row : all);
    ui_->CriteriaArea->setMaximumHeight(lean_ ? (FewRows + 1) * row : all);
}

void StopSearchPanel::wire() {
    using forms::on;
    on(ui_->cmdSearch, &QPushButton::clicked, this, [this] { Search(); });
    on(ui_->cmdReset, &QPushButton::clicked, this, [this] { cmdReset_Click(); });
    on(new QShortcut(Qt::Key_F5, this, nullptr, nullptr, Qt::WindowShortcut), &QShortcut::activated,
       this, [this] { Search(); });
    on(ui_->chkTRIPTYPES, &QCheckBox::toggled, this, [this] { chkTRIPTYPES_Click(); });
    on(ui_->chkUnassigned, &QCheckBox::toggled, this, [this] { chkUnassigned_Click(); });
    on(&turn_, &QTimer::timeout, this, [this] { fillOn(); });
    for (auto* list : {ui_->lstStop, ui_->lstSTOP_TRIPTYPE}) {
        on(list, &MultiColumnList::selectionCountChanged, this, [this](int count) {
            showCount();
            emit selectionCountChanged(count);
        });
        on(list, &MultiColumnList::rowActivated, this, [this] { emit rowActivated(); });
    }
}

/// The wheel over a choice changes nothing.
bool StopSearchPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->Criteria) {
        if (event->type() == QEvent::LayoutRequest) {
            fitCriteria();  // lists that were filled want more
        }
    } else if (event->type() == QEvent::Wheel) {
        event->ignore();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

std::string StopSearchPanel::form() const { return fromQt(window()->objectName()); }

void StopSearchPanel::loadCodes() {
    data::Load_cmbLOCCODE(*this);
    data::Load_cmbSchool(*this);
    data::Load_cmbSTOPTYPE(*this);
    data::Load_cmbTRIPTYPE(*this);
    data::Load_cmbRUN(*this);
}

void StopSearchPanel::startFrom(const std::string& tripType) {
    startTripType_ = tripType;
    for (auto* box : {ui_->StopId, ui_->Description, ui_->Address, ui_->Zip}) {
        box->clear();
    }
    for (auto* combo : {ui_->cmbLOCCODE, ui_->cmbSchool, ui_->cmbSTOPTYPE, ui_->cmbRUN}) {
        combo->clearChoice();
    }
    for (auto* choice : {ui_->cmbGeocoded, ui_->cmbActive}) {
        choice->setCurrentIndex(0);
    }
    ui_->chkNoStudents->setChecked(false);
    ui_->chkTRIPTYPES->setChecked(true);
    ui_->cmbTripType->setText(tripType);
    ui_->chkUnassigned->setChecked(!tripType.empty());
    ui_->StopId->setFocus();
}

void StopSearchPanel::cmdReset_Click() {
    trapped("cmdReset_Click", form(), [this] {
        stopFilling();
        asked_.reset();
        startFrom(startTripType_);
        for (auto* list : {ui_->lstStop, ui_->lstSTOP_TRIPTYPE}) {
            list->clearAll();
            list->setEmptyText(BeforeSearch);
        }
        ui_->TotSel->clear();
    });
}

void StopSearchPanel::chkTRIPTYPES_Click() {
    trapped("chkTRIPTYPES_Click", form(), [this] { enableTripCriteria(); });
}

/// A stop on a run is not unassigned: one of the two criteria at a time.
void StopSearchPanel::chkUnassigned_Click() {
    trapped("chkUnassigned_Click", form(), [this] {
        if (ui_->chkUnassigned->isChecked()) {
            ui_->cmbRUN->clearChoice();
        }
        enableTripCriteria();
    });
}

void StopSearchPanel::enableTripCriteria() {
    const bool tripTypes = ui_->chkTRIPTYPES->isChecked();
    const bool anyRun = tripTypes && !ui_->chkUnassigned->isChecked();
    for (QWidget* control : std::initializer_list<QWidget*>{ui_->cmbTripTypeLabel, ui_->cmbTripType,
                                                            ui_->chkUnassigned}) {
        control->setEnabled(tripTypes);
    }
    ui_->cmbRUNLabel->setEnabled(anyRun);
    ui_->cmbRUN->setEnabled(anyRun);
}

StopSearchCriteria StopSearchPanel::criteria() const {
    StopSearchCriteria asked;
    asked.stopId = text(ui_->StopId);
    asked.description = text(ui_->Description);
    asked.address = text(ui_->Address);
    asked.zip = text(ui_->Zip);
    asked.location = ui_->cmbLOCCODE->text();
    asked.school = ui_->cmbSchool->text();
    asked.stopType = ui_->cmbSTOPTYPE->text();
    asked.geocoded = either(*ui_->cmbGeocoded);
    asked.active = either(*ui_->cmbActive);
    asked.withoutStudents = ui_->chkNoStudents->isChecked();
    asked.tripTypes = ui_->chkTRIPTYPES->isChecked();
    asked.tripType = ui_->cmbTripType->text();
    asked.run = ui_->cmbRUN->text();
    asked.unassigned = ui_->chkUnassigned->isChecked();
    return asked;
}

MultiColumnList& StopSearchPanel::list() const {
    return ui_->FoundLists->currentWidget() == ui_->StopPage ? *ui_->lstStop
                                                             : *ui_->lstSTOP_TRIPTYPE;
}

void StopSearchPanel::Search() {
    trapped("Search", form(), [this] {
        stopFilling();
        const forms::BusyCursor hourglass;
        const auto asked = criteria();
        try {
            for (auto* found : {ui_->lstStop, ui_->lstSTOP_TRIPTYPE}) {
                found->setFilter({});
            }
            ask(asked);
        } catch (const jet::SqlError&) {
            showCount();
            startup::report("Search", form());
        }
    });
}

void StopSearchPanel::ask(const StopSearchCriteria& asked) {
    // A question that is not understood leaves the list as it is.
    found_ = std::make_unique<FoundStops>(asked, *startup::gcnRouting);
    asked_ = asked;
    ui_->FoundLists->setCurrentWidget(asked.tripTypes ? ui_->TripTypePage : ui_->StopPage);
    if (asked.tripTypes) {
        Load_lstSTOP_TRIPTYPE();
    } else {
        Load_lstStop();
    }
}

void StopSearchPanel::Load_lstStop() { fill(*ui_->lstStop); }
void StopSearchPanel::Load_lstSTOP_TRIPTYPE() { fill(*ui_->lstSTOP_TRIPTYPE); }

void StopSearchPanel::fill(MultiColumnList& list) {
    list.setEmptyText(NothingFound);
    if (list.sortColumn() >= 0) {
        sorts_[&list] = list.sorting();
    }
    auto table = readSlice(FirstSliceMs, found_->emptyTable());
    if (!found_->atEnd()) {
        table.reserve(RowsToExpect);
    }
    list.setTable(std::move(table));
    if (found_->atEnd()) {
        finish();
    } else {
        goOnFilling();
    }
}

table::TextTable StopSearchPanel::readSlice(int milliseconds, table::TextTable table) {
    const forms::WorkSlice slice(milliseconds);
    do {
        found_->read(table, RowsAtOnce);
    } while (!found_->atEnd() && !slice.isOver());
    return table;
}

void StopSearchPanel::goOnFilling() {
    list().setHeaderSorts(false);
    list().setHasMore(true);
    turn_.start();
    showCount();
}

/// The last slice and the sorting each get a turn of their own.
void StopSearchPanel::fillOn() {
    trapped("Search", form(), [this] {
        if (found_->atEnd()) {
            finish();
        } else {
            list().appendRows(readSlice(SliceMs, found_->emptyTable()));
            goOnFilling();
        }
    });
}

void StopSearchPanel::finish() {
    found_->close();
    list().setHeaderSorts(true);
    list().setHasMore(false);
    sortAsBefore();
    showCount();
}

/// By stop id until the planner sorts by something else.
void StopSearchPanel::sortAsBefore() {
    if (list().rowsInAll() > MostSorted) {
        return;
    }
    auto& sorting = sorts_[&list()];
    if (sorting.empty()) {
        sorting = {{0, false}};
    }
    list().sortBy(sorting);
}

void StopSearchPanel::stopFilling() {
    turn_.stop();
    if (found_) {
        found_->close();
    }
    list().setHeaderSorts(true);
}

void StopSearchPanel::searchAgain() {
    if (!asked_) {
        return;
    }
    const int place = list().verticalScrollBar()->value();
    const auto rows = list().selectedRows();
    const auto former = rows.empty() ? std::nullopt : std::optional(stopAt(rows.front()));
    ask(*asked_);
    list().doItemsLayout();
    list().verticalScrollBar()->setValue(place);
    if (former && !turn_.isActive()) {
        goOnAt(rows.front(), *former);
    }
}

/// Selects the stop that has taken the place of one that is gone from the list, so that one stop
/// after the other can be added. A stop that is still there is not selected again.
void StopSearchPanel::goOnAt(int row, const ChosenStop& former) {
    if (row < list().rows() && (stopAt(row).intStopId != former.intStopId ||
                                stopAt(row).stopTripId != former.stopTripId)) {
        list().choose(row);
    }
}

ChosenStop StopSearchPanel::stopAt(int row) const {
    return found_->chosen(list().table(), list().tableRow(row));
}

std::vector<ChosenStop> StopSearchPanel::selected() const {
    std::vector<ChosenStop> stops;
    for (const int row : list().selectedRows()) {
        stops.push_back(stopAt(row));
    }
    return stops;
}

int StopSearchPanel::selectedCount() const { return list().selectedCount(); }

void StopSearchPanel::selectAll() { list().selectAllRows(); }

void StopSearchPanel::showCount() {
    const int rows = list().rowsInAll();
    ui_->TotSel->setText(!found_            ? QString()
                         : turn_.isActive() ? tr("%1 so far").arg(rows)
                                            : QString::number(rows));
    const int count = list().selectedCount();
    ui_->SelectedCount->setText(
        count == 0 ? QString() : tr("%n selected", nullptr, count) + studentsOfSelected());
}

/// Of trip records, which know them; stops do not.
QString StopSearchPanel::studentsOfSelected() const {
    const auto& stops = list();
    const auto& columns = stops.table().columns;
    const auto column = std::ranges::find(columns, "NUM_STUDENTS", &table::TableColumn::name);
    if (column == columns.end()) {
        return {};
    }
    std::int64_t students = 0;
    for (const int row : stops.selectedRows()) {
        students += stops.cellValue(row, "NUM_STUDENTS").asInteger();
    }
    return (students == 1 ? tr(", %1 student") : tr(", %1 students")).arg(students);
}

}  // namespace stops
