#include "runsearch/schedule/summaries.h"

#include <algorithm>
#include <tuple>

#include <fmt/format.h>

#include "platform/base/date.h"
#include "platform/base/lookup.h"
#include "platform/base/text.h"

namespace schedule {

namespace {

using table::CellKind;

struct GroupingText {
    const char* caption;
    const char* none;
};

GroupingText textOf(Grouping grouping) {
    static constexpr std::pair<Grouping, GroupingText> Texts[] = {
        {Grouping::School, {"School", "No school"}},
        {Grouping::SchoolType, {"School Type", "No school type"}},
        {Grouping::TripType, {"Trip Type", "No trip type"}},
        {Grouping::Location, {"Location", "No location"}}};
    return base::lookUp(Texts, grouping, {"Vehicle Type", "No vehicle type"});
}

std::size_t placeOf(const Plan& plan, const ScheduledRun& run, Grouping grouping) {
    const auto place = [&] {
        switch (grouping) {
            case Grouping::School:
                return run.school;
            case Grouping::SchoolType:
                return plan.school(run.school).type;
            case Grouping::TripType:
                return run.tripType;
            case Grouping::Location:
                return run.location;
            case Grouping::VehicleType:
                break;
        }
        return run.vehicleType;
    }();
    return static_cast<std::size_t>(place);
}

std::vector<Named> namesOf(const Plan& plan, Grouping grouping) {
    switch (grouping) {
        case Grouping::School:
            return {plan.schools.begin(), plan.schools.end()};
        case Grouping::SchoolType:
            return plan.schoolTypes;
        case Grouping::TripType:
            return plan.tripTypes;
        case Grouping::Location:
            return plan.locations;
        case Grouping::VehicleType:
            break;
    }
    return plan.vehicleTypes;
}

void addTo(Summary& sum, const ScheduledRun& run, const CountedTrips& trips) {
    ++sum.runs;
    sum.stops += run.stops;
    sum.students += run.students;
    sum.miles += run.miles;
    sum.emptyMiles += (trips.before ? run.before.miles : 0) + (trips.after ? run.after.miles : 0);
    if (run.start) {
        sum.hours += static_cast<double>(*run.end - *run.start) / Hour;
        sum.firstStart = std::min(sum.firstStart.value_or(*run.start), *run.start);
        sum.lastEnd = std::max(sum.lastEnd.value_or(*run.end), *run.end);
    }
}

class Adding {
public:
    Adding(const Plan& plan, std::span<const int> runs)
        : plan_(plan), trips_(countedTrips(plan, runs)), busOf_(busOfRun(plan)) {}

    [[nodiscard]] Summary sumOf(std::string name, std::span<const int> runs) const {
        Summary sum;
        sum.name = std::move(name);
        for (const int run : runs) {
            addTo(sum, plan_.run(run), trips_[static_cast<std::size_t>(run)]);
        }
        sum.buses = ridersCurve(plan_, runs, busOf_);
        return sum;
    }

private:
    const Plan& plan_;
    std::vector<CountedTrips> trips_;
    std::vector<int> busOf_;
};

void addRow(table::TextTable& table, const Summary& sum) {
    const auto row = table.addRow();
    std::size_t column = 0;
    const auto add = [&](const base::Value& value) { table.set(row, column++, value); };
    const auto addTime = [&](std::optional<Seconds> time) {
        if (time) {
            table.set(row, column, base::Date{*time % Day});
        }
        ++column;
    };
    const auto addTenths = [&](double number) {
        table.setText(row, column++, fmt::format("{:.1f}", std::max(number, 0.0)));
    };
    const auto peak = sum.buses.peak();
    add(sum.name);
    add(sum.runs);
    add(sum.stops);
    add(sum.students);
    addTime(sum.firstStart);
    addTime(sum.lastEnd);
    addTenths(sum.hours);
    addTenths(sum.miles);
    addTenths(sum.emptyMiles);
    add(peak.count);
    addTime(peak.count > 0 ? std::optional(peak.at) : std::nullopt);
}

table::TextTable emptyTable(Grouping grouping) {
    table::TextTable table;
    table.columns = {{textOf(grouping).caption, 3300},
                     {"Runs", 800, CellKind::Number},
                     {"Stops", 850, CellKind::Number},
                     {"Riders", 900, CellKind::Number},
                     {"First Start", 1250, CellKind::Time},
                     {"Last End", 1250, CellKind::Time},
                     {"Hours", 900, CellKind::Number},
                     {"Miles", 1000, CellKind::Number},
                     {"Empty Miles", 1350, CellKind::Number},
                     {"Peak", 800, CellKind::Number},
                     {"At", 1200, CellKind::Time},
                     {"Buses in Use over the Day", 3000}};
    return table;
}

}  // namespace

Summaries summarise(const Plan& plan, std::span<const int> runs, Grouping grouping) {
    const auto names = namesOf(plan, grouping);
    std::vector<std::vector<int>> groups(names.size());
    Summaries result;
    for (const int number : runs) {
        const auto& run = plan.run(number);
        groups[placeOf(plan, run, grouping)].push_back(number);
        result.withoutLength += run.start == run.end ? 1 : 0;
    }
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!groups[i].empty()) {
            order.push_back(i);
        }
    }
    std::ranges::sort(order, {}, [&](std::size_t i) {
        return std::tuple(names[i].code.empty(), base::lowered(names[i].name), names[i].code);
    });
    const Adding adding(plan, runs);
    for (const auto i : order) {
        result.groups.push_back(
            adding.sumOf(names[i].code.empty() ? textOf(grouping).none : names[i].name, groups[i]));
    }
    result.all =
        adding.sumOf(runs.size() == 1 ? "1 run" : fmt::format("All {} runs", runs.size()), runs);
    return result;
}

table::TextTable summaryTable(const Summaries& summaries, Grouping grouping) {
    auto table = emptyTable(grouping);
    for (const auto& group : summaries.groups) {
        addRow(table, group);
    }
    return table;
}

table::TextTable totalTable(const Summaries& summaries, Grouping grouping) {
    auto table = emptyTable(grouping);
    addRow(table, summaries.all);
    return table;
}

}  // namespace schedule
