#include "tools/map/solver.h"

#include <cmath>
#include <optional>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "tools/district/travel/timetable.h"

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

/// A place on the map; refuses one that no street grid reaches.
district::Point placeOf(const NamedCells& cells, std::size_t row) {
    const district::Point at{cells.number(row, "XPOS"), cells.number(row, "YPOS")};
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

bool isPickup(const NamedCells& cells, std::size_t stops) {
    // A run that ends at a school brings students there.
    return stops > 0 && cells.text(stops - 1, "STOPTYPE") == "SCHOOL";
}

}  // namespace

SolvedRun::SolvedRun(const runedit::RequestLine& request, const dbf::Table& stops) {
    const NamedCells cells(stops);
    run_.id = request.run;
    run_.pickup = isPickup(cells, stops.rows.size());
    for (std::size_t row = 0; row < stops.rows.size(); ++row) {
        types_.push_back(cells.text(row, "STOPTYPE"));
        const district::Point at = placeOf(cells, row);
        stops_.push_back({.id = cells.integer(row, "INT_STOPID"),
                          .stopId = cells.text(row, "STOPID"),
                          .type = types_.back(),
                          .address = cells.text(row, "ADDR1"),
                          .at = at,
                          .placed = at != district::Point{}});
        sequences_.push_back(cells.integer(row, "RUNSEQ"));
        run_.visits.push_back({.stop = &stops_.back(),
                               .students = static_cast<int>(cells.integer(row, "NUM_STUDEN")),
                               .loadMinutes = cells.number(row, "LOAD_TIME")});
    }
    const bool fromStart = base::equalsNoCase(request.startOrEnd, "Start");
    district::setLegs(run_, false);
    district::setTimes(run_, fromStart ? district::Anchor::Start : district::Anchor::End,
                       timeIn(fromStart ? request.startTime : request.endTime));
}

std::vector<district::DirectionLine> SolvedRun::directions() const {
    return district::directionsOf(run_);
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
