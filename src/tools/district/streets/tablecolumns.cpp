#include "tools/district/streets/tablecolumns.h"

#include <charconv>
#include <cmath>

#include "platform/base/text.h"

namespace tools::district {

namespace {

std::optional<double> numberIn(std::string_view text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    const bool isNumber = error == std::errc() && stopped == end && std::isfinite(number);
    return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

std::size_t columnOf(const CsvRecord& heading, std::initializer_list<std::string_view> names) {
    for (std::size_t i = 0; i < heading.fields.size(); ++i) {
        for (const std::string_view name : names) {
            if (base::equalsNoCase(base::trim(heading.fields[i].text), name)) {
                return i;
            }
        }
    }
    return MissingColumn;
}

std::string_view cell(const CsvRecord& record, std::size_t column) {
    return column < record.fields.size() ? base::trim(record.fields[column].text)
                                         : std::string_view();
}

PlaceColumns placeColumnsIn(const CsvRecord& heading) {
    const PlaceColumns feet{.right = columnOf(heading, {"x"}), .up = columnOf(heading, {"y"})};
    return feet.areThere() ? feet
                           : PlaceColumns{.right = columnOf(heading, {"longitude", "lon"}),
                                          .up = columnOf(heading, {"latitude", "lat"}),
                                          .areFeet = false};
}

std::optional<geo::Feet> placeIn(const CsvRecord& record, const PlaceColumns& columns,
                                 const geo::Projection* projection) {
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
    return isOnEarth && projection != nullptr ? std::optional(projection->toFeet({*up, *right}))
                                              : std::nullopt;
}

}  // namespace tools::district
