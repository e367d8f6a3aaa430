#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/base/date.h"
#include "stops/triprecord/tripfields.h"

namespace stops {

/// One stop's use for one trip type, perhaps on a run, with what is needed of the stop itself.
struct TripRecord {
    std::int64_t id = 0;
    std::int64_t intStopId = 0;
    std::string stopId;
    std::string description;
    std::string address;
    std::string stopType;
    bool rightSideOnly = false;  ///< may only be served from the right-hand side
    std::string tripType;
    std::string run;  ///< "" for none
    std::int64_t sequence = 0;
    std::string changedBy;
    std::optional<base::Date> changed;
    TripFields fields;

    [[nodiscard]] bool isOnRun() const { return !run.empty(); }
    /// Whether its time takes part in the run's; a turn point's does not.
    [[nodiscard]] bool isTimed() const;
};

/// The record of that id; nothing where it, or its stop, does not exist.
[[nodiscard]] std::optional<TripRecord> readTripRecord(ado::Connection& routing, std::int64_t id);

/// The ids of a run's trip records in sequence.
[[nodiscard]] std::vector<std::int64_t> tripRecordsOf(ado::Connection& routing,
                                                      std::string_view run);

/// What a planner reads about what somebody else has changed from `held` to `stored` while
/// `entered` was being typed, one line a change.
[[nodiscard]] std::string changesByOthers(const TripRecord& held, const TripRecord& stored,
                                          const TripFields& entered);

/// Who saves, and when.
struct Stamp {
    std::string user;
    base::Date now;
};

enum class SaveResult {
    Saved,
    Changed,  ///< somebody else has changed the record since; nothing was written
    Deleted   ///< somebody else has deleted it; nothing was written
};

struct SaveOutcome {
    SaveResult result = SaveResult::Saved;
    std::optional<TripRecord> stored;  ///< as it is now; nothing where it was deleted
};

/// Saves what was entered where it differs from the record that was read (`held`), as one unit of
/// work: the record with its audit columns, STATUSCHGDT only where Active changes, and the stop's
/// comment. Nothing is recomputed. Raises store::StoreError.
[[nodiscard]] SaveOutcome saveTripRecord(ado::Connection& routing, const TripRecord& held,
                                         const TripFields& entered, const Stamp& stamp);

}  // namespace stops
