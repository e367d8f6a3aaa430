#include "map/drawing/stamps.h"

#include <QPainter>
#include <cmath>

namespace map {

const QImage& Stamps::pictureOf(const QString& key, QSizeF size,
                                const std::function<void(QPainter&)>& paint) {
    constexpr qsizetype Most = 6000;  // zooming through a city makes new words
    const auto known = pictures_.constFind(key);
    if (known != pictures_.constEnd()) {
        return *known;
    }
    if (pictures_.size() > Most) {
        pictures_.clear();
    }
    const QSize pixels(static_cast<int>(std::ceil(size.width() * pixelRatio_)) + 2,
                       static_cast<int>(std::ceil(size.height() * pixelRatio_)) + 2);
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(pixels.width() / 2.0, pixels.height() / 2.0);
    painter.scale(pixelRatio_, pixelRatio_);
    paint(painter);
    painter.end();
    return *pictures_.insert(key, picture);
}

void Stamps::stamp(QPainter& painter, const QString& key, QSizeF size, QPointF centre,
                   double degrees, const std::function<void(QPainter&)>& paint) {
    const QTransform before = painter.transform();
    painter.translate(centre);
    painter.rotate(degrees);
    if (!keepsPictures()) {
        paint(painter);
        painter.setTransform(before);
        return;
    }
    const QImage& picture = pictureOf(key, size, paint);
    const double width = picture.width() / pixelRatio_, height = picture.height() / pixelRatio_;
    QPointF corner(-width / 2, -height / 2);
    if (degrees == 0) {
        // On whole pixels it stays sharp.
        painter.setTransform(before);
        const QPointF there = (centre + corner) * pixelRatio_;
        corner = QPointF(std::round(there.x()), std::round(there.y())) / pixelRatio_;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, degrees != 0);
    painter.drawImage(QRectF(corner, QSizeF(width, height)), picture);
    painter.setTransform(before);
}

}  // namespace map
