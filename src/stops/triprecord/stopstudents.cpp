#include "stops/triprecord/stopstudents.h"

#include <cstdint>
#include <map>

#include <fmt/format.h>

#include "data/lists/listreader.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"
#include "runedit/validation/checkedrun.h"
#include "startup/base/fieldvalues.h"

namespace stops {

namespace {

using table::CellKind;
using table::TextTable;

std::string conditionOf(const TripRecord& record) {
    return fmt::format(" WHERE STU_ADDR_TRIPTYPE.INT_STOPID={} AND STU_ADDR_TRIPTYPE.TRIPTYPE='{}'",
                       record.intStopId, ado::escaped(record.tripType));
}

/// A student who uses the stop from two addresses has two assignments and is one student.
constexpr auto NeedsSql =
    "SELECT DISTINCT STU_ADDR_TRIPTYPE.INT_STUID, STU_SPECIALNEEDS.SPECIALNEEDS_CODE,"
    " SPECIALNEEDS.DESCRIPTION FROM (STU_ADDR_TRIPTYPE INNER JOIN STU_SPECIALNEEDS ON"
    " STU_ADDR_TRIPTYPE.INT_STUID = STU_SPECIALNEEDS.INT_STUID) LEFT JOIN SPECIALNEEDS ON"
    " STU_SPECIALNEEDS.SPECIALNEEDS_CODE = SPECIALNEEDS.SPECIALNEEDS_CODE{}"
    " ORDER BY STU_SPECIALNEEDS.SPECIALNEEDS_CODE";

constexpr auto StudentsSql =
    "SELECT DISTINCT STUDENT.INT_STUID, STUDENT.LASTNAME, STUDENT.FIRSTNAME, STUDENT.STUID,"
    " STUDENT.SCHOOL FROM STUDENT INNER JOIN STU_ADDR_TRIPTYPE ON"
    " STUDENT.INT_STUID = STU_ADDR_TRIPTYPE.INT_STUID{}"
    " ORDER BY STUDENT.LASTNAME, STUDENT.FIRSTNAME, STUDENT.STUID";

/// The codes of each student's needs, ", " between them.
std::map<std::int64_t, std::string> needsByStudent(ado::Connection& routing,
                                                   const TripRecord& record) {
    ado::Recordset rows(fmt::format(NeedsSql, conditionOf(record)), routing);
    std::map<std::int64_t, std::string> needs;
    for (; !rows.Eof(); rows.MoveNext()) {
        std::string& codes = needs[rows["INT_STUID"].asInteger()];
        codes += (codes.empty() ? "" : ", ") + startup::textOf(rows["SPECIALNEEDS_CODE"]);
    }
    return needs;
}

std::string nameOf(const TextTable& student, std::size_t row) {
    const auto last = student.text(row, "LASTNAME");
    const auto first = student.text(row, "FIRSTNAME");
    return base::trim(first).empty() ? last
                                     : fmt::format("{}, {}", base::trim(last), base::trim(first));
}

}  // namespace

TextTable readStopNeeds(ado::Connection& routing, const TripRecord& record) {
    static constexpr data::ListColumn Columns[]{
        {"Special Need", "SPECIALNEEDS_CODE", 1300},
        {"Description", "DESCRIPTION", 2400},
        {"Students", {}, 1000, CellKind::Number},
    };
    TextTable table = data::emptyTable(Columns);
    ado::Recordset rows(fmt::format(NeedsSql, conditionOf(record)), routing);
    const data::ListFields fields(Columns, rows);
    std::int64_t count = 0;
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto code = startup::textOf(rows["SPECIALNEEDS_CODE"]);
        if (count == 0 ||
            !base::equalsNoCase(code, table.text(table.rowCount() - 1, "SPECIALNEEDS_CODE"))) {
            fields.addRow(table);
            count = 0;
        }
        table.set(table.rowCount() - 1, table.columnOf("Students"), ++count);
    }
    return table;
}

TextTable readStopStudents(ado::Connection& routing, const TripRecord& record) {
    static constexpr data::ListColumn Columns[]{
        {"Student", "LASTNAME", 2300}, {"Special Needs", {}, 1500}, {"Student ID", "STUID", 1300},
        {"School", "SCHOOL", 1100},    data::hidden("FIRSTNAME"),   data::hidden("INT_STUID"),
    };
    const auto needs = needsByStudent(routing, record);
    return data::readList(Columns, fmt::format(StudentsSql, conditionOf(record)), routing,
                          [&](TextTable& table, std::size_t row) {
                              table.setText(row, table.columnOf("LASTNAME"), nameOf(table, row));
                              const auto of = needs.find(table.value(row, "INT_STUID").asInteger());
                              if (of != needs.end()) {
                                  table.setText(row, table.columnOf("Special Needs"), of->second);
                              }
                          });
}

}  // namespace stops
