#include "runedit/validation/stoprows.h"

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "runedit/validation/checkedrun.h"

namespace runedit {

constexpr std::string_view Stops =
    "SELECT STOP.STOPID, STOP_TRIPTYPE.*, STOP.STOPTYPE FROM STOP INNER JOIN STOP_TRIPTYPE ON "
    "STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID";

std::string regularStopsOf(std::string_view run) {
    return fmt::format(" where STOP.STOPTYPE='REGULAR' AND STOP_TRIPTYPE.RUN='{}'",
                       ado::escaped(run));
}

std::string timedStopsOf(std::string_view run) {
    return fmt::format(" where STOP.STOPTYPE<>'DIRECTIONAL' AND STOP_TRIPTYPE.RUN='{}'",
                       ado::escaped(run));
}

std::string inSequence(std::string_view run) { return timedStopsOf(run).append(InSequence); }

std::string stopsSql(std::string_view condition) { return fmt::format("{}{}", Stops, condition); }

StopRows readStops(ado::Connection& routing, std::string_view condition) {
    ado::Recordset rows(stopsSql(condition), routing);
    const auto& stopId = rows["StopID"];
    const auto& run = rows["Run"];
    const auto& intStopId = rows["Int_STOPID"];
    const auto& tripType = rows["TripType"];
    const auto& students = rows["NUM_STUDENTS"];
    const auto& time = rows["Time_At_Stop"];
    const auto& rideMinutes = rows["CUM_TIME"];

    StopRows stops;
    for (; !rows.Eof(); rows.MoveNext()) {
        stops.push_back({textOf(stopId), textOf(run), wholeOf(intStopId), textOf(tripType),
                         wholeOf(students), timeOf(time), numberOf(rideMinutes)});
    }
    return stops;
}

}  // namespace runedit
