#include "streets/district/districtstreets.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <utility>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/ini/ini.h"
#include "streets/district/closedstreets.h"
#include "streets/file/streetfile.h"
#include "streets/network/graphnetwork.h"

namespace streets {

namespace {

constexpr const char* Section = "District";
constexpr const char* StreetsKey = "Streets";
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

/// A name stands for a file beside the databases.
std::string pathIn(const std::string& folder, std::string_view name) {
    return (std::filesystem::path(folder) / name).string();
}

/// Of places that were computed for another centre every one would lie elsewhere.
void requireCentre(const std::string& path, const StreetMap& map, std::string_view kept) {
    constexpr double SameDegrees = 1e-6;
    constexpr double SameFeet = 0.1;
    const std::array of{map.centre.degrees.latitude, map.centre.degrees.longitude,
                        map.centre.feet.x, map.centre.feet.y};
    for (std::size_t i = 0; i < of.size() && !kept.empty(); ++i) {
        const auto end = std::min(kept.find(','), kept.size());
        const double off = std::abs(base::leadingNumber(kept.substr(0, end)) - of[i]);
        if (off > (i < 2 ? SameDegrees : SameFeet)) {
            throw base::RunTimeError(
                base::errors::InvalidProcedureCall,
                fmt::format("The street file {} was made for another centre than the settings "
                            "name. Make it again with vireo-district streets.",
                            path));
        }
        kept.remove_prefix(std::min(end + 1, kept.size()));
    }
}

std::string settingsIn(const std::string& path) {
    return files::exists(path) ? ini::decoded(files::read(path)) : "";
}

struct ClosedPieces {
    std::vector<std::uint32_t> pieces;
    std::vector<std::string> remarks;
};

ClosedPieces closedIn(const StreetMap& map, const std::string& path) {
    ClosedPieces closed;
    if (!files::exists(path)) {
        closed.remarks.push_back(
            fmt::format("There is no list of closed streets {}: no street is closed.", path));
        return closed;
    }
    auto list = closedStreetsIn(ini::decoded(files::read(path)));
    closed.remarks = std::move(list.faults);
    for (const ClosedStreet& street : list.streets) {
        const auto pieces = closedPieces(map, street);
        closed.pieces.insert(closed.pieces.end(), pieces.begin(), pieces.end());
        if (pieces.empty()) {
            closed.remarks.push_back(fmt::format(
                "The list of closed streets names no street of the map: {}.", lineOf(street)));
        }
    }
    return closed;
}

std::vector<std::uint32_t> onceEach(std::vector<std::uint32_t> pieces) {
    std::ranges::sort(pieces);
    pieces.erase(std::unique(pieces.begin(), pieces.end()), pieces.end());
    return pieces;
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

DistrictStreets::DistrictStreets(std::shared_ptr<const StreetMap> map, DrivingRules rules,
                                 std::vector<std::uint32_t> closed,
                                 std::vector<std::string> remarks)
    : map_(std::move(map)),
      rules_(std::move(rules)),
      closed_(onceEach(std::move(closed))),
      network_(graphNetwork(map_, rules_, closed_)),
      remarks_(std::move(remarks)) {}

std::shared_ptr<const DistrictStreets> DistrictStreets::with(const Detour& detour) const {
    if (map_ == nullptr) {
        return std::make_shared<const DistrictStreets>(gridNetwork(*grid_), *grid_);
    }
    auto rules = rules_;
    rules.uTurnsAt.insert(rules.uTurnsAt.end(), detour.uTurns.begin(), detour.uTurns.end());
    auto closed = closed_;
    closed.insert(closed.end(), detour.avoided.begin(), detour.avoided.end());
    return std::make_shared<const DistrictStreets>(map_, std::move(rules), std::move(closed),
                                                   remarks_);
}

bool saysStreets(const std::string& settings) {
    try {
        return !ini::valueIn(settingsIn(settings), Section, StreetsKey, "").empty();
    } catch (const base::RunTimeError&) {
        return false;  // who opens the streets is told
    }
}

std::shared_ptr<const DistrictStreets> openStreets(const StreetPlaces& places) {
    const std::string settings = settingsIn(places.settings);
    const auto setting = streetSettingIn(ini::valueIn(settings, Section, StreetsKey, ""));
    if (const auto* const grid = std::get_if<Grid>(&setting)) {
        return std::make_shared<const DistrictStreets>(gridNetwork(*grid), *grid);
    }
    DrivingRules rules = drivingRulesIn(settings);
    const std::string path = pathIn(places.folder, std::get<std::string>(setting));
    if (!files::exists(path)) {
        throw base::RunTimeError(
            base::errors::FileNotFound,
            fmt::format("The district's streets are not there: {}. Make them again with "
                        "vireo-district streets.",
                        path));
    }
    const auto map = std::make_shared<const StreetMap>(readStreetFile(path));
    requireCentre(path, *map, ini::valueIn(settings, Section, "Centre", ""));
    ClosedPieces closed;
    if (const auto name = base::trim(places.closed); !name.empty()) {
        closed = closedIn(*map, pathIn(places.folder, name));
    }
    return std::make_shared<const DistrictStreets>(map, std::move(rules), std::move(closed.pieces),
                                                   std::move(closed.remarks));
}

}  // namespace streets
