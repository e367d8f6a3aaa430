#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>

#include <benchmark/benchmark.h>

#include "streets/file/streetfile.h"
#include "streets/network/graphnetwork.h"
#include "streets/order/order.h"
#include "streets/solve/solve.h"

// The variable STREETS names a street file to be measured in the place of the smaller city.

namespace {

using streets::DoorSide;
using streets::Halt;

constexpr double BlockFeet = 400;
constexpr double RunRadius = 1.5 * 5280;

/// A city of so many crossings a side, each sixth street an arterial.
std::shared_ptr<const streets::StreetMap> cityOf(std::uint32_t side) {
    auto map = std::make_shared<streets::StreetMap>();
    map->names = {""};
    for (std::uint32_t i = 0; i < side; ++i) {
        map->names.push_back(std::to_string(i) + " Street");
        map->names.push_back(std::to_string(i) + " Avenue");
    }
    const auto lay = [&](std::uint32_t from, std::uint32_t to, std::uint32_t line, bool isAvenue) {
        const bool isArterial = line % 6 == 0;
        map->pieces.push_back({.from = from,
                               .to = to,
                               .name = 2 * line + (isAvenue ? 2U : 1U),
                               .firstPoint = static_cast<std::uint32_t>(map->points.size()),
                               .points = 2,
                               .feet = static_cast<float>(BlockFeet),
                               .kind = isArterial ? streets::StreetClass::Secondary
                                                  : streets::StreetClass::Residential,
                               .backward = isArterial || line % 5 != 0});
        map->points.push_back(map->nodes[from].at);
        map->points.push_back(map->nodes[to].at);
    };
    for (std::uint32_t row = 0; row < side; ++row) {
        for (std::uint32_t column = 0; column < side; ++column) {
            map->nodes.push_back({.at = {column * BlockFeet, row * BlockFeet},
                                  .signal = row % 6 == 0 && column % 6 == 0});
        }
    }
    for (std::uint32_t i = 0; i < side * side; ++i) {
        if (i % side + 1 < side) {
            lay(i, i + 1, i / side, false);
        }
        if (i / side + 1 < side) {
            lay(i, i + side, i % side, true);
        }
    }
    return map;
}

/// Streets to be measured, with random places on them.
class Measured {
public:
    explicit Measured(std::shared_ptr<const streets::StreetMap> streetMap)
        : map_(std::move(streetMap)), network_(streets::graphNetwork(map_, {})) {}

    /// The small city (or the file) and the large one, made once.
    static Measured& of(std::int64_t side) {
        static std::map<std::int64_t, Measured> made;
        const auto found = made.find(side);
        return found != made.end() ? found->second
                                   : made.try_emplace(side, mapOf(side)).first->second;
    }

    [[nodiscard]] const streets::Network& network() const { return *network_; }
    [[nodiscard]] const std::shared_ptr<const streets::StreetMap>& map() const { return map_; }

    geo::Feet placeAnywhere() {
        const auto nodes = static_cast<std::uint32_t>(map_->nodes.size());
        const geo::Feet at = map_->nodes[number(nodes)].at;
        return {at.x + number(200), at.y + number(200)};
    }
    geo::Feet placeNear(geo::Feet centre, double feet) {
        while (true) {
            const geo::Feet at = placeAnywhere();
            if (std::hypot(at.x - centre.x, at.y - centre.y) < feet) {
                return at;
            }
        }
    }
    Halt haltNear(geo::Feet centre, double feet) {
        while (true) {
            const auto halts = network_->haltsAt(placeNear(centre, feet), DoorSide::Right);
            if (!halts.empty()) {
                return halts.front();
            }
        }
    }

    /// A run of so many stops that can be solved, each the nearest one to the stop before.
    streets::RunToSolve run(std::size_t stops) {
        while (true) {
            const geo::Feet centre = placeAnywhere();
            streets::RunToSolve run;
            const auto places = placesInTurn(centre, stops);
            for (std::size_t i = 0; i < stops; ++i) {
                run.stops.push_back({.at = places[i],
                                     .side = i % 2 == 0 ? DoorSide::Right : DoorSide::Either,
                                     .students = i + 1 < stops ? 4 : 0});
            }
            if (streets::solve(*network_, run).unserved.empty()) {
                return run;
            }
        }
    }

private:
    std::vector<geo::Feet> placesInTurn(geo::Feet centre, std::size_t count) {
        std::vector<geo::Feet> places;
        for (std::size_t i = 0; i < count; ++i) {
            places.push_back(placeNear(centre, RunRadius));
        }
        for (std::size_t i = 1; i < count; ++i) {
            const auto nearest = std::ranges::min_element(
                places.begin() + static_cast<std::ptrdiff_t>(i), places.end(), {},
                [&](const geo::Feet& at) {
                    return std::hypot(at.x - places[i - 1].x, at.y - places[i - 1].y);
                });
            std::swap(places[i], *nearest);
        }
        return places;
    }

    static std::shared_ptr<const streets::StreetMap> mapOf(std::int64_t side) {
        const char* const file = std::getenv("STREETS");
        return file != nullptr && side < 200
                   ? std::make_shared<streets::StreetMap>(streets::readStreetFile(file))
                   : cityOf(static_cast<std::uint32_t>(side));
    }

    std::uint32_t number(std::uint32_t below) {
        return static_cast<std::uint32_t>(random_()) % below;
    }

    std::shared_ptr<const streets::StreetMap> map_;
    std::unique_ptr<const streets::Network> network_;
    std::mt19937 random_{1};
};

/// 20,000 and 300,000 crossings.
void bothCities(benchmark::internal::Benchmark* bench) {
    bench->Arg(142)->Arg(548)->Unit(benchmark::kMillisecond);
}

void prepareNetwork(benchmark::State& state) {
    const auto map = Measured::of(state.range(0)).map();
    for (auto _ : state) {
        benchmark::DoNotOptimize(streets::graphNetwork(map, {}));
    }
}
BENCHMARK(prepareNetwork)->Apply(bothCities);

void findHalt(benchmark::State& state) {
    Measured& measured = Measured::of(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            measured.network().haltsAt(measured.placeAnywhere(), DoorSide::Right));
    }
}
BENCHMARK(findHalt)->Arg(142)->Unit(benchmark::kMicrosecond);

void legBelow4000Feet(benchmark::State& state) {
    Measured& measured = Measured::of(state.range(0));
    std::vector<std::pair<Halt, Halt>> ends;
    for (int i = 0; i < 200; ++i) {
        const Halt from = measured.haltNear({}, 1e9);
        ends.emplace_back(from, measured.haltNear(from.at, 4000));
    }
    std::size_t next = 0;
    for (auto _ : state) {
        const auto& [from, to] = ends[next++ % ends.size()];
        benchmark::DoNotOptimize(measured.network().leg(from, to));
    }
}
BENCHMARK(legBelow4000Feet)->Arg(142)->Arg(548)->Unit(benchmark::kMicrosecond);

void runOf20Stops(benchmark::State& state) {
    Measured& measured = Measured::of(state.range(0));
    std::vector<streets::RunToSolve> runs;
    for (int i = 0; i < 20; ++i) {
        runs.push_back(measured.run(20));
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(streets::solve(measured.network(), runs[next++ % runs.size()]));
    }
}
BENCHMARK(runOf20Stops)->Apply(bothCities);

void matrixOf100(benchmark::State& state) {
    Measured& measured = Measured::of(state.range(0));
    std::vector<Halt> halts;
    while (halts.size() < 100) {
        halts.push_back(measured.haltNear({}, 1e9));
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(measured.network().matrix(halts, halts));
    }
}
BENCHMARK(matrixOf100)->Arg(142)->Unit(benchmark::kMillisecond);

void orderOfStops(benchmark::State& state) {
    Measured& measured = Measured::of(142);
    const auto run = measured.run(static_cast<std::size_t>(state.range(0)));
    const std::vector<bool> fixed(run.stops.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(streets::suggestOrder(measured.network(), run, fixed, {}));
    }
}
BENCHMARK(orderOfStops)->Arg(13)->Arg(21)->Arg(40)->Unit(benchmark::kMillisecond);

}  // namespace
