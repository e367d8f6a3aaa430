#pragma once

#include <QLineEdit>

namespace controls {

/// Goes into a box by a key, ready to type over what is in it.
inline void focusAll(QLineEdit& box) {
    box.setFocus(Qt::ShortcutFocusReason);
    box.selectAll();
}

}  // namespace controls
