#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "streets/base/streetmap.h"
#include "tools/extract/build/nametable.h"
#include "tools/extract/read/extract.h"

namespace tools::extract {

/// The streets of an extract, cut where they meet.
struct CutStreets {
    static constexpr std::uint32_t None = std::numeric_limits<std::uint32_t>::max();

    std::vector<streets::Node> nodes;
    std::vector<streets::Piece> pieces;
    std::vector<geo::Feet> points;
    std::vector<std::uint32_t> nodeOf;  ///< by point of the extract: where streets meet, or None
    /// The way that each piece is of, as an index into the extract's, with the piece; ascending.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> piecesOfWays;

    /// The pieces of a way.
    [[nodiscard]] std::vector<std::uint32_t> piecesOf(std::uint32_t way) const;
};

/// Cuts at crossings, level crossings, turning circles, barriers and signals away from crossings;
/// a signal before a crossing is the crossing's. Streets do not go on beyond a barrier. Places are
/// those of the extract's points. Neighbours in place are neighbours in the lists.
[[nodiscard]] CutStreets cutStreets(const Extract& extract, std::span<const geo::Feet> places,
                                    const geo::Feet& centre, NameTable& names);

}  // namespace tools::extract
