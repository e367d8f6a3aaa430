#include "tools/district/streets/addresstable.h"

#include <fstream>
#include <optional>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "tools/district/base/refuse.h"
#include "tools/district/import/source/csv.h"
#include "tools/district/streets/tablecolumns.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

struct Columns {
    std::size_t number = MissingColumn;
    std::size_t street = MissingColumn;
    PlaceColumns place = {};
};

Columns columnsIn(const fs::path& file, const CsvRecord& heading) {
    const Columns columns{.number = columnOf(heading, {"number", "house_number"}),
                          .street = columnOf(heading, {"street", "street_name"}),
                          .place = placeColumnsIn(heading)};
    if (columns.number == MissingColumn || columns.street == MissingColumn ||
        !columns.place.areThere()) {
        refuse(
            fmt::format("{} lacks a column: its first line must name number, street, and x "
                        "and y or latitude and longitude.",
                        file.string()));
    }
    return columns;
}

void take(const CsvRecord& record, const Columns& columns, const geo::Projection& projection,
          AddressTable& table) {
    const auto place = placeIn(record, columns.place, &projection);
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
