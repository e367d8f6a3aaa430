#include "runedit/map/maprun.h"

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/base/error.h"
#include "platform/base/text.h"
#include "startup/mdlNONULL.h"

namespace runedit {

namespace {

std::optional<base::Date> timeOf(const ado::Field& field) {
    return field.isNull() ? std::nullopt : std::optional(field.Value().asDate());
}

std::string trimmedText(const ado::Field& field) {
    return std::string(base::trim(startup::NoNullString(field.Value()).asText()));
}

}  // namespace

bool MapRun::countsFromStart() const { return base::equalsNoCase(timeToUse, "Start Time"); }

std::string MapRun::startOrEnd() const { return countsFromStart() ? "Start" : "End"; }

MapRun readMapRun(ado::Connection& connection, const std::string& run) {
    ado::Recordset row;
    row.Open(fmt::format("Select Run.* from RUN WHERE RUN.RUN='{}'", run), connection);
    if (row.Eof()) {
        throw base::RunTimeError(
            base::errors::InvalidProcedureCall,
            fmt::format("The run \"{}\" is not in the database; save it first.", run));
    }
    MapRun result{.run = trimmedText(row["Run"]),
                  .capacity = trimmedText(row["Capacity"]),
                  .overfill = startup::NoNullNumber(row["OverFill"].Value()).asNumber(),
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
