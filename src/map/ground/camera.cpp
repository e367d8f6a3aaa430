#include "map/ground/camera.h"

#include <algorithm>
#include <limits>

namespace map {

Camera::Camera(geo::Feet middle, double feetPerPixel, QSizeF size)
    : middle_(middle), feetPerPixel_(std::clamp(feetPerPixel, Nearest, Farthest)), size_(size) {}

Camera Camera::showing(const streets::Box& box, QSizeF size, double margin) {
    if (isEmpty(box)) {
        return {{}, Farthest, size};
    }
    const double width = std::max(size.width() - 2 * margin, 1.0);
    const double height = std::max(size.height() - 2 * margin, 1.0);
    return {{(box.low.x + box.high.x) / 2, (box.low.y + box.high.y) / 2},
            std::max((box.high.x - box.low.x) / width, (box.high.y - box.low.y) / height),
            size};
}

streets::Box Camera::seen(double around) const {
    const geo::Feet low = toFeet({-around, size_.height() + around});
    const geo::Feet high = toFeet({size_.width() + around, -around});
    return {low, high};
}

Camera Camera::movedBy(QPointF pixels) const {
    return {{middle_.x - pixels.x() * feetPerPixel_, middle_.y + pixels.y() * feetPerPixel_},
            feetPerPixel_,
            size_};
}

Camera Camera::zoomedAbout(QPointF pixel, double times) const {
    const geo::Feet place = toFeet(pixel);
    Camera zoomed(middle_, feetPerPixel_ / times, size_);
    const geo::Feet now = zoomed.toFeet(pixel);
    zoomed.middle_ = {middle_.x + place.x - now.x, middle_.y + place.y - now.y};
    return zoomed;
}

void stretch(streets::Box& box, geo::Feet place) {
    box.low = {std::min(box.low.x, place.x), std::min(box.low.y, place.y)};
    box.high = {std::max(box.high.x, place.x), std::max(box.high.y, place.y)};
}

streets::Box emptyBox() {
    constexpr double Far = std::numeric_limits<double>::infinity();
    return {{Far, Far}, {-Far, -Far}};
}

bool isEmpty(const streets::Box& box) { return box.low.x > box.high.x || box.low.y > box.high.y; }

bool overlap(const streets::Box& one, const streets::Box& other) {
    return one.low.x <= other.high.x && other.low.x <= one.high.x && one.low.y <= other.high.y &&
           other.low.y <= one.high.y;
}

}  // namespace map
