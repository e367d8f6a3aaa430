#include "platform/controls/multicolumnlist.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <iterator>
#include <numeric>

#include "platform/controls/listheader.h"
#include "platform/controls/listkeys.h"
#include "platform/controls/qtext.h"
#include "platform/controls/rowdelegate.h"
#include "platform/controls/tablemodel.h"

namespace controls {

namespace {

constexpr qint64 TypingPauseMs = 1000;

bool sameLetters(const QString& text) { return text.count(text.front()) == text.size(); }

}  // namespace

MultiColumnList::MultiColumnList(QWidget* parent)
    : QTreeView(parent), model_(new TableModel(this)), captions_(new ListHeader(this)) {
    setHeader(captions_);
    captions_->holdFirst(1);
    setModel(model_);
    setItemDelegate(new RowDelegate(*this));
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setStretchLastSection(false);
    header()->setResizeContentsPrecision(40);
    wireHeader();
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (showsEnd()) {
            emit endShown();
        }
    });
    connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, [this] {
        if (rowsShown_ > 0) {
            updateGeometry();  // the bar takes room of its own
        }
    });
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        setChosen(index.row());
        if (!pressTold_) {
            emit rowClicked(chosenRow_);
        }
    });
    connect(this, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& index) { emit rowActivated(index.row()); });
}

void MultiColumnList::setTable(table::TextTable table) {
    sortingOff();
    const bool fits = widthsFitRows_ && table.columns == model_->table().columns;
    model_->setTable(std::move(table));
    if (!fits) {
        arrangeColumns();
        applyWidths();
    }
    columnsChanged();
    scrollToTop();
}

void MultiColumnList::appendRows(const table::TextTable& more) {
    const QScrollBar& bar = *verticalScrollBar();
    const bool heldAtEnd = bar.isSliderDown() && bar.value() == bar.maximum();
    sortingOff();
    for (std::size_t row = 0; !order_.empty() && row < more.rowCount(); ++row) {
        order_.push_back(table().rowCount() + row);
    }
    isFiltered() ? appendFiltered(more) : model_->append(more);
    if (heldAtEnd) {
        scrollToBottom();
    }
}

void MultiColumnList::appendFiltered(const table::TextTable& more) {
    const std::size_t first = table().rowCount();
    model_->addUnseen(more);
    model_->showBelow(filter_.rows(table(), first));
    emit filterChanged();
}

void MultiColumnList::reserveRows(std::size_t rows) { model_->reserve(rows); }

bool MultiColumnList::showsEnd() const {
    const QScrollBar& bar = *verticalScrollBar();
    return isVisible() && bar.maximum() - bar.value() <= bar.pageStep();
}

const table::TextTable& MultiColumnList::table() const { return model_->table(); }

void MultiColumnList::clearRows() { model_->clearRows(); }

void MultiColumnList::clearAll() { setTable({}); }

void MultiColumnList::reset() {
    QTreeView::reset();
    chosenRow_ = -1;
    hiddenChoice_.reset();
    order_.clear();
    filter_.lookAt(shownColumns());
    // The model's own reset may have emptied the selection before without a word.
    emit selectionCountChanged(0);
}

int MultiColumnList::rows() const { return model_->rowCount(); }

int MultiColumnList::rowsInAll() const { return static_cast<int>(table().rowCount()); }

std::string MultiColumnList::cellText(int row, int column) const {
    return table().text(model_->tableRow(row), static_cast<std::size_t>(column));
}

base::Value MultiColumnList::cellValue(int row, std::string_view name) const {
    return table().value(model_->tableRow(row), name);
}

bool MultiColumnList::isRed(int row, int column) const {
    return table().isRed(model_->tableRow(row), static_cast<std::size_t>(column));
}

std::size_t MultiColumnList::tableRow(int row) const { return model_->tableRow(row); }

std::string MultiColumnList::chosenKey() const {
    return chosenRow_ < 0 ? std::string() : cellText(chosenRow_, 0);
}

void MultiColumnList::choose(int row) {
    setChosen(std::min(row, rows() - 1));
    const QModelIndex index = model_->index(chosenRow_, 0);
    selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

void MultiColumnList::chooseAmongSelected(int row) {
    setChosen(std::min(row, rows() - 1));
    standAt(chosenRow_);
    scrollTo(currentIndex());
}

void MultiColumnList::standAt(int row) {
    selectionModel()->setCurrentIndex(model_->index(std::min(row, rows() - 1), 0),
                                      QItemSelectionModel::NoUpdate);
}

std::string MultiColumnList::hiddenChoice() const {
    return hiddenChoice_ ? table().text(*hiddenChoice_, 0) : std::string();
}

void MultiColumnList::setChosen(int row) {
    chosenRow_ = row;
    hiddenChoice_.reset();
    viewport()->update();
}

void MultiColumnList::enter() {
    setFocus(Qt::ShortcutFocusReason);
    if (chosenRow_ < 0 && rows() > 0) {
        asUser([this] {
            const int row = std::max(currentIndex().row(), 0);
            setCurrentIndex(model_->index(row, 0));
            setChosen(row);
        });
    }
}

void MultiColumnList::asUser(const std::function<void()>& act) {
    const int before = chosenRow_;
    {
        const QScopedValueRollback<bool> acting(userActs_, true);
        act();
    }
    pressTold_ = chosenRow_ != before;
    if (pressTold_) {
        emit rowClicked(chosenRow_);
    }
}

bool MultiColumnList::isRowSelected(int row) const {
    return selectionModel()->isRowSelected(row, {});
}

std::vector<int> MultiColumnList::selectedRows() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

int MultiColumnList::selectedCount() const { return static_cast<int>(selectedRows().size()); }

void MultiColumnList::selectAllRows() {
    std::vector<int> every(static_cast<std::size_t>(rows()));
    std::iota(every.begin(), every.end(), 0);
    selectRows(every);
}

void MultiColumnList::selectRows(std::span<const int> wanted) {
    QItemSelection selection;
    const int lastColumn = model_->columnCount() - 1;
    for (std::size_t from = 0, to = 0; from < wanted.size(); from = to + 1) {
        to = from;
        while (to + 1 < wanted.size() && wanted[to + 1] == wanted[to] + 1) {
            ++to;
        }
        selection.append({model_->index(wanted[from], 0), model_->index(wanted[to], lastColumn)});
    }
    // Replacing one large selection by another compares every range with every other.
    selectNone();
    selectionModel()->select(selection, QItemSelectionModel::Select);
}

void MultiColumnList::selectNone() { selectionModel()->clearSelection(); }

void MultiColumnList::toggleSort(int column) {
    if (column < 0 || column >= model_->columnCount()) {
        return;
    }
    sortBy({{static_cast<std::size_t>(column), sortsDescendingNext(column)}});
}

bool MultiColumnList::sortsDescendingNext(int column) const {
    return column == sortColumn() && sortOrder() == Qt::AscendingOrder;
}

void MultiColumnList::addSort(int column) {
    auto columns = sorting_;
    const auto known =
        std::ranges::find(columns, static_cast<std::size_t>(column), &table::SortBy::column);
    if (known != columns.end()) {
        known->descending = !known->descending;
    } else {
        columns.push_back({static_cast<std::size_t>(column)});
    }
    sortBy(columns);
}

void MultiColumnList::sortBy(const std::vector<table::SortBy>& columns) {
    columns.empty() ? sortingOff() : showOrdered(columns, table().sortedBy(columns));
}

void MultiColumnList::showSorted(int column, std::vector<std::size_t> order) {
    showOrdered({{static_cast<std::size_t>(column), sortsDescendingNext(column)}},
                std::move(order));
}

void MultiColumnList::showOrdered(std::vector<table::SortBy> sorting,
                                  std::vector<std::size_t> order) {
    sorting_ = std::move(sorting);
    captions_->showSorting(sorting_);
    order_ = std::move(order);
    arrangeRows();
}

void MultiColumnList::sortingOff() {
    sorting_.clear();
    captions_->showSorting({});
}

int MultiColumnList::sortColumn() const {
    return sorting_.empty() ? -1 : static_cast<int>(sorting_.front().column);
}

Qt::SortOrder MultiColumnList::sortOrder() const {
    return !sorting_.empty() && sorting_.front().descending ? Qt::DescendingOrder
                                                            : Qt::AscendingOrder;
}

void MultiColumnList::setFilter(const QString& words) {
    if (words == filterText_) {
        return;
    }
    filterText_ = words;
    const bool wasFiltered = isFiltered();
    filter_.setWords(fromQt(words));
    if (wasFiltered || isFiltered()) {
        arrangeRows();
        chosenRow_ >= 0 ? scrollTo(model_->index(chosenRow_, 0)) : scrollToTop();
    }
    emit filterChanged();
    if (showsEnd()) {
        emit endShown();
    }
}

bool MultiColumnList::readForFilter() {
    constexpr std::size_t RowsAtOnce = 1000;
    return filter_.readOn(table(), RowsAtOnce);
}

void MultiColumnList::arrangeRows() {
    const auto selected = selectedTableRows();
    const auto chosen =
        chosenRow_ < 0 ? hiddenChoice_ : std::optional(model_->tableRow(chosenRow_));
    {
        const QSignalBlocker quiet(this);
        selectNone();
        model_->showInOrder(orderShown());
        selectTableRows(selected);
    }
    chosenRow_ = chosen ? model_->shownRow(*chosen) : -1;
    hiddenChoice_ = chosenRow_ < 0 ? chosen : std::nullopt;
    if (const int left = selectedCount(); left != static_cast<int>(selected.size())) {
        emit selectionCountChanged(left);
    }
}

std::optional<std::vector<std::size_t>> MultiColumnList::orderShown() {
    if (!isFiltered()) {
        return order_.empty() ? std::nullopt : std::optional(order_);
    }
    auto rows = filter_.rows(table());
    if (order_.empty()) {
        return rows;
    }
    std::vector<bool> holds(table().rowCount());
    for (const std::size_t row : rows) {
        holds[row] = true;
    }
    rows.clear();
    std::ranges::copy_if(order_, std::back_inserter(rows),
                         [&](std::size_t row) { return holds[row]; });
    return rows;
}

std::vector<std::size_t> MultiColumnList::selectedTableRows() const {
    std::vector<std::size_t> tableRows;
    for (const int row : selectedRows()) {
        tableRows.push_back(model_->tableRow(row));
    }
    return tableRows;
}

void MultiColumnList::selectTableRows(const std::vector<std::size_t>& tableRows) {
    std::vector<bool> wanted(table().rowCount());
    for (const std::size_t row : tableRows) {
        wanted[row] = true;
    }
    std::vector<int> shown;
    for (int row = 0; row < rows(); ++row) {
        if (wanted[model_->tableRow(row)]) {
            shown.push_back(row);
        }
    }
    selectRows(shown);
}

table::Excerpt MultiColumnList::shown() const {
    std::vector<std::size_t> shownRows;
    shownRows.reserve(static_cast<std::size_t>(rows()));
    for (int row = 0; row < rows(); ++row) {
        shownRows.push_back(model_->tableRow(row));
    }
    return {table(), shownColumns(), std::move(shownRows)};
}

void MultiColumnList::copyRows(table::Captions captions) const {
    table::Excerpt copy{table(), shownColumns(), selectedTableRows()};
    if (copy.rows.empty() && chosenRow_ >= 0) {
        copy.rows.push_back(model_->tableRow(chosenRow_));
    }
    if (copy.rows.empty()) {
        return;
    }
    auto* copied = new QMimeData;
    copied->setText(toQt(table::tabSeparated(copy, captions)));
    copied->setHtml(toQt(table::htmlTable(copy, captions)));
    QApplication::clipboard()->setMimeData(copied);
}

void MultiColumnList::setEmptyText(const QString& text) {
    emptyText_ = text;
    viewport()->update();
}

void MultiColumnList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    if (userActs_ && current.isValid()) {
        setChosen(current.row());
    }
}

void MultiColumnList::selectionChanged(const QItemSelection& on, const QItemSelection& off) {
    QTreeView::selectionChanged(on, off);
    emit selectionCountChanged(selectedCount());
}

void MultiColumnList::mousePressEvent(QMouseEvent* event) {
    asUser([&] {
        QTreeView::mousePressEvent(event);
        // A row that was the current one already tells nothing of itself.
        if (const QModelIndex pressed = indexAt(event->pos()); pressed.isValid()) {
            setChosen(pressed.row());
        }
    });
}

void MultiColumnList::mouseMoveEvent(QMouseEvent* event) {
    asUser([&] { QTreeView::mouseMoveEvent(event); });
}

void MultiColumnList::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy) || event->keyCombination() == CopyWithoutCaptions) {
        copyRows(event->matches(QKeySequence::Copy) ? table::Captions::Shown
                                                    : table::Captions::Left);
        return;
    }
    if (event->key() == Qt::Key_Escape && isFiltered()) {
        setFilter({});
        return;
    }
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter) {
        if (chosenRow_ >= 0) {
            emit rowActivated(chosenRow_);
        } else {
            event->ignore();
        }
        return;
    }
    asUser([&] { QTreeView::keyPressEvent(event); });
    if (event->key() == Qt::Key_End) {
        emit endAsked();
    }
}

void MultiColumnList::focusInEvent(QFocusEvent* event) {
    const bool hadCurrent = currentIndex().isValid();
    QTreeView::focusInEvent(event);
    if (!hadCurrent && event->reason() != Qt::MouseFocusReason) {
        selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
    }
}

void MultiColumnList::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    const QString why =
        rowsInAll() == 0
            ? emptyText_
            : tr("None of %1 rows holds all words of the filter.\nEsc clears it.").arg(rowsInAll());
    if (rows() > 0 || why.isEmpty()) {
        return;
    }
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12),
                     Qt::AlignCenter | Qt::TextWordWrap, why);
}

void MultiColumnList::setMarksRows(bool on) {
    constexpr qreal GutterLines = 1.8;
    marksRows_ = on;
    setRootIsDecorated(on);
    const int gutter = on ? qRound(fontMetrics().height() * GutterLines) : 0;
    setIndentation(gutter);
    captions_->setGutter(gutter);
}

void MultiColumnList::setTwoLineCaptions(bool on) {
    twoLineCaptions_ = on;
    captions_->setTwoLines(on);
}

void MultiColumnList::setRowsShown(int rows) {
    rowsShown_ = rows;
    updateGeometry();
}

void MultiColumnList::setFewestRows(int rows) {
    fewestRows_ = rows;
    updateGeometry();
}

int MultiColumnList::heightOf(double rows) const {
    constexpr qreal RowInLines = 1.45;
    const int row =
        this->rows() > 0 ? sizeHintForRow(0) : qRound(fontMetrics().height() * RowInLines);
    return header()->sizeHint().height() + qRound(row * rows) + 2 * frameWidth();
}

QSize MultiColumnList::sizeHint() const {
    const QSize size = QTreeView::sizeHint();
    return rowsShown_ > 0 ? QSize(size.width(), heightOf(rowsShown_)) : size;
}

QSize MultiColumnList::minimumSizeHint() const {
    constexpr double PartOfNext = 0.5;
    const QSize size = QTreeView::minimumSizeHint();
    const QScrollBar& below = *horizontalScrollBar();
    const int bar = below.minimum() < below.maximum() ? below.sizeHint().height() : 0;
    return rowsShown_ > 0 ? QSize(size.width(), heightOf(fewestRows_ + PartOfNext) + bar) : size;
}

void MultiColumnList::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        setMarksRows(marksRows_);
    }
}

void MultiColumnList::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    QStyleOptionViewItem row = option;
    if (marksRows_ && index.row() != chosenRow_) {
        tintSelection(row.palette);
    }
    QTreeView::drawRow(painter, row, index);
    drawHeld(*painter, row, index);
    if (marksRows_ && hasFocus() && index.row() == currentIndex().row()) {
        const bool solid = index.row() == chosenRow_ && isRowSelected(chosenRow_);
        drawRowFocus(*painter, {0, row.rect.y(), viewport()->width(), row.rect.height()},
                     palette().color(solid ? QPalette::HighlightedText : QPalette::Highlight));
    }
}

/// What stays in sight covers what has scrolled beneath it.
void MultiColumnList::drawHeld(QPainter& painter, const QStyleOptionViewItem& row,
                               const QModelIndex& index) const {
    const int width = captions_->heldWidth();
    if (width == 0) {
        return;
    }
    const QRect strip(0, row.rect.y(), width, row.rect.height());
    painter.save();
    painter.setClipRect(strip, Qt::IntersectClip);
    painter.fillRect(strip, row.palette.base());
    for (int place = 0; place < captions_->heldColumns(); ++place) {
        const int column = captions_->logicalIndex(place);
        QStyleOptionViewItem cell = row;
        cell.rect = {captions_->sectionPosition(column), strip.y(), captions_->sectionSize(column),
                     strip.height()};
        drawHeldCell(painter, cell, index.siblingAtColumn(column));
    }
    painter.setPen(row.palette.color(QPalette::Active, QPalette::Mid));
    painter.drawLine(strip.topRight(), strip.bottomRight());
    painter.restore();
}

void MultiColumnList::drawHeldCell(QPainter& painter, QStyleOptionViewItem cell,
                                   const QModelIndex& index) const {
    const bool active = cell.state.testFlag(QStyle::State_Active);
    cell.palette.setCurrentColorGroup(!isEnabled() ? QPalette::Disabled
                                      : active     ? QPalette::Active
                                                   : QPalette::Inactive);
    cell.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
    cell.features.setFlag(QStyleOptionViewItem::Alternate, index.row() % 2 == 1);
    style()->drawPrimitive(QStyle::PE_PanelItemViewRow, &cell, &painter, this);
    if (captions_->visualIndex(index.column()) == 0 && indentation() > 0 && marksRows_) {
        drawBranches(&painter, {0, cell.rect.y(), indentation(), cell.rect.height()}, index);
        cell.rect.setLeft(indentation());
    }
    itemDelegateForIndex(index)->paint(&painter, cell, index);
}

QModelIndex MultiColumnList::indexAt(const QPoint& at) const {
    return QTreeView::indexAt(at - QPoint(captions_->shiftAt(at.x()), 0));
}

QRect MultiColumnList::visualRect(const QModelIndex& index) const {
    const bool held = index.isValid() && captions_->holds(index.column());
    return QTreeView::visualRect(index).translated(held ? captions_->offset() : 0, 0);
}

/// A column in sight needs no scrolling sideways; another one is not left beneath those.
void MultiColumnList::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const int before = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    if (!index.isValid()) {
        return;
    }
    const int left = captions_->sectionPosition(index.column());
    if (captions_->holds(index.column())) {
        horizontalScrollBar()->setValue(before);
    } else if (const int held = captions_->heldWidth(); left - captions_->offset() < held) {
        horizontalScrollBar()->setValue(left - held);
    }
}

/// Scrolling moves what is on the screen, what stays in sight too.
void MultiColumnList::scrollContentsBy(int dx, int dy) {
    QTreeView::scrollContentsBy(dx, dy);
    if (dx != 0) {
        viewport()->update();
        captions_->viewport()->update();
    }
}

QRegion MultiColumnList::visualRegionForSelection(const QItemSelection& selection) const {
    const QRegion region = QTreeView::visualRegionForSelection(selection);
    const QRect rows = region.boundingRect();
    return region + QRect(0, rows.y(), captions_->heldWidth(), rows.height());
}

void MultiColumnList::drawBranches(QPainter* painter, const QRect& rect,
                                   const QModelIndex& index) const {
    if (!marksRows_) {
        return QTreeView::drawBranches(painter, rect, index);
    }
    const bool chosen = index.row() == chosenRow_;
    drawRowMarks(*painter, rect, palette(),
                 {.chosen = chosen,
                  .selected = isRowSelected(index.row()),
                  .warns = index.siblingAtColumn(0).data(RedRole).toBool()});
}

void MultiColumnList::keyboardSearch(const QString& letters) {
    if (letters.trimmed().isEmpty() || rows() == 0) {
        typed_.clear();
        return;
    }
    const bool goesOn = !typed_.isEmpty() && sinceTyped_.elapsed() < TypingPauseMs;
    typed_ = goesOn ? typed_ + letters : letters;
    sinceTyped_.start();
    const int current = std::max(currentIndex().row(), 0);
    int found = rowTyped(typed_, current);
    if (found < 0 && sameLetters(typed_)) {
        found = rowTyped(typed_.left(1), current + 1);
    }
    if (found >= 0) {
        const auto how = selectionMode() == MultiSelection
                             ? QItemSelectionModel::NoUpdate
                             : QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
        selectionModel()->setCurrentIndex(model_->index(found, 0), how);
        scrollTo(currentIndex());
    }
}

/// The row at or below `from`, else the first one from the top.
int MultiColumnList::rowTyped(const QString& typed, int from) const {
    for (int column = 0; column < std::min(model_->columnCount(), 2); ++column) {
        for (int step = 0; step < rows(); ++step) {
            const int row = (from + step) % rows();
            if (startsRow(typed, row, column)) {
                return row;
            }
        }
    }
    return -1;
}

/// In the first column the letters start the text, in the second one a word of it.
bool MultiColumnList::startsRow(const QString& typed, int row, int column) const {
    const QString text = toQt(cellText(row, column));
    return text.startsWith(typed, Qt::CaseInsensitive) ||
           (column > 0 && text.contains(QChar(' ') + typed, Qt::CaseInsensitive));
}

int MultiColumnList::sizeHintForColumn(int column) const {
    return std::max(QTreeView::sizeHintForColumn(column), header()->sectionSizeHint(column));
}

}  // namespace controls
