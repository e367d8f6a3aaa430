#include "platform/controls/listheader.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

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
    if (twoLines_ && isSortIndicatorShown() && sortIndicatorSection() == logicalIndex) {
        part.rect = {captioned.left(), rect.top(), captioned.width(), fontMetrics().height() / 2};
        part.sortIndicator = sortIndicatorOrder() == Qt::AscendingOrder
                                 ? QStyleOptionHeader::SortDown
                                 : QStyleOptionHeader::SortUp;
        style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &part, painter, this);
    }
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

/// A drag stays where it began. Their edge belongs to the columns that hold their place.
int ListHeader::shiftOf(const QMouseEvent& event) {
    if (event.type() == QEvent::MouseButtonPress || event.buttons() == Qt::NoButton) {
        const int grip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
        draggedFrom_ = shiftAt(qRound(event.position().x()) - grip);
    }
    return draggedFrom_;
}

bool ListHeader::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease: {
            const auto& mouse = static_cast<const QMouseEvent&>(*event);
            const bool ends = event->type() == QEvent::MouseButtonRelease;
            const int shift = ends ? draggedFrom_ : shiftOf(mouse);
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
