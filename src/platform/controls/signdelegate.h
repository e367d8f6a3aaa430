#pragma once

#include "platform/controls/celldelegate.h"
#include "platform/controls/signs.h"

namespace controls {

/// Cells with a sign: beside their text, in quiet ink, or in place of a text that is there, in red
/// ink; then the text shows on hovering.
class SignDelegate : public CellDelegate {
    Q_OBJECT

public:
    enum class Place { BesideText, InsteadOfText };

    SignDelegate(Sign sign, Place place, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    [[nodiscard]] QColor inkOf(const QStyleOptionViewItem& option, const QModelIndex& index) const;

    Sign sign_;
    Place place_;
};

}  // namespace controls
