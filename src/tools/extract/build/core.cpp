#include "tools/extract/build/core.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "streets/network/directedgraph.h"
#include "streets/rules/drivingrules.h"

namespace tools::extract {

namespace {

using streets::DirectedGraph;
using streets::DirectedPiece;

constexpr DirectedPiece None = std::numeric_limits<DirectedPiece>::max();

/// The parts of a graph that are each connected both ways, by the order in which a walk that goes
/// deep first finds and leaves them.
class Parts {
public:
    explicit Parts(const DirectedGraph& graph)
        : graph_(graph),
          found_(graph.size(), None),
          low_(graph.size(), None),
          part_(graph.size(), None) {
        for (DirectedPiece i = 0; i < graph.size(); ++i) {
            if (graph.isDriven(i) && found_[i] == None) {
                walkFrom(i);
            }
        }
    }

    /// By piece and direction, whether it is in the largest part.
    [[nodiscard]] std::vector<bool> largest() const {
        const auto most = std::ranges::max_element(sizes_) - sizes_.begin();
        std::vector<bool> within(part_.size(), false);
        for (std::size_t i = 0; i < part_.size(); ++i) {
            within[i] = part_[i] == static_cast<std::uint32_t>(most);
        }
        return within;
    }

private:
    struct Step {
        DirectedPiece at;
        std::size_t next = 0;
    };

    void walkFrom(DirectedPiece start) {
        std::vector<Step> way;
        enter(start, way);
        while (!way.empty()) {
            Step& step = way.back();
            const auto turns = graph_.turnsFrom(step.at);
            if (step.next < turns.size()) {
                look(turns[step.next++].to, way);
            } else {
                leave(way);
            }
        }
    }

    void enter(DirectedPiece at, std::vector<Step>& way) {
        found_[at] = low_[at] = count_++;
        open_.push_back(at);
        way.push_back({at});
    }

    void look(DirectedPiece next, std::vector<Step>& way) {
        if (found_[next] == None) {
            enter(next, way);
        } else if (part_[next] == None) {
            std::uint32_t& low = low_[way.back().at];
            low = std::min(low, found_[next]);
        }
    }

    void leave(std::vector<Step>& way) {
        const DirectedPiece at = way.back().at;
        way.pop_back();
        if (!way.empty()) {
            low_[way.back().at] = std::min(low_[way.back().at], low_[at]);
        }
        if (low_[at] != found_[at]) {
            return;
        }
        const auto part = static_cast<std::uint32_t>(sizes_.size());
        sizes_.push_back(0);
        for (DirectedPiece member = None; member != at; open_.pop_back()) {
            member = open_.back();
            part_[member] = part;
            ++sizes_.back();
        }
    }

    const DirectedGraph& graph_;
    std::vector<std::uint32_t> found_;
    std::vector<std::uint32_t> low_;
    std::vector<std::uint32_t> part_;
    std::vector<std::size_t> sizes_;
    std::vector<DirectedPiece> open_;
    std::uint32_t count_ = 0;
};

/// Every bus, wherever its district lets it turn: who is low or light comes through.
streets::DrivingRules anyBus() {
    streets::DrivingRules rules;
    rules.busHeightInches = 0;
    rules.busWeightTons = 0;
    return rules;
}

bool isDrivable(const streets::Piece& piece) {
    return piece.kind != streets::StreetClass::Footway && (piece.forward || piece.backward);
}

}  // namespace

std::size_t markReachable(streets::StreetMap& map) {
    for (streets::Piece& piece : map.pieces) {
        piece.reachable = isDrivable(piece);
    }
    // Once is enough: what is taken away leaves more dead ends to turn round in, never fewer ways.
    const auto within = Parts(DirectedGraph(map, anyBus(), {})).largest();
    for (std::size_t i = 0; i < map.pieces.size(); ++i) {
        map.pieces[i].reachable = map.pieces[i].reachable && (within[2 * i] || within[2 * i + 1]);
    }
    return static_cast<std::size_t>(std::ranges::count_if(
        map.pieces, [](const auto& piece) { return isDrivable(piece) && !piece.reachable; }));
}

}  // namespace tools::extract
