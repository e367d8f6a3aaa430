#include "reports/page/waysigns.h"

#include <initializer_list>

namespace reports {

namespace {

constexpr float Side = 12;
constexpr float Thick = 2;

/// Where the sign stands; turned over for the other hand.
class SignPen {
public:
    SignPen(Page& page, float x, float y, bool isMirrored)
        : page_(page), x_(x), y_(y), isMirrored_(isMirrored) {}

    /// A filled shape, or with a thickness a line; points from the sign's upper left edge.
    void draw(std::initializer_list<float> points, float thick = 0, std::uint8_t ink = 0) {
        Shape& shape = page_.shapes.emplace_back();
        shape.kind = Shape::Kind::Polygon;
        shape.filled = thick == 0;
        shape.thick = thick;
        shape.ink = ink;
        bool isX = true;
        for (const float value : points) {
            const float across = isMirrored_ ? Side - value : value;
            shape.points.push_back(isX ? x_ + across : y_ + value);
            isX = !isX;
        }
    }

private:
    Page& page_;
    float x_;
    float y_;
    bool isMirrored_;
};

}  // namespace

void waySign(Page& page, SheetWay::Sign sign, float x, float baseline) {
    SignPen pen(page, x, baseline - 10, sign == SheetWay::Sign::Right);
    switch (sign) {
        case SheetWay::Sign::None:
            break;
        case SheetWay::Sign::Straight:
            pen.draw({6, 11.5F, 6, 4.5F}, Thick);
            pen.draw({6, 0.2F, 10, 5.4F, 2, 5.4F});
            break;
        case SheetWay::Sign::Left:
        case SheetWay::Sign::Right:
            pen.draw({10, 11.5F, 10, 5, 4.6F, 5}, Thick);
            pen.draw({0.2F, 5, 5.2F, 1, 5.2F, 9});
            break;
        case SheetWay::Sign::Back:
            pen.draw({10, 11.5F, 10, 4.2F, 9, 2.2F, 6.8F, 1.4F, 4.6F, 2.2F, 3.6F, 4.2F, 3.6F, 6.5F},
                     Thick);
            pen.draw({3.6F, 11.4F, 0, 6.3F, 7.2F, 6.3F});
            break;
        case SheetWay::Sign::Caution:
            pen.draw({6, 0.4F, 12.4F, 11, -0.4F, 11});
            pen.draw({6, 4, 6, 7.6F}, 1.5F, White);
            pen.draw({6, 8.5F, 6, 10}, 1.5F, White);
            break;
    }
}

}  // namespace reports
