#include "streets/base/streetmap.h"

namespace streets {

std::span<const geo::Feet> StreetMap::pointsOf(const Piece& piece) const {
    return std::span(points).subspan(piece.firstPoint, piece.points);
}

}  // namespace streets
