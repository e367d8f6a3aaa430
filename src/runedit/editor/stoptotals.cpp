#include "runedit/editor/stoptotals.h"

#include "data/lookups/mdlGetItems.h"
#include "platform/base/text.h"
#include "platform/base/value.h"

namespace runedit {

namespace {

using table::TextTable;

double number(const TextTable& stops, std::size_t row, std::string_view column) {
    const auto value = stops.value(row, column);
    return value.isNull() ? 0 : value.asNumber();
}

std::int64_t passengersAt(const TextTable& stops, std::size_t row) {
    const bool isRegular = base::equalsNoCase(base::trim(stops.text(row, "Stoptype")), "REGULAR");
    return isRegular ? static_cast<std::int64_t>(number(stops, row, "NUM_STUDENTS")) : 0;
}

}  // namespace

StopTotals totalsOf(const TextTable& stops) {
    StopTotals totals;
    totals.stops = static_cast<int>(stops.rowCount());
    for (std::size_t row = 0; row < stops.rowCount(); ++row) {
        totals.passengers += passengersAt(stops, row);
        if (row > 0) {
            totals.miles += number(stops, row, "DIST_TOSTOP");
            totals.minutes +=
                number(stops, row, "time_tostop") + number(stops, row - 1, "Load_Time");
        }
    }
    return totals;
}

void countAlongTheRun(TextTable& stops, bool toSchool) {
    auto onTheBus = toSchool ? 0 : totalsOf(stops).passengers;
    for (std::size_t row = 0; row < stops.rowCount(); ++row) {
        onTheBus += toSchool ? passengersAt(stops, row) : -passengersAt(stops, row);
        stops.set(row, stops.columnOf("No."), static_cast<std::int64_t>(row) + 1);
        stops.set(row, stops.columnOf("On the Bus"), onTheBus);
    }
}

std::optional<std::int64_t> seatsOf(const std::string& vehType, const std::string& capacityLevel) {
    const auto level = base::trim(capacityLevel);
    const bool isLevel = level.empty() || level == "High" || level == "Medium" || level == "Low";
    if (base::trim(vehType).empty() || !isLevel || data::GetVehType(vehType) == "NOT FOUND") {
        return std::nullopt;
    }
    const auto seats =
        data::GetVehType_Capacity(vehType, level.empty() ? "Medium" : std::string(level));
    return base::trim(seats).empty() ? 0 : base::Value(seats).asInteger();
}

}  // namespace runedit
