#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/district/travel/travel.h"

namespace tools::district {

/// A school of the benchmark; times of day in seconds.
struct PlanSchool {
    int id = 0;
    Point at;
    std::int64_t latest = 0;
};

struct PlanStop {
    int id = 0;
    Point at;
    int school = 0;
    int students = 0;
};

/// One line of the plan; times of day in milliseconds.
struct PlanLeg {
    int bus = 0;
    int from = 0;
    int to = 0;
    std::string action;
    std::int64_t start = 0;
    std::int64_t end = 0;
};

struct PlanVisit {
    int stop = 0;
    std::int64_t arrival = 0;  ///< milliseconds of the day
};

/// What a bus does between two dead-heads: picks up at stops and unloads at one school.
struct PlanRun {
    int bus = 0;
    int ordinal = 0;  ///< 1-based among the bus's runs
    std::vector<PlanVisit> pickups;
    PlanVisit school;
};

/// A benchmark instance with its published plan.
struct Plan {
    std::vector<PlanSchool> schools;
    std::vector<PlanStop> stops;
    std::vector<PlanLeg> legs;  ///< as published, a bus's in time order
    std::vector<PlanRun> runs;
    int depotId = 900001;
    Point depot{105600, 105600};

    [[nodiscard]] const PlanSchool& school(int id) const;
    [[nodiscard]] const PlanStop& stop(int id) const;
};

/// The texts of the instance's files.
struct PlanFiles {
    std::string_view schools;
    std::string_view stops;
    std::string_view plan;
};

/// Reads the files as they are published. Raises "Type mismatch" (13) for a cell that is no number.
[[nodiscard]] Plan readPlan(const PlanFiles& files);

/// The instance that this program carries with it, and its licence.
[[nodiscard]] PlanFiles embeddedPlan();
[[nodiscard]] std::string_view embeddedLicence();

}  // namespace tools::district
