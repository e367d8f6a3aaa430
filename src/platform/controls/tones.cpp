#include "platform/controls/tones.h"

#include <array>

namespace controls {

namespace {

/// In light and in dark, and the same in high contrast.
using Shades = std::array<const char*, 4>;

constexpr Shades LookInk{"#8a5300", "#ffc46b", "#5c3700", "#ffd58a"};
constexpr Shades WrongInk{"#b3151b", "#ff8a85", "#8b0000", "#ffb3b0"};
constexpr Shades LookGround{"#fff3d6", "#3a2f1a", "#ffffff", "#000000"};
constexpr Shades WrongGround{"#fdeaea", "#40211f", "#ffffff", "#000000"};

QColor shade(const Shades& shades, const QPalette& palette) {
    return shades.at((isDark(palette) ? 1U : 0U) + (isHighContrast(palette) ? 2U : 0U));
}

}  // namespace

bool isDark(const QPalette& palette) {
    constexpr int HalfLight = 128;
    return palette.color(QPalette::Active, QPalette::Window).lightness() < HalfLight;
}

/// Its lines are as strong as its texts.
bool isHighContrast(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::Mid) ==
           palette.color(QPalette::Active, QPalette::WindowText);
}

QColor focusInk(const QPalette& palette) {
    constexpr int Lighter = 135;
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    return isDark(palette) && !isHighContrast(palette) ? accent.lighter(Lighter) : accent;
}

QColor inkOf(Tone tone, const QPalette& palette) {
    switch (tone) {
        case Tone::Look:
            return shade(LookInk, palette);
        case Tone::Wrong:
            return shade(WrongInk, palette);
        case Tone::Plain:
            break;
    }
    return palette.color(QPalette::WindowText);
}

QColor groundOf(Tone tone, const QPalette& palette) {
    switch (tone) {
        case Tone::Look:
            return shade(LookGround, palette);
        case Tone::Wrong:
            return shade(WrongGround, palette);
        case Tone::Plain:
            break;
    }
    return palette.color(QPalette::Window);
}

}  // namespace controls
