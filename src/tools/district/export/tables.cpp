#include "tools/district/export/tables.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/table/csv.h"
#include "tools/district/base/refuse.h"
#include "tools/district/export/disguise.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using store::CellType;
using store::ColumnKind;

void writeCell(table::CsvWriter& csv, ColumnKind kind, const store::Cell& cell) {
    switch (cell.type) {
        case CellType::Null:
            csv.null();
            return;
        case CellType::Integer: {
            const bool isYesNo =
                kind == ColumnKind::YesNo && (cell.integer == 0 || cell.integer == 1);
            csv.text(isYesNo ? (cell.integer == 1 ? "True" : "False")
                             : std::to_string(cell.integer));
            return;
        }
        case CellType::Real:
            csv.text(fmt::format("{}", cell.real));
            return;
        case CellType::Text:
            csv.text(cell.text);
            return;
    }
}

void writeInvented(table::CsvWriter& csv, const base::Value& value) {
    value.isNull() ? csv.null() : csv.text(value.heldText());
}

/// How one column of a table is written.
struct Written {
    ColumnKind kind;
    const Disguise* disguise;
    int person;  ///< the column that the disguise depends on
};

int placeOf(const store::Table& table, std::string_view column) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (base::equalsNoCase(table.columns[i].name, column)) {
            return static_cast<int>(i);
        }
    }
    return 0;
}

std::vector<Written> columnsOf(const store::Table& table, bool withoutNames) {
    std::vector<Written> columns;
    for (const store::Column& column : table.columns) {
        const Disguise* disguise = withoutNames ? disguiseOf(table.name, column.name) : nullptr;
        columns.push_back(
            {column.kind, disguise, disguise == nullptr ? 0 : placeOf(table, disguise->person)});
    }
    return columns;
}

std::string questionOf(const store::Table& table) {
    const auto columns = base::joined(
        table.columns, ", ", [](const auto& column) { return fmt::format("\"{}\"", column.name); });
    return fmt::format("SELECT {} FROM \"{}\" ORDER BY {}", columns, table.name, table.rowKey);
}

std::int64_t countOf(store::Database& database, const store::Table& table) {
    const auto row = database.prepare(fmt::format("SELECT COUNT(*) FROM \"{}\"", table.name));
    row->step();
    return row->integer(0);
}

/// Writes one table; returns its rows.
std::int64_t writeTable(store::Database& database, const store::Table& table, std::ostream& out,
                        bool withoutNames, Progress& progress) {
    const auto columns = columnsOf(table, withoutNames);
    progress.begin(table.name, countOf(database, table));
    table::CsvWriter csv(out);
    for (const store::Column& column : table.columns) {
        csv.text(column.name);
    }
    csv.endRow();
    std::int64_t count = 0;
    const auto rows = database.prepare(questionOf(table));
    for (; rows->step(); ++count) {
        for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
            const Written& column = columns[static_cast<std::size_t>(i)];
            const bool isHidden =
                column.disguise != nullptr && rows->type(i) != store::CellType::Null;
            isHidden ? writeInvented(csv, column.disguise->invent(rows->integer(column.person)))
                     : writeCell(csv, column.kind, rows->cell(i));
        }
        csv.endRow();
        progress.step();
    }
    return count;
}

}  // namespace

TablesWritten writeTables(const DistrictSnapshot& district, const fs::path& folder,
                          bool withoutNames, Progress& progress) {
    TablesWritten written;
    std::set<std::string> names;
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        if (file == data::DatabaseFile::VIREORpt) {
            continue;
        }
        store::Database& database = district.database(file);
        for (const store::Table& table : database.catalog().tables()) {
            // Of two files' tables of one name the routing file's is the one that counts.
            const bool isFirst = names.insert(base::uppered(table.name)).second;
            const fs::path path =
                folder /
                ((isFirst ? "" : fmt::format("{}-", data::fileName(file))) + table.name + ".csv");
            std::ofstream out(path, std::ios::binary);
            written.rows += writeTable(database, table, out, withoutNames, progress);
            if (!out.flush()) {
                refuse(
                    fmt::format("{} cannot be written: {}.", path.string(), std::strerror(errno)));
            }
            ++written.tables;
        }
    }
    return written;
}

}  // namespace tools::district
