#include "runedit/validation/checkedrun.h"

#include <limits>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "platform/base/text.h"

namespace runedit {

namespace {

bool isBlank(std::string_view text) { return base::trim(text).empty(); }

/// The vehicle of a route; blank where there is none.
std::string vehicleOfRoute(std::int64_t intRouteId, ado::Connection& routing) {
    if (intRouteId == 0) {
        return {};
    }
    ado::Recordset route;
    route.Open(fmt::format("Select ROUTE.* FROM ROUTE Where ROUTE.INT_ROUTEID={}", intRouteId),
               routing);
    return route.Eof() ? std::string() : textOf(route["Vehicle"]);
}

std::optional<std::string> vehTypeOfVehicle(std::string_view vehicle, ado::Connection& trip) {
    ado::Recordset row;
    row.Open(fmt::format("Select VEHICLE.* From VEHICLE WHERE VEHICLE.VEHICLE='{}'",
                         ado::escaped(base::trim(vehicle))),
             trip);
    return row.Eof() ? std::nullopt : std::optional(textOf(row["VehType"]));
}

/// Reads the run's row; returns the route that it is on.
std::int64_t readRun(CheckedRun& checked, ado::Connection& routing) {
    ado::Recordset row;
    row.Open(runSql(checked.run), routing);
    if (row.Eof()) {
        return 0;
    }
    // The run's overfill is not added to the capacity, although the message speaks of it: meant.
    checked.vehType = textOf(row["VehType"]);
    if (const auto level = textOf(row["Capacity"]); !isBlank(level)) {
        checked.capacityLevel = level;
    }
    checked.pickup = yesNoOf(row["Pickup"]);
    checked.bell = timeOf(row["BellTime"]);
    return wholeOf(row["Int_RouteID"]);
}

}  // namespace

bool CheckedRun::hasVehicle() const { return !isBlank(vehicle); }

CheckedRun readCheckedRun(const std::string& run, std::int64_t intRouteId,
                          const ValidationDatabases& databases) {
    CheckedRun checked;
    checked.run = run;
    checked.intRouteId = intRouteId;
    checked.vehicle = vehicleOfRoute(readRun(checked, databases.routing), databases.routing);
    if (checked.hasVehicle()) {
        checked.vehType =
            vehTypeOfVehicle(checked.vehicle, databases.trip).value_or(checked.vehType);
    }
    return checked;
}

std::string runSql(std::string_view run) {
    return fmt::format("Select RUN.* FROM RUN Where RUN.RUN='{}'", ado::escaped(run));
}

std::int16_t integer16(std::int64_t number) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (number < Limits::min() || number > Limits::max()) {
        base::raise(base::errors::Overflow);
    }
    return static_cast<std::int16_t>(number);
}

}  // namespace runedit
