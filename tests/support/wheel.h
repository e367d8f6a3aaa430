#pragma once

#include <QApplication>
#include <QWheelEvent>

namespace support {

/// Turns the wheel over a point of a widget; so many notches away from the planner.
inline void turnWheel(QWidget& over, QPointF at, int notches, Qt::KeyboardModifiers with = {}) {
    QWheelEvent turned(at, over.mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, with,
                       Qt::NoScrollPhase, false);
    QApplication::sendEvent(&over, &turned);
}

}  // namespace support
