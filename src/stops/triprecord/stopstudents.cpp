#include "stops/triprecord/stopstudents.h"

#include <cstdint>
#include <map>

#include <fmt/format.h>

#include "data/lists/cells.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "runedit/validation/checkedrun.h"
#include "startup/base/fieldvalues.h"

namespace stops {

namespace {

using table::CellKind;
using table::TextTable;

std::string conditionOf(const TripRecord& record) {
    return fmt::format(" WHERE STU_ADDR_TRIPTYPE.INT_STOPID={} AND STU_ADDR_TRIPTYPE.TRIPTYPE='{}'",
                       record.intStopId, record.tripType);
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
    ado::Recordset rows;
    rows.Open(fmt::format(NeedsSql, conditionOf(record)), routing);
    std::map<std::int64_t, std::string> needs;
    for (; !rows.Eof(); rows.MoveNext()) {
        std::string& codes = needs[rows["INT_STUID"].asInteger()];
        codes += (codes.empty() ? "" : ", ") + startup::textOf(rows["SPECIALNEEDS_CODE"]);
    }
    return needs;
}

std::string nameOf(ado::Recordset& student) {
    const auto last = startup::textOf(student["LASTNAME"]);
    const auto first = startup::textOf(student["FIRSTNAME"]);
    return base::trim(first).empty() ? last
                                     : fmt::format("{}, {}", base::trim(last), base::trim(first));
}

}  // namespace

TextTable readStopNeeds(ado::Connection& routing, const TripRecord& record) {
    TextTable table;
    table.columns = {
        {"Special Need", 1300}, {"Description", 2400}, {"Students", 1000, CellKind::Number}};
    ado::Recordset rows;
    rows.Open(fmt::format(NeedsSql, conditionOf(record)), routing);
    std::int64_t count = 0;
    std::string code;
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto next = startup::textOf(rows["SPECIALNEEDS_CODE"]);
        if (table.rowCount() == 0 || !base::equalsNoCase(next, code)) {
            const auto row = table.addRow();
            data::setCell(table, row, 0, rows["SPECIALNEEDS_CODE"]);
            data::setCell(table, row, 1, rows["DESCRIPTION"]);
            count = 0;
            code = next;
        }
        table.set(table.rowCount() - 1, 2, ++count);
    }
    return table;
}

TextTable readStopStudents(ado::Connection& routing, const TripRecord& record) {
    TextTable table;
    table.columns = {
        {"Student", 2300}, {"Special Needs", 1500}, {"Student ID", 1300}, {"School", 1100}};
    const auto needs = needsByStudent(routing, record);
    ado::Recordset rows;
    rows.Open(fmt::format(StudentsSql, conditionOf(record)), routing);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto row = table.addRow();
        table.setText(row, 0, nameOf(rows));
        const auto found = needs.find(rows["INT_STUID"].asInteger());
        table.setText(row, 1, found == needs.end() ? std::string() : found->second);
        data::setCell(table, row, 2, rows["STUID"]);
        data::setCell(table, row, 3, rows["SCHOOL"]);
    }
    return table;
}

}  // namespace stops
