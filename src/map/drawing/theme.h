#pragma once

#include <QColor>
#include <array>
#include <cstdint>

#include "streets/base/streetmap.h"

namespace map {

struct StreetColours {
    QColor fill;
    QColor casing;
};

/// The colours of a map. Printing takes the light ones.
struct Theme {
    static constexpr int RunColours = 8;

    QColor ground;
    std::array<QColor, 8> areas;  ///< by GroundKind
    std::array<StreetColours, streets::StreetClasses> streets;
    QColor streetName, streetNameHalo;
    QColor parkName, waterName;
    QColor way, wayCasing, oldWay, emptyWay;
    QColor walk, crossingWalk;
    QColor warning, onWarning;
    QColor bus;
    QColor school, garage, onPlace;
    QColor candidate;
    QColor plate, plateInk, plateFrame;
    std::array<QColor, RunColours> runs;
    QColor onRun;  ///< figures on a run's colour
    QColor veil;
    double wayMore = 0;  ///< so many pixels the ways are broader

    [[nodiscard]] const StreetColours& of(streets::StreetClass kind) const {
        return streets[static_cast<std::size_t>(kind)];
    }
    [[nodiscard]] QColor run(int colour) const;
};

[[nodiscard]] const Theme& lightTheme();
[[nodiscard]] const Theme& darkTheme();

enum class Contrast : std::uint8_t { Usual, High };

/// What fits a form's colours. In high contrast streets and names stand black on white or the
/// other way round, ways are broader, and nothing becomes pale.
[[nodiscard]] const Theme& themeFor(bool isDark, Contrast contrast);

}  // namespace map
