#include <cmath>

#include <fmt/format.h>

#include "platform/base/date.h"
#include "platform/base/lookup.h"
#include "tools/district/check/checkparts.h"

namespace tools::district {

namespace {

using store::CellType;
using store::Column;
using store::ColumnKind;

bool isSound(const store::Statement& row, int cell, ColumnKind kind) {
    const CellType type = row.type(cell);
    if (type == CellType::Null) {
        return kind != ColumnKind::YesNo;
    }
    switch (kind) {
        case ColumnKind::Code: {
            const auto text = row.text(cell);
            return type == CellType::Text && (text == " " || !text.ends_with(' '));
        }
        case ColumnKind::Text:
            return type == CellType::Text;
        case ColumnKind::Date:
            return type == CellType::Text && base::Date::fromIso(row.text(cell)).has_value();
        case ColumnKind::YesNo:
            return type == CellType::Integer && (row.integer(cell) == 0 || row.integer(cell) == 1);
        case ColumnKind::Integer:
        case ColumnKind::Counter:
            return type == CellType::Integer;
        case ColumnKind::Number:
        case ColumnKind::Single:
            return type == CellType::Integer ||
                   (type == CellType::Real && std::isfinite(row.real(cell)));
    }
    return true;
}

std::string_view faultOf(ColumnKind kind) {
    static constexpr std::pair<ColumnKind, std::string_view> Faults[] = {
        {ColumnKind::Code, "Codes that are no text or end in blanks"},
        {ColumnKind::Text, "Texts that are something else"},
        {ColumnKind::Date, "Date-times that are none, or not at whole seconds"},
        {ColumnKind::YesNo, "Yes/no cells that are neither 0 nor 1"},
        {ColumnKind::Integer, "Numbers that are not whole"},
        {ColumnKind::Counter, "Numbers that are not whole"}};
    return base::lookUp(Faults, kind, "Numbers that are none");
}

/// The columns of a table that the file has, and their findings.
class TableScan {
public:
    TableScan(const store::Table& wanted, const store::Table& found) : table_(wanted) {
        for (const Column& column : wanted.columns) {
            if (found.find(column.name) != nullptr) {
                columns_.push_back(&column);
                findings_.push_back({.what = fmt::format("{} ({}.{})", faultOf(column.kind),
                                                         wanted.name, column.name)});
            }
        }
    }

    /// Returns the number of rows read.
    std::int64_t run(store::Database& database, CheckReport& report, Progress& progress) {
        std::string names;
        for (const Column* column : columns_) {
            names += fmt::format("{}\"{}\"", names.empty() ? "" : ", ", column->name);
        }
        const auto rows =
            database.prepare(fmt::format("SELECT {} FROM \"{}\"", names, table_.name));
        std::int64_t count = 0;
        for (; rows->step(); ++count) {
            look(*rows);
            progress.step();
        }
        for (CheckFinding& finding : findings_) {
            report.add(std::move(finding));
        }
        return count;
    }

private:
    void look(const store::Statement& row) {
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            const int cell = static_cast<int>(i);
            if (!isSound(row, cell, columns_[i]->kind)) {
                findings_[i].add(fmt::format("\"{}\" in the row of \"{}\"", cellText(row, cell),
                                             cellText(row, 0)));
            }
        }
    }

    const store::Table& table_;
    std::vector<const Column*> columns_;
    std::vector<CheckFinding> findings_;
};

}  // namespace

void checkCells(store::Database& database, CheckReport& report, Progress& progress) {
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        for (const store::Table& wanted : data::tablesOf(file)) {
            if (const store::Table* found = database.catalog().find(wanted.name)) {
                progress.begin(fmt::format("Reading {}", wanted.name), 0);
                report.rows += TableScan(wanted, *found).run(database, report, progress);
                ++report.tables;
            }
        }
    }
}

}  // namespace tools::district
