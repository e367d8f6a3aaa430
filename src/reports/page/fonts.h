#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/notcopied.h"
#include "reports/page/page.h"

namespace reports {

/// A file of outlines that a glyph's number belongs to.
struct FontFile {
    std::string path;
    int index = 0;  ///< of the face in a collection
    double unitsPerEm = 0;
};

struct Glyph {
    std::uint32_t id = 0;
    std::uint32_t cluster = 0;  ///< byte of the text that it stands for
    float x = 0, y = 0;         ///< where it is drawn, in ems from the text's start
    float advance = 0;          ///< in ems
};

/// Glyphs of one file, from left to right.
struct GlyphRun {
    const FontFile* file = nullptr;
    std::vector<Glyph> glyphs;
};

struct Shaped {
    std::vector<GlyphRun> runs;
    float width = 0;  ///< in ems
};

/// The fonts of all reports, found once: Roboto and its condensed cut, DejaVu Sans for what they
/// lack and where they are missing. Measures and shapes words and keeps what it has shaped. May be
/// used by several threads at once.
class Fonts : private base::NotCopied {
public:
    /// The program's one. Raises "Path/File access error" (75) where the system has no font at all.
    static Fonts& instance();

    /// A text's width at size 1.
    [[nodiscard]] float width(Face face, std::string_view text);
    [[nodiscard]] Shaped shape(Face face, std::string_view text, bool rightToLeft);

private:
    Fonts();
    ~Fonts();
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

/// Whether a text's first strong letter is of a script written from right to left.
[[nodiscard]] bool startsRightToLeft(std::string_view text);

}  // namespace reports
