#include "stops/sequence/stoplist.h"

#include <set>

#include <fmt/format.h>

#include "data/lists/listreader.h"
#include "data/runs/onthebus.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "stops/search/foundstops.h"
#include "stops/sequence/runstops.h"

namespace stops {

namespace {

using table::CellKind;

constexpr data::ListColumn Columns[]{
    {"Stop ID", "STOPID", 900},
    {"Location", "ADDR1", 1600},
    {"Time At Stop", "TIME_AT_STOP", 900, CellKind::Time},
    {"Passengers", "NUM_STUDENTS", 500, CellKind::Number},
    {"Trip Type", "TRIPTYPE"},
    {"Stop Type", "STOPTYPE"},
    {"School", "SCHOOL"},
    {"Description", "DESCRIPTION", 1800},
    {"Time to Stop", "TIME_TOSTOP", 0, CellKind::Decimal},
    {"Distance to Stop", "DIST_TOSTOP", 0, CellKind::Decimal},
    {"Load Time", "LOAD_TIME", 0, CellKind::Decimal},
    {"Cum. Time", "CUM_TIME", 0, CellKind::Decimal},
    {"Cum. Distance", "CUM_MILES", 0, CellKind::Decimal},
    {"Run ID", "RUN"},
    {"Sequence", "RUNSEQ", 500, CellKind::Number},
    {"Int. ID", "INT_STOPID", 0, CellKind::Number},
    {"ID", "ID", 0, CellKind::Number},
    {"No.", {}, 700, CellKind::Number},
    {"Map", {}, 400},
    {"On the Bus", {}, 500, CellKind::Number},
};

std::set<std::int64_t> unplacedRecords(ado::Connection& connection, std::string_view run) {
    ado::Recordset rows(
        fmt::format("SELECT STOP_TRIPTYPE.ID FROM STOP INNER JOIN STOP_TRIPTYPE ON STOP.INT_STOPID "
                    "= STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.RUN='{}' AND (STOP.XPOS=0 OR "
                    "STOP.XPOS Is Null) AND (STOP.YPOS=0 OR STOP.YPOS Is Null)",
                    ado::escaped(run)),
        connection);
    std::set<std::int64_t> ids;
    for (; !rows.Eof(); rows.MoveNext()) {
        ids.insert(rows["ID"].asInteger());
    }
    return ids;
}

}  // namespace

StopList readStopsInSequence(ado::Connection& connection, std::string_view run, bool toSchool) {
    const auto unplaced = unplacedRecords(connection, run);
    StopList list;
    list.table = data::readList(Columns, runStopsQuery(run), connection,
                                [&](table::TextTable& stops, std::size_t row) {
                                    if (unplaced.contains(stops.value(row, "ID").asInteger())) {
                                        stops.setText(row, stops.columnOf("Map"), NoPlaceText);
                                        stops.colourRed(row, 0, stops.columns.size() - 1);
                                        list.unplaced.push_back(row);
                                    }
                                });
    list.table.columns[list.table.columnOf("Map")].caption.clear();
    list.passengers = data::passengersOf(list.table);
    data::countAlongTheRun(list.table, toSchool);
    return list;
}

}  // namespace stops
