#include "groupops/groupchange/runsnow.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"
#include "platform/base/wait.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

constexpr auto AllRuns =
    "SELECT RUN.RUN, RUN.RunFamily, RUN.LocCode, RUN.School, RUN.TripType, RUN.VehType, "
    "RUN.Capacity, RUN.OverFill FROM RUN";
constexpr auto Passengers =
    "SELECT STOP_TRIPTYPE.RUN, SUM(STOP_TRIPTYPE.NUM_STUDENTS) AS PASSENGERS FROM STOP INNER JOIN "
    "STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP.STOPTYPE='REGULAR'{} "
    "GROUP BY STOP_TRIPTYPE.RUN";
/// So many runs are asked for by name; beyond that all are read, which is quicker then.
constexpr std::size_t FewRuns = 200;

template <class Names>
std::string conditionFor(std::string_view column, const Names& names) {
    std::vector<std::string> literals;
    literals.reserve(names.size());
    for (const auto& name : names) {
        literals.push_back(fmt::format("'{}'", ado::escaped(name)));
    }
    return fmt::format("{} IN ({})", column, fmt::join(literals, ","));
}

/// An entry of a group change that is written, else what stands.
std::string valueAfter(std::span<const RunChange> changes, std::string_view column,
                       const std::string& now) {
    const auto found = std::ranges::find(changes, column, &RunChange::column);
    return found == changes.end() ? now : found->value.asText();
}

}  // namespace

RunsNow::RunsNow(ado::Connection& routing, std::span<const std::string> runs) : routing_(routing) {
    if (!runs.empty()) {
        readRuns(runs);
    }
}

std::size_t RunsNow::indexOf(std::string_view column) {
    return static_cast<std::size_t>(std::ranges::find(Columns, column) - Columns.begin());
}

void RunsNow::readRuns(std::span<const std::string> runs) {
    std::unordered_set<std::string> wanted;
    for (const std::string& run : runs) {
        wanted.insert(base::lowered(run));
    }
    const bool few = runs.size() <= FewRuns;
    ado::Recordset rows(
        few ? fmt::format("{} WHERE {}", AllRuns, conditionFor("RUN.RUN", runs)) : AllRuns,
        routing_);
    std::vector<const ado::Field*> fields;
    std::ranges::transform(Columns, std::back_inserter(fields),
                           [&](auto column) { return &rows.Fields(column); });
    for (base::Breath breath; !rows.Eof(); rows.MoveNext()) {
        breath.take();
        auto run = base::lowered(rows["RUN"].asText());
        if (!wanted.contains(run)) {
            continue;
        }
        Row& row = runs_[std::move(run)];
        for (std::size_t i = 0; i < Columns.size(); ++i) {
            row[i] = base::trim(startup::textOf(*fields[i]));
            ++counts_[i][row[i]];
        }
    }
}

std::string RunsNow::text(std::string_view column) const {
    std::map<std::string, int> counts;
    for (const auto& [value, count] : counts_[indexOf(column)]) {
        counts[value.empty() ? "empty" : value] += count;
    }
    if (counts.size() == 1) {
        return "all " + counts.begin()->first;
    }
    std::vector<std::pair<std::string, int>> values(counts.begin(), counts.end());
    std::ranges::stable_sort(values, std::greater(), &std::pair<std::string, int>::second);
    constexpr std::size_t Shown = 4;
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < std::min(Shown, values.size()); ++i) {
        texts.push_back(fmt::format("{} ({})", values[i].first, values[i].second));
    }
    const auto more =
        values.size() > Shown ? fmt::format(" and {} more", values.size() - Shown) : "";
    return fmt::format("{}{}", fmt::join(texts, ", "), more);
}

void RunsNow::readPassengers() {
    std::vector<std::string> names;
    std::ranges::transform(runs_, std::back_inserter(names),
                           [](const auto& run) { return run.first; });
    const bool few = names.size() <= FewRuns;
    passengers_.emplace();
    ado::Recordset rows(
        fmt::format(Passengers,
                    few ? " AND " + conditionFor("STOP_TRIPTYPE.RUN", names) : std::string()),
        routing_);
    for (base::Breath breath; !rows.Eof(); rows.MoveNext()) {
        breath.take();
        (*passengers_)[base::lowered(rows["RUN"].asText())] = startup::wholeOf(rows["PASSENGERS"]);
    }
}

int RunsNow::tooFullAfter(std::span<const RunChange> changes, const SeatsOf& seatsOf) {
    if (!passengers_ && !runs_.empty()) {
        readPassengers();
    }
    std::map<std::pair<std::string, std::string>, std::optional<std::int64_t>> known;
    return static_cast<int>(std::ranges::count_if(runs_, [&](const auto& run) {
        const auto& [id, row] = run;
        const std::pair bus(valueAfter(changes, "VehType", row[indexOf("VehType")]),
                            valueAfter(changes, "Capacity", row[indexOf("Capacity")]));
        const auto [place, isNew] = known.try_emplace(bus);
        if (isNew) {
            place->second = seatsOf(bus.first, bus.second.empty() ? "Medium" : bus.second);
        }
        const auto passengers = passengers_->find(id);
        return place->second && passengers != passengers_->end() &&
               passengers->second > *place->second;
    }));
}

}  // namespace groupops
