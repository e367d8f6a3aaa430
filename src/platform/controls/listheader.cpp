#include "platform/controls/listheader.h"

#include <QFontInfo>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>
#include <cstdlib>
#include <utility>

namespace controls {

ListHeader::ListHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

void ListHeader::setTwoLines(bool on) {
    twoLines_ = on;
    headerDataChanged(Qt::Horizontal, 0, std::max(count() - 1, 0));
}

void ListHeader::setGutter(int pixels) {
    gutter_ = pixels;
    viewport()->update();
}

void ListHeader::showSorting(std::vector<table::SortBy> sorting) {
    sorting_ = std::move(sorting);
    setSortIndicatorShown(!sorting_.empty());
    if (!sorting_.empty()) {
        setSortIndicator(static_cast<int>(sorting_.front().column),
                         sorting_.front().descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
    viewport()->update();
}

int ListHeader::turnOf(int logicalIndex) const {
    const auto at =
        std::ranges::find(sorting_, static_cast<std::size_t>(logicalIndex), &table::SortBy::column);
    return at == sorting_.end() ? -1 : static_cast<int>(at - sorting_.begin());
}

/// "Time To Use" is "Time", "To Use".
QString ListHeader::captionOf(int logicalIndex) const {
    QString caption = model()->headerData(logicalIndex, Qt::Horizontal).toString();
    const auto blank = caption.indexOf(QLatin1Char(' '));
    if (twoLines_ && blank > 0 && caption != QLatin1String("Run ID")) {
        caption[blank] = QLatin1Char('\n');
    }
    return caption;
}

QSize ListHeader::sectionSizeFromContents(int logicalIndex) const {
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    option.section = logicalIndex;
    option.text = captionOf(logicalIndex);
    option.sortIndicator = QStyleOptionHeader::None;
    const QSize size = style()->sizeFromContents(QStyle::CT_HeaderSection, &option, {}, this);
    return {size.width() + (logicalIndex == 0 ? gutter_ : 0), size.height()};
}

void ListHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const {
    QHeaderView::initStyleOptionForIndex(option, logicalIndex);
    option->text = captionOf(logicalIndex);
    if (twoLines_) {
        option->sortIndicator = QStyleOptionHeader::None;  // it stands above the caption
    }
}

void ListHeader::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const {
    const bool first = logicalIndex == 0 && gutter_ > 0;
    const QRect captioned = first ? rect.adjusted(gutter_, 0, 0, 0) : rect;
    painter->save();  // the style leaves nothing to paint on
    QHeaderView::paintSection(painter, captioned, logicalIndex);
    painter->restore();
    QStyleOptionHeaderV2 part;
    initStyleOption(&part);
    if (first) {
        part.rect = {rect.left(), rect.top(), gutter_, rect.height()};
        style()->drawControl(QStyle::CE_HeaderSection, &part, painter, this);
    }
    if (const int turn = turnOf(logicalIndex); turn >= 0) {
        if (twoLines_ || turn > 0) {
            paintArrow(*painter, captioned, turn);
        }
        if (sorting_.size() > 1) {
            paintTurn(*painter, captioned, turn);
        }
    }
}

/// Above the caption.
void ListHeader::paintArrow(QPainter& painter, QRect caption, int turn) const {
    QStyleOptionHeaderV2 part;
    initStyleOption(&part);
    caption.setHeight(fontMetrics().height() / 2);
    part.rect = caption;
    part.sortIndicator = sorting_[static_cast<std::size_t>(turn)].descending
                             ? QStyleOptionHeader::SortUp
                             : QStyleOptionHeader::SortDown;
    style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &part, &painter, this);
}

void ListHeader::paintTurn(QPainter& painter, const QRect& caption, int turn) const {
    constexpr qreal SmallFigure = 0.75;
    constexpr int FromEdge = 3;
    painter.save();
    QFont small = font();
    small.setPointSizeF(QFontInfo(small).pointSizeF() * SmallFigure);
    painter.setFont(small);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(caption.adjusted(0, 0, -FromEdge, 0), Qt::AlignRight | Qt::AlignTop,
                     QString::number(turn + 1));
    painter.restore();
}

int ListHeader::widthOfFirst(int columns) const {
    int width = 0;
    for (int place = 0; place < std::min(columns, count()); ++place) {
        width += sectionSize(logicalIndex(place));
    }
    return width;
}

int ListHeader::heldColumns() const {
    const bool leaveRoom = widthOfFirst(held_) * 2 <= viewport()->width();
    return leaveRoom && !isRightToLeft() ? std::min(held_, count()) : 0;
}

bool ListHeader::holds(int logicalIndex) const { return visualIndex(logicalIndex) < heldColumns(); }

int ListHeader::heldWidth() const { return offset() == 0 ? 0 : widthOfFirst(heldColumns()); }

void ListHeader::paintEvent(QPaintEvent* event) {
    QHeaderView::paintEvent(event);
    if (heldWidth() == 0) {
        return;
    }
    QPainter painter(viewport());
    for (int place = 0; place < heldColumns(); ++place) {
        const int column = logicalIndex(place);
        painter.save();
        paintSection(&painter, {sectionPosition(column), 0, sectionSize(column), height()}, column);
        painter.restore();
    }
}

/// The column of those that hold their place whose edge is there; -1 without one. The toolkit knows
/// no edge left of where the others begin.
int ListHeader::heldEdgeAt(int x) const {
    const int grip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
    for (int columns = heldWidth() > 0 ? heldColumns() : 0; columns > 0; --columns) {
        if (std::abs(x - widthOfFirst(columns)) <= grip) {
            return logicalIndex(columns - 1);
        }
    }
    return -1;
}

/// Whether an edge that is held took the event.
bool ListHeader::dragsHeldEdge(const QMouseEvent& event) {
    const int x = qRound(event.position().x());
    const int edge = heldEdgeAt(x);
    switch (event.type()) {
        case QEvent::MouseButtonPress:
            dragged_ = event.button() == Qt::LeftButton ? edge : -1;
            grownFrom_ = dragged_ < 0 ? 0 : sectionSize(dragged_) - x;
            return dragged_ >= 0;
        case QEvent::MouseButtonDblClick:
            if (edge >= 0) {
                emit sectionHandleDoubleClicked(edge);
            }
            return edge >= 0;
        case QEvent::MouseButtonRelease:
            return std::exchange(dragged_, -1) >= 0;
        default:
            break;
    }
    if (dragged_ >= 0) {
        resizeSection(dragged_, std::max(minimumSectionSize(), grownFrom_ + x));
    } else if (edge >= 0 && event.buttons() == Qt::NoButton) {
        setCursor(Qt::SplitHCursor);
    }
    return dragged_ >= 0 || (edge >= 0 && event.buttons() == Qt::NoButton);
}

/// What began on a column that holds its place stays there.
int ListHeader::shiftOf(const QMouseEvent& event) {
    if (event.type() == QEvent::MouseButtonPress || event.buttons() == Qt::NoButton) {
        pressedShift_ = shiftAt(qRound(event.position().x()));
    }
    return pressedShift_;
}

bool ListHeader::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease: {
            const auto& mouse = static_cast<const QMouseEvent&>(*event);
            if (dragsHeldEdge(mouse)) {
                return true;
            }
            if (event->type() == QEvent::MouseMove && heldWidth() > 0) {
                unsetCursor();
            }
            const bool ends = event->type() == QEvent::MouseButtonRelease;
            const int shift = ends ? pressedShift_ : shiftOf(mouse);
            QMouseEvent there(mouse.type(), mouse.position() - QPointF(shift, 0),
                              mouse.scenePosition(), mouse.globalPosition(), mouse.button(),
                              mouse.buttons(), mouse.modifiers(), mouse.pointingDevice());
            return QHeaderView::viewportEvent(&there);
        }
        default:
            return QHeaderView::viewportEvent(event);
    }
}

}  // namespace controls
