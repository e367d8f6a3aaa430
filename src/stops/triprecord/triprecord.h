#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/records/records.h"
#include "platform/ado/connection.h"

namespace stops {

/// What the trip record form shows, and what of it a planner may change. A new field is one line of
/// this table and its control.
[[nodiscard]] const data::FieldTable& tripFields();

/// One stop's use for one trip type, perhaps on a run, with what is needed of the stop itself.
struct TripRecord {
    explicit TripRecord(const data::Record& stored = data::Record(tripFields()));

    data::Record fields;
    std::int64_t id;
    std::int64_t intStopId;
    std::string stopId;
    std::string stopType;
    std::string tripType;
    std::string run;  ///< "" for none

    [[nodiscard]] bool isOnRun() const { return !run.empty(); }
    /// Whether its time takes part in the run's; a turn point's does not.
    [[nodiscard]] bool isTimed() const;
    [[nodiscard]] std::optional<base::Date> timeAtStop() const;
};

/// The statement that finds the record of that id and its stop.
[[nodiscard]] std::string tripRecordSql(std::int64_t id);

/// The ids of a run's trip records in sequence.
[[nodiscard]] std::vector<std::int64_t> tripRecordsOf(ado::Connection& routing,
                                                      std::string_view run);

}  // namespace stops
