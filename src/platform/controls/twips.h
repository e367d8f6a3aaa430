#pragma once

#include <QFontMetrics>
#include <QWidget>

namespace controls {

/// The pixels of a width in twips (15 to a pixel at the size the widths were meant for, where a
/// line of text is 13 pixels high), grown or shrunk with the widget's font.
[[nodiscard]] inline int pixelsOf(int twips, const QWidget& widget) {
    constexpr int TwipsPerPixel = 15;
    constexpr int MeantLineHeight = 13;
    return twips * QFontMetrics(widget.font()).height() / (TwipsPerPixel * MeantLineHeight);
}

}  // namespace controls
