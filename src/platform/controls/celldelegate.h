#pragma once

#include <QStyledItemDelegate>

namespace controls {

/// The role under which a model says whether a cell is red (a bool).
inline constexpr int RedRole = Qt::UserRole + 1;

/// Red cells are pure red under black text, and still red where they are selected. Texts that do
/// not fit show whole on hovering.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace controls
