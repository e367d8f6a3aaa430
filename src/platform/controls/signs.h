#pragma once

#include <QIcon>
#include <QPalette>

class QPainter;

namespace controls {

enum class Sign { Left, Right, Up, Down, ToTop, ToBottom, Calendar, NoPlace, Grip };

/// A small sign in a colour of the palette, paler where its button is disabled.
[[nodiscard]] QIcon signIcon(Sign sign, const QPalette& palette, QPalette::ColorRole ink);

/// Draws a sign as large as fits into the middle of a rectangle.
void paintSign(QPainter& painter, const QRect& rect, Sign sign, const QColor& ink);

/// The program's icon, a school bus, in the usual sizes.
[[nodiscard]] QIcon programIcon();

}  // namespace controls
