#pragma once

#include <QIcon>
#include <QPalette>

namespace controls {

enum class Sign { Left, Right, Up, Down, ToTop, ToBottom, Calendar };

/// A small sign in a colour of the palette, paler where its button is disabled.
[[nodiscard]] QIcon signIcon(Sign sign, const QPalette& palette, QPalette::ColorRole ink);

/// The program's icon, a school bus, in the usual sizes.
[[nodiscard]] QIcon programIcon();

}  // namespace controls
