#include "streets/network/graphnetwork.h"

#include <algorithm>

#include "streets/network/corners.h"
#include "streets/network/directedgraph.h"
#include "streets/network/pieceindex.h"
#include "streets/network/search.h"
#include "streets/network/shapes.h"

namespace streets {

namespace {

constexpr double NearestSearch = 150;  // feet
constexpr double SameCorner = 25;      // feet
constexpr double ServiceFeet = 75;     // that a stop may be farther from a street than from a drive

class GraphNetwork : public Network {
public:
    GraphNetwork(std::shared_ptr<const StreetMap> map, const DrivingRules& rules,
                 std::span<const std::uint32_t> closedPieces)
        : map_(std::move(map)),
          graph_(*map_, rules, closedPieces),
          index_(*map_,
                 [this](std::uint32_t piece) {
                     return graph_.isDriven(directed(piece, false)) ||
                            graph_.isDriven(directed(piece, true));
                 }),
          farthestFeet_(rules.farthestFeet),
          searches_(graph_) {}

    [[nodiscard]] std::vector<Halt> haltsAt(geo::Feet place, DoorSide side) const override {
        for (double feet = NearestSearch;; feet *= 4) {
            const bool isLast = feet >= farthestFeet_;
            auto near = index_.near(place, std::min(feet, farthestFeet_));
            putStreetsFirst(near, side);
            auto halts = haltsAmong(near, side);
            const bool isWhole = side != DoorSide::Passing || halts.empty() ||
                                 halts.front().offStreet + SameCorner <= feet;
            if (isLast || (!halts.empty() && isWhole)) {
                return halts;
            }
        }
    }

    [[nodiscard]] std::optional<Leg> leg(const Halt& from, const Halt& to) const override {
        return legs(from, std::span(&to, 1)).front();
    }

    [[nodiscard]] std::vector<std::optional<Leg>> legs(const Halt& from,
                                                       std::span<const Halt> to) const override {
        const SearchPool::Lease search(searches_);
        search->run(from, to);
        std::vector<std::optional<Leg>> all;
        all.reserve(to.size());
        for (const Halt& goal : to) {
            const auto way = search->way(from, goal);
            all.push_back(way.empty() ? std::nullopt : std::optional(legAlong(way, from, goal)));
        }
        return all;
    }

    [[nodiscard]] std::vector<Travel> matrix(std::span<const Halt> from,
                                             std::span<const Halt> to) const override {
        const SearchPool::Lease search(searches_);
        std::vector<Travel> travels;
        travels.reserve(from.size() * to.size());
        for (const Halt& begin : from) {
            search->run(begin, to);
            for (const Halt& end : to) {
                travels.push_back(travelAlong(search->way(begin, end), begin, end));
            }
        }
        return travels;
    }

    [[nodiscard]] std::string cornerAt(const Halt& halt) const override {
        return streets::cornerAt(*map_, graph_, halt);
    }
    [[nodiscard]] std::string streetAt(const Halt& halt) const override {
        return map_->nameOf(pieceAt(halt.piece));
    }
    [[nodiscard]] bool hasSides() const override { return true; }

private:
    /// The part of a directed piece that a way drives.
    struct Part {
        double from;
        double to;
        [[nodiscard]] double feet() const { return to - from; }
    };

    [[nodiscard]] const Piece& pieceAt(DirectedPiece piece) const {
        return map_->pieces[pieceOf(piece)];
    }
    [[nodiscard]] Shape shapeOf(DirectedPiece piece) const {
        return {map_->pointsOf(pieceAt(piece)), isBackward(piece), pieceAt(piece).feet};
    }

    /// Stops are named after streets, though a drive or an alley may lie nearer.
    void putStreetsFirst(std::vector<NearPiece>& near, DoorSide side) const {
        if (side == DoorSide::Passing) {
            return;
        }
        std::ranges::stable_sort(near, {}, [this](const NearPiece& one) {
            const bool isService = map_->pieces[one.piece].kind == StreetClass::Service;
            return one.foot.distance + (isService ? ServiceFeet : 0);
        });
    }

    [[nodiscard]] std::vector<Halt> haltsAmong(const std::vector<NearPiece>& near,
                                               DoorSide side) const {
        std::vector<Halt> halts;
        for (const NearPiece& piece : near) {
            const bool isFarther =
                !halts.empty() && piece.foot.distance > halts.front().offStreet + SameCorner;
            if (isFarther || (!halts.empty() && side != DoorSide::Passing)) {
                break;
            }
            appendHalts(piece, side, halts);
        }
        return halts;
    }

    /// The halt that has the place on its right comes first.
    void appendHalts(const NearPiece& near, DoorSide side, std::vector<Halt>& halts) const {
        for (const bool onRight : {true, false}) {
            const bool backward = near.foot.onRight != onRight;
            const Halt halt = haltOn(near, backward);
            if (graph_.isDriven(halt.piece) && (side != DoorSide::Right || halt.rightSide)) {
                halts.push_back(halt);
            }
        }
    }

    [[nodiscard]] Halt haltOn(const NearPiece& near, bool backward) const {
        const Piece& piece = map_->pieces[near.piece];
        const double drawn = lengthOf(map_->pointsOf(piece));
        const double along = drawn > 0 ? near.foot.along / drawn * piece.feet : 0;
        const double forwards = std::clamp<double>(along, 0, piece.feet);
        return {.piece = directed(near.piece, backward),
                .along = backward ? piece.feet - forwards : forwards,
                .at = near.foot.at,
                .offStreet = near.foot.distance,
                .rightSide = backward ? near.foot.onLeft : near.foot.onRight};
    }

    [[nodiscard]] Part partOf(std::span<const DirectedPiece> way, std::size_t i, const Halt& from,
                              const Halt& to) const {
        const double end = i + 1 == way.size() ? to.along : pieceAt(way[i]).feet;
        const double begin = i == 0 ? std::min(from.along, end) : 0;
        return {begin, end};
    }

    [[nodiscard]] Travel travelAlong(std::span<const DirectedPiece> way, const Halt& from,
                                     const Halt& to) const {
        if (way.empty()) {
            return {};
        }
        Travel travel{.seconds = 0, .feet = 0};
        for (std::size_t i = 0; i < way.size(); ++i) {
            const double feet = partOf(way, i, from, to).feet();
            travel.feet += feet;
            travel.seconds += feet / graph_.feetPerSecond(way[i]);
            if (i > 0) {
                const TurnParts& turn = graph_.partsOf(way[i - 1], way[i]);
                travel.seconds += turn.seconds;
                travel.reluctance += turn.reluctance;
            }
        }
        return travel;
    }

    [[nodiscard]] Leg legAlong(std::span<const DirectedPiece> way, const Halt& from,
                               const Halt& to) const {
        const Travel travel = travelAlong(way, from, to);
        Leg leg{.seconds = travel.seconds, .feet = travel.feet, .reluctance = travel.reluctance};
        for (std::size_t i = 0; i < way.size(); ++i) {
            const Part part = partOf(way, i, from, to);
            leg.stretches.push_back(stretchOf(way[i], part));
            if (i > 0) {
                tellBeginning(way[i - 1], way[i], leg.stretches.back());
            }
            shapeOf(way[i]).appendPart(part.from, part.to, leg.line);
        }
        return leg;
    }

    [[nodiscard]] Stretch stretchOf(DirectedPiece piece, const Part& part) const {
        const Shape shape = shapeOf(piece);
        return {.name = map_->nameOf(pieceAt(piece)),
                .feet = part.feet(),
                .headingIn = shape.headingFrom(part.from),
                .headingOut = shape.headingTo(part.to),
                .kind = pieceAt(piece).kind,
                .roundabout = pieceAt(piece).roundabout};
    }

    void tellBeginning(DirectedPiece before, DirectedPiece piece, Stretch& stretch) const {
        const Node& node = map_->nodes[graph_.beginOf(piece)];
        stretch.others = graph_.othersAt(before, piece);
        stretch.signal = node.signal;
        stretch.levelCrossing = node.levelCrossing;
        stretch.uTurn = pieceOf(before) == pieceOf(piece) && before != piece;
        stretch.unwanted = stretch.uTurn && graph_.partsOf(before, piece).reluctance > 0;
    }

    std::shared_ptr<const StreetMap> map_;
    DirectedGraph graph_;
    PieceIndex index_;
    double farthestFeet_;
    mutable SearchPool searches_;
};

}  // namespace

std::unique_ptr<const Network> graphNetwork(std::shared_ptr<const StreetMap> map,
                                            const DrivingRules& rules,
                                            std::span<const std::uint32_t> closedPieces) {
    return std::make_unique<GraphNetwork>(std::move(map), rules, closedPieces);
}

}  // namespace streets
