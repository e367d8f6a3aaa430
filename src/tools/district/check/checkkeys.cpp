
#include <fmt/format.h>

#include "tools/district/check/checkparts.h"

namespace tools::district {

namespace {

/// A column whose values name rows of another table. Null, blank and 0 name nothing.
struct Reference {
    std::string_view what;
    std::string_view table;
    std::string_view column;
    std::string_view parent;
    std::string_view key;
};

constexpr Reference References[] = {
    {"Runs of an unknown school", "RUN", "SCHOOL", "SCHOOL", "SCHOOL"},
    {"Runs of an unknown trip type", "RUN", "TRIPTYPE", "TRIPTYPE", "TRIPTYPE"},
    {"Runs of an unknown run family", "RUN", "RUNFAMILY", "RUNFAMILY", "RUNFAMILY"},
    {"Runs of an unknown location", "RUN", "LOCCODE", "LOCCODE", "LOCCODE"},
    {"Runs on a route that does not exist", "RUN", "INT_ROUTEID", "ROUTE", "INT_ROUTEID"},
    {"Runs of an unknown vehicle type", "RUN", "VEHTYPE", "VEHTYPE", "VEHTYPE"},
    {"Runs whose first stop does not exist", "RUN", "FirstStop", "STOP", "INT_STOPID"},
    {"Runs whose last stop does not exist", "RUN", "LastStop", "STOP", "INT_STOPID"},
    {"Routes of an unknown location", "ROUTE", "LOCCODE", "LOCCODE", "LOCCODE"},
    {"Routes with an unknown vehicle", "ROUTE", "VEHICLE", "VEHICLE", "VEHICLE"},
    {"Routes with an unknown driver", "ROUTE", "EMPNUM", "EMPLOYEE", "EMPNUM"},
    {"Routes with an unknown aide", "ROUTE", "AID_EMPNUM", "EMPLOYEE", "EMPNUM"},
    {"Routes whose garage stop does not exist", "ROUTE", "GARAGE_STOPID", "STOP", "INT_STOPID"},
    {"Schools of an unknown type", "SCHOOL", "SCHOOLTYPE", "SCHOOLTYPE", "SCHOOLTYPE"},
    {"Stops of an unknown type", "STOP", "STOPTYPE", "STOPTYPE", "STOPTYPE"},
    {"Stops of an unknown school", "STOP", "SCHOOL", "SCHOOL", "SCHOOL"},
    {"Stops of an unknown location", "STOP", "LOCCODE", "LOCCODE", "LOCCODE"},
    {"Stop trips of a stop that does not exist", "STOP_TRIPTYPE", "INT_STOPID", "STOP",
     "INT_STOPID"},
    {"Stop trips of an unknown trip type", "STOP_TRIPTYPE", "TRIPTYPE", "TRIPTYPE", "TRIPTYPE"},
    {"Stop trips on a run that does not exist", "STOP_TRIPTYPE", "RUN", "RUN", "RUN"},
    {"Students of an unknown school", "STUDENT", "SCHOOL", "SCHOOL", "SCHOOL"},
    {"Addresses of a student who does not exist", "STU_ADDR", "INT_STUID", "STUDENT", "INT_STUID"},
    {"Rides of a student who does not exist", "STU_ADDR_TRIPTYPE", "INT_STUID", "STUDENT",
     "INT_STUID"},
    {"Rides from an address that does not exist", "STU_ADDR_TRIPTYPE", "ADDRESSID", "STU_ADDR",
     "ADDRESSID"},
    {"Rides of an unknown trip type", "STU_ADDR_TRIPTYPE", "TRIPTYPE", "TRIPTYPE", "TRIPTYPE"},
    {"Rides from a stop that does not exist", "STU_ADDR_TRIPTYPE", "INT_STOPID", "STOP",
     "INT_STOPID"},
    {"Special needs of a student who does not exist", "STU_SPECIALNEEDS", "INT_STUID", "STUDENT",
     "INT_STUID"},
    {"Students with an unknown special need", "STU_SPECIALNEEDS", "SPECIALNEEDS_CODE",
     "SPECIALNEEDS", "SPECIALNEEDS_CODE"},
    {"Log entries of an unknown activity", "RUNLOG", "ACTIVITYCODE", "RUNLOG_ACTIVITY_CODES",
     "ACTIVITYCODE"},
    {"Vehicles of an unknown type", "VEHICLE", "VEHTYPE", "VEHTYPE", "VEHTYPE"},
    {"Special needs of an unknown vehicle type", "VEHTYPE_SPECIALNEEDS", "VEHTYPE", "VEHTYPE",
     "VEHTYPE"},
    {"Vehicle types for an unknown special need", "VEHTYPE_SPECIALNEEDS", "SPECIALNEEDS_CODE",
     "SPECIALNEEDS", "SPECIALNEEDS_CODE"},
    {"Dead-head from a stop that does not exist", "DEADHEAD_CROSS", "ENDPOINT_INT_STOPID", "STOP",
     "INT_STOPID"},
    {"Dead-head to a stop that does not exist", "DEADHEAD_CROSS", "DEST_INT_STOPID", "STOP",
     "INT_STOPID"},
    {"Rights of an unknown user", "QDSCU_PP", "QDSC1", "QDSCU", "QDSC1"},
    {"Rights at an unknown permission point", "QDSCU_PP", "PERM", "QDSCPP", "PERM"},
};

bool has(const store::Database& database, std::string_view table, std::string_view column) {
    const store::Table* found = database.catalog().find(table);
    return found != nullptr && found->find(column) != nullptr;
}

void checkReference(store::Database& database, const Reference& reference, CheckReport& report) {
    const auto& [what, table, column, parent, key] = reference;
    if (!has(database, table, column) || !has(database, parent, key)) {
        return;
    }
    const auto kind = database.catalog().find(table)->find(column)->kind;
    report.add(findingOf(
        database, fmt::format("{} ({}.{})", what, table, column),
        fmt::format("SELECT c.\"{1}\", COUNT(*) FROM \"{0}\" AS c LEFT JOIN \"{2}\" AS p"
                    " ON p.\"{3}\" = c.\"{1}\" WHERE p.\"{3}\" IS NULL AND c.\"{1}\" IS NOT NULL"
                    " AND c.\"{1}\" NOT IN ({4}) GROUP BY c.\"{1}\"",
                    table, column, parent, key, store::isText(kind) ? "'', ' '" : "0")));
}

/// A file of ours guards its keys itself; one that another tool made may not.
void checkKey(store::Database& database, const store::Table& table, CheckReport& report) {
    std::string columns;
    for (const std::string& column : table.key) {
        if (!has(database, table.name, column)) {
            return;
        }
        columns += fmt::format("{}\"{}\"", columns.empty() ? "" : ", ", column);
    }
    report.add(findingOf(
        database, fmt::format("Keys that stand more than once in {}", table.name),
        fmt::format("SELECT \"{0}\", COUNT(*) - 1 FROM \"{1}\" GROUP BY {2} HAVING COUNT(*) > 1",
                    table.key.front(), table.name, columns)));
}

}  // namespace

void checkKeys(store::Database& database, CheckReport& report, Progress& progress) {
    progress.begin("Keys", 0);
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        for (const store::Table& table : data::tablesOf(file)) {
            if (!table.key.empty() && has(database, table.name, table.key.front())) {
                checkKey(database, table, report);
            }
        }
    }
    for (const Reference& reference : References) {
        progress.begin(std::string(reference.what), 0);
        checkReference(database, reference, report);
    }
}

CheckFinding findingOf(store::Database& database, std::string what, const std::string& sql) {
    CheckFinding finding{.what = std::move(what)};
    const auto rows = database.prepare(sql);
    while (rows->step()) {
        const bool counted = rows->columnCount() > 1;
        finding.add(cellText(*rows, 0), counted ? rows->integer(1) : 1);
    }
    return finding;
}

std::string cellText(const store::Statement& row, int column) {
    switch (row.type(column)) {
        case store::CellType::Null:
            return "";
        case store::CellType::Integer:
            return std::to_string(row.integer(column));
        case store::CellType::Real:
            return base::numberText(row.real(column));
        case store::CellType::Text:
            break;
    }
    return std::string(row.text(column));
}

}  // namespace tools::district
