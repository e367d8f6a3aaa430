#pragma once

#include <QColor>
#include <QPalette>

namespace controls {

/// What a text or a mark is to its reader.
enum class Tone { Plain, Look, Wrong };

/// What kind of look a palette is of.
[[nodiscard]] bool isDark(const QPalette& palette);
[[nodiscard]] bool isHighContrast(const QPalette& palette);

/// The accent as it is seen on every ground, for the ring around what has the focus.
[[nodiscard]] QColor focusInk(const QPalette& palette);

/// The ink of a tone, and the ground that it stands on, for any look.
[[nodiscard]] QColor inkOf(Tone tone, const QPalette& palette);
[[nodiscard]] QColor groundOf(Tone tone, const QPalette& palette);

}  // namespace controls
