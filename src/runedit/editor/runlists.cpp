#include "runedit/editor/runlists.h"

#include <fmt/format.h>

#include "data/lists/listreader.h"
#include "data/runs/onthebus.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace runedit {

namespace {

using data::ListColumn;
using data::readList;
using table::CellKind;
using table::TextTable;

constexpr ListColumn StopColumns[]{
    {"Stop ID", "StopID", 2000},
    {"Location", "Addr1", 3000},
    {"Time At Stop", "Time_At_Stop", 1000, CellKind::Time},
    {"Passengers", "NUM_STUDENTS", 1000, CellKind::Number},
    {"Trip Type", "TripType", 2000},
    {"Stop Type", "Stoptype"},
    {"School", "School", 2000},
    {"Description", "Description", 2440},
    {"Time to Stop", "time_tostop", 0, CellKind::Decimal},
    {"Distance to Stop", "DIST_TOSTOP", 0, CellKind::Decimal},
    {"Load Time", "Load_Time", 0, CellKind::Decimal},
    {"Cum. Time", "CUM_TIME", 0, CellKind::Decimal},
    {"Cum. Distance", "CUM_MILES", 0, CellKind::Decimal},
    {"Run ID", "Run"},
    {"Sequence", "RunSeq", 0, CellKind::Number},
    {"Int. ID", "Int_STOPID", 0, CellKind::Number},
    {"Int. Stop TripType ID", "ID", 0, CellKind::Number},
    {"No.", {}, 700, CellKind::Number},
    {"Map", {}, 400},
    {"On the Bus", {}, 1000, CellKind::Number},
    data::hidden("XPOS"),
    data::hidden("YPOS"),
};
constexpr auto NoPlaceText = "No place on the map";
constexpr auto StopsOfRun =
    "SELECT STOP.STOPID, STOP.ADDR1, STOP_TRIPTYPE.TIME_AT_STOP, STOP_TRIPTYPE.NUM_STUDENTS, "
    "STOP_TRIPTYPE.TRIPTYPE, STOP.STOPTYPE, STOP.SCHOOL, STOP.DESCRIPTION, STOP.XPOS, STOP.YPOS, "
    "STOP_TRIPTYPE.TIME_TOSTOP, STOP_TRIPTYPE.DIST_TOSTOP, STOP_TRIPTYPE.LOAD_TIME, "
    "STOP_TRIPTYPE.CUM_TIME, STOP_TRIPTYPE.CUM_MILES, STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ, "
    "STOP_TRIPTYPE.INT_STOPID, STOP_TRIPTYPE.ID FROM STOP INNER JOIN STOP_TRIPTYPE ON "
    "STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID Where STOP.STOPTYPE<>'DIRECTIONAL' AND "
    "STOP_TRIPTYPE.Run = '{}' ORDER BY STOP_TRIPTYPE.RUNSEQ";

constexpr ListColumn LineColumns[]{{"Direction", "LineText1", 7000},
                                   {"Distance", "LineText2", 1500}};
constexpr ListColumn ShortLineColumns[]{{"Direction", "ShortText", 7000},
                                        {"Distance", "ShortDist", 1500}};
constexpr auto VeryBriefLines =
    "SELECT RUNDIR.STOPID, RUNDIR.ShortText, RUNDIR.ShortDist, RUNDIR.LineType, RUNDIR.LineText2 "
    "From RUNDIR WHERE (((RUNDIR.LineType)='Start'  Or  (RUNDIR.LineType)='Direction' Or "
    "(RUNDIR.LineType)='Stop' Or (RUNDIR.LineType)='Total') AND ((RUNDIR.Run)='{}')) ORDER BY "
    "RUNDIR.ID";
constexpr auto BriefLines =
    "SELECT RUNDIR.STOPID, RUNDIR.LineText1, RUNDIR.LineText2, RUNDIR.LineType From RUNDIR WHERE "
    "(((RUNDIR.LineType)='Start'  Or (RUNDIR.LineType)='Turn Back' Or "
    "(RUNDIR.LineType)='Direction' Or (RUNDIR.LineType)='Stop' Or (RUNDIR.LineType)='Total') AND "
    "((RUNDIR.Run)='{}')) ORDER BY RUNDIR.ID";
constexpr auto AllLines =
    "SELECT RUNDIR.STOPID, RUNDIR.LineText1, RUNDIR.LineType, RUNDIR.LineText2 From RUNDIR WHERE "
    "(RUNDIR.Run)='{}' ORDER BY RUNDIR.ID";
constexpr std::string_view NeitherDistanceNorTime = "SKIP";

constexpr ListColumn WarningColumns[]{
    {"Warning Date & Time", "WarningDateTime", 2400, CellKind::DateTime},
    {"Type", "WarningType", 2000},
    {"Warning", "WarningText", 9000},
};
constexpr auto WarningsOfRun =
    "Select RunWarning.* from RunWarning Where RunWarning.Run='{}' ORDER BY "
    "RunWarning.WarningDateTime Desc";

constexpr ListColumn NeedColumns[]{
    {"Special Need", "SPECIALNEEDS_CODE", 2000},
    {"Description", "DESCRIPTION", 4000},
    {"Count", "TotPass", 1000, CellKind::Number},
};
constexpr auto NeedsOfRun =
    "SELECT STU_SPECIALNEEDS.SPECIALNEEDS_CODE, SPECIALNEEDS.DESCRIPTION, "
    "Count(STU_SPECIALNEEDS.INT_STUID) AS TOTPASS, STOP_TRIPTYPE.RUN FROM SPECIALNEEDS INNER JOIN "
    "((STU_ADDR_TRIPTYPE INNER JOIN STU_SPECIALNEEDS ON STU_ADDR_TRIPTYPE.INT_STUID = "
    "STU_SPECIALNEEDS.INT_STUID) INNER JOIN STOP_TRIPTYPE ON (STU_ADDR_TRIPTYPE.TRIPTYPE = "
    "STOP_TRIPTYPE.TRIPTYPE) AND (STU_ADDR_TRIPTYPE.INT_STOPID = STOP_TRIPTYPE.INT_STOPID)) ON "
    "SPECIALNEEDS.SPECIALNEEDS_CODE = STU_SPECIALNEEDS.SPECIALNEEDS_CODE GROUP BY "
    "STU_SPECIALNEEDS.SPECIALNEEDS_CODE, SPECIALNEEDS.DESCRIPTION, STOP_TRIPTYPE.RUN HAVING "
    "(((STOP_TRIPTYPE.RUN)='{}'))";

const char* linesOf(DirectionStyle style) {
    return style == DirectionStyle::VeryBrief ? VeryBriefLines
           : style == DirectionStyle::Brief   ? BriefLines
                                              : AllLines;
}

std::string questionOf(const char* question, std::string_view run) {
    return fmt::format(fmt::runtime(question), ado::escaped(base::trim(run)));
}

bool isPlaced(const TextTable& stops, std::size_t row) {
    const auto isZero = [](const base::Value& place) {
        return place.isNull() || place.asNumber() == 0;
    };
    return !isZero(stops.value(row, "XPOS")) || !isZero(stops.value(row, "YPOS"));
}

}  // namespace

DirectionStyle directionStyle(std::string_view choice) {
    const auto style = base::trim(choice);
    return base::equalsNoCase(style, "Very Brief") ? DirectionStyle::VeryBrief
           : base::equalsNoCase(style, "Brief")    ? DirectionStyle::Brief
                                                   : DirectionStyle::Detailed;
}

StopList readStopList(ado::Connection& routing, std::string_view run, bool toSchool) {
    StopList list;
    list.table = readList(StopColumns, questionOf(StopsOfRun, run), routing,
                          [&](TextTable& table, std::size_t row) {
                              if (!isPlaced(table, row)) {
                                  table.setText(row, table.columnOf("Map"), NoPlaceText);
                                  table.colourRed(row, 0, table.columns.size() - 1);
                                  list.unplaced.push_back(row);
                              }
                          });
    list.table.columns[list.table.columnOf("Map")].caption.clear();
    list.totals = totalsOf(list.table);
    data::countAlongTheRun(list.table, toSchool);
    return list;
}

TextTable readDirections(ado::Connection& routing, std::string_view run, DirectionStyle style) {
    const bool isShort = style == DirectionStyle::VeryBrief;
    const auto distance = isShort ? "ShortDist" : "LineText2";
    return readList(
        isShort ? ShortLineColumns : LineColumns, questionOf(linesOf(style), run), routing,
        [&](TextTable& table, std::size_t row) {
            if (base::equalsNoCase(base::trim(table.text(row, distance)), NeitherDistanceNorTime)) {
                table.setText(row, table.columnOf(distance), " ");
            }
        });
}

TextTable readWarnings(ado::Connection& routing, std::string_view run) {
    return readList(WarningColumns, questionOf(WarningsOfRun, run), routing);
}

std::string warningsCaption(bool any) { return any ? " * Warnings *" : "No Warnings"; }

TextTable readSpecialNeeds(ado::Connection& routing, std::string_view run) {
    return readList(NeedColumns, questionOf(NeedsOfRun, run), routing);
}

std::vector<std::string> listReads(std::string_view run, DirectionStyle style) {
    return {questionOf(StopsOfRun, run), questionOf(linesOf(style), run),
            questionOf(WarningsOfRun, run), questionOf(NeedsOfRun, run)};
}

}  // namespace runedit
