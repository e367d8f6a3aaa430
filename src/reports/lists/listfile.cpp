#include "reports/lists/listfile.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/table/csv.h"
#include "reports/formats/export.h"

namespace reports {

namespace {

/// What a list shows for Null.
base::Value shown(table::CellKind kind, base::Value value) {
    return value.isNull() && table::isNumber(kind) ? base::Value(0) : std::move(value);
}

bool isWhole(const base::Value& value) {
    return value.isInteger() || value.isNull() ||
           (value.isDouble() && std::floor(value.asNumber()) == value.asNumber());
}

/// A list as a report without groups and totals.
class ListContent : public Content {
public:
    ListContent(const table::TextTable& table, std::span<const std::size_t> rows,
                const ListHeading& heading)
        : table_(table), rows_(rows) {
        heading_.title = heading.title;
        heading_.printed = heading.printed;
        heading_.user = heading.user;
        report_.title = heading.title;
        options_.landscape = true;
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            constexpr double TwipsInAPoint = 20;
            report_.columns.push_back({.field = "c" + std::to_string(column),
                                       .caption = table.columns[column].caption,
                                       .kind = kindOf(column),
                                       .width = table.columns[column].widthTwips / TwipsInAPoint});
        }
    }

    [[nodiscard]] const Report& report() const override { return report_; }
    [[nodiscard]] const Options& options() const override { return options_; }
    [[nodiscard]] const Heading& heading() const override { return heading_; }
    [[nodiscard]] std::size_t size() const override { return rows_.size(); }
    std::optional<Item> next() override {
        if (next_ == rows_.size()) {
            return std::nullopt;
        }
        const std::size_t from = rows_[next_++];
        Row row;
        for (std::size_t column = 0; column < table_.columns.size(); ++column) {
            row.cells.push_back(cellOf(from, column));
        }
        return row;
    }

private:
    /// A number that a workbook cannot take as one is written as it is shown.
    [[nodiscard]] CellKind kindOf(std::size_t column) const {
        const auto isAll = [&](auto holds) {
            return std::ranges::all_of(
                rows_, [&](std::size_t row) { return holds(table_.value(row, column)); });
        };
        switch (table_.columns[column].kind) {
            case table::CellKind::Number:
                return isAll(isWhole) ? CellKind::Whole : CellKind::Text;
            case table::CellKind::Decimal:
                return CellKind::Money;
            case table::CellKind::Time:
                return isAll(isTime) ? CellKind::Time : CellKind::Text;
            case table::CellKind::DateTime:
                return isAll(isTime) ? CellKind::DateTime : CellKind::Text;
            case table::CellKind::Text:
                break;
        }
        return CellKind::Text;
    }

    static bool isTime(const base::Value& value) { return value.isDate() || value.isNull(); }

    [[nodiscard]] base::Value cellOf(std::size_t row, std::size_t column) const {
        if (report_.columns[column].kind == CellKind::Text) {
            const std::string text = table_.text(row, column);
            return base::trim(text).empty() ? base::Value() : base::Value(text);
        }
        return shown(table_.columns[column].kind, table_.value(row, column));
    }

    const table::TextTable& table_;
    std::span<const std::size_t> rows_;
    Report report_;
    Options options_;
    Heading heading_;
    std::size_t next_ = 0;
};

}  // namespace

std::optional<ListFile> listFileOf(std::string_view path) {
    const std::string name = base::lowered(path);
    return name.ends_with(".csv")    ? std::optional(ListFile::Csv)
           : name.ends_with(".xlsx") ? std::optional(ListFile::Workbook)
                                     : std::nullopt;
}

bool writeList(const table::TextTable& table, std::span<const std::size_t> rows,
               const ListHeading& heading, ListFile kind, const std::string& path,
               const KeepGoing& keepGoing) {
    if (kind == ListFile::Csv) {
        std::ostringstream text;
        const bool isWhole = table::writeCsv(table, rows, text, keepGoing);
        if (isWhole) {
            files::write(path, text.view());
        }
        return isWhole;
    }
    ListContent content(table, rows, heading);
    return exportReport(content, Format::Excel, path, keepGoing);
}

}  // namespace reports
