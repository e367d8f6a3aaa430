#include "tools/district/deadhead/neededways.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

constexpr std::size_t MostWays = 1'000'000;

struct RunEnds {
    std::int64_t first = 0;
    std::int64_t last = 0;
};

struct RouteEnds {
    std::int64_t garage = 0;
    std::vector<RunEnds> runs = {};
};

std::map<std::int64_t, RouteEnds> readRoutes(store::Database& routing) {
    std::map<std::int64_t, RouteEnds> routes;
    const auto garages = routing.prepare("SELECT INT_ROUTEID, GARAGE_STOPID FROM ROUTE");
    while (garages->step()) {
        routes[garages->integer(0)].garage = garages->integer(1);
    }
    const auto runs = routing.prepare("SELECT INT_ROUTEID, FIRSTSTOP, LASTSTOP FROM RUN");
    while (runs->step()) {
        if (const auto route = routes.find(runs->integer(0)); route != routes.end()) {
            route->second.runs.push_back({runs->integer(1), runs->integer(2)});
        }
    }
    return routes;
}

void addWaysOf(const RouteEnds& route, std::set<TravelWay>& ways) {
    for (const RunEnds& run : route.runs) {
        ways.emplace(route.garage, run.first);
        ways.emplace(run.last, route.garage);
        for (const RunEnds& other : route.runs) {
            if (&other != &run) {
                ways.emplace(run.last, other.first);
            }
        }
    }
}

std::set<std::int64_t> allEnds(store::Database& routing) {
    std::set<std::int64_t> ends;
    const auto rows = routing.prepare(
        fmt::format("SELECT GARAGE_STOPID FROM ROUTE UNION SELECT FIRSTSTOP FROM RUN UNION"
                    " SELECT LASTSTOP FROM RUN UNION SELECT INT_STOPID FROM STOP WHERE STOPTYPE IN "
                    "('{}', '{}')",
                    data::stoptype::Garage, data::stoptype::School));
    while (rows->step()) {
        if (rows->integer(0) > 0) {
            ends.insert(rows->integer(0));
        }
    }
    return ends;
}

void requireFew(std::size_t ways) {
    if (ways > MostWays) {
        refuse(fmt::format("These are {} ways between stops; at most {} can be worked out.", ways,
                           MostWays));
    }
}

/// One of both directions is enough: a way that is stored serves for both.
std::set<TravelWay> waysBetween(const std::set<std::int64_t>& ends) {
    requireFew(ends.size() * ends.size() / 2);
    std::set<TravelWay> ways;
    for (auto from = ends.begin(); from != ends.end(); ++from) {
        for (auto to = std::next(from); to != ends.end(); ++to) {
            ways.emplace_hint(ways.end(), *from, *to);
        }
    }
    return ways;
}

void readEnds(store::Database& routing, NeededWays& needed) {
    for (const auto& [from, to] : needed.ways) {
        needed.ends[from];
        needed.ends[to];
    }
    const auto stops = routing.prepare("SELECT INT_STOPID, STOPID, XPOS, YPOS FROM STOP");
    while (stops->step()) {
        if (const auto end = needed.ends.find(stops->integer(0)); end != needed.ends.end()) {
            const geo::Feet at{stops->real(2), stops->real(3)};
            end->second = {std::string(stops->text(1)), at, at.x != 0 || at.y != 0};
        }
    }
}

}  // namespace

NeededWays neededWays(store::Database& routing, bool all) {
    NeededWays needed;
    const auto routes = readRoutes(routing);
    std::set<TravelWay> ways = all ? waysBetween(allEnds(routing)) : std::set<TravelWay>();
    for (const auto& [id, route] : routes) {
        addWaysOf(route, ways);
    }
    std::ranges::copy_if(ways, std::back_inserter(needed.ways), [](const TravelWay& way) {
        return way.first > 0 && way.second > 0 && way.first != way.second;
    });
    requireFew(needed.ways.size());
    needed.routes = routes.size();
    readEnds(routing, needed);
    return needed;
}

}  // namespace tools::district
