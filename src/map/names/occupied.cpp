#include "map/names/occupied.h"

#include <algorithm>
#include <cmath>

namespace map {

namespace {

constexpr double CellPixels = 64;

std::int32_t cellOf(double pixels) {
    return static_cast<std::int32_t>(std::floor(pixels / CellPixels));
}

}  // namespace

/// Whether `visit` says yes to a cell that the box reaches.
template <typename Visit>
bool Occupied::anyCell(const QRectF& box, const Visit& visit) {
    for (std::int32_t y = cellOf(box.top()); y <= cellOf(box.bottom()); ++y) {
        for (std::int32_t x = cellOf(box.left()); x <= cellOf(box.right()); ++x) {
            const auto row = static_cast<std::uint64_t>(static_cast<std::uint32_t>(y));
            if (visit(row << 32 | static_cast<std::uint32_t>(x))) {
                return true;
            }
        }
    }
    return false;
}

void Occupied::take(const QRectF& box) {
    anyCell(box, [&](std::uint64_t cell) {
        cells_[cell].push_back(box);
        return false;
    });
}

bool Occupied::meets(const QRectF& box) const {
    return anyCell(box, [&](std::uint64_t cell) {
        const auto found = cells_.find(cell);
        return found != cells_.end() &&
               std::ranges::any_of(found->second,
                                   [&](const QRectF& taken) { return taken.intersects(box); });
    });
}

}  // namespace map
