#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reports/base/picture.h"
#include "reports/base/report.h"

/// Laid out pages. Lengths are in points (72 to the inch) from the top left edge of the paper.
namespace reports {

enum class Face : std::uint8_t { Regular, Medium, Bold, Italic, Condensed, CondensedBold };

/// What a box is to somebody who cannot see the page, and to search and copying.
enum class Role : std::uint8_t {
    Cell,     ///< of a row
    Head,     ///< of a group or a sheet
    Artifact  ///< repeated on every page: left out of reading, search and copying
};

/// One line of text in one direction. Boxes stand in reading order.
struct Box {
    float x = 0;         ///< left edge
    float baseline = 0;  ///< downwards
    float width = 0;
    float size = 0;  ///< of the face, in points
    Face face = Face::Regular;
    Role role = Role::Cell;
    bool rightToLeft = false;
    std::uint8_t ink = 0;      ///< grey: 0 black to 255 white
    float spacing = 0;         ///< points added between letters
    std::uint32_t at = 0;      ///< where its text begins in Page::text
    std::uint32_t length = 0;  ///< in bytes
    std::uint32_t row = 0;     ///< of the report, counted from 1; 0 for none
    std::uint16_t column = 0;
};

/// What is drawn below the texts, in the order in which it stands.
struct Shape {
    enum class Kind : std::uint8_t { Rectangle, Line, Disc, Polygon };
    Kind kind = Kind::Rectangle;
    bool filled = true;
    std::uint8_t ink = 0;
    float x = 0, y = 0;           ///< of a disc the centre; of a line where it begins
    float width = 0, height = 0;  ///< of a line how far it goes each way; of a disc the diameter
    float corner = 0;             ///< the radius of a rectangle's corners
    float thick = 0;              ///< of a line, or of what is not filled
    float dash = 0;               ///< length of dashes and gaps; 0 is a whole line
    std::vector<float> points;    ///< of a polygon: x and y in turn; one not filled stays open
};

/// A picture between shapes and texts. It is drawn when its page is painted: those of a whole
/// report would fill the memory.
struct PlacedPicture {
    float x = 0, y = 0;
    float width = 0, height = 0;
    std::shared_ptr<const Drawable> drawable = {};

    [[nodiscard]] Picture drawn() const { return drawable->drawn(width, height); }
};

/// A place to jump to: bookmarks of a file, contents of the preview.
struct Mark {
    std::uint8_t level = 0;
    std::string title;
    float y = 0;
};

struct Page {
    std::string text;
    std::vector<Box> boxes;
    std::vector<Shape> shapes;
    std::vector<PlacedPicture> pictures;
    std::vector<Mark> marks;

    [[nodiscard]] std::string_view textOf(const Box& box) const {
        return std::string_view(text).substr(box.at, box.length);
    }
};

struct PageSize {
    float width = 612;
    float height = 792;
};

/// A paper lying as the options say.
[[nodiscard]] PageSize sizeOf(const Options& options);

}  // namespace reports
