#include "runsearch/search/runlist.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace runsearch {

namespace {

using table::CellKind;

enum class Shown { Always, WithRouting, WithoutRouting };
struct RunColumn {
    data::ListColumn column;
    Shown shown = Shown::Always;
};

/// With routing the last columns are shifted: the capacity stands under "Total Students", the time
/// to use under "Capacity", and "Time To Use" stays empty. The width of 1000 twips goes to "Total
/// Students" with routing and to "Total Stops" without. Meant as it is.
constexpr RunColumn Columns[]{
    {{"Run ID", "Run"}},
    {{"Description", "Description", 2440}},
    {{"Start Time", "StartTime", 1000, CellKind::Time}},
    {{"End Time", "EndTime", 1000, CellKind::Time}},
    {{"Bell Time", "BellTime", 1000, CellKind::Time}},
    {{"School", "School"}},
    {{"Trip Type", "TripType"}},
    {{"Location", "LocCode"}},
    {{"Family", "RunFamily"}},
    {{"Route", "RouteID"}, Shown::WithRouting},
    {{"Driver", "EmpName"}, Shown::WithRouting},
    {{"Vehicle", "Vehicle"}, Shown::WithRouting},
    {{"Aid", "AidName"}, Shown::WithRouting},
    {{"Total Time", "total_time", 0, CellKind::Decimal}},
    {{"Total Miles", "total_miles", 0, CellKind::Decimal}},
    {{"Total Stops", "total_stops", 0, CellKind::Number}, Shown::WithRouting},
    {{"Total Students", "Capacity", 1000}, Shown::WithRouting},
    {{"Capacity", "TimeToUse"}, Shown::WithRouting},
    {{"Time To Use"}, Shown::WithRouting},
    {data::hidden("Total_Students"), Shown::WithRouting},
    {{"Total Stops", "total_stops", 1000, CellKind::Number}, Shown::WithoutRouting},
    {{"Total Students", "Total_Students", 0, CellKind::Number}, Shown::WithoutRouting},
    {{"Capacity", "Capacity"}, Shown::WithoutRouting},
    {{"Time To Use", "TimeToUse"}, Shown::WithoutRouting},
};

}  // namespace

std::vector<data::ListColumn> runColumns(bool withRouting) {
    const auto left = withRouting ? Shown::WithoutRouting : Shown::WithRouting;
    std::vector<data::ListColumn> columns;
    for (const auto& [column, shown] : Columns) {
        if (shown != left) {
            columns.push_back(column);
        }
    }
    return columns;
}

table::TextTable readRuns(ado::Recordset& runs, bool withRouting) {
    const auto columns = runColumns(withRouting);
    const auto& regenerate = runs.Fields(NeedsSolving);
    // What stands behind the totals stays plain.
    const auto lastRed = static_cast<std::size_t>(
        std::ranges::find(columns, "Total Students", &data::ListColumn::caption) - columns.begin());
    return data::readList(columns, runs, [&](table::TextTable& table, std::size_t row) {
        if (regenerate.asBoolean()) {
            table.colourRed(row, 0, lastRed);
        }
    });
}

bool hasRuns(ado::Connection& connection) {
    ado::Recordset runs("SELECT RUN.RUN FROM RUN", connection);
    return !runs.Eof();
}

std::string runInWords(const table::TextTable& runs, std::size_t row) {
    const auto known = [&](std::string_view before, std::string_view column) {
        const auto text = runs.text(row, column);
        const auto trimmed = base::trim(text);
        return trimmed.empty() ? std::string() : fmt::format("{}{}", before, trimmed);
    };
    std::string facts;
    for (const auto& fact : {known("school ", "School"), known("trip type ", "TripType"),
                             known("bell ", "BellTime")}) {
        facts += (facts.empty() || fact.empty() ? "" : ", ") + fact;
    }
    if (!facts.empty()) {
        facts.front() = base::uppered(facts.front());
        facts.insert(0, "\n");
    }
    return known("", "Run") + known(", ", "Description") + facts;
}

}  // namespace runsearch
