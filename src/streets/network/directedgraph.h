#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "streets/base/streetmap.h"
#include "streets/network/network.h"
#include "streets/rules/drivingrules.h"

namespace streets {

/// From a piece that is driven to its end into the next one.
struct Turn {
    DirectedPiece to = 0;
    float cost = 0;  ///< seconds along the piece before, for the turn, and of reluctance
};

/// What the cost of a turn holds beside the driving.
struct TurnParts {
    float seconds = 0;
    float reluctance = 0;
};

/// The streets of a map in their directions, with what it costs to drive them and to turn.
class DirectedGraph {
public:
    /// The map must outlive the graph.
    DirectedGraph(const StreetMap& map, const DrivingRules& rules,
                  std::span<const std::uint32_t> closedPieces);

    [[nodiscard]] std::size_t size() const { return feetPerSecond_.size(); }
    [[nodiscard]] bool isDriven(DirectedPiece piece) const { return feetPerSecond_[piece] > 0; }
    [[nodiscard]] double feetPerSecond(DirectedPiece piece) const { return feetPerSecond_[piece]; }
    [[nodiscard]] double feet(DirectedPiece piece) const;
    [[nodiscard]] double seconds(DirectedPiece piece) const {
        return feet(piece) / feetPerSecond_[piece];
    }

    [[nodiscard]] std::span<const Turn> turnsFrom(DirectedPiece piece) const;
    /// Of a turn that is allowed.
    [[nodiscard]] const TurnParts& partsOf(DirectedPiece from, DirectedPiece to) const;
    [[nodiscard]] geo::Feet beginPlace(DirectedPiece piece) const {
        return map_.nodes[beginOf(piece)].at;
    }
    /// Of the quickest piece.
    [[nodiscard]] double mostFeetPerSecond() const { return mostFeetPerSecond_; }

    [[nodiscard]] std::uint32_t beginOf(DirectedPiece piece) const;
    [[nodiscard]] std::uint32_t endOf(DirectedPiece piece) const;
    /// Pieces that meet at a node and that somebody may drive, whether a bus may or not.
    [[nodiscard]] std::span<const std::uint32_t> piecesAt(std::uint32_t node) const;
    /// Streets that may be chosen at a turn, besides the one taken and the way back.
    [[nodiscard]] int othersAt(DirectedPiece from, DirectedPiece to) const;

private:
    void setSpeeds(const DrivingRules& rules, std::span<const std::uint32_t> closedPieces);
    void listPieces();
    void setTurns(const DrivingRules& rules);

    const StreetMap& map_;
    std::vector<float> feetPerSecond_;  ///< 0 where no bus drives
    std::vector<std::uint32_t> firstPiece_;
    std::vector<std::uint32_t> pieces_;
    std::vector<std::uint32_t> firstTurn_;
    std::vector<Turn> turns_;
    std::vector<TurnParts> turnParts_;  ///< of each of the turns
    double mostFeetPerSecond_ = 1;
};

}  // namespace streets
