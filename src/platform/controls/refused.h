#pragma once

class QColor;
class QPainter;
class QRect;
class QWidget;

namespace controls {

/// Gives an input field the red background, the edge and the mark of one that was refused, or its
/// own look again. Looks that are not the program's own show the background only.
void showRefused(QWidget& control, bool refused);
[[nodiscard]] bool isRefused(const QWidget& control);

/// A warning triangle that fills a square.
void drawWarning(QPainter& painter, const QRect& square, const QColor& ink);

}  // namespace controls
