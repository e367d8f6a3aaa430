#pragma once

#include <cstdint>

#include "platform/table/texttable.h"

namespace data {

/// The passengers of a run's regular stops. The list has the columns STOPTYPE and NUM_STUDENTS.
[[nodiscard]] std::int64_t passengersOf(const table::TextTable& stops);

/// Fills the columns "No." (1-based) and "On the Bus" of a run's stops in their order: the
/// passengers that leave the stop with the bus, which on a run to school grow from stop to stop and
/// on a run home become fewer.
void countAlongTheRun(table::TextTable& stops, bool toSchool);

}  // namespace data
