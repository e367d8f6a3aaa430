#include "tools/district/streets/addresstable.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <optional>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "tools/district/base/refuse.h"
#include "tools/district/import/source/csv.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t Missing = SIZE_MAX;

std::size_t columnOf(const CsvRecord& heading, std::initializer_list<std::string_view> names) {
    for (std::size_t i = 0; i < heading.fields.size(); ++i) {
        for (const std::string_view name : names) {
            if (base::equalsNoCase(base::trim(heading.fields[i].text), name)) {
                return i;
            }
        }
    }
    return Missing;
}

struct Columns {
    std::size_t number = Missing;
    std::size_t street = Missing;
    std::size_t right = Missing;  ///< or longitude
    std::size_t up = Missing;     ///< or latitude
    bool areFeet = true;
};

Columns columnsIn(const fs::path& file, const CsvRecord& heading) {
    Columns columns{.number = columnOf(heading, {"number", "house_number"}),
                    .street = columnOf(heading, {"street", "street_name"}),
                    .right = columnOf(heading, {"x"}),
                    .up = columnOf(heading, {"y"})};
    if (columns.right == Missing || columns.up == Missing) {
        columns.right = columnOf(heading, {"longitude", "lon"});
        columns.up = columnOf(heading, {"latitude", "lat"});
        columns.areFeet = false;
    }
    for (const std::size_t column : {columns.number, columns.street, columns.right, columns.up}) {
        if (column == Missing) {
            refuse(
                fmt::format("{} lacks a column: its first line must name number, street, and x "
                            "and y or latitude and longitude.",
                            file.string()));
        }
    }
    return columns;
}

std::string_view cell(const CsvRecord& record, std::size_t column) {
    return column < record.fields.size() ? base::trim(record.fields[column].text)
                                         : std::string_view();
}

std::optional<double> numberIn(std::string_view text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    const bool isNumber = error == std::errc() && stopped == end && std::isfinite(number);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<geo::Feet> placeIn(const CsvRecord& record, const Columns& columns,
                                 const geo::Projection& projection) {
    constexpr double Farthest = 1e8;  // feet
    constexpr double Pole = 90;
    constexpr double HalfWay = 180;
    const auto right = numberIn(cell(record, columns.right));
    const auto up = numberIn(cell(record, columns.up));
    if (!right || !up) {
        return std::nullopt;
    }
    if (columns.areFeet) {
        const bool isNear = std::abs(*right) < Farthest && std::abs(*up) < Farthest;
        return isNear ? std::optional(geo::Feet{*right, *up}) : std::nullopt;
    }
    const bool isOnEarth = std::abs(*up) < Pole && std::abs(*right) <= HalfWay;
    return isOnEarth ? std::optional(projection.toFeet({*up, *right})) : std::nullopt;
}

void take(const CsvRecord& record, const Columns& columns, const geo::Projection& projection,
          AddressTable& table) {
    const auto place = placeIn(record, columns, projection);
    const std::string_view number = cell(record, columns.number);
    const std::string_view street = cell(record, columns.street);
    if (number.empty() || street.empty()) {
        table.faults.push_back(fmt::format("Line {} names no house of a street.", record.line));
    } else if (!place) {
        table.faults.push_back(fmt::format("Line {} names no place.", record.line));
    } else {
        table.addresses.push_back({std::string(number), std::string(street), *place});
    }
}

}  // namespace

AddressTable readAddresses(const fs::path& file, const geo::Projection& projection) {
    std::ifstream text(file, std::ios::binary);
    if (!fs::is_regular_file(file) || !text) {
        throw base::RunTimeError(base::errors::FileNotFound,
                                 fmt::format("There is no file {}.", file.string()));
    }
    CsvReader reader(text, shapeOf(text));
    AddressTable table;
    std::optional<Columns> columns;
    for (auto item = reader.next(); item != CsvReader::Item::End; item = reader.next()) {
        if (item == CsvReader::Item::Fault) {
            table.faults.push_back(
                fmt::format("Line {}: {}", reader.fault().line, reader.fault().reason));
        } else if (!columns) {
            columns = columnsIn(file, reader.record());
        } else {
            take(reader.record(), *columns, projection, table);
        }
    }
    if (!columns) {
        refuse(fmt::format("{} is empty.", file.string()));
    }
    return table;
}

}  // namespace tools::district
