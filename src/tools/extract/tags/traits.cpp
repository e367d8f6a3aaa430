#include "tools/extract/tags/traits.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/base/text.h"
#include "streets/base/streetnames.h"
#include "tools/extract/tags/measures.h"

namespace tools::extract {

namespace {

using streets::GroundKind;
using streets::StreetClass;

constexpr std::array<std::pair<std::string_view, StreetClass>, 25> Highways{
    {{"motorway", StreetClass::Motorway},
     {"trunk", StreetClass::Trunk},
     {"primary", StreetClass::Primary},
     {"secondary", StreetClass::Secondary},
     {"tertiary", StreetClass::Tertiary},
     {"unclassified", StreetClass::Unclassified},
     {"road", StreetClass::Unclassified},
     {"residential", StreetClass::Residential},
     {"living_street", StreetClass::Residential},
     {"motorway_link", StreetClass::Ramp},
     {"trunk_link", StreetClass::Ramp},
     {"primary_link", StreetClass::Ramp},
     {"secondary_link", StreetClass::Ramp},
     {"tertiary_link", StreetClass::Ramp},
     {"service", StreetClass::Service},
     {"busway", StreetClass::Service},
     {"bus_guideway", StreetClass::Footway},
     {"track", StreetClass::Footway},
     {"pedestrian", StreetClass::Footway},
     {"footway", StreetClass::Footway},
     {"path", StreetClass::Footway},
     {"cycleway", StreetClass::Footway},
     {"bridleway", StreetClass::Footway},
     {"steps", StreetClass::Footway},
     {"corridor", StreetClass::Footway}}};

constexpr std::size_t LongestName = 120;  // characters

/// Without what no picture can show.
std::string tidied(std::string_view name) {
    std::string text = streets::spelledOut(base::firstCharacters(name, LongestName));
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
    return text;
}

std::optional<StreetClass> classOf(const Tags& tags) {
    const auto* const found = std::ranges::find(Highways, tags["highway"],
                                                &std::pair<std::string_view, StreetClass>::first);
    if (found == Highways.end() || tags.is("area", "yes") ||
        tags.isAny("footway", {"sidewalk", "crossing"})) {
        return std::nullopt;
    }
    return found->second;
}

std::optional<bool> allowed(std::string_view access) {
    if (access.empty()) {
        return std::nullopt;
    }
    constexpr std::array Denied{
        "no",   "private",  "military", "agricultural", "forestry",   "delivery", "emergency",
        "foot", "dismount", "bicycle",  "use_sidepath", "restricted", "permit"};
    return std::ranges::find(Denied, access) == Denied.end();
}

/// What is said of buses counts before what is said of all vehicles.
bool mayDrive(const Tags& tags, std::string_view way) {
    for (const std::string_view who : {"bus", "psv", "motor_vehicle", "vehicle", "access"}) {
        if (const auto one = allowed(tags[std::string(who) + std::string(way)])) {
            return *one;
        }
    }
    return true;
}

bool isForBuses(const Tags& tags, StreetClass kind) {
    if (kind == StreetClass::Footway ||
        tags.isAny("service", {"emergency_access", "drive-through"})) {
        return allowed(tags["bus"]).value_or(false);
    }
    return mayDrive(tags, "");
}

bool isRoundabout(const Tags& tags) { return tags.isAny("junction", {"roundabout", "circular"}); }

/// Forward and backward, by the rule for one-way streets alone.
std::pair<bool, bool> directionsOf(const Tags& tags) {
    const std::string_view said =
        tags.first({"oneway:bus", "oneway:psv", "oneway:motor_vehicle", "oneway"});
    if (said == "-1" || said == "reverse") {
        return {false, true};
    }
    if (said == "reversible") {
        return {false, false};  // by the time of day
    }
    if (said == "yes" || said == "true" || said == "1") {
        return {true, false};
    }
    const bool implied = isRoundabout(tags) || tags.is("highway", "motorway");
    return {true, !(implied && said.empty())};
}

/// A motorway without a name is known by its number.
std::string streetName(const Tags& tags, StreetClass kind) {
    const std::string_view name = tags.first({"name", "official_name", "name:en"});
    if (!name.empty() || kind == StreetClass::Ramp || kind > StreetClass::Tertiary) {
        return tidied(name);
    }
    const std::string_view numbers = tags["ref"];
    return tidied(numbers.substr(0, numbers.find(';')));
}

std::uint8_t limitOf(const Tags& tags) {
    if (const auto bus = milesPerHourIn(tags["maxspeed:bus"]); bus != 0) {
        return bus;
    }
    std::uint8_t lowest = 0;
    for (const std::string_view key : {"maxspeed", "maxspeed:forward", "maxspeed:backward"}) {
        const auto miles = milesPerHourIn(tags[key]);
        lowest = miles == 0 ? lowest : lowest == 0 ? miles : std::min(miles, lowest);
    }
    return lowest;
}

bool isBarrier(const Tags& tags) {
    constexpr std::array Passable{
        "cattle_grid", "entrance",          "toll_booth", "kerb",
        "gate",        "lift_gate",         "swing_gate", "border_control",
        "no",          "height_restrictor", "sally_port", "checkpoint"};
    const std::string_view kind = tags["barrier"];
    if (kind.empty()) {
        return false;
    }
    const bool isOpen = std::ranges::find(Passable, kind) != Passable.end();
    const bool isSaid = !tags.first({"bus", "psv", "motor_vehicle", "vehicle", "access"}).empty();
    return isSaid ? !mayDrive(tags, "") : !isOpen;
}

bool isUnderground(const Tags& tags) { return !tags["tunnel"].empty() && !tags.is("tunnel", "no"); }

}  // namespace

std::optional<StreetTraits> streetOf(const Tags& tags) {
    const auto kind = classOf(tags);
    if (!kind) {
        return std::nullopt;
    }
    StreetTraits street{.kind = *kind, .name = streetName(tags, *kind)};
    const auto [forward, backward] = directionsOf(tags);
    const bool open = isForBuses(tags, *kind);
    street.forward = open && forward && mayDrive(tags, ":forward");
    street.backward = open && backward && mayDrive(tags, ":backward");
    if (open && *kind == StreetClass::Footway) {
        street.kind = StreetClass::Service;
    }
    street.roundabout = isRoundabout(tags);
    street.milesPerHour = limitOf(tags);
    street.clearanceInches = inchesIn(tags.first({"maxheight", "maxheight:physical"}));
    street.weightTenths = shortTonTenthsIn(tags.first({"maxweight:bus", "maxweight"}));
    return street;
}

PointTraits pointOf(const Tags& tags) {
    return {
        .signal = tags.is("highway", "traffic_signals") || tags.is("crossing", "traffic_signals"),
        .turningCircle = tags.isAny("highway", {"turning_circle", "turning_loop"}),
        .levelCrossing = tags.is("railway", "level_crossing"),
        .barrier = isBarrier(tags)};
}

std::optional<GroundKind> areaOf(const Tags& tags) {
    if (tags.is("natural", "water") || tags.isAny("waterway", {"riverbank", "dock"}) ||
        tags.isAny("landuse", {"reservoir", "basin"})) {
        return GroundKind::Water;
    }
    if (tags.isAny("amenity", {"school", "kindergarten", "college", "university"})) {
        return GroundKind::School;
    }
    if (!tags["building"].empty() && !tags.is("building", "no")) {
        return GroundKind::Building;
    }
    if (tags.isAny("leisure", {"pitch", "track"})) {
        return GroundKind::Pitch;
    }
    if (tags.is("natural", "wood") || tags.is("landuse", "forest")) {
        return GroundKind::Wood;
    }
    if (tags.isAny("leisure", {"park", "garden", "golf_course", "nature_reserve", "playground",
                               "recreation_ground", "common"}) ||
        tags.isAny("landuse", {"recreation_ground", "cemetery", "village_green"}) ||
        tags.is("amenity", "grave_yard")) {
        return GroundKind::Park;
    }
    return std::nullopt;
}

std::optional<GroundKind> lineOf(const Tags& tags) {
    if (isUnderground(tags)) {
        return std::nullopt;
    }
    if (tags.isAny("railway", {"rail", "light_rail", "narrow_gauge"}) &&
        !tags.isAny("service", {"yard", "siding", "spur", "crossover"})) {
        return GroundKind::Rail;
    }
    if (tags.isAny("waterway", {"river", "stream", "canal"})) {
        return GroundKind::Stream;
    }
    return std::nullopt;
}

std::string nameOf(const Tags& tags) { return tidied(tags["name"]); }

std::optional<TurnTraits> turnOf(const Tags& tags) {
    const std::string_view except = tags["except"];
    const bool isExcepted = except.find("bus") != std::string_view::npos ||
                            except.find("psv") != std::string_view::npos;
    const std::string_view said =
        tags.first({"restriction:bus", "restriction", "restriction:conditional"});
    if (isExcepted || (!tags.is("type", "restriction") && !tags.is("type", "restriction:bus"))) {
        return std::nullopt;
    }
    // Limited hours are mostly those in which school buses drive.
    const std::string_view rule = base::trim(said.substr(0, said.find('@')));
    if (!rule.starts_with("no_") && !rule.starts_with("only_")) {
        return std::nullopt;
    }
    return TurnTraits{.only = rule.starts_with("only_"), .uTurn = rule.ends_with("u_turn")};
}

std::optional<HouseTraits> houseOf(const Tags& tags) {
    constexpr std::size_t LongestNumber = 20;
    const std::string number(
        base::firstCharacters(base::trim(tags["addr:housenumber"]), LongestNumber));
    std::string street = tidied(tags.first({"addr:street", "addr:place"}));
    if (number.empty() || street.empty()) {
        return std::nullopt;
    }
    return HouseTraits{std::move(street), number};
}

}  // namespace tools::extract
