#pragma once

#include <QHash>
#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <functional>

class QPainter;

namespace map {

/// Small pictures that are painted once and then kept: outlined words, discs, plates. For one
/// thread.
class Stamps {
public:
    /// Keeps pictures with so many pixels of the screen to one of the window; with 0 it keeps none
    /// and paints each afresh, so that paper gets lines and not pictures.
    explicit Stamps(double pixelRatio) : pixelRatio_(pixelRatio) {}

    [[nodiscard]] double pixelRatio() const { return pixelRatio_; }
    [[nodiscard]] bool keepsPictures() const { return pixelRatio_ > 0; }

    /// `paint` paints about the painter's origin within the size. What has the same key looks the
    /// same.
    void stamp(QPainter& painter, const QString& key, QSizeF size, QPointF centre, double degrees,
               const std::function<void(QPainter&)>& paint);

private:
    [[nodiscard]] const QImage& pictureOf(const QString& key, QSizeF size,
                                          const std::function<void(QPainter&)>& paint);

    double pixelRatio_;
    QHash<QString, QImage> pictures_;
};

}  // namespace map
