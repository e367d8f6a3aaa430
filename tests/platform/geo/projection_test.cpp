#include "platform/geo/projection.h"

#include <cmath>

#include <gtest/gtest.h>

#include "platform/base/error.h"

namespace geo {

namespace {

constexpr double MetresPerFoot = 0.3048;

/// The published series of the length of a degree of latitude, in metres.
double metresOfADegree(double latitude) {
    const double radians = latitude * std::acos(-1.0) / 180;
    return 111132.954 - 559.822 * std::cos(2 * radians) + 1.175 * std::cos(4 * radians);
}

TEST(Projection, IsTrueToScaleAndGoesBothWays) {
    for (const Degrees centre : {Degrees{38.97, -95.24}, {-41.06, 145.9}, {60, 0}, {0, 179.99}}) {
        const Projection plane({centre, {105523, 112388}});
        const Feet origin = plane.toFeet(centre);
        EXPECT_NEAR(origin.x, 105523, 1e-6);
        EXPECT_NEAR(origin.y, 112388, 1e-6);
        const Feet north = plane.toFeet({centre.latitude + 0.1, centre.longitude});
        EXPECT_NEAR((north.y - origin.y) * MetresPerFoot,
                    metresOfADegree(centre.latitude + 0.05) / 10, 0.2);
        EXPECT_NEAR(north.x, origin.x, 1e-3);
        EXPECT_GT(plane.toFeet({centre.latitude, centre.longitude + 0.001}).x, origin.x);
        for (const Feet place : {Feet{0, 0}, {200000, 50000}, {-70000, 300000}}) {
            const Feet again = plane.toFeet(plane.toDegrees(place));
            EXPECT_NEAR(again.x, place.x, 0.01);
            EXPECT_NEAR(again.y, place.y, 0.01);
        }
    }
    EXPECT_THROW(Projection({{91, 0}, {}}), base::RunTimeError);
}

}  // namespace

}  // namespace geo
