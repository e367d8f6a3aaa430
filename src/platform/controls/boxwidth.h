#pragma once

#include <QLineEdit>
#include <algorithm>

namespace controls {

/// The size of a box that shows the text, or its own hint, uncut in the font in use. `oneLetter` is
/// the least size that the toolkit gives it.
inline QSize sizeForText(const QLineEdit& box, const QSize& oneLetter, const QString& text) {
    const QFontMetrics metrics = box.fontMetrics();
    const int edges = oneLetter.width() - metrics.maxWidth() + metrics.height() / 2;
    return {edges + std::max(metrics.horizontalAdvance(text),
                             metrics.horizontalAdvance(box.placeholderText())),
            oneLetter.height()};
}

}  // namespace controls
