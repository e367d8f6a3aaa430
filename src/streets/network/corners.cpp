#include "streets/network/corners.h"

#include "streets/network/graphnetwork.h"

namespace streets {

namespace {

constexpr int FarthestPieces = 12;

/// A crossing street that was met, and how far from the halt.
struct Crossing {
    std::string_view name = {};
    double feet = 0;
};

/// Follows a street one way until another one meets it.
class StreetWalk {
public:
    StreetWalk(const StreetMap& map, const DirectedGraph& graph, std::uint32_t name)
        : map_(map), graph_(graph), own_(plainName(map.names[name])) {}

    [[nodiscard]] Crossing from(DirectedPiece piece, double feet) const {
        for (int steps = 0; steps < FarthestPieces; ++steps) {
            const std::uint32_t node = graph_.endOf(piece);
            DirectedPiece next = piece;
            for (const std::uint32_t other : graph_.piecesAt(node)) {
                const auto name = plainName(map_.nameOf(map_.pieces[other]));
                if (!name.empty() && name != own_) {
                    return {map_.nameOf(map_.pieces[other]), feet};
                }
                if (name == own_ && other != pieceOf(piece)) {
                    next = directed(other, map_.pieces[other].from != node);
                }
            }
            if (next == piece) {
                break;
            }
            piece = next;
            feet += graph_.feet(piece);
        }
        return {};
    }

private:
    const StreetMap& map_;
    const DirectedGraph& graph_;
    std::string_view own_;
};

}  // namespace

std::string_view plainName(std::string_view name) {
    for (const std::string_view heading : {"North ", "South ", "East ", "West "}) {
        if (name.starts_with(heading)) {
            return name.substr(heading.size());
        }
    }
    return name;
}

std::string cornerAt(const StreetMap& map, const DirectedGraph& graph, const Halt& halt) {
    const Piece& piece = map.pieces[pieceOf(halt.piece)];
    const StreetWalk walk(map, graph, piece.name);
    const Crossing ahead = walk.from(halt.piece, graph.feet(halt.piece) - halt.along);
    const Crossing behind = walk.from(halt.piece ^ 1U, halt.along);
    const bool isBehind = ahead.name.empty() || (!behind.name.empty() && behind.feet < ahead.feet);
    const Crossing& crossing = isBehind ? behind : ahead;
    const std::string& own = map.nameOf(piece);
    if (own.empty() || crossing.name.empty()) {
        return own.empty() ? std::string(crossing.name) : own;
    }
    return own + " at " + std::string(crossing.name);
}

}  // namespace streets
