#include "streets/district/districtstreets.h"

#include <charconv>
#include <cmath>
#include <sstream>
#include <utility>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace streets {

namespace {

constexpr std::string_view GridWord = "grid";
constexpr double FeetPerSecondPerMile = 5280.0 / 3600;

std::optional<double> measureIn(std::string_view word) {
    constexpr double Longest = 1e6;
    double number = 0;
    const char* const end = word.data() + word.size();
    const auto [stopped, error] = std::from_chars(word.data(), end, number);
    const bool isMeasure =
        error == std::errc() && stopped == end && number > 0 && number <= Longest;
    return isMeasure ? std::optional(number) : std::nullopt;
}

double wholeSpeed(double feetPerSecond) {
    constexpr double LastDigits = 1e-4;
    const double miles = feetPerSecond / FeetPerSecondPerMile;
    const double whole = std::round(miles);
    return whole > 0 && std::abs(miles - whole) < LastDigits ? whole * 5280 / 3600 : feetPerSecond;
}

}  // namespace

StreetSetting streetSettingIn(const std::string& text) {
    std::istringstream words(text);
    std::string first;
    std::string block;
    std::string speed;
    std::string more;
    words >> first >> block >> speed >> more;
    if (first.empty()) {
        return Grid();
    }
    if (!base::equalsNoCase(first, GridWord)) {
        return std::string(base::trim(text));
    }
    if (block.empty()) {
        return Grid();
    }
    const auto feet = measureIn(block);
    const auto perSecond = measureIn(speed);
    if (!feet || !perSecond || !more.empty()) {
        throw base::RunTimeError(
            base::errors::InvalidProcedureCall,
            fmt::format("\"Streets={}\" names no grid: feet a block and feet a second follow the "
                        "word, as in \"{}\".",
                        text, textOf(Grid())));
    }
    return Grid{*feet, wholeSpeed(*perSecond)};
}

std::string textOf(const StreetSetting& setting) {
    if (const auto* const file = std::get_if<std::string>(&setting)) {
        return *file;
    }
    const auto& grid = std::get<Grid>(setting);
    return fmt::format("{} {:.6g} {:.6g}", GridWord, grid.blockFeet, grid.feetPerSecond);
}

DistrictStreets::DistrictStreets(std::unique_ptr<const Network> network, const Grid& grid)
    : network_(std::move(network)), grid_(grid) {}

DistrictStreets::DistrictStreets(std::unique_ptr<const Network> network,
                                 std::shared_ptr<const StreetMap> map,
                                 std::vector<std::uint32_t> closed,
                                 std::vector<std::string> remarks)
    : map_(std::move(map)),
      network_(std::move(network)),
      closed_(std::move(closed)),
      remarks_(std::move(remarks)) {}

}  // namespace streets
