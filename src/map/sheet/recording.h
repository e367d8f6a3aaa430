#pragma once

#include <QSizeF>
#include <functional>

#include "reports/base/picture.h"

class QPainter;

namespace map {

/// What is painted, as lines and areas; the painter's unit is the point. Of clips only the
/// picture's own edges hold, and images are left out. Needs a QGuiApplication where there are
/// letters.
[[nodiscard]] reports::Picture recorded(QSizeF size, const std::function<void(QPainter&)>& paint);

}  // namespace map
