#pragma once

#include <QPagedPaintDevice>
#include <QString>
#include <memory>

#include "map/drawing/scene.h"
#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "reports/base/report.h"
#include "reports/page/page.h"

class QPainter;

namespace map {

/// A map on one sheet of paper, below the head of a report: what a window shows and what else the
/// paper has room for, in light colours, as lines and letters. Students' homes are left out.
struct MapPage {
    std::shared_ptr<const Ground> ground = bareGround();
    Scene scene = {};
    Camera shown = {};  ///< the window's
    reports::Heading heading = {};

    /// Which way the paper lies best.
    [[nodiscard]] bool isLandscape() const { return shown.size().width() > shown.size().height(); }
};

/// Paints a whole sheet, from its top left edge on; the painter's unit is the point.
void paintMapPage(QPainter& painter, const reports::PageSize& size, const MapPage& page);

/// Prints the sheet as the device's paper lies; false where the device took nothing.
[[nodiscard]] bool printMapPage(QPagedPaintDevice& device, const MapPage& page);

/// Writes a PDF on letter paper. Returns the system's reason where it could not be written, ""
/// where it was; a file that cannot be written whole changes nothing.
[[nodiscard]] QString saveMapPage(const QString& file, const MapPage& page);

}  // namespace map
