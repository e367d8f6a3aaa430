#pragma once

class QWidget;

namespace controls {

/// Gives an input field the red background of one that was refused, or its own look again.
void showRefused(QWidget& control, bool refused);

}  // namespace controls
