#include "tools/extract/read/collector.h"

#include <algorithm>

namespace tools::extract {

namespace {

void widen(std::optional<DegreeBox>& box, const geo::Degrees& at) {
    if (!box) {
        box = DegreeBox{at, at};
    }
    box->low = {std::min(box->low.latitude, at.latitude),
                std::min(box->low.longitude, at.longitude)};
    box->high = {std::max(box->high.latitude, at.latitude),
                 std::max(box->high.longitude, at.longitude)};
}

bool isClosed(const std::vector<std::int64_t>& nodes) {
    constexpr std::size_t Triangle = 4;
    return nodes.size() >= Triangle && nodes.front() == nodes.back();
}

}  // namespace

void Collector::begin() {
    hasWays_ = false;
    // Nodes of a further file begin with small ids again.
    isSorted_ = extract_.nodes.empty();
}

void Collector::node(std::int64_t id, const geo::Degrees& at, const Tags& tags) {
    if (hasWays_) {
        throw Unsorted{};
    }
    widen(extract_.covered, at);
    if (box_ && !box_->holds(at)) {
        return;
    }
    isSorted_ = isSorted_ && (extract_.nodes.empty() || extract_.nodes.back().id < id);
    extract_.nodes.push_back({id, at});
    if (tags.empty()) {
        return;
    }
    if (const PointTraits traits = pointOf(tags); traits.any()) {
        marks_.emplace_back(id, traits);
    }
    if (auto house = houseOf(tags)) {
        extract_.houses.push_back({std::move(*house), at});
    }
}

void Collector::sortNodes() {
    if (!isSorted_) {
        auto& nodes = extract_.nodes;
        std::ranges::stable_sort(nodes, {}, &ExtractNode::id);
        nodes.erase(
            std::unique(nodes.begin(), nodes.end(),
                        [](const auto& one, const auto& next) { return one.id == next.id; }),
            nodes.end());
        isSorted_ = true;
    }
}

std::optional<std::uint32_t> Collector::indexOf(std::int64_t node) const {
    const auto& nodes = extract_.nodes;
    const auto found = std::ranges::lower_bound(nodes, node, {}, &ExtractNode::id);
    return found != nodes.end() && found->id == node
               ? std::optional(static_cast<std::uint32_t>(found - nodes.begin()))
               : std::nullopt;
}

void Collector::way(std::int64_t id, std::vector<std::int64_t> nodes, const Tags& tags) {
    sortNodes();
    hasWays_ = true;
    if (std::ranges::none_of(nodes, [&](std::int64_t node) { return indexOf(node).has_value(); })) {
        return;
    }
    ReadWay read{.way = {.id = id}, .nodes = std::move(nodes)};
    if (auto street = streetOf(tags)) {
        read.way.street = static_cast<std::int32_t>(extract_.streets.size());
        extract_.streets.push_back(std::move(*street));
    } else {
        read.way.ground = isClosed(read.nodes) ? areaOf(tags) : std::nullopt;
        if (!read.way.ground) {
            read.way.ground = lineOf(tags);
        }
        if (read.way.ground) {
            read.way.name = nameOf(tags);
        }
        if (auto house = houseOf(tags)) {
            wayHouses_.push_back({id, std::move(*house)});
        }
    }
    ways_.push_back(std::move(read));
}

void Collector::relation(std::int64_t id, const std::vector<Member>& members, const Tags& tags) {
    if (!relations_.insert(id).second) {
        return;
    }
    if (const auto traits = turnOf(tags)) {
        turn(members, *traits);
        return;
    }
    const auto kind =
        tags.isAny("type", {"multipolygon", "boundary"}) ? areaOf(tags) : std::nullopt;
    if (kind) {
        ExtractArea area{.kind = *kind, .name = nameOf(tags)};
        for (const Member& member : members) {
            if (member.isWay) {
                area.ways.push_back(member.id);
            }
        }
        extract_.areas.push_back(std::move(area));
    }
}

void Collector::turn(const std::vector<Member>& members, const TurnTraits& traits) {
    ExtractTurn turn{.traits = traits};
    turnNodes_.push_back(0);
    for (const Member& member : members) {
        if (member.isWay && member.role == "from") {
            turn.from.push_back(member.id);
        } else if (member.isWay && member.role == "to") {
            turn.to.push_back(member.id);
        } else if (member.isWay && member.role == "via") {
            turn.viaWays.push_back(member.id);
        } else if (!member.isWay && member.role == "via") {
            turnNodes_.back() = member.id;
        }
    }
    extract_.turns.push_back(std::move(turn));
}

void Collector::numberMarks() {
    for (const auto& [id, traits] : marks_) {
        if (const auto node = indexOf(id)) {
            extract_.marks.emplace_back(*node, traits);
        }
    }
    const auto first = [](const auto& mark) { return mark.first; };
    auto& marks = extract_.marks;
    std::ranges::sort(marks, {}, first);
    marks.erase(
        std::unique(marks.begin(), marks.end(),
                    [&](const auto& one, const auto& next) { return first(one) == first(next); }),
        marks.end());
}

void Collector::numberTurns() {
    for (std::size_t i = 0; i < turnNodes_.size(); ++i) {
        extract_.turns[i].viaNode = indexOf(turnNodes_[i]).value_or(ExtractWay::Missing);
    }
}

/// Of a way that stands in several files the one with the most points is the whole one.
void Collector::resolveWays() {
    std::ranges::stable_sort(ways_, [](const ReadWay& one, const ReadWay& other) {
        return one.way.id != other.way.id ? one.way.id < other.way.id
                                          : one.nodes.size() > other.nodes.size();
    });
    ways_.erase(std::unique(ways_.begin(), ways_.end(),
                            [](const ReadWay& one, const ReadWay& next) {
                                return one.way.id == next.way.id;
                            }),
                ways_.end());
    extract_.ways.reserve(ways_.size());
    for (ReadWay& read : ways_) {
        const auto nodes = std::move(read.nodes);  // gone with its way: a city has many
        read.way.nodes.reserve(nodes.size());
        for (const std::int64_t id : nodes) {
            const auto node = indexOf(id);
            read.way.isWhole = read.way.isWhole && node;
            read.way.nodes.push_back(node.value_or(ExtractWay::Missing));
        }
        extract_.ways.push_back(std::move(read.way));
    }
}

void Collector::placeHouses() {
    for (WayHouse& house : wayHouses_) {
        const auto found = std::ranges::lower_bound(extract_.ways, house.way, {}, &ExtractWay::id);
        if (found == extract_.ways.end() || found->id != house.way) {
            continue;
        }
        geo::Degrees sum;
        double points = 0;
        for (const std::uint32_t node : found->nodes) {
            if (node != ExtractWay::Missing) {
                sum.latitude += extract_.nodes[node].at.latitude;
                sum.longitude += extract_.nodes[node].at.longitude;
                ++points;
            }
        }
        if (points > 0) {
            extract_.houses.push_back(
                {std::move(house.traits), {sum.latitude / points, sum.longitude / points}});
        }
    }
}

Extract Collector::finish() {
    sortNodes();
    numberMarks();
    numberTurns();
    resolveWays();
    placeHouses();
    return std::move(extract_);
}

}  // namespace tools::extract
