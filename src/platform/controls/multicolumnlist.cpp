#include "platform/controls/multicolumnlist.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMetaMethod>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <numeric>
#include <utility>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/listheader.h"
#include "platform/controls/qtext.h"
#include "platform/controls/rowdelegate.h"
#include "platform/controls/tablemodel.h"
#include "platform/controls/twips.h"
#include "platform/table/tablecopy.h"

namespace controls {

namespace {

constexpr qint64 TypingPauseMs = 1000;

bool sameLetters(const QString& text) { return text.count(text.front()) == text.size(); }

int contentWidth(const QAbstractItemView& list, int column) {
    return list.sizeHintForColumn(column);
}

/// With room for the sort arrow beside the caption, where there is one and the arrow not above it.
int captionWidth(const MultiColumnList& list, int column) {
    constexpr int Edges = 9;
    const auto& header = *list.header();
    const bool arrow = list.headerSorts() && !list.twoLineCaptions() &&
                       !list.table().columns[static_cast<std::size_t>(column)].caption.empty();
    return header.sectionSizeHint(column) +
           (arrow ? header.style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, &header) + Edges
                  : 0);
}

int fittingWidth(const MultiColumnList& list, int column) {
    constexpr int NarrowestInLetters = 7;
    constexpr int WidestInLetters = 31;
    const int letter = list.fontMetrics().averageCharWidth();
    const auto& shown = list.table().columns[static_cast<std::size_t>(column)];
    const int content = contentWidth(list, column);
    const int caption = captionWidth(list, column);
    if (shown.widthTwips > 0) {
        const int whole = shown.kind == table::CellKind::Time ? content : caption;
        return std::max({pixelsOf(shown.widthTwips, list), whole, caption});
    }
    const int least = list.twoLineCaptions() ? 0 : NarrowestInLetters * letter;
    return std::max(std::clamp(content, least, WidestInLetters * letter), caption);
}

/// Room that is left goes to the widest column of texts, up to what its texts take.
void widenForTexts(const MultiColumnList& list) {
    const auto& columns = list.table().columns;
    const auto widest = std::ranges::max_element(columns, {}, &table::TableColumn::widthTwips);
    if (widest == columns.end() || widest->kind != table::CellKind::Text) {
        return;
    }
    const int column = static_cast<int>(widest - columns.begin());
    const int around = list.verticalScrollBar()->sizeHint().width() + 2 * list.frameWidth();
    const int width = list.header()->sectionSize(column);
    const int left = std::max(list.width() - around - list.header()->length(), 0);
    list.header()->resizeSection(column,
                                 std::clamp(contentWidth(list, column), width, width + left));
}

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
    header()->setSectionsMovable(false);
    header()->setResizeContentsPrecision(40);
    header()->setSectionsClickable(true);
    connect(header(), &QHeaderView::sectionClicked, this, [this](int column) {
        if (headerSorts_) {
            toggleSort(column);
        }
        emit columnClicked(column);
    });
    connect(header(), &QHeaderView::sectionResized, this, [this] { rememberWidths(); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (showsEnd()) {
            emit endShown();
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

void MultiColumnList::showFirst(std::vector<std::string> names, int inSight) {
    shownFirst_ = std::move(names);
    captions_->holdFirst(inSight);
}

void MultiColumnList::setTable(table::TextTable table) {
    sortingOff();
    const bool fits = widthsFitRows_ && table.columns == model_->table().columns;
    model_->setTable(std::move(table));
    if (!fits) {
        arrangeColumns();
        applyWidths();
    }
    scrollToTop();
}

void MultiColumnList::appendRows(const table::TextTable& more) {
    const QScrollBar& bar = *verticalScrollBar();
    const bool heldAtEnd = bar.isSliderDown() && bar.value() == bar.maximum();
    sortingOff();
    model_->append(more);
    if (heldAtEnd) {
        scrollToBottom();
    }
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
    // The model's own reset may have emptied the selection before without a word.
    emit selectionCountChanged(0);
}

int MultiColumnList::rows() const { return model_->rowCount(); }

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

void MultiColumnList::setChosen(int row) {
    chosenRow_ = row;
    viewport()->update();
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
    showSorted(column, model_->table().sortedBy(static_cast<std::size_t>(column),
                                                sortsDescendingNext(column)));
}

bool MultiColumnList::sortsDescendingNext(int column) const {
    return column == sortColumn_ && sortOrder_ == Qt::AscendingOrder;
}

void MultiColumnList::showSorted(int column, std::vector<std::size_t> order) {
    sortOrder_ = sortsDescendingNext(column) ? Qt::DescendingOrder : Qt::AscendingOrder;
    sortColumn_ = column;
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(column, sortOrder_);

    const std::vector<std::size_t> selected = selectedTableRows();
    const std::size_t chosen = chosenRow_ < 0 ? 0 : model_->tableRow(chosenRow_);
    {
        const QSignalBlocker quiet(this);
        selectNone();
        model_->showInOrder(std::move(order));
        selectTableRows(selected);
    }
    chosenRow_ = chosenRow_ < 0 ? -1 : model_->shownRow(chosen);
}

void MultiColumnList::sortingOff() {
    sortColumn_ = -1;
    sortOrder_ = Qt::AscendingOrder;
    header()->setSortIndicatorShown(false);
}

std::vector<std::size_t> MultiColumnList::selectedTableRows() const {
    std::vector<std::size_t> tableRows;
    for (const int row : selectedRows()) {
        tableRows.push_back(model_->tableRow(row));
    }
    return tableRows;
}

void MultiColumnList::selectTableRows(const std::vector<std::size_t>& tableRows) {
    std::vector<bool> wanted(static_cast<std::size_t>(rows()));
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

void MultiColumnList::copyRows() const {
    std::vector<std::size_t> rows = selectedTableRows();
    if (rows.empty() && chosenRow_ >= 0) {
        rows.push_back(model_->tableRow(chosenRow_));
    }
    if (rows.empty()) {
        return;
    }
    auto* copied = new QMimeData;
    copied->setText(toQt(table::tabSeparated(table(), rows)));
    copied->setHtml(toQt(table::htmlTable(table(), rows)));
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
    if (event->matches(QKeySequence::Copy)) {
        copyRows();
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
    if (rows() > 0 || emptyText_.isEmpty()) {
        return;
    }
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12),
                     Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

void MultiColumnList::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    fillMenu(menu);
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid();
    menu.exec(byKey ? viewport()->mapToGlobal(visualRect(currentIndex()).center())
                    : event->globalPos());
}

void MultiColumnList::fillMenu(QMenu& menu) {
    menu.addActions(actions());
    menu.addSeparator();
    QAction* copy =
        menu.addAction(tr("&Copy Rows"), QKeySequence::Copy, this, [this] { copyRows(); });
    copy->setEnabled(chosenRow_ >= 0 || selectionModel()->hasSelection());
    QAction* all = menu.addAction(tr("Select &All"), QKeySequence::SelectAll, this,
                                  [this] { selectAllRows(); });
    all->setEnabled(rows() > 0 && selectionMode() != SingleSelection);
    if (isSignalConnected(QMetaMethod::fromSignal(&MultiColumnList::exportAsked))) {
        menu.addSeparator();
        menu.addAction(tr("&Export List…"), this, &MultiColumnList::exportAsked)
            ->setEnabled(rows() > 0);
    }
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
    constexpr double FewestRows = 4.5;
    const QSize size = QTreeView::minimumSizeHint();
    return rowsShown_ > 0 ? QSize(size.width(), heightOf(FewestRows)) : size;
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

void MultiColumnList::arrangeColumns() {
    if (table().columns.empty()) {
        return;
    }
    const auto number = [&](const std::string& name) {
        return static_cast<int>(table().columnOf(name));
    };
    int place = 0;
    for (const auto& name : shownFirst_) {
        header()->moveSection(header()->visualIndex(number(name)), place++);
    }
    for (const auto& [name, delegate] : delegates_) {
        setItemDelegateForColumn(number(name), delegate);
    }
}

void MultiColumnList::applyWidths() {
    const QScopedValueRollback<bool> setting(settingWidths_, true);
    widthsFitRows_ = rows() > 0;
    const QVariantList remembered = LayoutMemory::instance().recall(layoutKey()).toList();
    for (int column = 0; column < model_->columnCount(); ++column) {
        header()->resizeSection(column, column < remembered.size() ? remembered[column].toInt()
                                                                   : fittingWidth(*this, column));
    }
    if (remembered.isEmpty() && twoLineCaptions_) {
        widenForTexts(*this);
    }
}

void MultiColumnList::rememberWidths() {
    if (settingWidths_ || model_->columnCount() == 0) {
        return;
    }
    QVariantList widths;
    for (int column = 0; column < model_->columnCount(); ++column) {
        widths.append(header()->sectionSize(column));
    }
    LayoutMemory::instance().remember(layoutKey(), widths);
}

QString MultiColumnList::layoutKey() const {
    QByteArray captions;
    for (const table::TableColumn& column : table().columns) {
        captions += QByteArray::fromStdString(column.caption) + '\n';
    }
    return QStringLiteral("columns/%1.%2.%3")
        .arg(window()->objectName(), objectName())
        .arg(qChecksum(captions));
}

}  // namespace controls
