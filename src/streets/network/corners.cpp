#include "streets/network/corners.h"

#include <fmt/format.h>

#include "platform/base/text.h"
#include "streets/network/graphnetwork.h"

namespace streets {

namespace {

constexpr int FarthestPieces = 12;

std::string_view plain(std::string_view name) {
    for (const std::string_view heading : {"North ", "South ", "East ", "West "}) {
        if (name.starts_with(heading)) {
            return name.substr(heading.size());
        }
    }
    return name;
}

/// Takes the first name off a list of names.
std::string_view takeFirst(std::string_view& names) {
    const std::size_t end = names.find(';');
    const auto first = base::trim(names.substr(0, end));
    names = end == std::string_view::npos ? std::string_view() : names.substr(end + 1);
    return first;
}

bool holdsStreet(std::string_view names, std::string_view wanted) {
    while (!names.empty()) {
        if (plain(takeFirst(names)) == plain(wanted)) {
            return true;
        }
    }
    return false;
}

/// A crossing street that was met, and how far from the halt.
struct Crossing {
    std::string_view name = {};
    double feet = 0;
};

/// Follows a street one way until another one meets it.
class StreetWalk {
public:
    StreetWalk(const StreetMap& map, const DirectedGraph& graph, std::uint32_t name)
        : map_(map), graph_(graph), own_(map.names[name]) {}

    [[nodiscard]] Crossing from(DirectedPiece piece, double feet) const {
        for (int steps = 0; steps < FarthestPieces; ++steps) {
            const std::uint32_t node = graph_.endOf(piece);
            DirectedPiece next = piece;
            for (const std::uint32_t other : graph_.piecesAt(node)) {
                const std::string_view name = map_.nameOf(map_.pieces[other]);
                const bool isOwn = name == own_ || isSameStreet(name, own_);
                if (!name.empty() && !isOwn) {
                    return {name, feet};
                }
                if (isOwn && other != pieceOf(piece)) {
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

bool isSameStreet(std::string_view one, std::string_view other) {
    while (!one.empty()) {
        if (holdsStreet(other, takeFirst(one))) {
            return true;
        }
    }
    return false;
}

std::string_view firstName(std::string_view names) { return takeFirst(names); }

std::string cornerAt(const StreetMap& map, const DirectedGraph& graph, const Halt& halt) {
    const Piece& piece = map.pieces[pieceOf(halt.piece)];
    const StreetWalk walk(map, graph, piece.name);
    const Crossing ahead = walk.from(halt.piece, graph.feet(halt.piece) - halt.along);
    const Crossing behind = walk.from(halt.piece ^ 1U, halt.along);
    const bool isBehind = ahead.name.empty() || (!behind.name.empty() && behind.feet < ahead.feet);
    const Crossing& crossing = isBehind ? behind : ahead;
    const auto own = firstName(map.nameOf(piece));
    const auto other = firstName(crossing.name);
    if (own.empty() || other.empty()) {
        return std::string(own.empty() ? other : own);
    }
    return fmt::format("{} at {}", own, other);
}

}  // namespace streets
