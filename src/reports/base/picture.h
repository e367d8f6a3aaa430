#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/notcopied.h"

namespace reports {

struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;
    std::uint8_t alpha = 255;

    friend bool operator==(const Colour&, const Colour&) = default;
};

/// A drawing of lines and areas in colours, in points from its top left edge, painted in the order
/// in which they stand. What lies beyond its edges is not shown.
struct Picture {
    enum class Step : std::uint8_t {
        Move,   ///< one place
        Line,   ///< one place
        Curve,  ///< three places: two that it bends to, and its end
        Close   ///< none
    };

    struct Look {
        bool filled = true;
        bool evenOdd = false;  ///< where areas of the path overlap, every second one is empty
        Colour colour = {};
        float thick = 0;  ///< of a line, whose corners are round
        bool roundEnds = true;
        float dash = 0, gap = 0;  ///< 0 is a whole line

        friend bool operator==(const Look&, const Look&) = default;
    };

    struct Path {
        Look look = {};
        std::vector<Step> steps = {};
        std::vector<float> places = {};  ///< x and y in turn
    };

    float width = 0, height = 0;
    std::vector<Path> paths = {};
};

/// What can be drawn as large as there is room for it.
class Drawable : private base::NotCopied {
public:
    virtual ~Drawable() = default;

    [[nodiscard]] virtual Picture drawn(float width, float height) const = 0;
    /// What it shows, for those who do not see it.
    [[nodiscard]] virtual std::string told() const = 0;
    /// Whose data these are, to be said below it; may be empty.
    [[nodiscard]] virtual std::string attribution() const = 0;
};

}  // namespace reports
