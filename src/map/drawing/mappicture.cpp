#include "map/drawing/mappicture.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "map/drawing/furniture.h"
#include "map/drawing/keptways.h"
#include "map/drawing/picturethread.h"
#include "map/drawing/scenelayout.h"
#include "map/drawing/scenepainter.h"

namespace map {

namespace {

constexpr double Border = 256;  ///< of the ground around what is seen, in pixels
constexpr double Nearly = 96;   ///< so much of the border left, and another ground is wanted

/// What of a picture's border is left on the side where least is; negative where it does not
/// reach.
double borderLeft(const Camera& picture, const Camera& camera) {
    const QPointF corner = camera.toPixels(picture.toFeet({0, 0}));
    const QPointF opposite =
        camera.toPixels(picture.toFeet({picture.size().width(), picture.size().height()}));
    return std::min({-corner.x(), -corner.y(), opposite.x() - camera.size().width(),
                     opposite.y() - camera.size().height()});
}

bool isSameScale(const Camera& one, const Camera& other) {
    return std::abs(one.feetPerPixel() / other.feetPerPixel() - 1) < 1e-9;
}

/// Moved where only the place differs, else scaled.
void paintMoved(QPainter& painter, const QImage& image, const Camera& from, const Camera& to,
                double pixelRatio) {
    const QPointF corner = to.toPixels(from.toFeet({0, 0}));
    if (isSameScale(from, to)) {
        const QPointF whole(std::round(corner.x() * pixelRatio) / pixelRatio,
                            std::round(corner.y() * pixelRatio) / pixelRatio);
        painter.drawImage(whole, image);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(QRectF(corner, from.size() * (from.feetPerPixel() / to.feetPerPixel())),
                      image);
}

/// Too much to be painted for each frame of a zoom.
bool isHeavy(const Scene& scene) {
    constexpr std::size_t Legs = 60;
    std::size_t legs = 0;
    for (const DrawnRun& run : scene.runs) {
        legs += run.legs.size();
    }
    return legs > Legs;
}

}  // namespace

struct MapPicture::Parts {
    explicit Parts(Newer newer) : thread(std::move(newer)) {}

    [[nodiscard]] const Scene& scene() const { return prepared->scene; }
    [[nodiscard]] Sight sight(const Camera& camera);
    [[nodiscard]] SceneLayout layout(const Camera& camera) {
        return layScene(scene(), prepared->lanes, ground->hasSides(), camera, sight(camera),
                        widths);
    }
    [[nodiscard]] bool isCurrent(const KeptPicture& picture, double ratio) const {
        return picture.pixelRatio == ratio && picture.groundVersion == groundVersion &&
               picture.sceneVersion == sceneVersion;
    }
    [[nodiscard]] bool isServed(const KeptPicture& picture, const Camera& camera,
                                double ratio) const {
        return isSameScale(picture.camera, camera) && isCurrent(picture, ratio) &&
               borderLeft(picture.camera, camera) >= 0;
    }
    void order(const Camera& camera, double ratio);
    void paintLive(QPainter& painter, const Camera& camera, const KeptPicture* picture);

    std::shared_ptr<const Ground> ground = bareGround();
    Theme theme = lightTheme();
    std::shared_ptr<const PreparedScene> prepared = std::make_shared<PreparedScene>();
    std::vector<QRectF> reserved;
    std::uint64_t groundVersion = 0;
    std::uint64_t sceneVersion = 0;
    Stamps stamps{1};
    TextWidths widths;
    KeptWays ways;
    PictureThread thread;  // last: it ends first
};

Sight MapPicture::Parts::sight(const Camera& camera) {
    const Furniture furniture = furnish(camera, ground->attribution(), widths);
    Sight sight{.window = QRectF({}, camera.size()), .covered = reserved};
    sight.covered.push_back(furniture.scale);
    sight.covered.push_back(furniture.attribution);
    return sight;
}

void MapPicture::Parts::order(const Camera& camera, double ratio) {
    PictureOrder order{.camera = camera.resized({camera.size().width() + 2 * Border,
                                                 camera.size().height() + 2 * Border}),
                       .pixelRatio = ratio,
                       .ground = ground,
                       .theme = theme,
                       .scene = prepared,
                       .groundVersion = groundVersion,
                       .sceneVersion = sceneVersion};
    order.sight = sight(camera);
    order.sight.window.translate(Border, Border);
    for (QRectF& box : order.sight.covered) {
        box.translate(Border, Border);
    }
    thread.want(std::move(order));
}

/// What has changed since the last picture stands over its ground.
void MapPicture::Parts::paintLive(QPainter& painter, const Camera& camera,
                                  const KeptPicture* picture) {
    const double ratio = stamps.pixelRatio();
    painter.fillRect(QRectF({}, camera.size()), theme.ground);
    if (picture != nullptr) {
        paintMoved(painter, picture->ground, picture->camera, camera, ratio);
    }
    const SceneLayout laid = layout(camera);
    const auto on = [&](QPainter& to) {
        return ScenePainter(to, stamps, scene(), laid, camera, theme);
    };
    ScenePainter marks = on(painter);
    if (isHeavy(scene())) {
        ways.paint(painter, {camera.size(), ratio, groundVersion, scene().runs.size()}, scene(),
                   laid, on);
    } else {
        marks.paintWays();
    }
    if (picture != nullptr) {
        paintMoved(painter, picture->names, picture->camera, camera, ratio);
    }
    marks.paintHomes();
    marks.paintMarks();
}

MapPicture::MapPicture(Newer newer) : parts_(std::make_unique<Parts>(std::move(newer))) {}

MapPicture::~MapPicture() = default;

void MapPicture::setGround(std::shared_ptr<const Ground> ground) {
    parts_->ground = std::move(ground);
    ++parts_->groundVersion;
}

void MapPicture::setTheme(const Theme& theme) {
    parts_->theme = theme;
    ++parts_->groundVersion;
}

void MapPicture::setScene(Scene scene) {
    parts_->groundVersion += scene.isVeiled != parts_->scene().isVeiled ? 1 : 0;
    ++parts_->sceneVersion;
    auto lanes = lanesOf(scene.runs);
    parts_->prepared =
        std::make_shared<PreparedScene>(PreparedScene{std::move(scene), std::move(lanes)});
}

const Scene& MapPicture::scene() const { return parts_->scene(); }

void MapPicture::setReserved(std::vector<QRectF> reserved) {
    if (reserved != parts_->reserved) {
        parts_->reserved = std::move(reserved);
        ++parts_->sceneVersion;
    }
}

void MapPicture::paint(QPainter& painter, const Camera& camera, double pixelRatio) {
    Parts& parts = *parts_;
    if (parts.stamps.pixelRatio() != pixelRatio) {
        parts.stamps = Stamps(pixelRatio);
    }
    const auto picture = parts.thread.latest();
    const bool isServed = picture && parts.isServed(*picture, camera, pixelRatio);
    if (!isServed || borderLeft(picture->camera, camera) < Nearly) {
        parts.order(camera, pixelRatio);
    }
    if (isServed) {
        paintMoved(painter, picture->whole, picture->camera, camera, pixelRatio);
    } else if (picture && parts.isCurrent(*picture, pixelRatio) && isHeavy(parts.scene())) {
        painter.fillRect(QRectF({}, camera.size()), parts.theme.ground);
        paintMoved(painter, picture->whole, picture->camera, camera, pixelRatio);
    } else {
        parts.paintLive(painter, camera, picture.get());
    }
    paintFurniture(painter, parts.stamps,
                   furnish(camera, parts.ground->attribution(), parts.widths), parts.theme);
}

bool MapPicture::isSettled(const Camera& camera, double pixelRatio) const {
    const auto picture = parts_->thread.latest();
    return picture && parts_->isServed(*picture, camera, pixelRatio);
}

std::optional<Hit> MapPicture::hitTest(const Camera& camera, QPointF pixel) const {
    return hitIn(parts_->layout(camera), parts_->scene(), camera, pixel);
}

}  // namespace map
