#include "map/drawing/picturethread.h"

#include <QPainter>
#include <cmath>
#include <utility>

#include "map/drawing/groundpainter.h"
#include "map/drawing/scenepainter.h"

namespace map {

namespace {

bool isSame(const Camera& one, const Camera& other) {
    return one.middle().x == other.middle().x && one.middle().y == other.middle().y &&
           one.feetPerPixel() == other.feetPerPixel() && one.size() == other.size();
}

/// Whether the picture's streets are those of the order.
bool isSameGround(const KeptPicture& picture, const PictureOrder& order) {
    return isSame(picture.camera, order.camera) && picture.pixelRatio == order.pixelRatio &&
           picture.groundVersion == order.groundVersion;
}

/// Whether the picture can be moved about until the order's is there.
bool isOfUse(const KeptPicture& picture, const PictureOrder& order) {
    return picture.camera.feetPerPixel() == order.camera.feetPerPixel() &&
           picture.pixelRatio == order.pixelRatio && picture.groundVersion == order.groundVersion;
}

KeptPicture frameOf(const PictureOrder& order) {
    return {.camera = order.camera,
            .pixelRatio = order.pixelRatio,
            .groundVersion = order.groundVersion,
            .sceneVersion = order.sceneVersion};
}

QImage emptyImage(const PictureOrder& order, QImage::Format format) {
    const QSizeF size = order.camera.size() * order.pixelRatio;
    QImage image(static_cast<int>(std::ceil(size.width())),
                 static_cast<int>(std::ceil(size.height())), format);
    image.setDevicePixelRatio(order.pixelRatio);
    image.fill(Qt::transparent);
    return image;
}

/// What one thread keeps from picture to picture.
struct Tools {
    Stamps stamps{1};
    TextWidths widths;
};

QImage groundImage(const PictureOrder& order, const GroundPart& part, const KeepGoing& keepGoing) {
    QImage image = emptyImage(order, QImage::Format_RGB32);
    QPainter painter(&image);
    if (paintGround(painter, part, order.camera, order.theme, keepGoing) &&
        order.scene->scene.isVeiled) {
        painter.fillRect(QRectF({}, order.camera.size()), order.theme.veil);
    }
    return image;
}

QImage namesImage(const PictureOrder& order, const GroundPart& part, const SceneLayout& layout,
                  Tools& tools, const KeepGoing& keepGoing) {
    Surroundings around = layout.surroundings();
    const auto& covered = order.sight.covered;
    around.reserved.insert(around.reserved.end(), covered.begin(), covered.end());
    const auto widthOf = [&](std::string_view text, const NameStyle& style) {
        return tools.widths(text, style);
    };
    const auto names = layNames(part, order.camera, around, widthOf, keepGoing);
    QImage image = emptyImage(order, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    paintNames(painter, tools.stamps, tools.widths, names, order.theme);
    return image;
}

QImage wholeImage(const PictureOrder& order, const KeptPicture& layers, const SceneLayout& layout,
                  Tools& tools) {
    QImage image = layers.ground;
    QPainter painter(&image);
    ScenePainter scene(painter, tools.stamps, order.scene->scene, layout, order.camera,
                       order.theme);
    scene.paintWays();
    painter.drawImage(QPointF(), layers.names);
    scene.paintHomes();
    scene.paintMarks();
    return image;
}

void paintLayers(KeptPicture& picture, const PictureOrder& order, const KeptPicture* before,
                 Tools& tools, const KeepGoing& keepGoing) {
    constexpr double Around = 40;  // pixels: the widest street reaches into the picture from there
    const auto part = order.ground->partIn(order.camera.seen(Around), order.camera.feetPerPixel());
    const SceneLayout layout =
        layScene(order.scene->scene, order.scene->lanes, order.ground->hasSides(), order.camera,
                 order.sight, tools.widths);
    picture.ground = before != nullptr && isSameGround(*before, order)
                         ? before->ground
                         : groundImage(order, part, keepGoing);
    if (keepGoing()) {
        picture.names = namesImage(order, part, layout, tools, keepGoing);
    }
    if (keepGoing()) {
        picture.whole = wholeImage(order, picture, layout, tools);
    }
}

}  // namespace

PictureThread::PictureThread(std::function<void()> ready)
    : ready_(std::move(ready)), thread_([this] { run(); }) {}

PictureThread::~PictureThread() {
    {
        const std::scoped_lock lock(mutex_);
        isEnding_ = true;
        isGivenUp_ = true;
    }
    wanted_.notify_one();
    thread_.join();
}

void PictureThread::want(PictureOrder order) {
    {
        const std::scoped_lock lock(mutex_);
        if (painting_ && !isGivenUp_ && isSameGround(*painting_, order) &&
            painting_->sceneVersion == order.sceneVersion) {
            waiting_.reset();
            return;
        }
        // Another place or scene waits until this one stands: else nothing new would be seen
        // while a hand moves.
        isGivenUp_ = isGivenUp_ || (painting_ && !isOfUse(*painting_, order));
        waiting_ = std::move(order);
    }
    wanted_.notify_one();
}

std::shared_ptr<const KeptPicture> PictureThread::latest() const {
    const std::scoped_lock lock(mutex_);
    return latest_;
}

std::optional<PictureOrder> PictureThread::next() {
    std::unique_lock lock(mutex_);
    painting_.reset();
    wanted_.wait(lock, [this] { return isEnding_ || waiting_; });
    if (isEnding_) {
        return {};
    }
    isGivenUp_ = false;
    auto order = std::exchange(waiting_, std::nullopt);
    painting_ = frameOf(*order);
    return order;
}

void PictureThread::deliver(std::shared_ptr<const KeptPicture> picture) {
    {
        const std::scoped_lock lock(mutex_);
        if (isGivenUp_) {
            return;
        }
        latest_ = std::move(picture);
        painting_.reset();
    }
    ready_();
}

void PictureThread::run() {
    const KeepGoing keepGoing = [this] { return !isGivenUp_; };
    Tools tools;
    while (const auto order = next()) {
        if (tools.stamps.pixelRatio() != order->pixelRatio) {
            tools.stamps = Stamps(order->pixelRatio);
        }
        auto picture = std::make_shared<KeptPicture>(frameOf(*order));
        paintLayers(*picture, *order, latest().get(), tools, keepGoing);
        deliver(std::move(picture));
    }
}

}  // namespace map
