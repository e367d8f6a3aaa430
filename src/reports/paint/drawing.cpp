#include "reports/paint/drawing.h"

#include <algorithm>
#include <array>
#include <numbers>

#include "reports/page/fonts.h"

namespace reports {

namespace {

constexpr int White = 255;
constexpr std::uint8_t FaxWhite = 200;  ///< words and lines of a darker grey are black
constexpr std::uint8_t FaxBand = 225;   ///< a lighter grey only guides the eye
constexpr double FaxLine = 0.4;         ///< points

/// As bright as the colour is on white paper.
std::uint8_t greyOf(const Colour& colour) {
    const double grey = 0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue;
    return static_cast<std::uint8_t>(White - (White - grey) * colour.alpha / White);
}

void tracePath(cairo_t* cairo, const Picture::Path& path) {
    const float* at = path.places.data();
    for (const Picture::Step step : path.steps) {
        switch (step) {
            case Picture::Step::Move:
                cairo_move_to(cairo, at[0], at[1]);
                at += 2;
                break;
            case Picture::Step::Line:
                cairo_line_to(cairo, at[0], at[1]);
                at += 2;
                break;
            case Picture::Step::Curve:
                cairo_curve_to(cairo, at[0], at[1], at[2], at[3], at[4], at[5]);
                at += 6;
                break;
            case Picture::Step::Close:
                cairo_close_path(cairo);
                break;
        }
    }
}

/// Where each letter of a text begins that has glyphs, in order.
std::vector<std::uint32_t> lettersOf(const Shaped& shaped) {
    std::vector<std::uint32_t> letters;
    for (const GlyphRun& run : shaped.runs) {
        for (const Glyph& glyph : run.glyphs) {
            letters.push_back(glyph.cluster);
        }
    }
    std::ranges::sort(letters);
    letters.erase(std::unique(letters.begin(), letters.end()), letters.end());
    return letters;
}

/// The byte behind the letter that begins at `cluster`.
std::size_t endOf(std::uint32_t cluster, const std::vector<std::uint32_t>& letters,
                  std::size_t textSize) {
    const auto next = std::ranges::upper_bound(letters, cluster);
    return next == letters.end() ? textSize : *next;
}

}  // namespace

Drawing::Drawing(cairo_t* cairo, Medium medium) : cairo_(cairo), medium_(medium) {
    if (medium == Medium::Fax) {
        // White must cover black, which on alpha only replacing does.
        cairo_set_operator(cairo_, CAIRO_OPERATOR_SOURCE);
    }
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo_, options);
    cairo_font_options_destroy(options);
}

void Drawing::clear() {
    cairo_set_source_rgba(cairo_, 0, 0, 0, 0);
    cairo_paint(cairo_);
}

void Drawing::ink(std::uint8_t grey) {
    if (medium_ == Medium::Fax) {
        cairo_set_source_rgba(cairo_, 0, 0, 0, grey < FaxWhite ? 1 : 0);
        return;
    }
    const double value = grey / 255.0;
    cairo_set_source_rgb(cairo_, value, value, value);
}

void Drawing::traceRectangle(const Shape& shape) {
    const double corner = std::min({shape.corner, shape.width / 2, shape.height / 2});
    if (corner <= 0) {
        cairo_rectangle(cairo_, shape.x, shape.y, shape.width, shape.height);
        return;
    }
    const double left = shape.x + corner, right = shape.x + shape.width - corner;
    const double top = shape.y + corner, bottom = shape.y + shape.height - corner;
    constexpr double Quarter = std::numbers::pi / 2;
    cairo_new_sub_path(cairo_);
    cairo_arc(cairo_, right, top, corner, -Quarter, 0);
    cairo_arc(cairo_, right, bottom, corner, 0, Quarter);
    cairo_arc(cairo_, left, bottom, corner, Quarter, 2 * Quarter);
    cairo_arc(cairo_, left, top, corner, 2 * Quarter, 3 * Quarter);
    cairo_close_path(cairo_);
}

void Drawing::trace(const Shape& shape) {
    switch (shape.kind) {
        case Shape::Kind::Rectangle:
            traceRectangle(shape);
            break;
        case Shape::Kind::Line:
            cairo_move_to(cairo_, shape.x, shape.y);
            cairo_rel_line_to(cairo_, shape.width, shape.height);
            break;
        case Shape::Kind::Disc:
            cairo_new_sub_path(cairo_);
            cairo_arc(cairo_, shape.x, shape.y, shape.width / 2, 0, 2 * std::numbers::pi);
            break;
        case Shape::Kind::Polygon:
            for (std::size_t at = 0; at + 1 < shape.points.size(); at += 2) {
                cairo_line_to(cairo_, shape.points[at], shape.points[at + 1]);
            }
            if (shape.filled) {
                cairo_close_path(cairo_);
            }
            break;
    }
}

/// Greys become outlines where there are none: a band its lower edge, a bar its frame.
void Drawing::fill(const Shape& shape) {
    if (medium_ == Medium::Document || shape.ink == 0 || shape.ink == 255) {
        ink(shape.ink);
        cairo_fill(cairo_);
        return;
    }
    if (shape.ink >= FaxBand && shape.corner <= 0) {
        cairo_new_path(cairo_);
        cairo_move_to(cairo_, shape.x, shape.y + shape.height);
        cairo_rel_line_to(cairo_, shape.width, 0);
    }
    ink(0);
    cairo_set_dash(cairo_, nullptr, 0, 0);
    cairo_set_line_width(cairo_, FaxLine);
    cairo_stroke(cairo_);
}

void Drawing::paint(const Shape& shape) {
    trace(shape);
    if (shape.filled && shape.kind != Shape::Kind::Line) {
        fill(shape);
        return;
    }
    const double dash = shape.dash;
    ink(shape.ink);
    cairo_set_dash(cairo_, &dash, dash > 0 ? 1 : 0, 0);
    cairo_set_line_width(cairo_, shape.thick);
    cairo_stroke(cairo_);
}

void Drawing::ink(const Colour& colour) {
    constexpr double Full = 255;
    if (medium_ == Medium::Fax) {
        ink(greyOf(colour));
    } else {
        cairo_set_source_rgba(cairo_, colour.red / Full, colour.green / Full, colour.blue / Full,
                              colour.alpha / Full);
    }
}

void Drawing::path(const Picture::Path& path) {
    tracePath(cairo_, path);
    const Picture::Look& look = path.look;
    ink(look.colour);
    if (look.filled) {
        cairo_set_fill_rule(cairo_,
                            look.evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
        cairo_fill(cairo_);
        return;
    }
    const std::array<double, 2> dashes{look.dash, look.gap};
    cairo_set_dash(cairo_, dashes.data(), look.dash > 0 ? 2 : 0, 0);
    cairo_set_line_cap(cairo_, look.roundEnds ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cairo_, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(cairo_, look.thick);
    cairo_stroke(cairo_);
}

void Drawing::picture(const PlacedPicture& placed) {
    const Picture picture = placed.drawn();
    cairo_save(cairo_);
    cairo_translate(cairo_, placed.x, placed.y);
    cairo_rectangle(cairo_, 0, 0, picture.width, picture.height);
    cairo_clip(cairo_);
    std::ranges::for_each(picture.paths, [this](const Picture::Path& each) { path(each); });
    cairo_restore(cairo_);
}

void Drawing::shapes(const Page& page) {
    for (const Shape& shape : page.shapes) {
        paint(shape);
    }
    for (const PlacedPicture& placed : page.pictures) {
        picture(placed);
    }
}

void Drawing::box(const Page& page, const Box& box) {
    std::string text(page.textOf(box));
    // Read aloud, cells of a row would run into each other without a blank between them.
    const bool isRead = medium_ == Medium::Document && box.role != Role::Artifact;
    if (isRead && !box.rightToLeft) {
        text += ' ';
    }
    words(box, text);
    if (isRead && box.rightToLeft) {
        Box blank = box;
        blank.x += box.width;
        blank.rightToLeft = false;
        words(blank, " ");
    }
}

void Drawing::words(const Box& box, std::string_view text) {
    const Shaped shaped = Fonts::instance().shape(box.face, text, box.rightToLeft);
    const auto letters = lettersOf(shaped);
    ink(box.ink);
    apart_ = 0;
    cairo_set_font_size(cairo_, box.size);
    for (const GlyphRun& run : shaped.runs) {
        glyphs(box, run, text, letters);
    }
}

std::vector<Drawing::Letter> Drawing::lettersIn(const GlyphRun& run, std::string_view text,
                                                const std::vector<std::uint32_t>& letters) {
    std::vector<Letter> of;
    for (const Glyph& glyph : run.glyphs) {
        const std::uint32_t cluster = glyph.cluster;
        if (of.empty() || of.back().from != cluster) {
            of.push_back({cluster, endOf(cluster, letters, text.size()), 0});
        }
        ++of.back().glyphs;
    }
    return of;
}

void Drawing::glyphs(const Box& box, const GlyphRun& run, std::string_view text,
                     const std::vector<std::uint32_t>& letters) {
    cairo_set_font_face(cairo_, faces_.of(*run.file));
    const auto seen = lettersIn(run, text, letters);
    placed_.clear();
    for (const Letter& letter : seen) {
        for (std::size_t count = 0; count < letter.glyphs; ++count) {
            const Glyph& glyph = run.glyphs[placed_.size()];
            placed_.push_back(
                {glyph.id, box.x + glyph.x * box.size + apart_, box.baseline + glyph.y * box.size});
        }
        apart_ += box.spacing;
    }
    if (medium_ == Medium::Fax) {
        cairo_show_glyphs(cairo_, placed_.data(), static_cast<int>(placed_.size()));
        return;
    }
    show(seen, text);
}

/// Writes letters in the order in which they are seen, as readers of such files expect it: they
/// turn what runs from right to left themselves.
void Drawing::show(const std::vector<Letter>& seen, std::string_view text) {
    clusters_.clear();
    seenText_.clear();
    for (const Letter& letter : seen) {
        seenText_ += text.substr(letter.from, letter.end - letter.from);
        clusters_.push_back(
            {static_cast<int>(letter.end - letter.from), static_cast<int>(letter.glyphs)});
    }
    cairo_show_text_glyphs(cairo_, seenText_.data(), static_cast<int>(seenText_.size()),
                           placed_.data(), static_cast<int>(placed_.size()), clusters_.data(),
                           static_cast<int>(clusters_.size()),
                           static_cast<cairo_text_cluster_flags_t>(0));
}

}  // namespace reports
