#pragma once

#include <QRectF>
#include <string>

#include "map/drawing/lettering.h"
#include "map/drawing/stamps.h"
#include "map/drawing/theme.h"
#include "map/ground/camera.h"

class QPainter;

namespace map {

/// The bar that says how long so many feet are, and whose streets these are.
struct Furniture {
    QRectF scale = {};
    double barPixels = 0;
    QString length = {};  ///< "1000 feet", "½ mile"
    QRectF attribution = {};
    QString attributed = {};
};

/// In the lower corners of the picture.
[[nodiscard]] Furniture furnish(const Camera& camera, const std::string& attribution,
                                TextWidths& widths);

void paintFurniture(QPainter& painter, Stamps& stamps, const Furniture& furniture,
                    const Theme& theme);

}  // namespace map
