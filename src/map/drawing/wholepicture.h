#pragma once

#include <cstdint>

#include "map/drawing/scene.h"
#include "map/drawing/theme.h"
#include "map/ground/camera.h"
#include "map/ground/ground.h"

class QPainter;

namespace map {

/// Where it is said whose streets these are.
enum class Credit : std::uint8_t {
    Inside,  ///< in the map's lower corner
    Beside   ///< by who asked for the picture
};

/// Paints the whole map at once, from the painter's origin on: for paper and small pictures. On
/// paper it is lines and outlines of letters, no picture; students' homes are never painted.
void paintMap(QPainter& painter, const Ground& ground, const Scene& scene, const Theme& theme,
              const Camera& camera, Credit credit = Credit::Inside);

}  // namespace map
