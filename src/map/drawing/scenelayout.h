#pragma once

#include <QRectF>
#include <QString>
#include <optional>
#include <vector>

#include "map/drawing/lanes.h"
#include "map/drawing/lettering.h"
#include "map/drawing/scene.h"
#include "map/ground/camera.h"
#include "map/ground/polyline.h"

namespace map {

inline constexpr double DiscRadius = 10;  ///< pixels
inline constexpr double RingRadius = 4.5;
inline constexpr double PlaceSide = 26;
inline constexpr NameStyle PlateStyle{11, true};
inline constexpr NameStyle PlaceStyle{12, true};

/// A leg as it is painted, right of the middle of the streets.
struct WayMark {
    std::size_t run = 0;
    std::size_t leg = 0;
    Line line = {};
};

struct StopMark {
    std::size_t run = 0;
    std::size_t stop = 0;
    QPointF centre = {};
    double radius = DiscRadius;
    std::optional<QPointF> onWay = {};  ///< where its stem begins
};

struct PlateMark {
    enum class Kind : std::uint8_t { Leg, EmptyLeg, Stop, Run, Place };
    Kind kind = Kind::Leg;
    QRectF box = {};
    QString text = {};
    std::size_t run = 0;
};

/// What of a picture a window shows, and what covers it there, in the picture's pixels.
struct Sight {
    QRectF window = {};
    std::vector<QRectF> covered = {};  ///< by buttons, scale and attribution

    [[nodiscard]] bool shows(const QRectF& box) const;
};

/// Where everything of a scene stands in a picture, in its pixels.
struct SceneLayout {
    std::vector<WayMark> ways = {};
    std::vector<Line> ownStreets = {};  ///< below ways where the ground has none of its own there
    std::vector<Line> oldWay = {};
    std::vector<StopMark> stops = {};  ///< chosen ones last
    std::vector<QPointF> places = {};
    std::vector<PlateMark> plates = {};

    /// What names keep clear of.
    [[nodiscard]] Surroundings surroundings() const;
};

/// Lays a scene out. `lanes` are those of its runs; `hasSides` says that a bus halts at the curb.
/// Plates of what the window shows stand where they are seen, as far as there is room.
[[nodiscard]] SceneLayout layScene(const Scene& scene, const std::vector<RunLanes>& lanes,
                                   bool hasSides, const Camera& camera, const Sight& sight,
                                   TextWidths& widths);

/// How wide the way of a run is, in pixels.
[[nodiscard]] double wayWidth(const Scene& scene, const DrawnRun& run, double feetPerPixel);

/// The topmost of what lies under a pixel.
[[nodiscard]] std::optional<Hit> hitIn(const SceneLayout& layout, const Scene& scene,
                                       const Camera& camera, QPointF pixel);

}  // namespace map
