#pragma once

#include <QColor>
#include <QPalette>

namespace runedit {

/// Colours that say "look" (amber) and "this will be wrong" (red), readable on their grounds.
struct Inks {
    QColor red;
    QColor amber;
    QColor amberGround;
};

/// Those of the palette's scheme, light or dark.
[[nodiscard]] inline Inks inksOf(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    return dark ? Inks{QColor("#ff8a85"), QColor("#ffc46b"), QColor("#3a2f1a")}
                : Inks{QColor("#b3151b"), QColor("#8a5300"), QColor("#fff3d6")};
}

}  // namespace runedit
