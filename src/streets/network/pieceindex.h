#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "streets/base/streetmap.h"
#include "streets/network/shapes.h"

namespace streets {

/// A piece near a place.
struct NearPiece {
    std::uint32_t piece = 0;
    Foot foot;
};

/// Finds the pieces of a map near a place.
class PieceIndex {
public:
    /// Holds the pieces that `isWanted` takes. The map must outlive the index.
    PieceIndex(const StreetMap& map, const std::function<bool(std::uint32_t)>& isWanted);

    /// Pieces at most so many feet away, the nearest first.
    [[nodiscard]] std::vector<NearPiece> near(geo::Feet place, double feet) const;

private:
    struct Cells {
        std::int64_t left;
        std::int64_t low;
        std::int64_t right;
        std::int64_t high;
    };

    [[nodiscard]] Cells cellsOf(const Box& box) const;
    template <typename Take>
    void forEachCell(const Cells& cells, Take take) const;
    [[nodiscard]] Box boxOf(const Piece& piece) const;

    const StreetMap& map_;
    geo::Feet low_;
    std::int64_t columns_ = 1;
    std::int64_t rows_ = 1;
    double cellFeet_;
    std::vector<std::uint32_t> firstPiece_;  ///< by cell
    std::vector<std::uint32_t> pieces_;
};

}  // namespace streets
