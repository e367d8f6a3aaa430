#include "platform/controls/listheader.h"

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
    QHeaderView::paintSection(painter, captioned, logicalIndex);
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

}  // namespace controls
