#include "platform/controls/signdelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "platform/controls/tones.h"

namespace controls {

SignDelegate::SignDelegate(Sign sign, Place place, QObject* parent)
    : CellDelegate(parent), sign_(sign), place_(place) {}

void SignDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    CellDelegate::initStyleOption(option, index);
    if (place_ == Place::InsteadOfText) {
        option->text.clear();
    }
}

QColor SignDelegate::inkOf(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    if (index.data(RedRole).toBool()) {
        return selected ? Qt::white : Qt::black;
    }
    if (selected) {
        return option.palette.color(QPalette::HighlightedText);
    }
    return place_ == Place::BesideText ? option.palette.color(QPalette::PlaceholderText)
                                       : controls::inkOf(Tone::Wrong, option.palette);
}

void SignDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    CellDelegate::paint(painter, option, index);
    if (place_ == Place::InsteadOfText && index.data().toString().trimmed().isEmpty()) {
        return;
    }
    const int side = option.fontMetrics.height();
    QRect rect = option.rect;
    if (place_ == Place::BesideText) {
        rect.setWidth(side + 4);
    }
    rect.setHeight(std::min(side, rect.height()));
    rect.moveTop(option.rect.top() + (option.rect.height() - rect.height()) / 2);
    paintSign(*painter, rect, sign_, inkOf(option, index));
}

QSize SignDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto hint = CellDelegate::sizeHint(option, index);
    return {hint.width() + option.fontMetrics.height(), hint.height()};
}

bool SignDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || place_ == Place::BesideText) {
        return CellDelegate::helpEvent(event, view, option, index);
    }
    QToolTip::showText(event->globalPos(), index.data().toString().trimmed(), view);
    return true;
}

}  // namespace controls
