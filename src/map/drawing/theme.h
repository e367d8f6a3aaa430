#pragma once

#include <QColor>
#include <array>

#include "streets/base/streetmap.h"

namespace map {

struct StreetColours {
    QColor fill;
    QColor casing;
};

/// The colours of a map. Printing takes the light ones.
struct Theme {
    static constexpr int RunColours = 8;

    bool isDark = false;
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

    [[nodiscard]] const StreetColours& of(streets::StreetClass kind) const {
        return streets[static_cast<std::size_t>(kind)];
    }
    [[nodiscard]] QColor run(int colour) const;
};

[[nodiscard]] const Theme& lightTheme();
[[nodiscard]] const Theme& darkTheme();

}  // namespace map
