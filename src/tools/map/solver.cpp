#include "tools/map/solver.h"

#include <cmath>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "platform/base/text.h"

namespace tools::map {

namespace {

using base::Value;

constexpr double FarthestFeet = 1e9;

[[noreturn]] void refuse(const std::string& why) {
    throw base::RunTimeError(base::errors::InvalidProcedureCall, why);
}

/// The cells of a table by the names of its columns.
class NamedCells {
public:
    explicit NamedCells(const dbf::Table& table) : table_(table) {}

    [[nodiscard]] const Value& value(std::size_t row, std::string_view name) const {
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            if (base::equalsNoCase(table_.columns[i].name, name)) {
                return table_.rows[row][i];
            }
        }
        refuse(fmt::format("The stop export has no column {}.", name));
    }
    [[nodiscard]] std::string text(std::size_t row, std::string_view name) const {
        const Value& cell = value(row, name);
        return cell.isNull() ? "" : cell.asText();
    }
    [[nodiscard]] double number(std::size_t row, std::string_view name) const {
        const Value& cell = value(row, name);
        return cell.isNull() ? 0 : cell.asNumber();
    }
    [[nodiscard]] std::int64_t integer(std::size_t row, std::string_view name) const {
        return base::roundHalfEven(number(row, name));
    }

private:
    const dbf::Table& table_;
};

/// A place on the map; refuses one that no map reaches.
geo::Feet placeOf(const NamedCells& cells, std::size_t row) {
    const geo::Feet at{cells.number(row, "XPOS"), cells.number(row, "YPOS")};
    if (std::abs(at.x) > FarthestFeet || std::abs(at.y) > FarthestFeet) {
        refuse(fmt::format("The stop {} is not on this map.", cells.text(row, "STOPID")));
    }
    return at;
}

base::Date timeIn(const std::string& text) {
    const auto time = base::Date::parse(text);
    if (!time) {
        refuse(fmt::format("\"{}\" in the request is not a time.", text));
    }
    return time->timeValue();
}

streets::RunStop stopIn(const NamedCells& cells, std::size_t row) {
    const geo::Feet at = placeOf(cells, row);
    return {.id = cells.integer(row, "INT_STOPID"),
            .stopId = cells.text(row, "STOPID"),
            .address = cells.text(row, "ADDR1"),
            .passed = cells.text(row, "STOPTYPE") == data::stoptype::Directional,
            .placed = at.x != 0 || at.y != 0,
            .at = at,
            .students = static_cast<int>(cells.integer(row, "NUM_STUDEN")),
            .loadMinutes = cells.number(row, "LOAD_TIME")};
}

bool isPickup(const NamedCells& cells, std::size_t stops) {
    // A run that ends at a school brings students there.
    return stops > 0 && cells.text(stops - 1, "STOPTYPE") == "SCHOOL";
}

}  // namespace

SolvedRun::SolvedRun(const runedit::RequestLine& request, const dbf::Table& stops,
                     const streets::Network& network, const std::set<std::int64_t>& rightSide)
    : id_(request.run) {
    const NamedCells cells(stops);
    const bool fromStart = base::equalsNoCase(request.startOrEnd, "Start");
    run_.pickup = isPickup(cells, stops.rows.size());
    run_.anchor = fromStart ? streets::Anchor::Start : streets::Anchor::End;
    for (std::size_t row = 0; row < stops.rows.size(); ++row) {
        run_.stops.push_back(stopIn(cells, row));
        const bool wantsRight = rightSide.contains(run_.stops.back().id);
        run_.stops.back().side = wantsRight ? streets::DoorSide::Right : streets::DoorSide::Either;
        sequences_.push_back(cells.integer(row, "RUNSEQ"));
    }
    run_.time = timeIn(fromStart ? request.startTime : request.endTime);
    solution_ = streets::solve(network, run_);
    if (!solution_.unserved.empty()) {
        const auto& first = solution_.unserved.front();
        refuse(streets::complaint(run_.stops[first.stop], first.why));
    }
}

std::set<std::int64_t> rightSideStops(ado::Connection& routing, std::string_view run) {
    ado::Recordset rows(
        "SELECT STOP.INT_STOPID FROM STOP INNER JOIN STOP_TRIPTYPE ON STOP.INT_STOPID = "
        "STOP_TRIPTYPE.INT_STOPID WHERE STOP.RIGHTSIDE=True AND STOP_TRIPTYPE.RUN='" +
            ado::escaped(run) + "'",
        routing);
    std::set<std::int64_t> stops;
    for (; !rows.Eof(); rows.MoveNext()) {
        stops.insert(rows["INT_STOPID"].asInteger());
    }
    return stops;
}

runedit::RequestLine requestForRun(std::string_view list, std::string_view run) {
    for (const std::string_view line : runedit::linesOf(list)) {
        auto request = runedit::requestIn(line);
        if (base::equalsNoCase(request.run, base::trim(run))) {
            return request;
        }
    }
    refuse(fmt::format("The request list has no line for the run {}.", run));
}

}  // namespace tools::map
