#include "stops/search/foundstops.h"

namespace stops {

namespace {

using data::ListColumn;
using table::CellKind;

constexpr ListColumn StopListColumns[]{
    {"Stop ID", "STOPID", 900},
    {"Address", "ADDR1", 1650},
    {"School", "SCHOOL"},
    {"Description", "DESCRIPTION", 1500},
    {"Stop Type", "STOPTYPE"},
    {"Location", "LOCCODE"},
    {"Active"},
    {"XPOS", "XPOS", 0, CellKind::Number},
    {"YPOS", "YPOS", 0, CellKind::Number},
    {"Map", {}, 400},
    data::hidden("INT_STOPID"),
};

constexpr ListColumn TripListColumns[]{
    {"Stop ID", "STOPID", 900},
    {"Address", "ADDR1", 1650},
    {"School", "SCHOOL"},
    {"Trip Type", "TRIPTYPE"},
    {"Description", "DESCRIPTION", 1500},
    {"Run", "RUN", 700},
    {"Students", "NUM_STUDENTS", 500, CellKind::Number},
    {"Stop Time", "TIME_AT_STOP", 1000, CellKind::Time},
    {"Time", "TIME_TOSTOP", 0, CellKind::Decimal},
    {"Miles", "DIST_TOSTOP", 0, CellKind::Decimal},
    {"Seq", "RUNSEQ", 0, CellKind::Number},
    {"Stop Type", "STOPTYPE"},
    {"Location", "LOCCODE"},
    {"Active"},
    {"ID", "ID", 0, CellKind::Number},
    {"Int. Stop ID", "INT_STOPID", 0, CellKind::Number},
    {"XPOS", "XPOS", 0, CellKind::Number},
    {"YPOS", "YPOS", 0, CellKind::Number},
    {"Map", {}, 400},
};

data::ListColumns shownColumns(bool tripTypes) {
    return tripTypes ? data::ListColumns(TripListColumns) : StopListColumns;
}

bool isZero(const ado::Field& place) { return place.isNull() || place.asNumber() == 0; }

}  // namespace

FoundStops::FoundStops(const StopSearchCriteria& criteria, ado::Connection& connection)
    : tripTypes_(criteria.tripTypes),
      empty_(data::emptyTable(shownColumns(tripTypes_))),
      rows_(shownColumns(tripTypes_), stopSearchQuery(criteria), connection) {
    empty_.columns[empty_.columnOf("Map")].caption.clear();
}

void FoundStops::read(table::TextTable& table, std::size_t most) {
    if (atEnd()) {
        return;
    }
    const auto active = table.columnOf("Active");
    const auto map = table.columnOf("Map");
    const auto& xpos = rows_.field("XPOS");
    const auto& ypos = rows_.field("YPOS");
    const auto& stopActive = rows_.field("ACTIVE");
    const auto& alsoActive = rows_.field(tripTypes_ ? "TRIPACTIVE" : "ACTIVE");
    rows_.read(table, most, [&](table::TextTable& into, std::size_t row) {
        const bool on = stopActive.asBoolean() && alsoActive.asBoolean();
        into.setText(row, active, on ? "ACTIVE" : "INACTIVE");
        if (isZero(xpos) && isZero(ypos)) {
            into.setText(row, map, NoPlaceText);
        }
    });
}

ChosenStop FoundStops::chosen(const table::TextTable& table, std::size_t row) const {
    ChosenStop stop;
    stop.intStopId = table.value(row, "INT_STOPID").asInteger();
    stop.stopId = table.text(row, "STOPID");
    stop.stopType = table.text(row, "STOPTYPE");
    if (tripTypes_) {
        stop.stopTripId = table.value(row, "ID").asInteger();
        stop.tripType = table.text(row, "TRIPTYPE");
        stop.run = table.text(row, "RUN");
    }
    return stop;
}

}  // namespace stops
