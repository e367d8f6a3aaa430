#pragma once

#include <QColor>
#include <QPalette>

namespace controls {

/// What a text or a mark is to its reader.
enum class Tone { Plain, Look, Wrong };

/// The ink of a tone, and the ground that it stands on, in light and in dark.
[[nodiscard]] QColor inkOf(Tone tone, const QPalette& palette);
[[nodiscard]] QColor groundOf(Tone tone, const QPalette& palette);

}  // namespace controls
