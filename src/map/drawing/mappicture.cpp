#include "map/drawing/mappicture.h"

#include <QPainter>

namespace map {

struct MapPicture::Parts {
    Newer newer;
    std::shared_ptr<const Ground> ground = bareGround();
    Theme theme = lightTheme();
    Scene scene;
    std::vector<QRectF> reserved;
};

MapPicture::MapPicture(Newer newer) : parts_(std::make_unique<Parts>()) {
    parts_->newer = std::move(newer);
}

MapPicture::~MapPicture() = default;

void MapPicture::setGround(std::shared_ptr<const Ground> ground) {
    parts_->ground = std::move(ground);
}

void MapPicture::setTheme(const Theme& theme) { parts_->theme = theme; }

void MapPicture::setScene(Scene scene) { parts_->scene = std::move(scene); }

const Scene& MapPicture::scene() const { return parts_->scene; }

void MapPicture::setReserved(std::vector<QRectF> reserved) {
    parts_->reserved = std::move(reserved);
}

void MapPicture::paint(QPainter& painter, const Camera& camera, double) {
    paintMap(painter, *parts_->ground, parts_->scene, parts_->theme, camera);
}

bool MapPicture::isSettled(const Camera&, double) const { return true; }

std::optional<Hit> MapPicture::hitTest(const Camera&, QPointF) const { return {}; }

void paintMap(QPainter& painter, const Ground&, const Scene&, const Theme& theme,
              const Camera& camera, bool) {
    painter.fillRect(QRectF({}, camera.size()), theme.ground);
}

}  // namespace map
