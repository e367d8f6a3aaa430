#pragma once

#include <string>
#include <vector>

#include "reports/page/page.h"
#include "reports/paint/fontfaces.h"

namespace reports {

/// Draws pages on a surface whose unit is the point.
class Drawing {
public:
    enum class Medium {
        Document,  ///< letters stay text, greys are greys
        Fax        ///< dots, black or none: a surface of alpha alone
    };

    Drawing(cairo_t* cairo, Medium medium);

    /// Makes a surface of dots white.
    void clear();
    /// What is drawn below the texts: shapes and pictures.
    void shapes(const Page& page);
    void box(const Page& page, const Box& box);

private:
    /// Glyphs of one letter, with its bytes in the text.
    struct Letter {
        std::size_t from;
        std::size_t end;
        std::size_t glyphs;
    };

    void ink(std::uint8_t grey);
    void trace(const Shape& shape);
    void traceRectangle(const Shape& shape);
    void paint(const Shape& shape);
    void fill(const Shape& shape);
    void picture(const PlacedPicture& placed);
    void path(const Picture::Path& path);
    void ink(const Colour& colour);
    void words(const Box& box, std::string_view text);
    void glyphs(const Box& box, const GlyphRun& run, std::string_view text,
                const std::vector<std::uint32_t>& letters);
    static std::vector<Letter> lettersIn(const GlyphRun& run, std::string_view text,
                                         const std::vector<std::uint32_t>& letters);
    void show(const std::vector<Letter>& seen, std::string_view text);

    cairo_t* cairo_;
    Medium medium_;
    FontFaces faces_;
    double apart_ = 0;  ///< what stands between the letters of a box so far
    std::vector<cairo_glyph_t> placed_;
    std::vector<cairo_text_cluster_t> clusters_;
    std::string seenText_;
};

}  // namespace reports
