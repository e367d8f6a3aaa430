#include "runedit/editor/stoptotals.h"

#include <algorithm>

#include "data/lookups/mdlGetItems.h"
#include "data/runs/onthebus.h"
#include "platform/base/text.h"
#include "platform/base/value.h"

namespace runedit {

namespace {

using table::TextTable;

double number(const TextTable& stops, std::size_t row, std::string_view column) {
    const auto value = stops.value(row, column);
    return value.isNull() ? 0 : value.asNumber();
}

}  // namespace

StopTotals totalsOf(const TextTable& stops) {
    StopTotals totals;
    totals.stops = static_cast<int>(stops.rowCount());
    totals.passengers = data::passengersOf(stops);
    for (std::size_t row = 1; row < stops.rowCount(); ++row) {
        totals.miles += number(stops, row, "DIST_TOSTOP");
        totals.minutes += number(stops, row, "time_tostop") + number(stops, row - 1, "Load_Time");
    }
    return totals;
}

std::vector<std::string> seatsReads(const std::vector<std::string>& vehTypes) {
    std::vector<std::string> reads;
    for (const std::string& vehType : vehTypes) {
        const auto question = data::questionOf(data::GetVehType, vehType);
        if (!base::trim(vehType).empty() && std::ranges::find(reads, question) == reads.end()) {
            reads.push_back(question);
            reads.push_back(data::capacityQuestion(vehType));
        }
    }
    return reads;
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
