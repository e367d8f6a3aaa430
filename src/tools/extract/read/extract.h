#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/geo/projection.h"
#include "tools/extract/tags/traits.h"

namespace tools::extract {

/// A rectangle of degrees; not across the date line.
struct DegreeBox {
    geo::Degrees low;
    geo::Degrees high;

    [[nodiscard]] bool holds(const geo::Degrees& at) const {
        return at.latitude >= low.latitude && at.latitude <= high.latitude &&
               at.longitude >= low.longitude && at.longitude <= high.longitude;
    }
};

/// A point that lines go through.
struct ExtractNode {
    std::int64_t id = 0;
    geo::Degrees at;
};

/// A line of points. Most are streets or the edges of something; those that are neither may be
/// part of an area.
struct ExtractWay {
    static constexpr std::uint32_t Missing = UINT32_MAX;

    std::int64_t id = 0;
    std::vector<std::uint32_t> nodes = {};  ///< of Extract::nodes; Missing where left out
    bool isWhole = true;                    ///< none is missing
    std::int32_t street = -1;               ///< of Extract::streets, or none
    std::optional<streets::GroundKind> ground = {};
    std::string name = {};  ///< of the ground
};

struct ExtractTurn {
    TurnTraits traits;
    std::vector<std::int64_t> from = {};          ///< ways
    std::vector<std::int64_t> to = {};            ///< ways
    std::uint32_t viaNode = ExtractWay::Missing;  ///< of Extract::nodes; Missing: over ways
    std::vector<std::int64_t> viaWays = {};
};

struct ExtractArea {
    streets::GroundKind kind = streets::GroundKind::Park;
    std::string name = {};
    std::vector<std::int64_t> ways = {};  ///< of its rings, outer and inner
};

struct ExtractHouse {
    HouseTraits traits;
    geo::Degrees at;
};

/// What extracts say of the streets of a region, as far as streets are made of it. Sorted by id;
/// what stands in several files stands here once.
struct Extract {
    std::vector<ExtractNode> nodes;
    std::vector<std::pair<std::uint32_t, PointTraits>> marks;  ///< by node, ascending
    std::vector<StreetTraits> streets;
    std::vector<ExtractWay> ways;
    std::vector<ExtractTurn> turns;
    std::vector<ExtractArea> areas;
    std::vector<ExtractHouse> houses;
    std::optional<DegreeBox> covered;  ///< all points of the files, also those left out
};

/// Told how many of so many bytes are read; may throw to give up.
using ReadProgress = std::function<void(std::int64_t done, std::int64_t bytes)>;

/// Reads files of OpenStreetMap (.osm.pbf, or .osm.opl as text), of which only points inside the
/// box count where one is given. Raises base::RunTimeError with the file's name where one is
/// missing, empty, cut, damaged or of another format.
[[nodiscard]] Extract readExtracts(std::span<const std::filesystem::path> files,
                                   const std::optional<DegreeBox>& box,
                                   const ReadProgress& progress);

}  // namespace tools::extract
