#pragma once

#include <QRectF>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "map/drawing/scene.h"
#include "map/drawing/theme.h"
#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "platform/base/notcopied.h"

class QPainter;

namespace map {

/// The map of a window. Ground and names are painted by a thread of their own, larger than what is
/// seen; until a new picture is there the last one is moved and scaled. Runs, stops and places are
/// painted at once.
class MapPicture : private base::NotCopied {
public:
    /// Called by the other thread whenever paint() would show something newer.
    using Newer = std::function<void()>;

    explicit MapPicture(Newer newer);
    ~MapPicture();

    void setGround(std::shared_ptr<const Ground> ground);
    void setTheme(const Theme& theme);
    void setScene(Scene scene);
    [[nodiscard]] const Scene& scene() const;
    /// Rectangles of the window that names and plates keep clear of: its buttons.
    void setReserved(std::vector<QRectF> reserved);

    /// Paints what the camera shows from the painter's origin on, sharp for `pixelRatio` pixels of
    /// the screen to one of the window, and asks for a new ground where the last one does not do.
    void paint(QPainter& painter, const Camera& camera, double pixelRatio = 1);
    /// The last ground picture is the one for this camera: nothing newer comes.
    [[nodiscard]] bool isSettled(const Camera& camera, double pixelRatio = 1) const;

    /// The topmost of what lies under a pixel: stops before places, homes and ways.
    [[nodiscard]] std::optional<Hit> hitTest(const Camera& camera, QPointF pixel) const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace map
