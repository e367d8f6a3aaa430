#include "runsearch/log/RunLogInquiry.h"

#include <QLocale>
#include <QShortcut>
#include <algorithm>
#include <chrono>

#include "data/lists/listreader.h"
#include "platform/ado/sqltext.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "platform/forms/operation.h"
#include "platform/jet/error.h"
#include "startup/base/session.h"

#include "ui_RunLogInquiry.h"

namespace runsearch {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto Module = "RunLogInquiry";

constexpr auto ActivityCodesSql =
    "SELECT RUNLOG_ACTIVITY_CODES.* FROM RUNLOG_ACTIVITY_CODES ORDER BY "
    "RUNLOG_ACTIVITY_CODES.ACTIVITYCODE;";

const auto BeforeSearch = QStringLiteral(
    "Enter what you look for and press Search.\nWithout any filter the whole log is listed.");
const auto NothingFound = QStringLiteral("No log entry meets all filters.");

/// Some screens of entries: what is read ahead of the planner.
constexpr std::size_t BlockEntries = 500;
/// As many as the list takes in one go.
constexpr std::size_t MostAtOnce = 50'000;
/// What is sorted in no time.
constexpr int SortedAtOnce = 20'000;
/// How long is read on before the form gets its turn.
constexpr int SliceMs = 30;

constexpr data::ListColumn ActivityColumns[]{
    {"Activity Code", "ActivityCode", 1300, table::CellKind::Number},
    {"Description", "ACTIVITYDESC", 4000},
};

QString grouped(std::int64_t number) {
    return QLocale(QLocale::English, QLocale::UnitedStates)
        .toString(static_cast<qlonglong>(number));
}

}  // namespace

RunLogInquiry::RunLogInquiry(forms::Form* owner)
    : TrappedForm(Module, owner), ui_(std::make_unique<Ui::RunLogInquiry>()) {
    ui_->setupUi(this);
    readTimer_.setInterval(1);
    on(&readTimer_, &forms::Timer::tick, "readOn", &RunLogInquiry::readOn);
    on(ui_->Search, &QPushButton::clicked, "Search_Click", &RunLogInquiry::Search_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &RunLogInquiry::Exit_Click);
    on(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, "Search_Click",
       &RunLogInquiry::Search_Click);
    setCancelButton(ui_->Exit);
    wireFilters();
    wireList();
}

RunLogInquiry::~RunLogInquiry() = default;

void RunLogInquiry::wireFilters() {
    const auto describe = [this] {
        ui_->ActivityDescription->setText(toQt(ui_->cmbActivityCode->columnText(1)));
    };
    on(ui_->cmbActivityCode, &controls::MultiColumnCombo::chosen, "cmbActivityCode_Click",
       describe);
    on(ui_->cmbActivityCode, &controls::MultiColumnCombo::left, "cmbActivityCode_LostFocus",
       describe);
}

/// Where the form is narrow for its font the dates stand below the code.
void RunLogInquiry::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    constexpr int RoomyCharacters = 120;
    const bool narrow = width() < RoomyCharacters * fontMetrics().averageCharWidth();
    auto& grid = *ui_->filterGrid;
    grid.removeWidget(ui_->BegDateLabel);
    grid.removeItem(ui_->dateRow);
    grid.addWidget(ui_->BegDateLabel, narrow ? 2 : 0, narrow ? 0 : 2);
    grid.addLayout(ui_->dateRow, narrow ? 2 : 0, narrow ? 1 : 3, 1, narrow ? 4 : 1, Qt::AlignLeft);
    ui_->BegDateLabel->setIndent(narrow ? 0 : fontMetrics().height());
}

void RunLogInquiry::wireList() {
    using controls::MultiColumnList;
    ui_->LogFilter->filters(*ui_->LogList);
    const auto readIfWanted = [this] { readTimer_.setEnabled(wantsMore()); };
    on(ui_->LogList, &MultiColumnList::endShown, "LogList_EndShown", readIfWanted);
    on(ui_->LogList, &MultiColumnList::endAsked, "LogList_EndAsked", [this] {
        toLastEntry_ = true;
        readToEnd();
    });
    on(ui_->LogList, &MultiColumnList::rowClicked, "LogList_ClickItem",
       [this] { toLastEntry_ = false; });
    on(ui_->LogList, &MultiColumnList::columnClicked, "LogList_ClickColumn",
       &RunLogInquiry::LogList_ClickColumn);
}

void RunLogInquiry::Form_Load() {
    trap("Bld_DropDown", &RunLogInquiry::Bld_DropDown);
    ui_->LogList->setTable(RunLogReader::emptyTable());
    forgetSearch();
    ui_->RunID->setFocus();
}

void RunLogInquiry::Form_Unload() { forgetSearch(); }

void RunLogInquiry::Bld_DropDown() {
    ui_->cmbActivityCode->setTable(
        data::readList(ActivityColumns, ActivityCodesSql, *startup::gcnRouteWrk));
}

void RunLogInquiry::ask(const std::string& run) {
    load();
    ui_->cmbActivityCode->clearChoice();
    ui_->ActivityDescription->clear();
    ui_->BegDate->clear();
    ui_->EndDate->clear();
    askedRun_ = base::trim(run);
    ui_->RunID->setText(toQt(askedRun_));
    trap("Search_Click", &RunLogInquiry::Search_Click);
}

void RunLogInquiry::Search_Click() {
    const auto asked = filters();
    if (refuse(asked)) {
        return;
    }
    ui_->LogList->setFilter({});
    const forms::BusyCursor hourglass;
    try {
        search(asked);
    } catch (const jet::SqlError&) {
        startup::report("Search_Click", Module);
    }
}

/// The id of the run that the log was opened for is no pattern that a planner typed.
RunLogFilters RunLogInquiry::filters() const {
    const auto run = fromQt(ui_->RunID->text());
    return {run == askedRun_ ? ado::escaped(run) : run, ui_->cmbActivityCode->text(),
            fromQt(ui_->BegDate->text()), fromQt(ui_->EndDate->text())};
}

/// Tells the planner of the first filter that cannot be searched for and goes there.
bool RunLogInquiry::refuse(const RunLogFilters& asked) {
    const auto fault = firstFault(asked);
    if (!fault) {
        return false;
    }
    base::MsgBox(fault->text, fault->title, base::MsgIcon::Information);
    if (fault->filter == RunLogFault::Filter::ActivityCode) {
        ui_->cmbActivityCode->setFocus();
    } else {
        auto* box = fault->filter == RunLogFault::Filter::BegDate ? ui_->BegDate : ui_->EndDate;
        box->setFocus();
        box->selectAll();
    }
    return true;
}

void RunLogInquiry::search(const RunLogFilters& asked) {
    forgetSearch();
    reader_ = std::make_unique<RunLogReader>(*startup::gcnRouting, asked);
    auto table = RunLogReader::emptyTable();
    reader_->read(BlockEntries, table);
    ui_->LogList->setEmptyText(NothingFound);
    ui_->LogList->setTable(std::move(table));
    showCount();
    readTimer_.setEnabled(!reader_->total());
}

void RunLogInquiry::forgetSearch() {
    readTimer_.setEnabled(false);
    sorting_ = {};  // waits for what looks at the entries listed
    reader_.reset();
    toLastEntry_ = false;
    toSortBy_.reset();
    read_ = RunLogReader::emptyTable();
    ui_->LogCount->clear();
    ui_->LogList->clearRows();
    ui_->LogList->setEmptyText(BeforeSearch);
}

void RunLogInquiry::Exit_Click() { closeForm(); }

void RunLogInquiry::LogList_ClickColumn(int column) {
    if (!sorting_.valid()) {
        toSortBy_ = column;
        readToEnd();
    }
}

/// A slice of what is to be done between two turns of the planner: the entries in all are counted
/// once the first ones are seen, then entries are read as far as they are wanted.
void RunLogInquiry::readOn() {
    if (sorting_.valid()) {
        showSorted();
    } else if (!reader_->total()) {
        reader_->countOn();
    } else {
        readSlice();
    }
    showCount();
    readTimer_.setEnabled(sorting_.valid() || !reader_->total() || wantsMore());
}

/// Lists what is still to be read, then does what that was for.
void RunLogInquiry::readToEnd() {
    if (!reader_ || reader_->atEnd()) {
        entriesAreAllListed();
        return;
    }
    ui_->LogList->reserveRows(static_cast<std::size_t>(reader_->total().value_or(0)));
    readTimer_.setEnabled(true);
}

bool RunLogInquiry::wantsMore() const {
    return reader_ && !reader_->atEnd() && (readsToEnd() || ui_->LogList->showsEnd());
}

// The list looks at all its rows whenever some are added, so on the way to the end they are added
// seldom: a share of those that are there at a time, which never takes long by itself.
void RunLogInquiry::readSlice() {
    const forms::WorkSlice slice(SliceMs);
    do {
        reader_->read(BlockEntries, read_);
    } while (readsToEnd() && !reader_->atEnd() && !slice.isOver());
    const auto listed = static_cast<std::size_t>(ui_->LogList->rowsInAll());
    if (!readsToEnd() || reader_->atEnd() || read_.rowCount() > std::min(listed / 4, MostAtOnce)) {
        ui_->LogList->appendRows(read_);
        read_.clearRows();
    }
    if (reader_->atEnd()) {
        entriesAreAllListed();
    }
}

void RunLogInquiry::entriesAreAllListed() {
    read_ = RunLogReader::emptyTable();
    if (toSortBy_ && !sorting_.valid()) {
        sortAll(*toSortBy_);
    }
    if (toLastEntry_) {
        ui_->LogList->choose(ui_->LogList->rows() - 1);
        toLastEntry_ = false;
    }
}

/// Many entries are put into their order beside the form, which stays at hand meanwhile: nothing
/// changes what is listed while that goes on.
void RunLogInquiry::sortAll(int column) {
    if (ui_->LogList->rowsInAll() <= SortedAtOnce) {
        ui_->LogList->toggleSort(column);
        toSortBy_.reset();
        return;
    }
    sorting_ =
        std::async(std::launch::async, [&table = ui_->LogList->table(), column,
                                        descending = ui_->LogList->sortsDescendingNext(column)] {
            return table.sortedBy(static_cast<std::size_t>(column), descending);
        });
    readTimer_.setEnabled(true);
}

void RunLogInquiry::showSorted() {
    if (sorting_.wait_for(std::chrono::milliseconds(SliceMs)) == std::future_status::ready) {
        ui_->LogList->showSorted(*toSortBy_, sorting_.get());
        toSortBy_.reset();
    }
}

void RunLogInquiry::showCount() {
    const auto read = reader_->entriesRead();
    const auto total = reader_->total();
    ui_->LogList->setHasMore(!reader_->atEnd());
    QString text;
    if (sorting_.valid()) {
        text = tr("Sorting %1 entries");
    } else if (reader_->atEnd()) {
        text = read == 0 ? QString() : read == 1 ? tr("1 entry") : tr("%1 entries");
    } else if (!total) {
        text = tr("%1 entries so far");
    } else {
        text = readsToEnd() ? tr("Reading on: %1 of %2 entries") : tr("%1 of %2 entries listed");
    }
    text.replace("%1", grouped(read));
    ui_->LogCount->setText(total ? text.replace("%2", grouped(*total)) : text);
}

}  // namespace runsearch
