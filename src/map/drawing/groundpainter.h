#pragma once

#include "map/drawing/lettering.h"
#include "map/drawing/theme.h"
#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "map/names/namelayout.h"

class QPainter;

namespace map {

/// Paints areas and streets over the whole picture. False where it ended early.
bool paintGround(QPainter& painter, const GroundPart& ground, const Camera& camera,
                 const Theme& theme, const KeepGoing& keepGoing = {});

/// Paints names where they were placed.
void paintNames(QPainter& painter, Stamps& stamps, TextWidths& widths,
                const std::vector<PlacedName>& names, const Theme& theme);

}  // namespace map
