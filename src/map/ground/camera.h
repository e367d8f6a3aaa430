#pragma once

#include <QPointF>
#include <QSizeF>

#include "platform/geo/projection.h"
#include "streets/base/streetmap.h"

namespace map {

/// Which part of a district's plane a picture shows: north up, one scale in both directions.
/// Pixels are those of the window, whatever the screen makes of them.
class Camera {
public:
    static constexpr double Nearest = 0.5;   ///< feet a pixel
    static constexpr double Farthest = 400;  ///< feet a pixel

    Camera() = default;
    /// A scale beyond the ends becomes the end.
    Camera(geo::Feet middle, double feetPerPixel, QSizeF size);

    /// All of a rectangle of the plane, with so many pixels around it. What is smaller than the
    /// nearest scale shows stands in the middle.
    [[nodiscard]] static Camera showing(const streets::Box& box, QSizeF size, double margin = 60);

    [[nodiscard]] QPointF toPixels(geo::Feet place) const {
        return {(place.x - middle_.x) / feetPerPixel_ + size_.width() / 2,
                (middle_.y - place.y) / feetPerPixel_ + size_.height() / 2};
    }
    [[nodiscard]] geo::Feet toFeet(QPointF pixel) const {
        return {middle_.x + (pixel.x() - size_.width() / 2) * feetPerPixel_,
                middle_.y - (pixel.y() - size_.height() / 2) * feetPerPixel_};
    }

    [[nodiscard]] geo::Feet middle() const { return middle_; }
    [[nodiscard]] double feetPerPixel() const { return feetPerPixel_; }
    [[nodiscard]] QSizeF size() const { return size_; }
    /// What of the plane is seen, with so many pixels around.
    [[nodiscard]] streets::Box seen(double around = 0) const;

    /// The picture follows a hand that moves by so many pixels.
    [[nodiscard]] Camera movedBy(QPointF pixels) const;
    /// So many times nearer; the place below the pixel stays there.
    [[nodiscard]] Camera zoomedAbout(QPointF pixel, double times) const;
    /// The same middle and scale in a picture of another size.
    [[nodiscard]] Camera resized(QSizeF size) const { return {middle_, feetPerPixel_, size}; }

private:
    geo::Feet middle_;
    double feetPerPixel_ = 10;
    QSizeF size_;
};

/// The smallest rectangle that holds `box` and the place.
void stretch(streets::Box& box, geo::Feet place);
/// A rectangle that holds nothing yet.
[[nodiscard]] streets::Box emptyBox();
[[nodiscard]] bool isEmpty(const streets::Box& box);
[[nodiscard]] bool overlap(const streets::Box& one, const streets::Box& other);

}  // namespace map
