#pragma once

#include <span>
#include <string>
#include <string_view>

#include "groupops/base/outcome.h"
#include "platform/ado/connection.h"
#include "platform/base/ports.h"
#include "platform/base/value.h"

namespace groupops {

/// A column of RUN and what every run of the group gets there.
struct RunChange {
    std::string_view column;
    base::Value value;
};

/// Sets the columns on each of the runs and touches no other one. A run is one unit of work; runs
/// that are gone are left out. See GroupLoop.
///
/// Raises store::StoreError; what was written until then stays.
Outcome changeRuns(ado::Connection& routing, std::span<const std::string> runs,
                   std::span<const RunChange> changes, base::ProgressPort& progress);

}  // namespace groupops
