#include "platform/controls/celldelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace controls {

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    if (index.data(RedRole).toBool()) {
        painter->fillRect(QRect(option.rect.bottomLeft(), QSize(option.rect.width(), 1)),
                          QColor(0, 0, 0, 70));
    }
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
