#pragma once

#include <filesystem>

namespace tools::district {

/// Writes an instance of the school-bus benchmark (Schools.txt, Stops.txt, and Plan.csv or, where
/// it has no plan, Trips.txt) as files that can be imported: schools, stops, routes, runs with
/// their stops, and the plan's dead-head ways. A run is what a bus does between two dead-heads, or
/// a trip that arrives as late as its school allows. Times are the instance's own; nothing is
/// invented. Raises base::RunTimeError.
void writePlanSources(const std::filesystem::path& instance, const std::filesystem::path& folder);

}  // namespace tools::district
