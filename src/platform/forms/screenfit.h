#pragma once

#include <QRect>

class QWidget;

namespace forms {

/// Where a window's contents may lie so that its whole frame is on its screen, clear of panels; in
/// pixels. A frame that is not known yet is reckoned generously.
[[nodiscard]] QRect roomOnScreen(const QWidget& window);

/// Moves, and where it must shrinks, a window so that title bar, frame and buttons are on its
/// screen.
void fitToScreen(QWidget& window);

}  // namespace forms
