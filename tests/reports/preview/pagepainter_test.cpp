#include "reports/preview/pagepainter.h"

#include <QImage>
#include <QPainter>
#include <cmath>

#include <cairo.h>
#include <gmock/gmock.h>

#include "reports/page/fonts.h"
#include "reports/paint/drawing.h"

namespace reports {
namespace {

constexpr double Scale = 200.0 / 72;

Shape& addShape(Page& page, Shape::Kind kind, float x, float y, float width) {
    Shape& shape = page.shapes.emplace_back();
    shape.kind = kind;
    shape.x = x;
    shape.y = y;
    shape.width = width;
    return shape;
}

void addText(Page& page, std::string_view text, Face face, std::uint8_t ink, float baseline) {
    Box box{.x = 30, .baseline = baseline, .size = 20, .face = face};
    box.ink = ink;
    box.spacing = face == Face::Medium ? 2.0F : 0.0F;
    box.rightToLeft = startsRightToLeft(text);
    box.at = static_cast<std::uint32_t>(page.text.size());
    box.length = static_cast<std::uint32_t>(text.size());
    page.text += text;
    page.boxes.push_back(box);
}

Page samplePage() {
    Page page;
    Shape& plate = addShape(page, Shape::Kind::Rectangle, 10, 10, 300);
    plate.height = 40;
    plate.corner = 3;
    addShape(page, Shape::Kind::Line, 10, 70, 300).thick = 1.4F;
    Shape& dashed = addShape(page, Shape::Kind::Line, 10, 80, 300);
    dashed.thick = 2;
    dashed.dash = 4;
    addShape(page, Shape::Kind::Disc, 40, 110, 32).ink = 90;
    addShape(page, Shape::Kind::Polygon, 0, 0, 0).points = {100, 130, 116, 100, 132, 130};
    Shape& frame = addShape(page, Shape::Kind::Rectangle, 150, 95, 100);
    frame.height = 30;
    frame.filled = false;
    frame.thick = 1;
    addText(page, "107-1 West Ridge", Face::Bold, 255, 40);
    addText(page, "DRIVER ŁÓDŹ", Face::Medium, 80, 160);
    addText(page, "Farrell, Chloé & O'Brien", Face::Condensed, 0, 190);
    addText(page, "שלום עולם", Face::Regular, 0, 220);
    return page;
}

QImage paper() {
    QImage image(900, 700, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

QImage byToolkit(const Page& page) {
    QImage image = paper();
    QPainter painter(&image);
    PagePainter().paint(painter, page, Scale);
    return image;
}

QImage asFile(const Page& page) {
    QImage image = paper();
    auto* surface =
        cairo_image_surface_create_for_data(image.bits(), CAIRO_FORMAT_RGB24, image.width(),
                                            image.height(), static_cast<int>(image.bytesPerLine()));
    auto* cairo = cairo_create(surface);
    cairo_scale(cairo, Scale, Scale);
    {
        Drawing drawing(cairo, Drawing::Medium::Document);
        drawing.shapes(page);
        for (const Box& box : page.boxes) {
            drawing.box(page, box);
        }
    }
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    return image;
}

/// The greatest difference of grey once letters that stand half a pixel apart look alike.
int difference(const QImage& one, const QImage& other) {
    constexpr int Coarser = 6;
    const auto coarse = [](const QImage& image) {
        return image.scaled(image.size() / Coarser, Qt::IgnoreAspectRatio,
                            Qt::SmoothTransformation);
    };
    const QImage a = coarse(one);
    const QImage b = coarse(other);
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            greatest = std::max(greatest, std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))));
        }
    }
    return greatest;
}

TEST(PagePainter, ShowsWhatTheFileHolds) {
    constexpr int Seen = 45;
    Page page = samplePage();
    const QImage shown = byToolkit(page);
    EXPECT_LT(difference(shown, asFile(page)), Seen);
    EXPECT_GT(difference(shown, paper()), 200);
    page.boxes[1].spacing = 2.6F;
    EXPECT_GT(difference(shown, asFile(page)), Seen) << "the measure is fine enough";
}

}  // namespace
}  // namespace reports
