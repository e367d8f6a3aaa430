#pragma once

#include <QIcon>
#include <QPalette>
#include <QPixmap>

class QPainter;

namespace controls {

enum class Sign {
    Left,
    Right,
    Up,
    Down,
    ToTop,
    ToBottom,
    Calendar,
    Grip,
    // Marks that stand beside a colour.
    Warning,
    NoPlace,
    Unlike,
    Tick,
};

/// A small sign in a colour of the program's palette as it is at each painting, paler where its
/// button is disabled.
[[nodiscard]] QIcon signIcon(Sign sign, QPalette::ColorRole ink);

/// Draws a sign as large as fits into the middle of a rectangle.
void paintSign(QPainter& painter, const QRect& rect, Sign sign, const QColor& ink);

/// What a mark says, for those who do not see it; "" of the other signs.
[[nodiscard]] QString wordFor(Sign sign);

/// A mark beside a text of so many pixels line height.
[[nodiscard]] QPixmap markFor(Sign sign, const QColor& ink, int lineHeight);

/// The program's icon, a school bus, in the usual sizes.
[[nodiscard]] QIcon programIcon();

}  // namespace controls
