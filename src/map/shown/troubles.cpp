#include "map/shown/troubles.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "map/shown/deadends.h"
#include "map/shown/runscene.h"

namespace map {

namespace {

using Kind = Trouble::Kind;

std::string wordFor(const MappedRun& run, std::size_t stop) {
    const int number = run.numberOf(stop);
    return number == 0 ? run.stops[stop].name : fmt::format("Stop {}", number);
}

/// The street that a bus halts in: the end of the way there, at the first stop the begin of the
/// way on.
const streets::Stretch* streetAt(const RunWay& way, std::size_t stop) {
    const auto& here = way.drawn[stop].way.stretches;
    if (!here.empty()) {
        return &here.back();
    }
    for (std::size_t i = stop + 1; i < way.drawn.size(); ++i) {
        if (!way.drawn[i].way.stretches.empty()) {
            return &way.drawn[i].way.stretches.front();
        }
    }
    return nullptr;
}

std::optional<Trouble> crossingAt(const MappedRun& run, const RunWay& way, std::size_t index) {
    const auto& stop = run.stops[index];
    const auto& halt = way.drawn[index].halt;
    if (!way.sides || !halt || halt->rightSide || stop.kind != StopKind::Stop ||
        stop.students == 0) {
        return std::nullopt;
    }
    const auto* street = streetAt(way, index);
    const std::string name(street == nullptr || street->name.empty() ? "the street" : street->name);
    const bool isBroad = street != nullptr && street->kind <= streets::StreetClass::Secondary;
    return Trouble{
        .kind = Kind::Crossing,
        .stop = index,
        .brief = fmt::format("{}, {} {}", ridersAt(run, stop),
                             stop.students == 1 ? "crosses" : "cross", name),
        .text = fmt::format("{}: the bus comes on the other side of {}; {} who {} there {} it.",
                            wordFor(run, index), name,
                            stop.students == 1 ? "the one" : fmt::format("the {}", stop.students),
                            ridersAt(run, stop).substr(std::to_string(stop.students).size() + 1),
                            stop.students == 1 ? "crosses" : "cross"),
        .isRemark = !isBroad};
}

void addDeadEnds(const MappedRun& run, const RunWay& way, std::vector<Trouble>& troubles) {
    for (const auto stop : way.solution.deadEnds) {
        if (const auto found = deadEndBefore(way, stop)) {
            troubles.push_back(
                {.kind = Kind::DeadEnd,
                 .stop = found->stop,
                 .brief = "turns in a dead end",
                 .text = fmt::format("{}: the bus turns round at the end of {}, where the district "
                                     "lets no bus turn.",
                                     wordFor(run, found->stop),
                                     found->street.empty() ? "the street" : found->street)});
        }
    }
}

void addFindings(const MappedRun& run, std::vector<Trouble>& troubles) {
    for (const auto& finding : run.findings) {
        std::size_t stop = 0;
        while (stop < run.stops.size() && !names(finding, run.stops[stop])) {
            ++stop;
        }
        troubles.push_back({.stop = stop == run.stops.size() ? NoStop : stop,
                            .brief = finding.type,
                            .text = finding.type + ": " + finding.text});
    }
}

}  // namespace

std::vector<Trouble> troublesOf(const MappedRun& run, const RunWay& way) {
    std::vector<Trouble> troubles;
    const auto told = runToSolve(run);
    for (const auto& unserved : way.solution.unserved) {
        troubles.push_back({.kind = Kind::Unserved,
                            .stop = unserved.stop,
                            .brief = "no bus can serve it",
                            .text = streets::complaint(told.stops[unserved.stop], unserved.why)});
    }
    addFindings(run, troubles);
    addDeadEnds(run, way, troubles);
    for (std::size_t i = 0; i < way.drawn.size(); ++i) {
        if (auto crossing = crossingAt(run, way, i)) {
            troubles.push_back(std::move(*crossing));
        }
    }
    return troubles;
}

const Trouble* troubleAt(const std::vector<Trouble>& troubles, std::size_t stop, bool remarksToo) {
    const auto found = std::ranges::find_if(troubles, [&](const Trouble& trouble) {
        return trouble.stop == stop && (remarksToo || !trouble.isRemark);
    });
    return found == troubles.end() ? nullptr : &*found;
}

}  // namespace map
