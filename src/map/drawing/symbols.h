#pragma once

#include <QColor>
#include <QString>

#include "map/drawing/stamps.h"
#include "map/drawing/theme.h"

class QPainter;

/// The signs of a map, painted about a place. All but lines are kept pictures.
namespace map {

struct DiscLook {
    QColor fill;
    QColor ink;
    QColor casing;
    bool isChosen = false;
};

void paintDisc(QPainter& painter, Stamps& stamps, QPointF centre, const QString& number,
               const DiscLook& look);
void paintRing(QPainter& painter, Stamps& stamps, QPointF centre, const DiscLook& look);
void paintWarning(QPainter& painter, Stamps& stamps, QPointF centre, const Theme& theme);
void paintSchool(QPainter& painter, Stamps& stamps, QPointF centre, const Theme& theme);
void paintGarage(QPainter& painter, Stamps& stamps, QPointF centre, const Theme& theme);
void paintHome(QPainter& painter, Stamps& stamps, QPointF centre, const QColor& colour,
               const Theme& theme);
/// A bus to scale that stands with its front at a place.
void paintBus(QPainter& painter, QPointF front, double degrees, double feetPerPixel,
              const Theme& theme);

struct PlateLook {
    QColor ground;
    QColor ink;
    QColor frame;
    double corner = 3;
    int pixels = 11;
};

void paintPlate(QPainter& painter, Stamps& stamps, const QRectF& box, const QString& text,
                const PlateLook& look);

}  // namespace map
