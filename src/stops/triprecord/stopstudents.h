#pragma once

#include "platform/ado/connection.h"
#include "platform/table/texttable.h"
#include "stops/triprecord/triprecord.h"

namespace stops {

/// The special needs of the students who use the stop on that trip type, each with the number of
/// students, in the order of their codes.
[[nodiscard]] table::TextTable readStopNeeds(ado::Connection& routing, const TripRecord& record);

/// Those students in the order of their names: name, codes of the needs, student id,
/// school.
[[nodiscard]] table::TextTable readStopStudents(ado::Connection& routing, const TripRecord& record);

}  // namespace stops
