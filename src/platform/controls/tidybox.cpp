#include "platform/controls/tidybox.h"

#include <QKeyEvent>

namespace controls {

void TidyBox::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason) {
        tidy();
    }
    QLineEdit::focusOutEvent(event);
}

void TidyBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        tidy();
    }
    QLineEdit::keyPressEvent(event);
}

}  // namespace controls
