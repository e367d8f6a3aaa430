#include "map/drawing/wholepicture.h"

#include <QPaintDevice>
#include <QPainter>

#include "map/drawing/furniture.h"
#include "map/drawing/groundpainter.h"
#include "map/drawing/scenelayout.h"
#include "map/drawing/scenepainter.h"

namespace map {

namespace {

/// Pixels of the screen to one of the picture; 0 on paper.
double pixelRatioOf(const QPainter& painter) {
    const QPaintDevice& device = *painter.device();
    const bool hasPixels =
        device.devType() == QInternal::Image || device.devType() == QInternal::Pixmap;
    return hasPixels ? device.devicePixelRatioF() : 0;
}

}  // namespace

void paintMap(QPainter& painter, const Ground& ground, const Scene& scene, const Theme& theme,
              const Camera& camera, Credit credit) {
    constexpr double Around = 40;  // pixels: the widest street reaches into the picture from there
    Stamps stamps(pixelRatioOf(painter));
    TextWidths widths;
    const auto lanes = lanesOf(scene.runs);
    const Furniture furniture =
        furnish(camera, credit == Credit::Inside ? ground.attribution() : std::string(), widths);
    const Sight sight{.window = QRectF({}, camera.size()),
                      .covered = {furniture.scale, furniture.attribution}};
    const SceneLayout layout = layScene(scene, lanes, ground.hasSides(), camera, sight, widths);
    Surroundings surroundings = layout.surroundings();
    surroundings.reserved.insert(surroundings.reserved.end(), sight.covered.begin(),
                                 sight.covered.end());
    const GroundPart part = ground.partIn(camera.seen(Around), camera.feetPerPixel());

    painter.save();
    painter.setClipRect(QRectF({}, camera.size()), Qt::IntersectClip);
    paintGround(painter, part, camera, theme);
    if (scene.isVeiled) {
        painter.fillRect(QRectF({}, camera.size()), theme.veil);
    }
    ScenePainter marks(painter, stamps, scene, layout, camera, theme);
    marks.paintWays();
    const auto widthOf = [&](std::string_view text, const NameStyle& style) {
        return widths(text, style);
    };
    paintNames(painter, stamps, widths, layNames(part, camera, surroundings, widthOf), theme);
    marks.paintMarks();
    paintFurniture(painter, stamps, furniture, theme);
    painter.restore();
}

}  // namespace map
