#include "map/drawing/lanes.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <map>
#include <span>

namespace map {

namespace {

/// A place to a quarter of a foot.
struct Corner {
    long x = 0;
    long y = 0;

    friend auto operator<=>(const Corner&, const Corner&) = default;
};

/// A piece of street in one direction.
struct Drive {
    Corner from;
    Corner to;

    friend auto operator<=>(const Drive&, const Drive&) = default;
};

struct Taken {
    std::size_t run;
    int lane;
};

/// Who drives a piece.
struct Sharing {
    std::vector<std::size_t> runs;
    std::vector<Taken> taken;
};

struct Segment {
    geo::Feet from;
    geo::Feet to;
    bool endsAtHalt = false;
};

Corner cornerOf(geo::Feet place) { return {std::lround(place.x * 4), std::lround(place.y * 4)}; }

std::vector<Segment> segmentsOf(const DrawnRun& run) {
    std::vector<Segment> segments;
    for (const DrawnLeg& leg : run.legs) {
        for (std::size_t i = 1; i < leg.line.size(); ++i) {
            segments.push_back({leg.line[i - 1], leg.line[i], i + 1 == leg.line.size()});
        }
    }
    return segments;
}

/// A bus that halted in between drives on along the same piece.
bool goesOn(const Segment& one, const Segment& next) {
    constexpr double NearFeet = 1, Bend = 0.01;
    const double x1 = one.to.x - one.from.x, y1 = one.to.y - one.from.y;
    const double x2 = next.to.x - next.from.x, y2 = next.to.y - next.from.y;
    const double lengths = std::hypot(x1, y1) * std::hypot(x2, y2);
    return one.endsAtHalt &&
           std::hypot(one.to.x - next.from.x, one.to.y - next.from.y) < NearFeet &&
           x1 * x2 + y1 * y2 > 0 && std::abs(x1 * y2 - x2 * y1) <= lengths * Bend;
}

/// The piece that each segment of a run belongs to, wherever the bus halts on it.
std::vector<Drive> drivesOf(const DrawnRun& run) {
    const auto segments = segmentsOf(run);
    std::vector<Drive> drives;
    for (std::size_t from = 0; from < segments.size();) {
        std::size_t to = from;
        while (to + 1 < segments.size() && goesOn(segments[to], segments[to + 1])) {
            ++to;
        }
        drives.insert(drives.end(), to - from + 1,
                      {cornerOf(segments[from].from), cornerOf(segments[to].to)});
        from = to + 1;
    }
    return drives;
}

int freeLane(const Sharing& sharing, std::size_t run, int wanted) {
    const auto isFree = [&](int lane) {
        return std::ranges::none_of(sharing.taken, [&](const Taken& taken) {
            return taken.lane == lane && taken.run != run;
        });
    };
    if (isFree(wanted)) {
        return wanted;
    }
    int lane = 0;
    while (!isFree(lane)) {
        ++lane;
    }
    return lane;
}

RunLanes byLegs(const DrawnRun& run, std::span<const int> lanes) {
    RunLanes legs;
    for (const DrawnLeg& leg : run.legs) {
        const std::size_t count = leg.line.empty() ? 0 : leg.line.size() - 1;
        legs.emplace_back(lanes.begin(), lanes.begin() + static_cast<std::ptrdiff_t>(count));
        lanes = lanes.subspan(count);
    }
    return legs;
}

/// Of a run that shares no street, found for each step of a stop that is dragged.
RunLanes alone(const DrawnRun& run) {
    RunLanes legs;
    for (const DrawnLeg& leg : run.legs) {
        legs.emplace_back(leg.line.empty() ? 0 : leg.line.size() - 1);
    }
    return legs;
}

}  // namespace

std::vector<RunLanes> lanesOf(const std::vector<DrawnRun>& runs) {
    if (runs.size() == 1) {
        return {alone(runs.front())};
    }
    std::vector<std::vector<Drive>> drives;
    std::map<Drive, Sharing> sharings;
    for (std::size_t run = 0; run < runs.size(); ++run) {
        for (const Drive& drive : drives.emplace_back(drivesOf(runs[run]))) {
            auto& users = sharings[drive].runs;
            if (users.empty() || users.back() != run) {
                users.push_back(run);
            }
        }
    }
    std::vector<RunLanes> lanes;
    for (std::size_t run = 0; run < runs.size(); ++run) {
        std::vector<int> of;
        int lane = 0;
        for (const Drive& drive : drives[run]) {
            Sharing& sharing = sharings[drive];
            lane = sharing.runs.size() > 1 ? freeLane(sharing, run, lane) : 0;
            sharing.taken.push_back({run, lane});
            of.push_back(lane);
        }
        lanes.push_back(byLegs(runs[run], of));
    }
    return lanes;
}

}  // namespace map
