#include "runedit/map/stopexport.h"

#include <vector>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/error.h"

namespace runedit {

namespace {

using dbf::Column;
using dbf::Kind;

/// Positions are kept finer than a foot, minutes as finely as single precision has them.
const std::vector<Column> Columns{
    {"STOPID"},
    {"STOPTYPE"},
    {"SCHOOL"},
    {"DESCRIPTION"},
    {"ADDR1"},
    {"XPOS", Kind::Number, 4},
    {"YPOS", Kind::Number, 4},
    {"TRIPTYPE"},
    {"RUN"},
    {"RUNSEQ", Kind::Number},
    {"NUM_STUDENTS", Kind::Number},
    {"LOAD_TIME", Kind::Number, 6},
    {"INT_STOPID", Kind::Number},
};

}  // namespace

std::string stopExportSql(const std::string& run) {
    return fmt::format(
        "SELECT STOP.STOPID, STOP.STOPTYPE, STOP.SCHOOL, STOP.DESCRIPTION, STOP.ADDR1, STOP.XPos, "
        "STOP.YPos, STOP_TRIPTYPE.TRIPTYPE, STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ, "
        "STOP_TRIPTYPE.NUM_STUDENTS, STOP_TRIPTYPE.LOAD_TIME, STOP.INT_STOPID FROM STOP INNER JOIN "
        "STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.RUN='{}' "
        "ORDER BY STOP_TRIPTYPE.RUNSEQ",
        ado::escaped(run));
}

dbf::Table readStopExport(ado::Connection& connection, const std::string& run) {
    ado::Recordset stops(stopExportSql(run), connection);
    dbf::Table table{Columns, {}};
    for (; !stops.Eof(); stops.MoveNext()) {
        auto& row = table.rows.emplace_back();
        for (int i = 0; i < stops.fieldCount(); ++i) {
            row.push_back(stops.Fields(i).Value());
        }
    }
    return table;
}

std::string stopExportFile(ado::Connection& connection, const std::string& run) {
    const auto table = readStopExport(connection, run);
    try {
        return dbf::bytesOf(table);
    } catch (const dbf::TooWide& wide) {
        throw base::RunTimeError(
            base::errors::Overflow,
            fmt::format(
                "The stop {} has {} in {}, which no map can take.  Please correct the stop.",
                table.rows[wide.row].front().asText(), wide.figure, Columns[wide.column].name));
    }
}

}  // namespace runedit
