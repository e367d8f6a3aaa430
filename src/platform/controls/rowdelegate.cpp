#include "platform/controls/rowdelegate.h"

#include <QPainter>
#include <QPainterPath>

#include "platform/controls/multicolumnlist.h"
#include "platform/controls/tones.h"

namespace controls {

namespace {

const QColor Red(255, 0, 0);
const QColor SelectedRed(176, 0, 0);

QColor mixed(const QColor& a, const QColor& b, qreal share) {
    const auto part = [share](int x, int y) { return qRound(x + (y - x) * share); };
    return {part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue())};
}

/// Fills shapes drawn on a square of 16 units.
void fill(QPainter& painter, const QRectF& square, const QColor& ink, const QPainterPath& path) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / 16, square.height() / 16);
    painter.fillPath(path, ink);
    painter.restore();
}

QPainterPath polygon(const QPolygonF& corners) {
    QPainterPath path;
    path.addPolygon(corners);
    path.closeSubpath();
    return path;
}

}  // namespace

RowDelegate::RowDelegate(MultiColumnList& list) : CellDelegate(&list), list_(list) {}

void RowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    const bool chosen = list_.marksRows() && index.row() == list_.chosenRow();
    if (chosen && option->state.testFlag(QStyle::State_Selected)) {
        // Not the red of a row: the accent shows alone.
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QStyledItemDelegate::initStyleOption(option, index);
    } else {
        CellDelegate::initStyleOption(option, index);
    }
    if (chosen && index.column() == 0) {
        option->font.setBold(true);
    }
}

void drawRowMarks(QPainter& painter, const QRect& gutter, const QPalette& palette,
                  const RowMarks& marks) {
    constexpr qreal SideInLines = 0.62;
    QColor ground = palette.color(QPalette::Base);
    QColor ink = palette.color(marks.chosen && marks.selected ? QPalette::HighlightedText
                                                              : QPalette::Highlight);
    if (marks.warns) {
        ground = marks.selected ? SelectedRed : Red;
        ink = marks.selected ? Qt::white : Qt::black;
        painter.fillRect(gutter, ground);
    }
    const qreal side = painter.fontMetrics().height() * SideInLines;
    const qreal top = gutter.top() + (gutter.height() - side) / 2;
    const qreal gap = (gutter.width() - 2 * side) / 3;
    if (marks.chosen) {
        drawChosenSign(painter, {gutter.left() + gap, top, side, side}, ink);
    }
    if (marks.warns) {
        drawWarningSign(painter, {gutter.left() + 2 * gap + side, top, side, side}, ink, ground);
    }
}

void drawRowFocus(QPainter& painter, const QRect& row, const QColor& ink) {
    constexpr int Width = 2;
    painter.save();
    painter.setPen(QPen(ink, Width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(row).adjusted(1, 1, -1, -1));
    painter.restore();
}

void tintSelection(QPalette& palette) {
    constexpr qreal OnLight = 0.195;
    constexpr qreal OnDark = 0.43;
    constexpr qreal Strong = 0.3;
    const QColor base = palette.color(QPalette::Base);
    const QColor accent = palette.color(QPalette::Highlight);
    const qreal share = isHighContrast(palette) ? Strong : isDark(palette) ? OnDark : OnLight;
    palette.setColor(QPalette::Highlight, mixed(base, accent, share));
    palette.setColor(QPalette::HighlightedText, palette.color(QPalette::Text));
}

void drawChosenSign(QPainter& painter, const QRectF& square, const QColor& ink) {
    fill(painter, square, ink, polygon({{3, 1}, {14, 8}, {3, 15}}));
}

void drawWarningSign(QPainter& painter, const QRectF& square, const QColor& ink,
                     const QColor& ground) {
    fill(painter, square, ink, polygon({{8, 0}, {16, 15}, {0, 15}}));
    QPainterPath sign;
    sign.addRect(7, 5, 2, 5);
    sign.addRect(7, 11.5, 2, 2);
    fill(painter, square, ground, sign);
}

}  // namespace controls
