#include <utility>

#include <fmt/format.h>

#include "runedit/validation/rules.h"

namespace runedit {

namespace {

std::string tooMany(const CheckedRun& run, const StopRow& stop, std::int16_t total) {
    const bool known = run.hasVehicle();
    return fmt::format(
        "{}StopID: {} has added more passengers than the capacity (with the overfill added) of "
        "the{} assigned to the run. The stop's number of passengers is: {}.  The run's total "
        "passenger up to and including this stop is: {}.  The {}{} with a capacity of: {}.",
        // No blank between the run and "StopID": meant as it is.
        run.inRouteMode() ? "In Run: " + run.run : std::string(), stop.stopId,
        known ? " vehicle" : " vehicle Type", stop.students, total,
        known ? " vehicle assigned to this run is: " : " vehicle type assigned to this run is: ",
        known ? run.vehicle : run.vehType, run.capacity);
}

/// The row is read anew: a box about the vehicle type may have stood open since the first reading.
void saveTotal(const CheckedRun& run, std::int16_t total, ado::Connection& routing) {
    ado::Recordset row(runSql(run.run), routing, ado::CursorType::Dynamic);
    if (!row.Eof()) {
        row["Total_Students"].Value(static_cast<int>(total));
        row.Update();
    }
}

}  // namespace

PassengerCount countPassengers(const CheckedRun& run, const StopRows& regularStops) {
    PassengerCount count;
    for (const StopRow& stop : regularStops) {
        count.total = integer16(count.total + integer16(stop.students));
        if (run.capacity < count.total) {
            count.findings.push_back({stop.run, tooMany(run, stop, count.total)});
        }
    }
    return count;
}

std::vector<std::string> passengerReads(const CheckedRun& run) {
    return {stopsSql(regularStopsOf(run.run)), runSql(run.run)};
}

Findings Check_NumPassengers(const CheckedRun& run, const ValidationDatabases& databases) {
    auto count = countPassengers(run, readStops(databases.routing, regularStopsOf(run.run)));
    saveTotal(run, count.total, databases.routing);
    return std::move(count.findings);
}

}  // namespace runedit
