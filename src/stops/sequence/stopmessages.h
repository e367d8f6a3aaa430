#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/table/texttable.h"
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

inline constexpr auto RemovalTitle = "Please Confirm Removal of Stops";
/// What to ask before stops are taken off, and what that concerns: the rows of a list that has the
/// columns STOPID, ADDR1, DESCRIPTION and NUM_STUDENTS, in the order of the run.
[[nodiscard]] std::string questionBeforeRemoving(const table::TextTable& stops,
                                                 std::span<const int> rows);
[[nodiscard]] std::string removalConcerns(const table::TextTable& stops, std::span<const int> rows,
                                          std::string_view run);

inline constexpr std::string_view ChangedTitle = "Stop Changed by Another User";
inline constexpr std::string_view RunGoneTitle = "Run Deleted";

/// Tells the planner of the stops that an action skipped: one message box for each reason, which
/// names the stops; none where nothing was skipped.
void tellOfSkipped(const AddedStops& added);
void tellOfSkipped(const ChangedStops& changed);

/// What an action has done, in a line: "2 stops added.  1 not added."
[[nodiscard]] std::string resultOf(const AddedStops& added);
[[nodiscard]] std::string resultOf(const ChangedStops& changed, std::string_view done);

inline constexpr auto LockedTitle = "Stops Not Changed";
inline constexpr auto LockedText =
    "Oops, another program is writing to the routing database just now, and nothing was changed.  "
    "Please wait a moment and try again.";
inline constexpr auto LockedOnLeavingTitle = "Stops Saved, Form Not Left";
inline constexpr auto LockedOnLeavingText =
    "Oops, another program is writing to the routing database just now.  The stops are saved as "
    "the list shows them, but it could not be noted yet that the run has changed.  Please wait a "
    "moment and press Exit again.";

}  // namespace stops
