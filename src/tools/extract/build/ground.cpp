#include "tools/extract/build/ground.h"

#include <algorithm>
#include <utility>

#include "tools/extract/build/geometry.h"

namespace tools::extract {

namespace {

using streets::GroundKind;
using streets::GroundShape;

constexpr double GroundThinning = 3;       // feet
constexpr double SmallestBuilding = 4000;  // square feet
constexpr double SmallestArea = 1000;      // square feet

using Numbers = std::vector<std::uint32_t>;

std::vector<geo::Feet> lineOf(const Numbers& nodes, std::span<const geo::Feet> places) {
    return placesAlong(thinned(nodes, places, GroundThinning), places);
}

bool isLine(GroundKind kind) { return kind == GroundKind::Rail || kind == GroundKind::Stream; }

Numbers knownNodes(const ExtractWay& way) {
    Numbers nodes;
    std::ranges::copy_if(way.nodes, std::back_inserter(nodes),
                         [](std::uint32_t node) { return node != ExtractWay::Missing; });
    return nodes;
}

bool isShown(GroundKind kind, std::span<const geo::Feet> ring) {
    constexpr std::size_t Triangle = 4;
    return ring.size() >= Triangle &&
           areaOf(ring) >= (kind == GroundKind::Building ? SmallestBuilding : SmallestArea);
}

void addLines(const ExtractWay& way, std::span<const geo::Feet> places, NameTable& names,
              std::vector<GroundShape>& all) {
    Numbers run;
    const auto addRun = [&] {
        if (run.size() > 1) {
            all.push_back({*way.ground, names.numberOf(way.name), {lineOf(run, places)}});
        }
        run.clear();
    };
    for (const std::uint32_t node : way.nodes) {
        node == ExtractWay::Missing ? addRun() : run.push_back(node);
    }
    addRun();
}

void addArea(GroundKind kind, const std::string& name, const std::vector<Numbers>& rings,
             std::span<const geo::Feet> places, NameTable& names, std::vector<GroundShape>& all) {
    GroundShape shape{kind, 0, {}};
    for (const Numbers& ring : rings) {
        if (auto line = lineOf(ring, places); isShown(kind, line)) {
            shape.rings.push_back(std::move(line));
        }
    }
    if (!shape.rings.empty()) {
        shape.name = names.numberOf(name);
        all.push_back(std::move(shape));
    }
}

std::vector<Numbers> ringsOf(const Extract& extract, const ExtractArea& area,
                             std::span<const geo::Feet> places) {
    std::vector<Numbers> lines;
    for (const std::int64_t id : area.ways) {
        const auto found = std::ranges::lower_bound(extract.ways, id, {}, &ExtractWay::id);
        if (found != extract.ways.end() && found->id == id) {
            lines.push_back(knownNodes(*found));
        }
    }
    return joinedRings(std::move(lines), places);
}

}  // namespace

std::vector<GroundShape> groundOf(const Extract& extract, std::span<const geo::Feet> places,
                                  NameTable& names) {
    std::vector<GroundShape> all;
    for (const ExtractWay& way : extract.ways) {
        if (way.ground && isLine(*way.ground)) {
            addLines(way, places, names, all);
        } else if (way.ground) {
            Numbers ring = knownNodes(way);
            if (!ring.empty() && ring.front() != ring.back()) {
                ring.push_back(ring.front());
            }
            addArea(*way.ground, way.name, {ring}, places, names, all);
        }
    }
    for (const ExtractArea& area : extract.areas) {
        addArea(area.kind, area.name, ringsOf(extract, area, places), places, names, all);
    }
    return all;
}

}  // namespace tools::extract
