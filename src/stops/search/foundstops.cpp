#include "stops/search/foundstops.h"

#include <array>
#include <span>
#include <string_view>

#include "data/lists/cells.h"
#include "platform/base/text.h"

namespace stops {

namespace {

using table::CellKind;

/// A column and the field it shows.
struct FoundColumn {
    table::TableColumn column;
    std::string_view field;
};

const std::array<FoundColumn, 9> StopFields{{
    {{"Stop ID", 1200}, "STOPID"},
    {{"Address", 2200}, "ADDR1"},
    {{"School"}, "SCHOOL"},
    {{"Description", 2000}, "DESCRIPTION"},
    {{"Stop Type"}, "STOPTYPE"},
    {{"Location"}, "LOCCODE"},
    {{"Active"}, "ACTIVE"},
    {{"XPOS", 0, CellKind::Number}, "XPOS"},
    {{"YPOS", 0, CellKind::Number}, "YPOS"},
}};

namespace at {
constexpr std::size_t StopType = 4, Active = 6;
constexpr std::size_t TripType = 3, Run = 5, TripStopType = 11, TripActive = 13, Id = 14;
}  // namespace at

const std::array<FoundColumn, 18> TripFields{{
    {{"Stop ID", 1200}, "STOPID"},
    {{"Address", 2200}, "ADDR1"},
    {{"School"}, "SCHOOL"},
    {{"Trip Type"}, "TRIPTYPE"},
    {{"Description", 2000}, "DESCRIPTION"},
    {{"Run"}, "RUN"},
    {{"Students", 0, CellKind::Number}, "NUM_STUDENTS"},
    {{"Stop Time", 1000, CellKind::Time}, "TIME_AT_STOP"},
    {{"Time", 0, CellKind::Number}, "TIME_TOSTOP"},
    {{"Miles", 0, CellKind::Number}, "DIST_TOSTOP"},
    {{"Seq", 0, CellKind::Number}, "RUNSEQ"},
    {{"Stop Type"}, "STOPTYPE"},
    {{"Location"}, "LOCCODE"},
    {{"Active"}, "TRIPACTIVE"},
    {{"ID", 0, CellKind::Number}, "ID"},
    {{"Int. Stop ID", 0, CellKind::Number}, "INT_STOPID"},
    {{"XPOS", 0, CellKind::Number}, "XPOS"},
    {{"YPOS", 0, CellKind::Number}, "YPOS"},
}};

std::span<const FoundColumn> shownColumns(bool tripTypes) {
    return tripTypes ? std::span<const FoundColumn>(TripFields) : StopFields;
}

}  // namespace

FoundStops::FoundStops(const StopSearchCriteria& criteria, ado::Connection& connection)
    : tripTypes_(criteria.tripTypes) {
    rows_.Open(stopSearchQuery(criteria), connection);
    for (const auto& [column, field] : shownColumns(tripTypes_)) {
        empty_.columns.push_back(column);
        fields_.push_back(&rows_.Fields(field));
    }
}

bool FoundStops::atEnd() const { return rows_.State() == ado::ObjectState::Closed || rows_.Eof(); }

void FoundStops::read(table::TextTable& table, std::size_t most) {
    const std::size_t active = tripTypes_ ? at::TripActive : at::Active;
    const auto& stopActive = rows_.Fields("ACTIVE");
    const auto& intStopId = rows_.Fields("INT_STOPID");
    for (; most > 0 && !rows_.Eof(); --most, rows_.MoveNext()) {
        const auto row = table.addRow();
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            if (i == active) {
                const bool on = stopActive.asBoolean() && fields_[i]->asBoolean();
                table.setText(row, i, on ? "ACTIVE" : "INACTIVE");
            } else {
                data::setCell(table, row, i, *fields_[i]);
            }
        }
        intStopIds_.push_back(intStopId.asInteger());
    }
}

void FoundStops::close() {
    if (rows_.State() == ado::ObjectState::Open) {
        rows_.Close();
    }
}

ChosenStop FoundStops::chosen(const table::TextTable& table, std::size_t row) const {
    ChosenStop stop;
    stop.intStopId = intStopIds_.at(row);
    stop.stopId = table.text(row, 0);
    stop.stopType = table.text(row, tripTypes_ ? at::TripStopType : at::StopType);
    if (tripTypes_) {
        stop.stopTripId = table.value(row, at::Id).asInteger();
        stop.tripType = table.text(row, at::TripType);
        stop.run = table.text(row, at::Run);
    }
    return stop;
}

}  // namespace stops
