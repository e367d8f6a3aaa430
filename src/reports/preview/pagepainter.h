#pragma once

#include <QImage>
#include <QRawFont>
#include <deque>
#include <map>
#include <memory>
#include <utility>

#include "reports/page/page.h"

class QPainter;

namespace reports {

struct FontFile;

/// Paints laid out pages on the screen, from the same glyphs and the same font files as the file
/// and the printer get.
class PagePainter {
public:
    /// Paints the shapes and texts of a page, so many pixels to the point, from the painter's
    /// origin on, as far as its clip shows them. The paper is the caller's.
    void paint(QPainter& painter, const Page& page, double scale);

private:
    void paintShape(QPainter& painter, const Shape& shape, double scale) const;
    void paintPicture(QPainter& painter, const PlacedPicture& placed, double scale);
    void paintBox(QPainter& painter, const Page& page, const Box& box, double scale);
    /// A file that the toolkit cannot read gives a font that draws nothing.
    [[nodiscard]] const QRawFont& fontOf(const FontFile& file, double pixels);

    /// A picture as it was painted last.
    struct Painted {
        std::shared_ptr<const Drawable> drawable;
        QImage image;
    };

    std::map<std::pair<const FontFile*, int>, QRawFont> fonts_;  ///< by 64ths of a pixel
    std::deque<Painted> pictures_;
};

}  // namespace reports
