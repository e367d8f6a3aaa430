#include "runedit/validation/checkedrun.h"

#include <limits>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "platform/base/text.h"

namespace runedit {

namespace {

bool isBlank(std::string_view text) { return base::trim(text).empty(); }

std::string routeSql(std::int64_t intRouteId) {
    return fmt::format("Select ROUTE.* FROM ROUTE Where ROUTE.INT_ROUTEID={}", intRouteId);
}

std::string vehicleSql(std::string_view vehicle) {
    return fmt::format("Select VEHICLE.* From VEHICLE WHERE VEHICLE.VEHICLE='{}'",
                       ado::escaped(base::trim(vehicle)));
}

/// The vehicle of a route; blank where there is none.
std::string vehicleOfRoute(std::int64_t intRouteId, ado::Connection& routing) {
    if (intRouteId == 0) {
        return {};
    }
    ado::Recordset route(routeSql(intRouteId), routing);
    return route.Eof() ? std::string() : textOf(route["Vehicle"]);
}

std::optional<std::string> vehTypeOfVehicle(std::string_view vehicle, ado::Connection& trip) {
    ado::Recordset row(vehicleSql(vehicle), trip);
    return row.Eof() ? std::nullopt : std::optional(textOf(row["VehType"]));
}

void readRun(CheckedRun& checked, ado::Connection& routing) {
    ado::Recordset row(runSql(checked.run), routing);
    if (row.Eof()) {
        return;
    }
    // The run's overfill is not added to the capacity, although the message speaks of it: meant.
    checked.vehType = textOf(row["VehType"]);
    if (const auto level = textOf(row["Capacity"]); !isBlank(level)) {
        checked.capacityLevel = level;
    }
    checked.pickup = yesNoOf(row["Pickup"]);
    checked.bell = timeOf(row["BellTime"]);
    checked.ownRoute = wholeOf(row["Int_RouteID"]);
}

}  // namespace

bool CheckedRun::hasVehicle() const { return !isBlank(vehicle); }

CheckedRun readCheckedRun(const std::string& run, std::int64_t intRouteId,
                          const ValidationDatabases& databases) {
    CheckedRun checked;
    checked.run = run;
    checked.intRouteId = intRouteId;
    readRun(checked, databases.routing);
    checked.vehicle = vehicleOfRoute(checked.ownRoute, databases.routing);
    if (checked.hasVehicle()) {
        checked.vehType =
            vehTypeOfVehicle(checked.vehicle, databases.trip).value_or(checked.vehType);
    }
    return checked;
}

std::string runSql(std::string_view run) {
    return fmt::format("Select RUN.* FROM RUN Where RUN.RUN='{}'", ado::escaped(run));
}

std::vector<std::string> routeReads(const CheckedRun& found) {
    return found.ownRoute == 0 ? std::vector<std::string>() : std::vector{routeSql(found.ownRoute)};
}

std::vector<std::string> vehicleReads(const CheckedRun& found) {
    return found.hasVehicle() ? std::vector{vehicleSql(found.vehicle)} : std::vector<std::string>();
}

std::int16_t integer16(std::int64_t number) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (number < Limits::min() || number > Limits::max()) {
        base::raise(base::errors::Overflow);
    }
    return static_cast<std::int16_t>(number);
}

}  // namespace runedit
