#pragma once

#include "tools/district/make/plan.h"
#include "tools/district/travel/model.h"

namespace tools::district {

/// The whole day of the published plan is moved by this much, so that schools begin at 6:40 and not
/// at 5:40 in the morning.
inline constexpr std::int64_t SampleShiftSeconds = 3600;

/// "104-2": the second run of bus 4.
[[nodiscard]] std::string sampleRunId(const PlanRun& run);

/// A district around a published plan: its schools, stops, morning runs and buses stand as
/// published (`STOP.INT_STOPID` is the plan's own number); people, names, afternoon runs and the
/// flaws that every district has are invented.
[[nodiscard]] District sampleDistrict(const Plan& plan);

}  // namespace tools::district
