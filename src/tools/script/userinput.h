#pragma once

#include <QPoint>
#include <QString>
#include <Qt>

class QWidget;

namespace script {

/// What a user does with mouse and keyboard, as events to a control.

/// Moves the focus to the control as a click or Tab would; its window becomes active.
void focus(QWidget& control);
/// Moves the focus away from the control, as a click somewhere else would.
void leave(QWidget& control);
void pressKey(QWidget& control, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
              const QString& text = {});
void typeText(QWidget& control, const QString& text);
void clickAt(QWidget& control, const QPoint& place,
             Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void doubleClickAt(QWidget& control, const QPoint& place);

/// Lets the toolkit handle everything that waits.
void settle();

}  // namespace script
