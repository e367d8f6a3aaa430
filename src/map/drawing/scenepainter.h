#pragma once

#include <QColor>
#include <vector>

#include "map/drawing/scene.h"
#include "map/drawing/scenelayout.h"
#include "map/drawing/stamps.h"
#include "map/drawing/theme.h"
#include "map/ground/camera.h"

class QPainter;

namespace map {

/// Which ways of a layout are meant, by their places in it.
using WayChoice = std::vector<bool>;

/// Paints a scene that is laid out, in two halves: names stand between them.
class ScenePainter {
public:
    ScenePainter(QPainter& painter, Stamps& stamps, const Scene& scene, const SceneLayout& layout,
                 const Camera& camera, const Theme& theme);

    /// Old and new ways with their minutes.
    void paintWays();
    /// The same in parts, from below.
    void paintOwnStreets(const WayChoice& ways);
    void paintOldWay();
    void paintLegs(const WayChoice& ways);
    void paintLegPlates();
    /// Homes and walks; never on paper.
    void paintHomes();
    /// Stops, places and their plates.
    void paintMarks();

private:
    [[nodiscard]] QColor colourOf(std::size_t run) const;
    [[nodiscard]] QColor pale(const QColor& colour) const;
    [[nodiscard]] const DrawnLeg& legOf(const WayMark& way) const {
        return scene_.runs[way.run].legs[way.leg];
    }
    void paintRun(std::size_t run, const WayChoice& chosen);
    void paintEmptyLeg(const WayMark& way);
    void chevrons(const Line& line, double apart, double size, const QColor& colour, double thick);
    void paintStem(const StopMark& mark);
    void paintStop(const StopMark& mark);
    void paintPlate(const PlateMark& plate);
    [[nodiscard]] QRectF seen(double around) const;

    QPainter& painter_;
    Stamps& stamps_;
    const Scene& scene_;
    const SceneLayout& layout_;
    const Camera& camera_;
    const Theme& theme_;
};

}  // namespace map
