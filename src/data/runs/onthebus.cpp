#include "data/runs/onthebus.h"

#include "data/schema/schema.h"
#include "platform/base/text.h"

namespace data {

namespace {

std::int64_t passengersAt(const table::TextTable& stops, std::size_t row) {
    const auto passengers = stops.value(row, "NUM_STUDENTS");
    const bool isRegular =
        base::equalsNoCase(base::trim(stops.text(row, "STOPTYPE")), stoptype::Regular);
    return isRegular && !passengers.isNull() ? static_cast<std::int64_t>(passengers.asNumber()) : 0;
}

}  // namespace

std::int64_t passengersOf(const table::TextTable& stops) {
    std::int64_t passengers = 0;
    for (std::size_t row = 0; row < stops.rowCount(); ++row) {
        passengers += passengersAt(stops, row);
    }
    return passengers;
}

void countAlongTheRun(table::TextTable& stops, bool toSchool) {
    auto onTheBus = toSchool ? 0 : passengersOf(stops);
    for (std::size_t row = 0; row < stops.rowCount(); ++row) {
        onTheBus += toSchool ? passengersAt(stops, row) : -passengersAt(stops, row);
        stops.set(row, stops.columnOf("No."), static_cast<std::int64_t>(row) + 1);
        stops.set(row, stops.columnOf("On the Bus"), onTheBus);
    }
}

}  // namespace data
