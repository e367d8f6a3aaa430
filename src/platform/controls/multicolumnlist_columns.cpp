#include <QApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/listheader.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/tablemodel.h"
#include "platform/controls/twips.h"

namespace controls {

namespace {

int contentWidth(const QAbstractItemView& list, int column) {
    return list.sizeHintForColumn(column);
}

/// What the style takes from a caption for the sort arrow beside it.
int arrowWidth(const QHeaderView& header) {
    return header.sizeHint().height() / 2 +
           2 * header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
}

/// With room for the sort arrow, where there is a caption and the arrow not above it.
int captionWidth(const MultiColumnList& list, int column) {
    const auto& header = *list.header();
    const bool arrow = list.headerSorts() && !list.twoLineCaptions() &&
                       !list.table().columns[static_cast<std::size_t>(column)].caption.empty();
    return header.sectionSizeHint(column) + (arrow ? arrowWidth(header) : 0);
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

/// The widest column of the list where it holds texts.
std::optional<int> widestOfTexts(const MultiColumnList& list) {
    const auto& columns = list.table().columns;
    const auto widest = std::ranges::max_element(columns, {}, &table::TableColumn::widthTwips);
    return widest == columns.end() || widest->kind != table::CellKind::Text
               ? std::nullopt
               : std::optional(static_cast<int>(widest - columns.begin()));
}

/// Below 0 where the columns are wider than the list.
int roomLeft(const MultiColumnList& list) {
    const int around = list.verticalScrollBar()->sizeHint().width() + 2 * list.frameWidth();
    return list.width() - around - list.header()->length();
}

/// Room that is left goes to the widest column of texts, up to what its texts take.
void widenForTexts(const MultiColumnList& list) {
    const auto widest = widestOfTexts(list);
    if (!widest) {
        return;
    }
    const int column = *widest;
    const int width = list.header()->sectionSize(column);
    const int left = std::max(roomLeft(list), 0);
    list.header()->resizeSection(column,
                                 std::clamp(contentWidth(list, column), width, width + left));
}

/// The widest column of texts gives what its texts leave free where that spares the list its bar,
/// and takes it back, and what its texts need, when there is room.
void spareBar(const MultiColumnList& list) {
    const auto widest = widestOfTexts(list);
    if (!widest || list.header()->isSectionHidden(*widest)) {
        return;
    }
    const int width = list.header()->sectionSize(*widest);
    const int given = fittingWidth(list, *widest);
    const int room = width + roomLeft(list);
    if (room == width) {
        return;
    }
    const int needed = std::max(contentWidth(list, *widest), captionWidth(list, *widest));
    const int wished = std::max(given, needed);
    if (room < width || width < wished) {
        list.header()->resizeSection(
            *widest, room < needed ? std::max(given, room) : std::min(room, wished));
    }
}

/// Calls a function whenever a widget gets another size.
class OnResize : public QObject {
public:
    OnResize(QWidget& watched, std::function<void()> call)
        : QObject(&watched), call_(std::move(call)) {
        watched.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize) {
            call_();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> call_;
};

/// What is hidden is remembered below 0.
int hiddenOrShown(int column, bool hidden) { return hidden ? -1 - column : column; }

}  // namespace

void MultiColumnList::showFirst(std::vector<std::string> names, int inSight) {
    shownFirst_ = std::move(names);
    captions_->holdFirst(inSight);
}

void MultiColumnList::wireHeader() {
    header()->setSectionsMovable(true);
    header()->setSectionsClickable(true);
    header()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header(), &QHeaderView::sectionClicked, this, &MultiColumnList::columnPressed);
    connect(header(), &QHeaderView::sectionResized, this, [this] { rememberWidths(); });
    new OnResize(*this, [this] {
        if (!twoLineCaptions_ &&
            LayoutMemory::instance().recall(layoutKey("columns")).toList().isEmpty()) {
            const QScopedValueRollback<bool> arranging(arranging_, true);
            spareBar(*this);
        }
    });
    connect(header(), &QHeaderView::sectionMoved, this,
            [this](int, int from, int to) { keepFixedFirst(from, to); });
    connect(header(), &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        if (const int column = header()->logicalIndexAt(at - QPoint(captions_->shiftAt(at.x()), 0));
            column >= 0) {
            QMenu menu(this);
            fillColumnMenu(menu, column);
            menu.exec(header()->viewport()->mapToGlobal(at));
        }
    });
}

/// Shift or Ctrl adds the column to those that the list is sorted by.
void MultiColumnList::columnPressed(int column) {
    const bool adds = (QApplication::keyboardModifiers() &
                       (Qt::ShiftModifier | Qt::ControlModifier)) != Qt::NoModifier;
    if (adds && sortsBySeveral()) {
        return addSort(column);
    }
    if (headerSorts_) {
        toggleSort(column);
    }
    emit columnClicked(column);
}

std::vector<int> MultiColumnList::columnOrder() const {
    std::vector<int> order;
    order.reserve(static_cast<std::size_t>(header()->count()));
    for (int place = 0; place < header()->count(); ++place) {
        order.push_back(header()->logicalIndex(place));
    }
    return order;
}

std::vector<std::size_t> MultiColumnList::shownColumns() const {
    std::vector<std::size_t> shown;
    for (const int column : columnOrder()) {
        if (!header()->isSectionHidden(column)) {
            shown.push_back(static_cast<std::size_t>(column));
        }
    }
    return shown;
}

bool MultiColumnList::isFixed(int column) const {
    return header()->visualIndex(column) < captions_->fixedColumns();
}

/// Nothing is dragged to or from where the columns in sight stand.
void MultiColumnList::keepFixedFirst(int from, int to) {
    if (arranging_) {
        return;
    }
    if (std::min(from, to) < captions_->fixedColumns()) {
        const QScopedValueRollback<bool> arranging(arranging_, true);
        header()->moveSection(to, from);
        return;
    }
    rememberArrangement();
}

void MultiColumnList::showColumn(int column, bool shown) {
    if (isFixed(column) || header()->isSectionHidden(column) != shown) {
        return;
    }
    if (!shown) {
        hiddenWidths_[column] = header()->sectionSize(column);
    }
    {
        const QScopedValueRollback<bool> arranging(arranging_, true);
        header()->setSectionHidden(column, !shown);
    }
    rememberArrangement();
    columnsChanged();
}

void MultiColumnList::orderColumns(const std::vector<int>& columns) {
    {
        const QScopedValueRollback<bool> arranging(arranging_, true);
        for (int place = 0; const int column : columns) {
            header()->moveSection(header()->visualIndex(column), place++);
        }
    }
    rememberArrangement();
    viewport()->update();
}

void MultiColumnList::resetColumns() {
    LayoutMemory::instance().remember(layoutKey("columns"), QVariantList());
    LayoutMemory::instance().remember(layoutKey("arrangement"), QVariantList());
    arrangeColumns();
    applyWidths();
    columnsChanged();
}

/// Words of a column that is not seen are not looked for.
void MultiColumnList::columnsChanged() {
    filter_.lookAt(shownColumns());
    if (isFiltered()) {
        arrangeRows();
    }
    emit filterChanged();
}

/// Those that stand first, then the others as the table has them.
std::vector<int> MultiColumnList::givenOrder() const {
    std::vector<int> order;
    for (const auto& name : shownFirst_) {
        order.push_back(static_cast<int>(table().columnOf(name)));
    }
    for (int column = 0; column < model_->columnCount(); ++column) {
        if (std::ranges::find(order, column) == order.end()) {
            order.push_back(column);
        }
    }
    return order;
}

void MultiColumnList::arrangeColumns() {
    if (table().columns.empty()) {
        return;
    }
    const QScopedValueRollback<bool> arranging(arranging_, true);
    for (const auto& [name, delegate] : delegates_) {
        setItemDelegateForColumn(static_cast<int>(table().columnOf(name)), delegate);
    }
    auto order = givenOrder();
    const auto remembered = LayoutMemory::instance().recall(layoutKey("arrangement")).toList();
    const bool isWhole = remembered.size() == static_cast<qsizetype>(order.size());
    for (int place = 0; place < static_cast<int>(order.size()); ++place) {
        const int kept =
            isWhole ? remembered[place].toInt() : order[static_cast<std::size_t>(place)];
        const int column = std::clamp(kept < 0 ? -1 - kept : kept, 0, header()->count() - 1);
        header()->moveSection(header()->visualIndex(column), place);
        header()->setSectionHidden(column, kept < 0);
    }
}

void MultiColumnList::applyWidths() {
    const QScopedValueRollback<bool> arranging(arranging_, true);
    widthsFitRows_ = rowsInAll() > 0;
    const QVariantList remembered = LayoutMemory::instance().recall(layoutKey("columns")).toList();
    for (int column = 0; column < model_->columnCount(); ++column) {
        const int width =
            column < remembered.size() ? remembered[column].toInt() : fittingWidth(*this, column);
        hiddenWidths_[column] = width;
        header()->resizeSection(column, width);
    }
    if (remembered.isEmpty()) {
        twoLineCaptions_ ? widenForTexts(*this) : spareBar(*this);
    }
}

void MultiColumnList::rememberWidths() {
    if (arranging_ || model_->columnCount() == 0) {
        return;
    }
    QVariantList widths;
    for (int column = 0; column < model_->columnCount(); ++column) {
        widths.append(header()->isSectionHidden(column) ? hiddenWidths_[column]
                                                        : header()->sectionSize(column));
    }
    LayoutMemory::instance().remember(layoutKey("columns"), widths);
}

void MultiColumnList::rememberArrangement() {
    QVariantList arrangement;
    for (const int column : columnOrder()) {
        arrangement.append(hiddenOrShown(column, header()->isSectionHidden(column)));
    }
    LayoutMemory::instance().remember(layoutKey("arrangement"), arrangement);
}

QString MultiColumnList::layoutKey(const char* what) const {
    QByteArray captions;
    for (const table::TableColumn& column : table().columns) {
        captions += QByteArray::fromStdString(column.caption) + '\n';
    }
    return QStringLiteral("%1/%2.%3.%4")
        .arg(QLatin1String(what), window()->objectName(), objectName())
        .arg(qChecksum(captions));
}

}  // namespace controls
