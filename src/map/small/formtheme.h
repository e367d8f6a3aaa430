#pragma once

#include <QPalette>

#include "map/drawing/theme.h"

namespace map {

/// The colours of a map in a form: light or dark, of high contrast or not, as the form is.
[[nodiscard]] const Theme& themeOf(const QPalette& palette);

}  // namespace map
