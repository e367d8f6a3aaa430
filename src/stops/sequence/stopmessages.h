#pragma once

#include <span>
#include <string>
#include <string_view>

#include "stops/sequence/runstops.h"

namespace stops {

inline constexpr std::string_view NoTripTypeTitle = "Stop does not have an Available Trip Type";
inline constexpr std::string_view NoTripTypeText =
    "Oops, you selected a stop that does not have a trip type.  Can't add to the run.  Before a "
    "stop can be assigned to a run it must have at least one trip type assigned to it.  When a "
    "stop is assigned to a run it is really a stop's trip type that is assigned to a run - so "
    "without an available trip type this stop cannot be assigned to this run.  Please either "
    "assign a trip type to this stop  or select a different stop.";

inline constexpr auto AddTitle = "Add Stops";
/// What to ask before the stops are added: where some come from another run, are on this one
/// already, or are very many. Empty where nothing needs asking.
[[nodiscard]] std::string questionBeforeAdding(const EditedRun& run,
                                               std::span<const ChosenStop> chosen);

inline constexpr std::string_view ChangedTitle = "Stop Changed by Another User";

/// Tells the planner of the stops that an action skipped: one message box for each reason, however
/// many stops there are; none where nothing was skipped.
void tellOfSkipped(const AddedStops& added);
void tellOfSkipped(const ChangedStops& changed);

inline constexpr auto LockedTitle = "Stops Not Changed";
inline constexpr auto LockedText =
    "Oops, another program is writing to the routing database just now, and nothing was changed.  "
    "Please wait a moment and try again.";

}  // namespace stops
