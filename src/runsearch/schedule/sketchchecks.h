#pragma once

#include <map>
#include <string>

#include "runedit/validation/rules.h"
#include "runsearch/schedule/sketch.h"

namespace schedule {

/// Asks the rules of the validation, those that the district wants, about runs that are tried out.
/// Nothing is stored. What is read of a run, a vehicle type and the district is kept, so that a run
/// may be asked about at every step of a drag.
class SketchChecks {
public:
    explicit SketchChecks(const runedit::ValidationDatabases& databases) : databases_(databases) {}

    /// Of a plan as it is stored. Raises what the databases raise.
    [[nodiscard]] MoveChecks of(const Plan& plan, const Drag& drag);

private:
    /// What is stored of a run, whatever place it is given.
    struct Stored {
        runedit::StopRows regular;
        runedit::StopRows timed;  ///< in sequence
        std::vector<runedit::StopNeeds> needs;
        std::size_t wrongSide = 0;  ///< stops served from there
    };
    struct Wanted {
        bool passengers = false, rightSide = false, earlyBell = false, lateBell = false,
             rideTime = false, special = false, times = false;
        std::int16_t longestRide = 0;  ///< minutes
    };

    [[nodiscard]] const Stored& stored(const std::string& run);
    [[nodiscard]] const Wanted& wanted();
    [[nodiscard]] const std::vector<runedit::NeedCount>& carriedBy(const std::string& vehicleType);

    runedit::ValidationDatabases databases_;
    std::map<std::string, Stored> stored_;
    std::optional<Wanted> wanted_;
    std::map<std::string, std::vector<runedit::NeedCount>> carried_;
};

}  // namespace schedule
