#include "streets/network/directedgraph.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "streets/network/graphnetwork.h"
#include "streets/network/shapes.h"
#include "streets/network/turncosts.h"

namespace streets {

namespace {

constexpr double FeetPerMile = 5280;
constexpr double NeverAtLiking = 3600;  // seconds

double feetPerSecondOf(const Piece& piece, const DrivingRules& rules) {
    const double ofClass = rules.milesPerHour[static_cast<std::size_t>(piece.kind)];
    const double limit = piece.milesPerHour > 0 ? piece.milesPerHour : ofClass;
    return std::min(ofClass, limit) * FeetPerMile / 3600;
}

bool lets(const Piece& piece, const DrivingRules& rules) {
    const bool isBarredAlley = piece.kind == StreetClass::Service && !rules.alleys;
    const bool isTooLow =
        piece.clearanceInches > 0 && piece.clearanceInches < rules.busHeightInches;
    const bool isTooWeak = piece.weightTenths > 0 && piece.weightTenths < rules.busWeightTons * 10;
    return piece.kind != StreetClass::Footway && piece.reachable && piece.feet > 0 &&
           !isBarredAlley && !isTooLow && !isTooWeak;
}

/// The rules that a map has for the turns from each piece.
class TurnRules {
public:
    explicit TurnRules(const StreetMap& map) {
        for (const TurnRule& rule : map.turnRules) {
            rules_[rule.from].push_back(rule);
        }
    }

    [[nodiscard]] bool forbid(std::uint32_t from, std::uint32_t node, std::uint32_t to) const {
        const auto found = rules_.find(from);
        return found != rules_.end() && std::ranges::any_of(found->second, [&](const auto& rule) {
                   return rule.node == node && (rule.only ? rule.to != to : rule.to == to);
               });
    }

private:
    std::unordered_map<std::uint32_t, std::vector<TurnRule>> rules_;
};

/// Finds the turns from one piece after another.
class TurnMaker {
public:
    TurnMaker(const StreetMap& map, const DirectedGraph& graph, const DrivingRules& rules)
        : map_(map), graph_(graph), rules_(rules), turnRules_(map), arms_(graph.size()) {
        for (std::uint32_t i = 0; i < map.pieces.size(); ++i) {
            const Piece& piece = map.pieces[i];
            const Shape shape(map.pointsOf(piece), false, piece.feet);
            const double in = shape.headingFrom(0);
            const double out = shape.headingTo(piece.feet);
            arms_[directed(i, false)] = {{piece.kind, piece.roundabout, in}, out};
            arms_[directed(i, true)] = {{piece.kind, piece.roundabout, out + 180}, in + 180};
        }
    }

    /// Calls `take` with each turn from a piece and its parts.
    template <typename Take>
    void make(DirectedPiece from, Take take) const {
        const std::uint32_t node = graph_.endOf(from);
        bool isDeadEnd = true;
        for (const std::uint32_t next : graph_.piecesAt(node)) {
            for (const bool backward : {false, true}) {
                const DirectedPiece to = directed(next, backward);
                if (graph_.isDriven(to) && graph_.beginOf(to) == node && to != back(from) &&
                    !turnRules_.forbid(pieceOf(from), node, next)) {
                    take(to, onwards(from, to));
                    isDeadEnd = false;
                }
            }
        }
        if (const auto back = turningBack(from, isDeadEnd)) {
            take(from ^ 1U, *back);
        }
    }

private:
    struct Arm {
        TurnArm begin;
        double headingOut = 0;
    };

    static DirectedPiece back(DirectedPiece piece) { return piece ^ 1U; }

    static TurnParts parts(double seconds, double reluctance) {
        return {static_cast<float>(seconds), static_cast<float>(reluctance)};
    }

    [[nodiscard]] TurnParts onwards(DirectedPiece from, DirectedPiece to) const {
        const TurnArm before{arms_[from].begin.kind, arms_[from].begin.roundabout,
                             arms_[from].headingOut};
        const bool intoAlley =
            arms_[to].begin.kind == StreetClass::Service && before.kind != StreetClass::Service;
        const bool signal = map_.nodes[graph_.endOf(from)].signal;
        return parts(
            turnSeconds(before, arms_[to].begin, othersBeside(from, to), signal, rules_.turns),
            intoAlley ? rules_.alleyReluctance : 0);
    }

    [[nodiscard]] std::optional<TurnParts> turningBack(DirectedPiece from, bool isDeadEnd) const {
        const std::uint32_t node = graph_.endOf(from);
        if (!graph_.isDriven(back(from))) {
            return std::nullopt;
        }
        const bool isAllowedHere = std::ranges::count(rules_.uTurnsAt, node) > 0;
        if (isDeadEnd) {
            const bool mayTurn =
                rules_.turnsInDeadEnds || isAllowedHere || map_.nodes[node].turningCircle;
            return parts(rules_.turns.deadEnd, mayTurn ? 0 : NeverAtLiking);
        }
        const bool mayTurn = (rules_.uTurns || isAllowedHere) &&
                             !turnRules_.forbid(pieceOf(from), node, pieceOf(from));
        return mayTurn ? std::optional(parts(rules_.turns.uTurn, 0)) : std::nullopt;
    }

    [[nodiscard]] OtherArms othersBeside(DirectedPiece from, DirectedPiece to) const {
        OtherArms others;
        for (const std::uint32_t piece : graph_.piecesAt(graph_.endOf(from))) {
            if (piece != pieceOf(from) && piece != pieceOf(to)) {
                ++others.count;
                others.broadest = std::min(others.broadest, map_.pieces[piece].kind);
            }
        }
        return others;
    }

    const StreetMap& map_;
    const DirectedGraph& graph_;
    const DrivingRules& rules_;
    TurnRules turnRules_;
    std::vector<Arm> arms_;
};

}  // namespace

DirectedGraph::DirectedGraph(const StreetMap& map, const DrivingRules& rules,
                             std::span<const std::uint32_t> closedPieces)
    : map_(map) {
    setSpeeds(rules, closedPieces);
    listPieces();
    setTurns(rules);
}

void DirectedGraph::setSpeeds(const DrivingRules& rules,
                              std::span<const std::uint32_t> closedPieces) {
    feetPerSecond_.assign(2 * map_.pieces.size(), 0);
    for (std::uint32_t i = 0; i < map_.pieces.size(); ++i) {
        const Piece& piece = map_.pieces[i];
        const auto speed = static_cast<float>(feetPerSecondOf(piece, rules));
        if (lets(piece, rules)) {
            feetPerSecond_[directed(i, false)] = piece.forward ? speed : 0;
            feetPerSecond_[directed(i, true)] = piece.backward ? speed : 0;
            mostFeetPerSecond_ = std::max<double>(mostFeetPerSecond_, speed);
        }
    }
    for (const std::uint32_t piece : closedPieces) {
        feetPerSecond_[directed(piece, false)] = 0;
        feetPerSecond_[directed(piece, true)] = 0;
    }
}

void DirectedGraph::listPieces() {
    firstPiece_.assign(map_.nodes.size() + 1, 0);
    const auto forEachEnd = [&](const auto& take) {
        for (std::uint32_t i = 0; i < map_.pieces.size(); ++i) {
            const Piece& piece = map_.pieces[i];
            if (piece.kind != StreetClass::Footway) {
                take(i, piece.from);
                if (piece.to != piece.from) {
                    take(i, piece.to);
                }
            }
        }
    };
    forEachEnd([&](std::uint32_t, std::uint32_t node) { ++firstPiece_[node + 1]; });
    for (std::size_t i = 1; i < firstPiece_.size(); ++i) {
        firstPiece_[i] += firstPiece_[i - 1];
    }
    pieces_.resize(firstPiece_.back());
    auto next = firstPiece_;
    forEachEnd([&](std::uint32_t piece, std::uint32_t node) { pieces_[next[node]++] = piece; });
}

void DirectedGraph::setTurns(const DrivingRules& rules) {
    const TurnMaker maker(map_, *this, rules);
    firstTurn_.reserve(size() + 1);
    turns_.reserve(size() * 3);
    turnParts_.reserve(size() * 3);
    for (DirectedPiece i = 0; i < size(); ++i) {
        firstTurn_.push_back(static_cast<std::uint32_t>(turns_.size()));
        if (isDriven(i)) {
            const double driven = seconds(i);
            maker.make(i, [&](DirectedPiece to, const TurnParts& parts) {
                turns_.push_back(
                    {to, static_cast<float>(driven + parts.seconds) + parts.reluctance});
                turnParts_.push_back(parts);
            });
        }
    }
    firstTurn_.push_back(static_cast<std::uint32_t>(turns_.size()));
}

double DirectedGraph::feet(DirectedPiece piece) const { return map_.pieces[pieceOf(piece)].feet; }

std::span<const Turn> DirectedGraph::turnsFrom(DirectedPiece piece) const {
    return std::span(turns_).subspan(firstTurn_[piece], firstTurn_[piece + 1] - firstTurn_[piece]);
}

const TurnParts& DirectedGraph::partsOf(DirectedPiece from, DirectedPiece to) const {
    const auto turns = turnsFrom(from);
    const auto turn = std::ranges::find(turns, to, &Turn::to);
    return turnParts_[firstTurn_[from] + static_cast<std::size_t>(turn - turns.begin())];
}

std::uint32_t DirectedGraph::beginOf(DirectedPiece piece) const {
    const Piece& both = map_.pieces[pieceOf(piece)];
    return isBackward(piece) ? both.to : both.from;
}

std::uint32_t DirectedGraph::endOf(DirectedPiece piece) const { return beginOf(piece ^ 1U); }

std::span<const std::uint32_t> DirectedGraph::piecesAt(std::uint32_t node) const {
    return std::span(pieces_).subspan(firstPiece_[node], firstPiece_[node + 1] - firstPiece_[node]);
}

int DirectedGraph::othersAt(DirectedPiece from, DirectedPiece to) const {
    const std::uint32_t node = endOf(from);
    return static_cast<int>(std::ranges::count_if(piecesAt(node), [&](std::uint32_t piece) {
        const Piece& other = map_.pieces[piece];
        const bool leadsAway =
            (other.from == node && other.forward) || (other.to == node && other.backward);
        return piece != pieceOf(from) && piece != pieceOf(to) && leadsAway;
    }));
}

}  // namespace streets
