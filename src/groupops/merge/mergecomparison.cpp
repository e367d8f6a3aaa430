#include "groupops/merge/mergecomparison.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"
#include "runedit/validation/stoprows.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

using startup::textOf;
using Verdict = MergeLine::Verdict;

constexpr std::pair<const char*, const char*> Weekdays[]{{"monday", "Mon"},
                                                         {"tuesday", "Tue"},
                                                         {"wednesday", "Wed"},
                                                         {"thursday", "Thu"},
                                                         {"friday", "Fri"}};

/// What is compared of a run.
struct Side {
    std::string description, school, tripType, direction, days, bell, times;
    std::int64_t stops = 0;
    std::int64_t passengers = 0;
};

std::string plain(const ado::Field& field) { return std::string(base::trim(textOf(field))); }

std::string hhmm(const ado::Field& field) {
    const auto time = startup::timeOf(field);
    return time ? time->hhmm() : "none";
}

std::string daysOf(ado::Recordset& row) {
    std::string days;
    for (const auto& [column, name] : Weekdays) {
        days += startup::yesNoOf(row[column]) ? (days.empty() ? "" : " ") + std::string(name) : "";
    }
    return days.empty() ? "none" : days;
}

std::int64_t stopCount(ado::Connection& routing, const std::string& run) {
    ado::Recordset count(
        fmt::format("SELECT COUNT(*) AS STOPS FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.RUN='{}'",
                    ado::escaped(run)),
        routing);
    return startup::wholeOf(count["STOPS"]);
}

std::int64_t passengersOf(ado::Connection& routing, const std::string& run) {
    std::int64_t passengers = 0;
    for (const auto& stop : runedit::readStops(routing, runedit::regularStopsOf(run))) {
        passengers += stop.students;
    }
    return passengers;
}

std::optional<Side> sideOf(ado::Connection& routing, const std::string& id) {
    const std::string run(base::trim(id));
    ado::Recordset row;
    if (!data::openRun(row, routing, run)) {
        return std::nullopt;
    }
    return Side{.description = plain(row["DESCRIPTION"]),
                .school = plain(row["SCHOOL"]),
                .tripType = plain(row["TRIPTYPE"]),
                .direction = startup::yesNoOf(row["PICKUP"]) ? "Pickup" : "Drop Off",
                .days = daysOf(row),
                .bell = hhmm(row["BELLTIME"]),
                .times = fmt::format("{} to {}", hhmm(row["STARTTIME"]), hhmm(row["ENDTIME"])),
                .stops = stopCount(routing, run),
                .passengers = passengersOf(routing, run)};
}

MergeLine judged(const char* thing, const std::string& source, const std::string& receiving) {
    return {thing, source, receiving,
            base::equalsNoCase(source, receiving) ? Verdict::Like : Verdict::Unlike};
}

std::vector<MergeLine> linesOf(const Side& source, const Side& receiving) {
    return {
        {"Description", source.description, receiving.description},
        judged("School", source.school, receiving.school),
        judged("Trip type", source.tripType, receiving.tripType),
        judged("Direction", source.direction, receiving.direction),
        judged("Days", source.days, receiving.days),
        {"Bell", source.bell, receiving.bell},
        {"Times", source.times, receiving.times},
        {"Stops", std::to_string(source.stops), std::to_string(receiving.stops)},
        {"Passengers", std::to_string(source.passengers), std::to_string(receiving.passengers)}};
}

}  // namespace

std::vector<std::string> MergeComparison::unlike() const {
    std::vector<std::string> things;
    for (const MergeLine& line : lines) {
        if (line.verdict == Verdict::Unlike) {
            things.push_back(base::lowered(line.thing));
        }
    }
    return things;
}

const MergeLine& MergeComparison::line(const std::string& thing) const {
    return *std::ranges::find(lines, thing, &MergeLine::thing);
}

std::int64_t MergeComparison::tooMany() const {
    return seats ? std::max<std::int64_t>(0, passengersAfter - *seats) : 0;
}

std::optional<MergeComparison> compareForMerge(const runedit::ValidationDatabases& databases,
                                               const RunMerge& merge, const SeatsOf& seatsOf) {
    const auto source = sideOf(databases.routing, merge.source);
    const auto receiving = sideOf(databases.routing, merge.receiving);
    if (!receiving) {
        return std::nullopt;
    }
    auto lines = linesOf(source.value_or(Side()), *receiving);
    for (MergeLine& line : lines) {
        if (!source) {
            line.source.clear();
            line.verdict = Verdict::NotJudged;
        }
    }
    const auto bus =
        runedit::readCheckedRun(std::string(base::trim(merge.receiving)), 0, databases);
    return MergeComparison{
        .complete = source.has_value(),
        .lines = std::move(lines),
        .stopsAfter = (source ? source->stops : 0) + receiving->stops,
        .passengersAfter = (source ? source->passengers : 0) + receiving->passengers,
        .seats = seatsOf(bus.vehType, bus.capacityLevel)};
}

std::string concernsOf(const MergeComparison& comparison, const RunMerge& merge) {
    const auto run = [&](const std::string& id, std::string MergeLine::*side) {
        const std::string& description = comparison.line("Description").*side;
        const std::string& school = comparison.line("School").*side;
        return fmt::format("{}{}{}, school {}", id, description.empty() ? "" : ", ", description,
                           school.empty() ? "none" : school);
    };
    return fmt::format("{} {} of run {}\nonto run {}", comparison.line("Stops").source,
                       comparison.line("Stops").source == "1" ? "stop" : "stops",
                       run(merge.source, &MergeLine::source),
                       run(merge.receiving, &MergeLine::receiving));
}

}  // namespace groupops
