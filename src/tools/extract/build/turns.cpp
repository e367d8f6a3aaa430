#include "tools/extract/build/turns.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace tools::extract {

namespace {

using streets::Piece;
using streets::TurnRule;

using Numbers = std::vector<std::uint32_t>;

class TurnMaker {
public:
    TurnMaker(const Extract& extract, const CutStreets& cut)
        : extract_(extract), cut_(cut), piecesAt_(cut.nodes.size()) {
        for (std::uint32_t i = 0; i < cut.pieces.size(); ++i) {
            piecesAt_[cut.pieces[i].from].push_back(i);
            piecesAt_[cut.pieces[i].to].push_back(i);
        }
    }

    void add(const ExtractTurn& turn, TurnsTaken& all) const {
        const Numbers from = piecesOf(turn.from);
        const Numbers to = piecesOf(turn.to);
        const auto node = nodeOf(turn.viaNode);
        if (from.empty() || to.empty() || (turn.viaWays.empty() && !node)) {
            ++all.outside;
            return;
        }
        const auto rules =
            turn.viaWays.empty() ? atNode(turn, from, *node, to) : overWay(turn, from, to);
        ++(rules.empty() ? all.refused : all.taken);
        all.rules.insert(all.rules.end(), rules.begin(), rules.end());
    }

private:
    [[nodiscard]] Numbers piecesOf(const std::vector<std::int64_t>& ways) const {
        Numbers all;
        for (const std::int64_t id : ways) {
            const auto found = std::ranges::lower_bound(extract_.ways, id, {}, &ExtractWay::id);
            if (found != extract_.ways.end() && found->id == id) {
                const auto way = static_cast<std::uint32_t>(found - extract_.ways.begin());
                std::ranges::copy(cut_.piecesOf(way), std::back_inserter(all));
            }
        }
        return all;
    }

    [[nodiscard]] std::optional<std::uint32_t> nodeOf(std::uint32_t point) const {
        const auto node = point == ExtractWay::Missing ? CutStreets::None : cut_.nodeOf[point];
        return node == CutStreets::None ? std::nullopt : std::optional(node);
    }

    [[nodiscard]] bool arrives(std::uint32_t number, std::uint32_t node) const {
        const Piece& piece = cut_.pieces[number];
        return (piece.to == node && piece.forward) || (piece.from == node && piece.backward);
    }
    [[nodiscard]] bool leaves(std::uint32_t number, std::uint32_t node) const {
        const Piece& piece = cut_.pieces[number];
        return (piece.from == node && piece.forward) || (piece.to == node && piece.backward);
    }

    [[nodiscard]] Numbers arriving(const Numbers& pieces, std::uint32_t node) const {
        Numbers some;
        std::ranges::copy_if(pieces, std::back_inserter(some),
                             [&](std::uint32_t piece) { return arrives(piece, node); });
        return some;
    }
    [[nodiscard]] Numbers leaving(const Numbers& pieces, std::uint32_t node) const {
        Numbers some;
        std::ranges::copy_if(pieces, std::back_inserter(some),
                             [&](std::uint32_t piece) { return leaves(piece, node); });
        return some;
    }

    /// From a street into each of those named. A street that goes on through the crossing leaves
    /// open from which side, so that only turning back on it is known.
    [[nodiscard]] std::vector<TurnRule> atNode(const ExtractTurn& turn, const Numbers& from,
                                               std::uint32_t node, const Numbers& to) const {
        const Numbers arrive = arriving(from, node);
        const Numbers leave = leaving(to, node);
        const bool isOneEach = arrive.size() <= turn.from.size() && leave.size() <= turn.to.size();
        std::vector<TurnRule> rules;
        for (const std::uint32_t one : arrive) {
            for (const std::uint32_t other : leave) {
                if (turn.traits.uTurn && turn.from == turn.to ? one == other : isOneEach) {
                    rules.push_back({one, node, other, turn.traits.only});
                }
            }
        }
        return rules;
    }

    [[nodiscard]] std::vector<TurnRule> overWay(const ExtractTurn& turn, const Numbers& from,
                                                const Numbers& to) const {
        const Numbers via = piecesOf(turn.viaWays);
        if (via.size() != 1) {
            return {};
        }
        const Piece& between = cut_.pieces[via.front()];
        for (const auto& [first, last] :
             {std::pair{between.from, between.to}, std::pair{between.to, between.from}}) {
            const Numbers enter = arriving(from, first);
            const Numbers leave = leaving(to, last);
            if (enter.size() == 1 && leave.size() == 1 && arrives(via.front(), last)) {
                return overPiece(turn.traits, {enter.front(), first, via.front(), false},
                                 {via.front(), last, leave.front(), false});
            }
        }
        return {};
    }

    [[nodiscard]] std::vector<TurnRule> overPiece(const TurnTraits& traits, TurnRule in,
                                                  TurnRule out) const {
        const bool isOnlyWayIn = besides(arriving(piecesAt_[in.node], in.node), in.from, in.to);
        const bool isOnlyWayOut = besides(leaving(piecesAt_[out.node], out.node), out.to, out.from);
        if (traits.only) {
            in.only = out.only = true;
            return isOnlyWayIn ? std::vector{in, out} : std::vector<TurnRule>();
        }
        return isOnlyWayIn    ? std::vector{out}
               : isOnlyWayOut ? std::vector{in}
                              : std::vector<TurnRule>();
    }

    /// Whether nothing but these two is there.
    [[nodiscard]] static bool besides(const Numbers& pieces, std::uint32_t one,
                                      std::uint32_t other) {
        return std::ranges::all_of(
            pieces, [&](std::uint32_t piece) { return piece == one || piece == other; });
    }

    const Extract& extract_;
    const CutStreets& cut_;
    std::vector<Numbers> piecesAt_;
};

}  // namespace

TurnsTaken turnRulesOf(const Extract& extract, const CutStreets& cut) {
    const TurnMaker maker(extract, cut);
    TurnsTaken all;
    for (const ExtractTurn& turn : extract.turns) {
        maker.add(turn, all);
    }
    const auto key = [](const TurnRule& rule) {
        return std::tuple(rule.from, rule.node, rule.to, rule.only);
    };
    std::ranges::sort(all.rules, {}, key);
    all.rules.erase(std::unique(all.rules.begin(), all.rules.end(),
                                [&](const TurnRule& one, const TurnRule& next) {
                                    return key(one) == key(next);
                                }),
                    all.rules.end());
    return all;
}

}  // namespace tools::extract
