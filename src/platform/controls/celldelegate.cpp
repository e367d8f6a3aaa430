#include "platform/controls/celldelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <utility>

namespace controls {

namespace {

/// One line of text and nothing beside it, in the font of its list.
bool isPlainText(const QStyleOptionViewItem& cell) {
    constexpr QStyleOptionViewItem::ViewItemFeatures More =
        QStyleOptionViewItem::HasDecoration | QStyleOptionViewItem::HasCheckIndicator |
        QStyleOptionViewItem::WrapText;
    return cell.widget != nullptr && (cell.features & More) == 0 &&
           !cell.state.testFlag(QStyle::State_HasFocus) && cell.direction == Qt::LeftToRight &&
           cell.font == cell.widget->font() && !cell.text.contains(QChar::LineSeparator);
}

QColor inkOf(const QStyleOptionViewItem& cell) {
    const auto group = !cell.state.testFlag(QStyle::State_Enabled)  ? QPalette::Disabled
                       : !cell.state.testFlag(QStyle::State_Active) ? QPalette::Inactive
                                                                    : QPalette::Normal;
    return cell.palette.color(group, cell.state.testFlag(QStyle::State_Selected)
                                         ? QPalette::HighlightedText
                                         : QPalette::Text);
}

}  // namespace

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = isPlainText(cell) ? std::exchange(cell.text, {}) : QString();
    if (!text.isEmpty()) {
        cell.features.setFlag(QStyleOptionViewItem::HasDisplay, false);
    }
    const QStyle& style = cell.widget != nullptr ? *cell.widget->style() : *QApplication::style();
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    drawText(*painter, cell, text);
    if (index.data(RedRole).toBool()) {
        painter->fillRect(QRect(option.rect.bottomLeft(), QSize(option.rect.width(), 1)),
                          QColor(0, 0, 0, 70));
    }
}

/// Where the style would draw it, but without shaping it three times.
void CellDelegate::drawText(QPainter& painter, const QStyleOptionViewItem& cell,
                            const QString& text) const {
    if (text.isEmpty()) {
        return;
    }
    const int margin =
        cell.widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
    const QRect room = cell.rect.adjusted(margin, 0, -margin, 0);
    const QStaticText* line = &shaped(text, cell.font);
    if (line->size().width() > room.width()) {
        line =
            &shaped(cell.fontMetrics.elidedText(text, cell.textElideMode, room.width()), cell.font);
    }
    const QSize size(qCeil(line->size().width()), qCeil(line->size().height()));
    const QRect place = QStyle::alignedRect(cell.direction, cell.displayAlignment, size, room);
    painter.save();
    painter.setFont(cell.font);
    painter.setPen(inkOf(cell));
    painter.drawStaticText(place.topLeft(), *line);
    painter.restore();
}

const QStaticText& CellDelegate::shaped(const QString& text, const QFont& font) const {
    if (font != font_) {
        shaped_.clear();
        font_ = font;
    }
    QStaticText* kept = shaped_.object(text);
    if (kept == nullptr) {
        kept = new QStaticText(text);
        kept->setTextFormat(Qt::PlainText);
        kept->prepare({}, font);
        shaped_.insert(text, kept);
    }
    return *kept;
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
    const bool cut = sizeHint(option, index).width() > view->visualRect(index).width();
    if (event->type() != QEvent::ToolTip || !cut) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QToolTip::showText(event->globalPos(), index.data().toString(), view);
    return true;
}

void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (!index.data(RedRole).toBool()) {
        return;
    }
    option->backgroundBrush = QColor(255, 0, 0);
    option->palette.setColor(QPalette::Text, Qt::black);
    option->palette.setColor(QPalette::Highlight, QColor(150, 0, 0));
    option->palette.setColor(QPalette::HighlightedText, Qt::white);
}

}  // namespace controls
