#include "platform/controls/tones.h"

namespace controls {

namespace {

bool isDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

}  // namespace

QColor inkOf(Tone tone, const QPalette& palette) {
    switch (tone) {
        case Tone::Look:
            return isDark(palette) ? "#ffc46b" : "#8a5300";
        case Tone::Wrong:
            return isDark(palette) ? "#ff8a85" : "#b3151b";
        case Tone::Plain:
            break;
    }
    return palette.color(QPalette::WindowText);
}

QColor groundOf(Tone tone, const QPalette& palette) {
    switch (tone) {
        case Tone::Look:
            return isDark(palette) ? "#3a2f1a" : "#fff3d6";
        case Tone::Wrong:
            return isDark(palette) ? "#40211f" : "#fdeaea";
        case Tone::Plain:
            break;
    }
    return palette.color(QPalette::Window);
}

}  // namespace controls
