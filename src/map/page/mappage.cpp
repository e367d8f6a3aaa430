#include "map/page/mappage.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include "map/drawing/theme.h"
#include "map/drawing/wholepicture.h"
#include "platform/controls/qtext.h"
#include "reports/page/pagehead.h"
#include "reports/preview/pagepainter.h"

namespace map {

namespace {

constexpr double PointsPerInch = 72;
constexpr double PointsPerPixel = PointsPerInch / 96;  ///< the signs of a map are sized in pixels
constexpr int PdfDotsPerInch = 600;

/// Where the map stands on the sheet, in points; its first line covers the one below captions,
/// which a map has none of.
QRectF roomOf(const reports::PageFrame& frame) {
    constexpr float CaptionHeight = 13;
    return QRectF(QPointF(frame.left, frame.top - CaptionHeight),
                  QPointF(frame.right, frame.bottom));
}

}  // namespace

void paintMapPage(QPainter& painter, const reports::PageSize& size, const MapPage& page) {
    const auto frame = reports::frameOf(size, page.heading, {}, {});
    painter.save();
    reports::PagePainter().paint(painter, frame.piece, 1);
    const QRectF room = roomOf(frame);
    painter.translate(room.topLeft());
    painter.scale(PointsPerPixel, PointsPerPixel);
    const QSizeF pixels = room.size() / PointsPerPixel;
    constexpr double Around = 7;  // the line below captions goes farther than the map
    painter.fillRect(QRectF(-Around, 0, pixels.width() + 2 * Around, pixels.height()), Qt::white);
    paintMap(painter, *page.ground, page.scene, lightTheme(),
             Camera::showing(page.shown.seen(), pixels, 0));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(lightTheme().emptyWay, 0.7));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF({}, pixels));
    painter.restore();
}

bool printMapPage(QPagedPaintDevice& device, const MapPage& page) {
    QPainter painter;
    if (!painter.begin(&device)) {
        return false;
    }
    // The painter begins inside the margins, the sheet at the edge of the paper.
    const QPageLayout layout = device.pageLayout();
    const QRectF paper = layout.fullRect(QPageLayout::Point);
    const QRectF inside = layout.paintRect(QPageLayout::Point);
    painter.scale(device.logicalDpiX() / PointsPerInch, device.logicalDpiY() / PointsPerInch);
    painter.translate(-inside.topLeft());
    paintMapPage(painter, {static_cast<float>(paper.width()), static_cast<float>(paper.height())},
                 page);
    return painter.end();
}

QString saveMapPage(const QString& file, const MapPage& page) {
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly)) {
        return target.errorString();
    }
    // A painter does not tell what became of its writing.
    QBuffer painted;
    painted.open(QIODevice::WriteOnly);
    QPdfWriter writer(&painted);
    writer.setResolution(PdfDotsPerInch);
    writer.setTitle(controls::toQt(page.heading.title));
    writer.setPageLayout({QPageSize(QPageSize::Letter),
                          page.isLandscape() ? QPageLayout::Landscape : QPageLayout::Portrait,
                          QMarginsF()});
    if (!printMapPage(writer, page)) {
        return QStringLiteral("the page could not be painted");
    }
    const bool isWritten = target.write(painted.data()) == painted.data().size();
    return isWritten && target.commit() ? QString() : target.errorString();
}

}  // namespace map
