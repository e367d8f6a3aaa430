#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "streets/base/streetmap.h"
#include "streets/network/gridnetwork.h"
#include "streets/network/network.h"
#include "streets/rules/drivingrules.h"

namespace streets {

using Grid = GridRule;

/// What "Streets=" in the section [District] of a district's settings says: "grid 1320 29.3333"
/// (feet a block, feet a second) or the name of a street file. A speed that is a whole mile an hour
/// but for its last digits is that one.
using StreetSetting = std::variant<Grid, std::string>;

/// Nothing said is the grid. Raises base::RunTimeError for a grid that cannot be.
[[nodiscard]] StreetSetting streetSettingIn(const std::string& text);
/// The text that reads as this setting.
[[nodiscard]] std::string textOf(const StreetSetting& setting);

/// Where a district keeps what it drives on.
struct StreetPlaces {
    std::string settings;     ///< route.ini
    std::string folder;       ///< of its databases, where a street file stands, too
    std::string closed = {};  ///< the list of closed streets (see closedstreets.h); may be empty
};

/// Whether the settings can be read and say what the district drives on; without that it is a grid
/// that nobody may have.
[[nodiscard]] bool saysStreets(const std::string& settings);

/// What one run is solved with, beside what holds for its district.
struct Detour {
    std::vector<std::uint32_t> avoided = {};  ///< pieces that its bus keeps off
    std::vector<std::uint32_t> uTurns = {};   ///< nodes where its bus may turn back

    friend bool operator==(const Detour&, const Detour&) = default;
};

/// What a district drives on, opened once and then read by any thread.
class DistrictStreets {
public:
    DistrictStreets(std::unique_ptr<const Network> network, const Grid& grid);
    /// A map by the rules, but for the closed pieces.
    DistrictStreets(std::shared_ptr<const StreetMap> map, DrivingRules rules,
                    std::vector<std::uint32_t> closed, std::vector<std::string> remarks);

    /// The same with a detour, which takes as long as opening does but for the file; a grid has
    /// none and stays as it is.
    [[nodiscard]] std::shared_ptr<const DistrictStreets> with(const Detour& detour) const;

    [[nodiscard]] const Network& network() const { return *network_; }
    /// Null where the district drives on a grid.
    [[nodiscard]] const StreetMap* map() const { return map_.get(); }
    /// Nothing where it drives on streets.
    [[nodiscard]] const std::optional<Grid>& grid() const { return grid_; }
    /// Pieces that no bus drives because the list of closed streets or a detour names them;
    /// ascending.
    [[nodiscard]] const std::vector<std::uint32_t>& closed() const { return closed_; }
    /// Sentences for the planner: lines of the list that name no street.
    [[nodiscard]] const std::vector<std::string>& remarks() const { return remarks_; }

private:
    std::shared_ptr<const StreetMap> map_;
    DrivingRules rules_;
    std::vector<std::uint32_t> closed_;
    std::unique_ptr<const Network> network_;
    std::optional<Grid> grid_;
    std::vector<std::string> remarks_;
};

/// Opens what the settings name, with the speeds and turn costs that they say. A list of closed
/// streets that cannot be read is a remark. Raises base::RunTimeError for settings that make no
/// sense and for a street file that is missing, damaged, of another version or of another centre.
[[nodiscard]] std::shared_ptr<const DistrictStreets> openStreets(const StreetPlaces& places);

}  // namespace streets
