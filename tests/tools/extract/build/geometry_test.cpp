#include "tools/extract/build/geometry.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include <gmock/gmock.h>

namespace {

using namespace tools::extract;

TEST(Thinning, LeavesNoPointFartherOffThanSaid) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> step(-4, 12);
    for (int round = 0; round < 50; ++round) {
        std::vector<geo::Feet> line{{}};
        for (int i = 0; i < 80; ++i) {
            line.push_back({line.back().x + step(random), line.back().y + step(random) / 4});
        }
        std::vector<std::uint32_t> points(line.size());
        std::iota(points.begin(), points.end(), 0U);
        const auto left = placesAlong(thinned(points, line, 1), line);
        EXPECT_LT(left.size(), line.size());
        for (const geo::Feet& at : line) {
            double nearest = 1e9;
            for (std::size_t i = 1; i < left.size(); ++i) {
                for (int part = 0; part <= 256; ++part) {
                    const double share = part / 256.0;
                    nearest = std::min(
                        nearest, feetBetween(at, {std::lerp(left[i - 1].x, left[i].x, share),
                                                  std::lerp(left[i - 1].y, left[i].y, share)}));
                }
            }
            EXPECT_LT(nearest, 1.1);
        }
    }
}

TEST(Rings, AreJoinedFromLinesInAnyOrderAndDirection) {
    // Two areas, cut into their sides; a third one lacks a side, and its two lines lie apart.
    std::vector<geo::Feet> places;
    for (const double at : {0.0, 1000.0, 2000.0}) {
        places.insert(places.end(), {{at, 0}, {at + 200, 0}, {at + 200, 50}, {at, 50}});
    }
    std::vector<std::vector<std::uint32_t>> lines{{0, 1}, {2, 1}, {2, 3}, {0, 3},  {4, 5, 6},
                                                  {4, 7}, {7, 6}, {8, 9}, {10, 11}};
    std::mt19937 random(5);
    for (int round = 0; round < 20; ++round) {
        std::ranges::shuffle(lines, random);
        const auto rings = joinedRings(lines, places);
        ASSERT_EQ(rings.size(), 3U);
        for (const auto& ring : rings) {
            std::vector<geo::Feet> corners(ring.size());
            std::ranges::transform(ring, corners.begin(), [&](auto node) { return places[node]; });
            EXPECT_EQ(ring.front(), ring.back());
            EXPECT_DOUBLE_EQ(areaOf(corners), 10'000);
        }
    }
}

}  // namespace
