#pragma once

#include <random>

#include "runsearch/schedule/plan.h"

namespace schedule {

/// A day of invented runs: some without times, route or length, some past midnight, buses and
/// drivers on several routes.
inline Plan randomDay(unsigned seed, int runs = 120) {
    std::mt19937 random(seed);
    const auto below = [&](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    Plan plan;
    plan.schools = {{{"", ""}, 0}, {{"A", "Ash"}, 0}, {{"B", "Birch"}, 1}};
    plan.schoolTypes = {{"", ""}, {"E", "Elementary"}};
    plan.tripTypes = plan.locations = plan.vehicleTypes = {{"", ""}, {"X", "Any"}};
    for (int i = 0; i < 12; ++i) {
        plan.routes.push_back({i, std::to_string(100 + i), i % 3 == 0 ? "" : std::to_string(i / 2),
                               i % 4 == 0 ? "" : std::to_string(i / 3), "Driver"});
    }
    for (int i = 0; i < runs; ++i) {
        auto& run = plan.runs.emplace_back();
        run.id = std::to_string(i);
        run.route = below(13) - 1;
        run.school = below(3);
        run.tripType = below(2);
        run.days = static_cast<Days>(below(32));
        if (below(15) > 0) {
            run.start = 5 * Hour + below(20 * Hour);
            run.end = *run.start + (below(8) == 0 ? 0 : below(2 * Hour));
        }
        run.before = {below(3) == 0 ? std::nullopt : std::optional(below(Hour)), 2.5};
        run.after = {below(Hour), 1.5};
        run.fromGarage = below(5) == 0;
        run.stops = below(9);
        run.miles = below(30);
    }
    return plan;
}

}  // namespace schedule
