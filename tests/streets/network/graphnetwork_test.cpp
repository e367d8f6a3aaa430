#include "streets/network/graphnetwork.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <deque>
#include <optional>

#include <gtest/gtest.h>

#include "city.h"
#include "streets/network/directedgraph.h"

namespace streets {

namespace {

constexpr double FarAway = 1e18;

std::uint32_t pieceNamed(std::string_view name) {
    std::uint32_t piece = 0;
    std::from_chars(name.data(), name.data() + name.size(), piece);
    return piece;
}

/// Seconds and reluctance to the begin of each piece, improved until no turn makes one quicker.
class PlainSearch {
public:
    PlainSearch(const DirectedGraph& graph, const Halt& from)
        : graph_(graph), from_(from), toBegin_(graph.size(), FarAway) {
        relax(from.piece, (graph.feet(from.piece) - from.along) / graph.feetPerSecond(from.piece));
        while (!changed_.empty()) {
            const DirectedPiece piece = changed_.front();
            changed_.pop_front();
            relax(piece, toBegin_[piece] + graph.seconds(piece));
        }
    }
    [[nodiscard]] double costTo(const Halt& to) const {
        const double along = to.along / graph_.feetPerSecond(to.piece);
        const bool straight = to.piece == from_.piece && to.along >= from_.along;
        return straight ? along - from_.along / graph_.feetPerSecond(to.piece)
                        : toBegin_[to.piece] + along;
    }

private:
    void relax(DirectedPiece piece, double atEnd) {
        for (const Turn& turn : graph_.turnsFrom(piece)) {
            const TurnParts& parts = graph_.partsOf(piece, turn.to);
            const double cost = atEnd + parts.seconds + parts.reluctance;
            if (cost < toBegin_[turn.to] - 1e-4) {
                toBegin_[turn.to] = cost;
                changed_.push_back(turn.to);
            }
        }
    }

    const DirectedGraph& graph_;
    Halt from_;
    std::vector<double> toBegin_;
    std::deque<DirectedPiece> changed_;
};

/// What a bus may do, said of the map itself.
struct Law {
    const StreetMap& map;
    const std::vector<std::uint32_t>& closed;
    bool uTurns;

    [[nodiscard]] bool drives(std::uint32_t piece, std::uint32_t from) const {
        const Piece& street = map.pieces[piece];
        const bool isOpen = !std::ranges::binary_search(closed, piece);
        return isOpen && street.clearanceInches == 0 &&
               ((street.from == from && street.forward) || (street.to == from && street.backward));
    }
    [[nodiscard]] bool turns(std::uint32_t before, std::uint32_t node, std::uint32_t piece) const {
        return std::ranges::none_of(map.turnRules, [&](const TurnRule& rule) {
            return rule.from == before && rule.node == node && rule.only != (rule.to == piece);
        });
    }
    [[nodiscard]] bool turnsBack(std::uint32_t piece, std::uint32_t node) const {
        for (std::uint32_t i = 0; i < map.pieces.size() && !uTurns; ++i) {
            if (i != piece && drives(i, node) && turns(piece, node, i)) {
                return false;
            }
        }
        return true;
    }
};

/// Follows a leg over the map; names the first thing that no bus may do.
std::string wrongIn(const Law& law, const Leg& leg, const Halt& from) {
    std::uint32_t piece = pieceOf(from.piece);
    const Piece& first = law.map.pieces[piece];
    std::uint32_t node = isBackward(from.piece) ? first.to : first.from;
    for (std::size_t i = 0; i < leg.stretches.size(); ++i) {
        const std::uint32_t before = piece;
        piece = pieceNamed(leg.stretches[i].name);
        if (!law.drives(piece, node)) {
            return "no way";
        }
        const bool isTurn = i > 0 && piece != before;
        if ((isTurn && !law.turns(before, node, piece)) ||
            (i > 0 && !isTurn && !law.turnsBack(piece, node))) {
            return "forbidden turn";
        }
        const Piece& street = law.map.pieces[piece];
        node = street.from == node ? street.to : street.from;
    }
    return "";
}

double lengthOf(const std::vector<geo::Feet>& line) {
    double feet = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        feet += std::hypot(line[i].x - line[i - 1].x, line[i].y - line[i - 1].y);
    }
    return feet;
}

/// Whether a place lies on the right of a bus that drives the last feet of a line.
bool isRightOf(const std::vector<geo::Feet>& line, geo::Feet place) {
    const geo::Feet a = line[line.size() - 2];
    const geo::Feet b = line.back();
    return (b.x - a.x) * (place.y - b.y) - (b.y - a.y) * (place.x - b.x) <= 0;
}

/// A city with closed streets, and its network with the search to be held against.
struct Trial {
    City city;
    DrivingRules rules;
    std::vector<std::uint32_t> closed;
    std::unique_ptr<const Network> network;
    DirectedGraph graph;
    int withoutWay = 0;  ///< legs that neither search finds

    Trial(std::uint32_t seed, const DrivingRules& given)
        : city(16, seed),
          rules(given),
          closed(someOf(city)),
          network(graphNetwork(city.map(), rules, closed)),
          graph(*city.map(), rules, closed) {}

    static std::vector<std::uint32_t> someOf(City& city) {
        std::vector<std::uint32_t> pieces(12);
        for (std::uint32_t& piece : pieces) {
            piece = city.number(static_cast<std::uint32_t>(city.map()->pieces.size()));
        }
        std::ranges::sort(pieces);
        return pieces;
    }

    /// Looks at the legs to many places; how many of them there are.
    int drive(const Halt& from) {
        const PlainSearch oracle(graph, from);
        std::vector<Halt> goals;
        int driven = 0;
        for (int i = 0; i < 50; ++i) {
            const geo::Feet place = city.place();
            goals.push_back(network->haltsAt(place, DoorSide::Right).at(0));
            driven += holds(from, goals.back(), place, oracle) ? 1 : 0;
        }
        const auto row = network->matrix(std::span(&from, 1), goals);
        for (std::size_t i = 0; i < goals.size(); ++i) {
            EXPECT_NEAR(std::min(row[i].seconds + row[i].reluctance, FarAway),
                        oracle.costTo(goals[i]), 0.02);
        }
        return driven;
    }

    bool holds(const Halt& from, const Halt& to, geo::Feet place, const PlainSearch& oracle) {
        const auto leg = network->leg(from, to);
        if (!leg) {
            withoutWay += oracle.costTo(to) < FarAway ? 0 : 1;
            return false;
        }
        EXPECT_NEAR(leg->seconds + leg->reluctance, oracle.costTo(to), 0.02);
        EXPECT_EQ(wrongIn({*city.map(), closed, rules.uTurns}, *leg, from), "");
        EXPECT_NEAR(lengthOf(leg->line), leg->feet, 0.05);
        double feet = 0;
        for (const Stretch& stretch : leg->stretches) {
            feet += stretch.feet;
        }
        EXPECT_NEAR(feet, leg->feet, 1e-6);
        const bool isClear = to.offStreet > 1 && leg->stretches.back().feet > 1;
        EXPECT_TRUE(!isClear || isRightOf(leg->line, place));
        return true;
    }
};

}  // namespace

// 2,500 pairs of places; VIREO_STARTS=100 makes them 10,000.
TEST(GraphNetwork, LegsAreTheQuickestAndBreakNoRule) {
    const char* const wanted = std::getenv("VIREO_STARTS");
    const int starts = wanted == nullptr ? 25 : std::atoi(wanted);
    for (const bool lenient : {false, true}) {
        Trial trial(lenient ? 7 : 1, {.uTurns = lenient, .turnsInDeadEnds = !lenient});
        int driven = 0;
        for (int i = 0; i < starts; ++i) {
            const auto halts = trial.network->haltsAt(trial.city.place(), DoorSide::Either);
            EXPECT_TRUE(halts.at(0).rightSide || halts.size() == 1);
            driven += trial.drive(halts.front());
        }
        EXPECT_GT(driven, starts * 44);
        EXPECT_EQ(driven + trial.withoutWay, starts * 50);
    }
}

}  // namespace streets
