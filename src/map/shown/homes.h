#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "map/drawing/scene.h"
#include "map/shown/mappedrun.h"
#include "platform/ado/connection.h"
#include "streets/base/streetmap.h"
#include "streets/district/homes.h"

namespace map {

/// By a student's id, the stop that the student has for a trip type.
using StopsOfStudents = std::map<std::string, std::int64_t>;

/// Of all students who have a stop of the run for its trip type. Raises what the connection raises.
[[nodiscard]] StopsOfStudents studentsOf(ado::Connection& routing, const MappedRun& run);

/// The students who live at one place.
struct ShownHome {
    DrawnHome drawn;
    std::string told;  ///< the address, how many students, and how far it is to which stop
};

/// The homes within a mile of what is shown, each place once. Those of the run's students are
/// joined with their stops by a straight line.
[[nodiscard]] std::vector<ShownHome> homesAround(const streets::Box& shown,
                                                 std::span<const streets::Home> homes,
                                                 const MappedRun& run,
                                                 const StopsOfStudents& students);

}  // namespace map
