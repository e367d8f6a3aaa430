#pragma once

#include <cstdint>
#include <string>

#include "platform/base/date.h"

/// The times of a run's stops, and arithmetic with times.
namespace runedit {

/// Computes and writes the time of every stop of a run from one of them; see timeStoredStops. The
/// rows are the run's own, or with `useWorkTable` those of the work table, whose run is not asked
/// for. Returns the last time computed: that of the last stop for "Start", of the first stop for
/// "End" and "MID". After "MID" the caller's mode is "End" and its anchor the last stop's time,
/// unless no stop stood at the anchor.
base::Date Calc_Times(std::string& mode, base::Date& anchorTime, bool useWorkTable,
                      const std::string& run);

/// Minutes from one time to the other as a whole number, halves to even. Raises Overflow beyond 32
/// bits.
std::int32_t DiffMinutes(base::Date from, base::Date to);

/// Whether two spans of the day share more than an instant. Times count as times of day: a span
/// that ends before it begins goes on past midnight. One that ends when it begins shares nothing.
bool Time_Overlap(base::Date start1, base::Date end1, base::Date start2, base::Date end2);

}  // namespace runedit
