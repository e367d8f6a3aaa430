#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/base/date.h"
#include "startup/base/fieldvalues.h"

namespace runedit {

/// The connections that a validation reads.
struct ValidationDatabases {
    ado::Connection& routing;
    ado::Connection& trip;
};

/// What is asked of each of them, for who asks several questions at once (ado::ReadAhead).
struct RunReads {
    std::vector<std::string> routing = {};
    std::vector<std::string> trip = {};
};

/// What the checks know of the run itself. A run that is not stored (any more) is one without
/// vehicle and bell.
struct CheckedRun {
    std::string run;
    std::int64_t intRouteId = 0;  ///< the route that the caller asks for; 0 is none

    std::int64_t ownRoute = 0;  ///< the run's own route; 0 is none
    std::string vehicle;        ///< of the run's own route, blank where none is known
    std::string vehType;        ///< of that vehicle, otherwise of the run; may be blank
    std::string capacityLevel = "Medium";
    std::int16_t capacity = 0;  ///< seats; filled where the passengers are checked
    bool pickup = false;
    std::optional<base::Date> bell;

    /// Whether findings are those of a route.
    [[nodiscard]] bool inRouteMode() const { return intRouteId != 0; }
    [[nodiscard]] bool hasVehicle() const;
};

/// Reads the run, its route and the route's vehicle, as far as there are any.
[[nodiscard]] CheckedRun readCheckedRun(const std::string& run, std::int64_t intRouteId,
                                        const ValidationDatabases& databases);

/// The statement that the checks read a run's row with.
[[nodiscard]] std::string runSql(std::string_view run);

/// What readCheckedRun asks behind that row where it finds the same route and vehicle again, for
/// who asks several questions at once (ado::ReadAhead).
[[nodiscard]] std::vector<std::string> routeReads(const CheckedRun& found);
[[nodiscard]] std::vector<std::string> vehicleReads(const CheckedRun& found);  ///< of the trips

using startup::numberOf;
using startup::textOf;
using startup::timeOf;
using startup::wholeOf;
using startup::yesNoOf;

/// A whole number of 16 bits; raises "Overflow" (6) beyond.
[[nodiscard]] std::int16_t integer16(std::int64_t number);

}  // namespace runedit
