#pragma once

#include <QIcon>
#include <QPalette>

namespace stops {

enum class Arrow { Left, Right, Up, Down, ToTop, ToBottom };

/// An arrow in the colour of a button's text; one to the top or bottom ends at a bar.
[[nodiscard]] QIcon arrowIcon(Arrow arrow, const QPalette& palette);

}  // namespace stops
