#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "platform/geo/projection.h"
#include "tools/district/import/source/csv.h"

/// The columns of a district's own tables of places, found by their headings.
namespace tools::district {

inline constexpr std::size_t MissingColumn = SIZE_MAX;

[[nodiscard]] std::size_t columnOf(const CsvRecord& heading,
                                   std::initializer_list<std::string_view> names);
/// Empty where the record is too short.
[[nodiscard]] std::string_view cell(const CsvRecord& record, std::size_t column);

/// Where a place stands: x and y in feet of the district, or longitude and latitude.
struct PlaceColumns {
    std::size_t right = MissingColumn;
    std::size_t up = MissingColumn;
    bool areFeet = true;

    [[nodiscard]] bool areThere() const { return right != MissingColumn && up != MissingColumn; }
};

[[nodiscard]] PlaceColumns placeColumnsIn(const CsvRecord& heading);
/// Nothing for what is no number or nowhere on the earth. Degrees need the projection.
[[nodiscard]] std::optional<geo::Feet> placeIn(const CsvRecord& record, const PlaceColumns& columns,
                                               const geo::Projection* projection);

}  // namespace tools::district
