#include "map/sheet/sheetmaps.h"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "map/drawing/theme.h"
#include "map/drawing/wholepicture.h"
#include "map/ground/camera.h"
#include "map/sheet/recording.h"
#include "map/shown/districtground.h"
#include "map/shown/mappedrun.h"
#include "map/shown/runscene.h"

namespace map {

namespace {

constexpr double PointsPerPixel = 72.0 / 96;  ///< the signs of a map are sized in pixels
constexpr double Margin = 30;                 ///< pixels around the run

/// A driver wants the way and where to stop: minutes stand on the sheet, warnings are the
/// planner's.
Scene driversScene(const ShownRun& shown) {
    Scene scene = sceneOf(shown, NoStop);
    for (DrawnRun& run : scene.runs) {
        for (DrawnLeg& leg : run.legs) {
            leg.plate.clear();
        }
        for (DrawnStop& stop : run.stops) {
            stop.isWarned = false;
        }
    }
    return scene;
}

class SheetMap final : public reports::Drawable {
public:
    SheetMap(std::shared_ptr<const Ground> ground, Scene scene, std::string told)
        : ground_(std::move(ground)), scene_(std::move(scene)), told_(std::move(told)) {}

    [[nodiscard]] reports::Picture drawn(float width, float height) const override;
    [[nodiscard]] std::string told() const override { return told_; }
    [[nodiscard]] std::string attribution() const override { return ground_->attribution(); }

private:
    std::shared_ptr<const Ground> ground_;
    Scene scene_;
    std::string told_;
};

reports::Picture SheetMap::drawn(float width, float height) const {
    const QSizeF size(width, height);
    const auto camera = Camera::showing(firstSight(scene_), size / PointsPerPixel, Margin);
    return recorded(size, [&](QPainter& painter) {
        painter.scale(PointsPerPixel, PointsPerPixel);
        paintMap(painter, *ground_, scene_, lightTheme(), camera, Credit::Beside);
        painter.setPen(QPen(lightTheme().emptyWay, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF({}, camera.size()));
    });
}

}  // namespace

SheetMaps::SheetMaps(ado::Connection& routing,
                     std::shared_ptr<const streets::DistrictStreets> streets)
    : routing_(routing), streets_(std::move(streets)), ground_(groundOf(streets_)) {}

std::shared_ptr<const reports::Drawable> SheetMaps::of(const std::string& run) const {
    auto mapped = readMappedRun(routing_, run);
    if (!mapped || std::ranges::none_of(mapped->stops, &MappedStop::isPlaced)) {
        return nullptr;
    }
    ShownRun shown{.run = std::move(*mapped)};
    shown.way = wayOf(streets_->network(), shown.run);
    return std::make_shared<SheetMap>(ground_, driversScene(shown),
                                      "Map of " + headingOf(shown.run));
}

}  // namespace map
