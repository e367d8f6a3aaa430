#pragma once

#include <span>
#include <string>

#include "groupops/base/outcome.h"
#include "platform/ado/connection.h"
#include "platform/base/ports.h"
#include "runsearch/schedule/sketch.h"

namespace schedule {

/// Writes the moves of a sketch, a run a unit of work: its route and times, the times of its stops,
/// who changed it, and an entry in the run log. Its dead-head is no longer known afterwards, and
/// the district's is marked as due. A run that is not as the plan has it any more is left out.
///
/// Raises store::StoreError; what was written until then stays.
groupops::Outcome saveMoves(ado::Connection& routing, const Plan& stored,
                            std::span<const Move> moves, const std::string& user,
                            base::ProgressPort& progress);

}  // namespace schedule
