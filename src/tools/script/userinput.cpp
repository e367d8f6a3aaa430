#include "tools/script/userinput.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace script {

namespace {

void sendMouse(QWidget& control, QEvent::Type type, const QPoint& place, Qt::MouseButtons held,
               Qt::KeyboardModifiers modifiers) {
    QMouseEvent event(type, place, control.mapToGlobal(QPointF(place)), Qt::LeftButton, held,
                      modifiers);
    QApplication::sendEvent(&control, &event);
}

}  // namespace

void focus(QWidget& control) {
    control.window()->activateWindow();
    settle();
    control.setFocus(Qt::TabFocusReason);
}

void leave(QWidget& control) {
    control.clearFocus();
    settle();
}

void pressKey(QWidget& control, int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(&control, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(&control, &release);
}

void typeText(QWidget& control, const QString& text) {
    for (const QChar letter : text) {
        const int key = letter == '\n' ? int{Qt::Key_Return} : letter.toUpper().unicode();
        pressKey(control, key, Qt::NoModifier, letter);
    }
}

void clickAt(QWidget& control, const QPoint& place, Qt::KeyboardModifiers modifiers) {
    sendMouse(control, QEvent::MouseButtonPress, place, Qt::LeftButton, modifiers);
    sendMouse(control, QEvent::MouseButtonRelease, place, Qt::NoButton, modifiers);
    QEvent away(QEvent::Leave);
    QApplication::sendEvent(&control, &away);
}

void doubleClickAt(QWidget& control, const QPoint& place) {
    clickAt(control, place);
    sendMouse(control, QEvent::MouseButtonDblClick, place, Qt::LeftButton, Qt::NoModifier);
    sendMouse(control, QEvent::MouseButtonRelease, place, Qt::NoButton, Qt::NoModifier);
}

void settle() {
    constexpr int Turns = 4;
    for (int turn = 0; turn < Turns; ++turn) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace script
