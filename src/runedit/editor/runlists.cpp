#include "runedit/editor/runlists.h"

#include <array>
#include <span>

#include <fmt/format.h>

#include "data/lists/cells.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"

namespace runedit {

namespace {

using table::CellKind;

/// A column of a list and the field it shows.
struct ShownField {
    table::TableColumn column;
    std::string_view field;
};

const std::array<ShownField, 17> StopFields{{
    {{"Stop ID", 2000}, "StopID"},
    {{"Location", 3000}, "Addr1"},
    {{"Time At Stop", 1000, CellKind::Time}, "Time_At_Stop"},
    {{"Passengers", 1000, CellKind::Number}, "NUM_STUDENTS"},
    {{"Trip Type", 2000}, "TripType"},
    {{"Stop Type"}, "Stoptype"},
    {{"School", 2000}, "School"},
    {{"Description", 2440}, "Description"},
    {{"Time to Stop", 0, CellKind::Number}, "time_tostop"},
    {{"Distance to Stop", 0, CellKind::Number}, "DIST_TOSTOP"},
    {{"Load Time", 0, CellKind::Number}, "Load_Time"},
    {{"Cum. Time", 0, CellKind::Number}, "CUM_TIME"},
    {{"Cum. Distance", 0, CellKind::Number}, "CUM_MILES"},
    {{"Run ID"}, "Run"},
    {{"Sequence", 0, CellKind::Number}, "RunSeq"},
    {{"Int. ID", 0, CellKind::Number}, "Int_STOPID"},
    {{"Int. Stop TripType ID", 0, CellKind::Number}, "ID"},
}};

const table::TableColumn DirectionColumn{"Direction", 7000};
const table::TableColumn DistanceColumn{"Distance", 1500};
const std::array<ShownField, 2> LineFields{
    {{DirectionColumn, "LineText1"}, {DistanceColumn, "LineText2"}}};
const std::array<ShownField, 2> ShortLineFields{
    {{DirectionColumn, "ShortText"}, {DistanceColumn, "ShortDist"}}};
constexpr std::string_view NeitherDistanceNorTime = "SKIP";

const std::array<ShownField, 3> WarningFields{{
    {{"Warning Date & Time", 2400, CellKind::DateTime}, "WarningDateTime"},
    {{"Type", 2000}, "WarningType"},
    {{"Warning", 9000}, "WarningText"},
}};

const std::array<ShownField, 3> NeedFields{{
    {{"Special Need", 2000}, "SPECIALNEEDS_CODE"},
    {{"Description", 4000}, "DESCRIPTION"},
    {{"Count", 1000, CellKind::Number}, "TotPass"},
}};

/// Reads all rows; `onRow` is given the table and the row just filled.
template <class OnRow>
table::TextTable read(ado::Recordset& rows, std::span<const ShownField> shown, OnRow onRow) {
    table::TextTable table;
    std::vector<const ado::Field*> fields;
    for (const auto& [column, field] : shown) {
        table.columns.push_back(column);
        fields.push_back(&rows.Fields(field));
    }
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto row = table.addRow();
        for (std::size_t i = 0; i < fields.size(); ++i) {
            data::setCell(table, row, i, *fields[i]);
        }
        onRow(table, row);
    }
    return table;
}

table::TextTable read(ado::Recordset& rows, std::span<const ShownField> shown) {
    return read(rows, shown, [](table::TextTable&, std::size_t) {});
}

bool isZero(const ado::Field& coordinate) {
    return coordinate.isNull() || coordinate.asNumber() == 0;
}

}  // namespace

DirectionStyle directionStyle(std::string_view choice) {
    const auto style = base::trim(choice);
    return base::equalsNoCase(style, "Very Brief") ? DirectionStyle::VeryBrief
           : base::equalsNoCase(style, "Brief")    ? DirectionStyle::Brief
                                                   : DirectionStyle::Detailed;
}

std::string stopListSql(std::string_view run) {
    return fmt::format(
        "SELECT STOP.STOPID, STOP.ADDR1, STOP_TRIPTYPE.TIME_AT_STOP,"
        " STOP_TRIPTYPE.NUM_STUDENTS, STOP_TRIPTYPE.TRIPTYPE, STOP.STOPTYPE,"
        " STOP.SCHOOL, STOP.DESCRIPTION, STOP.XPOS, STOP.YPOS, STOP_TRIPTYPE.TIME_TOSTOP,"
        " STOP_TRIPTYPE.DIST_TOSTOP, STOP_TRIPTYPE.LOAD_TIME,"
        " STOP_TRIPTYPE.CUM_TIME, STOP_TRIPTYPE.CUM_MILES,"
        " STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ, STOP_TRIPTYPE.INT_STOPID, STOP_TRIPTYPE.ID"
        " FROM STOP INNER JOIN STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID"
        " Where STOP.STOPTYPE<>'DIRECTIONAL' AND STOP_TRIPTYPE.Run = '{}'"
        " ORDER BY STOP_TRIPTYPE.RUNSEQ",
        base::trim(run));
}

StopList readStopList(ado::Connection& routing, std::string_view run) {
    ado::Recordset stops;
    stops.Open(stopListSql(run), routing);
    const auto& x = stops.Fields("XPOS");
    const auto& y = stops.Fields("YPOS");
    StopList list;
    list.table = read(stops, StopFields, [&](table::TextTable& table, std::size_t row) {
        if (isZero(x) && isZero(y)) {
            table.colourRed(row, 0, StopFields.size() - 1);
            list.allPlaced = false;
        }
    });
    return list;
}

std::string directionsSql(std::string_view run, DirectionStyle style) {
    const auto key = base::trim(run);
    switch (style) {
        case DirectionStyle::VeryBrief:
            return fmt::format(
                "SELECT RUNDIR.STOPID, RUNDIR.ShortText, RUNDIR.ShortDist, RUNDIR.LineType, "
                "RUNDIR.LineText2 From RUNDIR"
                " WHERE (((RUNDIR.LineType)='Start' "
                " Or  (RUNDIR.LineType)='Direction' Or"
                " (RUNDIR.LineType)='Stop' Or (RUNDIR.LineType)='Total') AND"
                " ((RUNDIR.Run)='{}')) ORDER BY RUNDIR.ID",
                key);
        case DirectionStyle::Brief:
            return fmt::format(
                "SELECT RUNDIR.STOPID, RUNDIR.LineText1, RUNDIR.LineText2, RUNDIR.LineType From "
                "RUNDIR"
                " WHERE (((RUNDIR.LineType)='Start' "
                " Or (RUNDIR.LineType)='Turn Back' Or (RUNDIR.LineType)='Direction' Or"
                " (RUNDIR.LineType)='Stop' Or (RUNDIR.LineType)='Total') AND"
                " ((RUNDIR.Run)='{}')) ORDER BY RUNDIR.ID",
                key);
        case DirectionStyle::Detailed:
            break;
    }
    return fmt::format(
        "SELECT RUNDIR.STOPID, RUNDIR.LineText1, RUNDIR.LineType, RUNDIR.LineText2 From RUNDIR"
        " WHERE (RUNDIR.Run)='{}' ORDER BY RUNDIR.ID",
        key);
}

table::TextTable readDirections(ado::Connection& routing, std::string_view run,
                                DirectionStyle style) {
    ado::Recordset lines;
    lines.Open(directionsSql(run, style), routing);
    return read(
        lines, style == DirectionStyle::VeryBrief ? ShortLineFields : LineFields,
        [](table::TextTable& table, std::size_t row) {
            if (base::equalsNoCase(base::trim(table.text(row, 1)), NeitherDistanceNorTime)) {
                table.setText(row, 1, " ");
            }
        });
}

std::string warningsSql(std::string_view run) {
    return fmt::format(
        "Select RunWarning.* from RunWarning Where RunWarning.Run='{}'"
        " ORDER BY RunWarning.WarningDateTime Desc",
        base::trim(run));
}

table::TextTable readWarnings(ado::Connection& routing, std::string_view run) {
    ado::Recordset warnings;
    warnings.Open(warningsSql(run), routing);
    return read(warnings, WarningFields);
}

std::string warningsCaption(bool any) { return any ? " * Warnings *" : "No Warnings"; }

std::string specialNeedsSql(std::string_view run) {
    return fmt::format(
        "SELECT STU_SPECIALNEEDS.SPECIALNEEDS_CODE, SPECIALNEEDS.DESCRIPTION, "
        "Count(STU_SPECIALNEEDS.INT_STUID) AS TOTPASS, STOP_TRIPTYPE.RUN "
        "FROM SPECIALNEEDS INNER JOIN ((STU_ADDR_TRIPTYPE INNER JOIN STU_SPECIALNEEDS ON "
        "STU_ADDR_TRIPTYPE.INT_STUID = STU_SPECIALNEEDS.INT_STUID) INNER JOIN STOP_TRIPTYPE ON "
        "(STU_ADDR_TRIPTYPE.TRIPTYPE = STOP_TRIPTYPE.TRIPTYPE) AND (STU_ADDR_TRIPTYPE.INT_STOPID = "
        "STOP_TRIPTYPE.INT_STOPID)) ON SPECIALNEEDS.SPECIALNEEDS_CODE = "
        "STU_SPECIALNEEDS.SPECIALNEEDS_CODE "
        "GROUP BY STU_SPECIALNEEDS.SPECIALNEEDS_CODE, SPECIALNEEDS.DESCRIPTION, STOP_TRIPTYPE.RUN "
        "HAVING (((STOP_TRIPTYPE.RUN)='{}'))",
        base::trim(run));
}

table::TextTable readSpecialNeeds(ado::Connection& routing, std::string_view run) {
    ado::Recordset needs;
    needs.Open(specialNeedsSql(run), routing);
    return read(needs, NeedFields);
}

}  // namespace runedit
