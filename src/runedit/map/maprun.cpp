#include "runedit/map/maprun.h"

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "platform/base/error.h"
#include "platform/base/text.h"
#include "startup/base/fieldvalues.h"

namespace runedit {

namespace {

using startup::timeOf;

std::string trimmedText(const ado::Field& field) {
    return std::string(base::trim(startup::textOf(field)));
}

}  // namespace

bool MapRun::countsFromStart() const { return base::equalsNoCase(timeToUse, "Start Time"); }

std::string MapRun::startOrEnd() const { return countsFromStart() ? "Start" : "End"; }

MapRun readMapRun(ado::Connection& connection, const std::string& run) {
    ado::Recordset row;
    if (!data::openRun(row, connection, run)) {
        throw base::RunTimeError(
            base::errors::InvalidProcedureCall,
            fmt::format("The run \"{}\" is not in the database; save it first.", run));
    }
    MapRun result{.run = trimmedText(row["Run"]),
                  .capacity = trimmedText(row["Capacity"]),
                  .overfill = startup::numberOf(row["OverFill"]),
                  .timeToUse = trimmedText(row["TimeToUse"]),
                  .vehType = trimmedText(row["VehType"]),
                  .startTime = timeOf(row["STARTTIME"]),
                  .endTime = timeOf(row["ENDTIME"]),
                  .bellTime = timeOf(row["BELLTIME"]),
                  .pickup = row["PICKUP"].asBoolean()};
    if (result.capacity.empty()) {
        result.capacity = "Medium";
    }
    return result;
}

std::string mapTimeText(const std::optional<base::Date>& time) {
    return time.value_or(base::Date()).timeValue().text();
}

}  // namespace runedit
