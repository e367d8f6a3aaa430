#pragma once

#include <QColor>
#include <QPalette>
#include <array>

namespace schedule {

/// What a zone's bars are painted with: with words in them, their outline, and without words.
struct ZoneColours {
    QColor fill;
    QColor edge;
    QColor solid;
};

/// The schedule's colours. Zones differ from their neighbours in lightness, so that they are told
/// apart without a sense of colour; red and amber stand for problems alone.
struct Colours {
    std::array<ZoneColours, 5> zones;
    ZoneColours noZone;
    QColor words, ground, oddRow, heads, grid, hours, frame;
    QColor soft, idle, emptyTrip;
    QColor red, onRed, redWords;
    QColor amber, amberLine, onAmber;
    QColor accent, accentFill;
    QColor curve, curveOut;

    /// Those that follow the fifth begin again with the first one, darker.
    [[nodiscard]] ZoneColours zone(int place) const;
};

/// For a form's palette, light or dark or of high contrast.
[[nodiscard]] const Colours& coloursFor(const QPalette& palette);
[[nodiscard]] const Colours& coloursOfPaper();

}  // namespace schedule
