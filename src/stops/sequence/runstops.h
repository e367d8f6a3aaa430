#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/base/ports.h"
#include "stops/search/chosenstop.h"

/// Putting stops on a run, taking them off and ordering them.
///
/// Each function is one action: its changes, renumbering and log rows are one unit of work, based
/// on the run as it is stored at that moment, not as a list showed it. Nothing is asked or shown
/// here; what could not be done is in the answer. Raises what the connection raises.
namespace stops {

/// The run being edited and who edits it.
struct EditedRun {
    std::string run;
    std::string tripType;  ///< the run's; garages and schools are put on it with this one
    std::string user;      ///< whom the log names
    /// Whether a map program solves changed runs: a run that loses a stop to another one is then
    /// marked for it.
    bool isMapped = false;
};

/// One stop of a run, in the order of the run.
struct RunStop {
    std::int64_t stopTripId = 0;
    std::int64_t intStopId = 0;
    std::string stopId;
    std::string stopType;
    std::string tripType;
    std::int64_t sequence = 0;
};

/// Garages and schools are shared: each time one is put on a run it gets a trip-type record of its
/// own, which goes when it is taken off.
[[nodiscard]] bool isSharedPlace(std::string_view stopType);

/// Every stop of the run, turn points included, ascending by sequence.
[[nodiscard]] std::string runStopsQuery(std::string_view run);
[[nodiscard]] std::vector<RunStop> readRunStops(ado::Connection& connection, std::string_view run);

struct AddedStops {
    std::vector<std::int64_t> stopTripIds;  ///< now on the run, in the order given
    /// Skipped: the stop has no free record of the run's trip type. `run` is the run that its
    /// record is on, blank where it has none.
    std::vector<ChosenStop> withoutTripType;
    std::vector<ChosenStop> changedByAnother;  ///< skipped: no longer where the list showed them
    std::vector<std::string> takenFrom;        ///< other runs that lost a stop, each once
    bool runIsGone = false;                    ///< nothing was done: there is no such run
};

/// Puts the stops behind the run's last one, in the order given. A record goes from the run that it
/// was shown on to this one, which that run's log tells, too; where another program has moved or
/// deleted it meanwhile it is left alone. A plain stop gets on the run with its free record of the
/// run's trip type.
AddedStops addStops(ado::Connection& connection, const EditedRun& run,
                    std::span<const ChosenStop> chosen, base::ProgressPort* progress = nullptr);

struct ChangedStops {
    std::vector<std::int64_t> stopTripIds;       ///< removed or moved
    std::vector<std::int64_t> changedByAnother;  ///< skipped: no longer on the run
    /// Not moved: the stop and its neighbour have the same number.
    std::vector<std::int64_t> equallyNumbered;
    bool placeIsGone = false;  ///< nothing was done: the place to move to is no longer on the run
};

/// Takes the stops off the run. The remaining ones are numbered 0, 1, 2, … in their old order:
/// from 0, although adding and moving count from 1. Meant as it is.
ChangedStops removeStops(ado::Connection& connection, const EditedRun& run,
                         std::span<const std::int64_t> stopTripIds,
                         base::ProgressPort* progress = nullptr);

enum class Move { ToTop, ToBottom, Up, Down };

/// Moves the stops; several keep their order among themselves and are each logged as one move, from
/// the number that they had before. To the top or bottom numbers the whole run from 1; up or down
/// exchanges the numbers of two neighbours as they are, and does nothing where there is no
/// neighbour (then the stop is not among the answer's).
ChangedStops moveStops(ado::Connection& connection, const EditedRun& run,
                       std::span<const std::int64_t> stopTripIds, Move move);

/// Puts the stops in front of one of the run, or behind its last one (`before` 0), in their order
/// among themselves, and numbers the whole run from 1. The answer holds those that changed places;
/// where none does nothing is written.
ChangedStops placeStops(ado::Connection& connection, const EditedRun& run,
                        std::span<const std::int64_t> stopTripIds, std::int64_t before);

/// Notes that runs were changed and the dead-head must be calculated again.
void needDeadHeadBuild(ado::Connection& connection);

}  // namespace stops
