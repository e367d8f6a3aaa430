#include "reports/lists/listfile.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <sstream>
#include <utility>

#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/table/csv.h"
#include "reports/formats/export.h"

namespace reports {

namespace {

/// What a list shows for Null.
base::Value asShown(table::CellKind kind, base::Value value) {
    return value.isNull() && table::isNumber(kind) ? base::Value(0) : std::move(value);
}

bool isWhole(const base::Value& value) {
    return value.isInteger() || value.isNull() ||
           (value.isDouble() && std::floor(value.asNumber()) == value.asNumber());
}

/// A list as a report without groups and totals.
class ListContent : public Content {
public:
    ListContent(table::Excerpt shown, const ListHeading& heading, const Options& options)
        : shown_(std::move(shown)), options_(options) {
        heading_.title = heading.title;
        heading_.printed = heading.printed;
        heading_.user = heading.user;
        heading_.selection = heading.selection;
        report_.title = heading.title;
        for (const std::size_t column : shown_.columns) {
            const CellKind kind = kindOf(column);
            report_.columns.push_back(
                {.field = "c" + std::to_string(column),
                 .caption = shown_.table.columns[column].caption,
                 .kind = kind,
                 .width = widthOf(column, kind),
                 .grows = kind == CellKind::Text,
                 .unbroken = kind == CellKind::Text ? longestWord(column) : std::string()});
        }
    }

    [[nodiscard]] const Report& report() const override { return report_; }
    [[nodiscard]] const Options& options() const override { return options_; }
    [[nodiscard]] const Heading& heading() const override { return heading_; }
    [[nodiscard]] std::size_t size() const override { return shown_.rows.size(); }
    std::optional<Item> next() override {
        if (next_ == shown_.rows.size()) {
            return std::nullopt;
        }
        const std::size_t from = shown_.rows[next_++];
        Row row;
        for (std::size_t place = 0; place < shown_.columns.size(); ++place) {
            row.cells.push_back(cellOf(from, place));
        }
        return row;
    }

private:
    /// A number that a workbook cannot take as one is written as it is shown.
    [[nodiscard]] CellKind kindOf(std::size_t column) const {
        const auto isAll = [&](auto holds) {
            return std::ranges::all_of(shown_.rows, [&](std::size_t row) {
                return holds(shown_.table.value(row, column));
            });
        };
        switch (shown_.table.columns[column].kind) {
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

    /// In points: what the list is given, and for texts what the first of them need, up to a limit
    /// beyond which they wrap.
    [[nodiscard]] double widthOf(std::size_t column, CellKind kind) const {
        constexpr double TwipsInAPoint = 20;
        constexpr double CharacterPoints = 5.5;
        constexpr std::size_t MostCharacters = 40;
        const double given = shown_.table.columns[column].widthTwips / TwipsInAPoint;
        if (kind != CellKind::Text) {
            return given;
        }
        std::size_t longest = 0;
        for (const std::size_t row : sample()) {
            longest = std::max(longest, shown_.table.text(row, column).size());
        }
        const auto characters = static_cast<double>(std::min(longest, MostCharacters));
        return std::max(given, characters * CharacterPoints);
    }

    /// The longest that is no longer than codes are, so that no id is torn apart.
    [[nodiscard]] std::string longestWord(std::size_t column) const {
        constexpr std::size_t CodeCharacters = 14;
        std::string longest;
        for (const std::size_t row : sample()) {
            std::istringstream words(shown_.table.text(row, column));
            for (std::string word; words >> word;) {
                if (word.size() > longest.size() && word.size() <= CodeCharacters) {
                    longest = word;
                }
            }
        }
        return longest;
    }

    [[nodiscard]] std::span<const std::size_t> sample() const {
        constexpr std::size_t Rows = 500;
        return std::span(shown_.rows).first(std::min(shown_.rows.size(), Rows));
    }

    static bool isTime(const base::Value& value) { return value.isDate() || value.isNull(); }

    [[nodiscard]] base::Value cellOf(std::size_t row, std::size_t place) const {
        const std::size_t column = shown_.columns[place];
        if (report_.columns[place].kind == CellKind::Text) {
            const std::string text = shown_.table.text(row, column);
            return base::trim(text).empty() ? base::Value() : base::Value(text);
        }
        return asShown(shown_.table.columns[column].kind, shown_.table.value(row, column));
    }

    table::Excerpt shown_;
    Options options_;
    Report report_;
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

std::unique_ptr<Content> listContent(table::Excerpt shown, const ListHeading& heading,
                                     const Options& options) {
    return std::make_unique<ListContent>(std::move(shown), heading, options);
}

bool writeList(const table::Excerpt& shown, const ListHeading& heading, ListFile kind,
               const std::string& path, const KeepGoing& keepGoing) {
    if (kind == ListFile::Csv) {
        std::ostringstream text;
        const bool isWhole = table::writeCsv(shown, text, keepGoing);
        if (isWhole) {
            files::write(path, text.view());
        }
        return isWhole;
    }
    ListContent content(shown, heading, {.landscape = true});
    return exportReport(content, Format::Excel, path, keepGoing);
}

}  // namespace reports
