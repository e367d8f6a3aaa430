#pragma once

#include <QRectF>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "map/ground/polyline.h"

namespace map {

enum class NameInk : std::uint8_t { Street, Park, Water, House };

struct NameStyle {
    int pixels = 10;
    bool isBold = false;
    NameInk ink = NameInk::Street;

    friend bool operator==(const NameStyle&, const NameStyle&) = default;
};

/// A text that is painted as one, turned about its centre.
struct PlacedText {
    std::string text = {};
    QPointF centre = {};
    double degrees = 0;  ///< clockwise
};

/// Where a name stands: whole, or letter by letter along a bend.
struct PlacedName {
    NameStyle style = {};
    std::vector<PlacedText> texts = {};
    std::vector<QRectF> boxes = {};  ///< what it covers
};

/// What names keep clear of, in the camera's pixels.
struct Surroundings {
    std::vector<QRectF> reserved = {};  ///< controls, discs, plates
    std::vector<Line> ways = {};        ///< of the runs; a street's name stands beside them
};

/// The width of a text, in pixels.
using TextWidth = std::function<double(std::string_view text, const NameStyle& style)>;

/// Finds places for the names of parks, waters, streets and houses that the scale names. No two
/// overlap, nor what is reserved. Ends early, with what stands by then, where `keepGoing` says no.
[[nodiscard]] std::vector<PlacedName> layNames(const GroundPart& ground, const Camera& camera,
                                               const Surroundings& surroundings,
                                               const TextWidth& widthOf,
                                               const KeepGoing& keepGoing = {});

}  // namespace map
