#pragma once

#include <QCache>
#include <QFont>
#include <QStaticText>
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

private:
    void drawText(QPainter& painter, const QStyleOptionViewItem& cell, const QString& text) const;
    [[nodiscard]] const QStaticText& shaped(const QString& text, const QFont& font) const;

    /// Texts as they are drawn: a list shows the same few over and over as it scrolls.
    mutable QCache<QString, QStaticText> shaped_{3000};
    mutable QFont font_;
};

}  // namespace controls
