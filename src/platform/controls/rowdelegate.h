#pragma once

#include <QPalette>

#include "platform/controls/celldelegate.h"

class QPainter;

namespace controls {

class MultiColumnList;

/// The cells of a list. Where the list marks its rows, the chosen one has a bold first column and,
/// while it is selected, the accent colour even over red.
class RowDelegate : public CellDelegate {
    Q_OBJECT

public:
    explicit RowDelegate(MultiColumnList& list);

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    const MultiColumnList& list_;
};

struct RowMarks {
    bool chosen = false;
    bool selected = false;
    bool warns = false;
};

/// What stands in the gutter beside a row: triangle and warning.
void drawRowMarks(QPainter& painter, const QRect& gutter, const QPalette& palette,
                  const RowMarks& marks);
/// The focus on a row, inside its edge.
void drawRowFocus(QPainter& painter, const QRect& row, const QColor& ink);
/// Lets selected rows be shown by a light tint of the accent colour.
void tintSelection(QPalette& palette);

/// A triangle pointing right, the sign of the chosen row, on a square.
void drawChosenSign(QPainter& painter, const QRectF& square, const QColor& ink);
/// A warning triangle on a square; the sign in it has the colour of the ground.
void drawWarningSign(QPainter& painter, const QRectF& square, const QColor& ink,
                     const QColor& ground);

}  // namespace controls
