#include "map/drawing/furniture.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <utility>

namespace map {

namespace {

constexpr double FeetPerMile = 5280;
constexpr double LongestBar = 110;  ///< pixels
constexpr double Margin = 8;
constexpr double Inside = 8;  ///< between a box and its bar
constexpr NameStyle Style{11};

constexpr std::array<std::pair<double, const char*>, 14> Lengths{{{20, "20 feet"},
                                                                  {50, "50 feet"},
                                                                  {100, "100 feet"},
                                                                  {200, "200 feet"},
                                                                  {500, "500 feet"},
                                                                  {1000, "1000 feet"},
                                                                  {FeetPerMile / 4, "¼ mile"},
                                                                  {FeetPerMile / 2, "½ mile"},
                                                                  {FeetPerMile, "1 mile"},
                                                                  {2 * FeetPerMile, "2 miles"},
                                                                  {5 * FeetPerMile, "5 miles"},
                                                                  {10 * FeetPerMile, "10 miles"},
                                                                  {20 * FeetPerMile, "20 miles"},
                                                                  {50 * FeetPerMile, "50 miles"}}};

void paintGroundOf(QPainter& painter, const QRectF& box, const Theme& theme) {
    QColor ground = theme.plate;
    ground.setAlphaF(0.88F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(box, 3, 3);
}

}  // namespace

Furniture furnish(const Camera& camera, const std::string& attribution, TextWidths& widths) {
    const auto fits = [&](const auto& length) {
        return length.first / camera.feetPerPixel() <= LongestBar;
    };
    const auto longest = std::find_if(Lengths.rbegin(), Lengths.rend(), fits);
    const auto& length = longest == Lengths.rend() ? Lengths.front() : *longest;
    Furniture furniture{.barPixels = length.first / camera.feetPerPixel(),
                        .length = toQt(length.second),
                        .attributed = toQt(attribution)};
    constexpr double ScaleHeight = 30, LineHeight = 20;
    const double right = camera.size().width(), bottom = camera.size().height();
    furniture.scale = {Margin, bottom - Margin - ScaleHeight,
                       std::max(furniture.barPixels, widths(length.second, Style)) + 2 * Inside,
                       ScaleHeight};
    if (!attribution.empty()) {
        const double width = widths(attribution, Style) + 2 * Inside;
        furniture.attribution = {right - width, bottom - LineHeight, width, LineHeight};
    }
    return furniture;
}

void paintFurniture(QPainter& painter, Stamps& stamps, const Furniture& furniture,
                    const Theme& theme) {
    painter.setRenderHint(QPainter::Antialiasing);
    TextWidths widths;
    const auto text = [&](const QString& words, QPointF leftMiddle) {
        const std::string bytes = words.toStdString();
        const double width = widths(bytes, Style);
        paintText(painter, stamps, {bytes, leftMiddle + QPointF(width / 2, 0), 0}, Style,
                  {theme.plateInk, Qt::transparent}, width);
    };
    const QRectF& box = furniture.scale;
    paintGroundOf(painter, box, theme);
    text(furniture.length, box.topLeft() + QPointF(Inside + 3, 10));
    const double left = box.left() + Inside, bar = box.bottom() - Inside;
    painter.setPen(QPen(theme.plateInk, 1.4, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(left, bar), QPointF(left + furniture.barPixels, bar));
    for (const double share : {0.0, 0.5, 1.0}) {
        const double x = left + furniture.barPixels * share;
        painter.drawLine(QPointF(x, bar - (share == 0.5 ? 3 : 5)), QPointF(x, bar + 3));
    }
    if (!furniture.attributed.isEmpty()) {
        paintGroundOf(painter, furniture.attribution, theme);
        text(furniture.attributed,
             furniture.attribution.topLeft() + QPointF(Inside, furniture.attribution.height() / 2));
    }
}

}  // namespace map
