#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/geo/projection.h"
#include "streets/base/streetmap.h"

/// What is drawn over the ground, as plain values. Texts are ready to be shown.
namespace map {

/// The way from one stop to the next one.
struct DrawnLeg {
    std::vector<geo::Feet> line = {};  ///< along the middle of the streets, in driving order
    std::string plate = {};            ///< "2.8", or "2.8 min" on an empty leg; may be empty
    bool isEmpty = false;              ///< nobody is on the bus: dotted
    bool isPale = false;
};

enum class StopLook : std::uint8_t {
    Disc,      ///< with its number
    Ring,      ///< where several runs are shown
    Candidate  ///< a place for a stop that has none, with its letter; grey until it is chosen
};

struct DrawnStop {
    geo::Feet at = {};
    std::optional<geo::Feet> onStreet = {};  ///< where the bus halts, on the middle of the street
    double heading = 0;  ///< of the bus that halts there, in degrees: 0 is north, 90 east
    std::string number = {};
    std::string plate = {};  ///< beside the disc: "+2.9"; may be empty
    StopLook look = StopLook::Disc;
    bool isChosen = false;
    bool isWarned = false;
    bool isPale = false;
    bool showsBus = false;  ///< the bus at the curb, to scale
};

struct DrawnRun {
    std::string name = {};  ///< on the plate at its first stop; empty for none
    int colour = 0;         ///< counts on beyond the theme's colours
    bool isChosen = true;
    std::vector<DrawnLeg> legs = {};
    std::vector<DrawnStop> stops = {};
};

enum class PlaceKind : std::uint8_t { School, Garage };

struct DrawnPlace {
    geo::Feet at = {};
    PlaceKind kind = PlaceKind::School;
    std::string name = {};  ///< on its plate; may be empty
};

/// Where a student lives. Never printed.
struct DrawnHome {
    geo::Feet at = {};
    std::string label = {};            ///< how many students; may be empty
    std::vector<geo::Feet> walk = {};  ///< from the home to the stop; may be empty
    bool crosses = false;              ///< the stop's street
};

struct Scene {
    std::vector<DrawnRun> runs = {};
    std::vector<DrawnPlace> places = {};
    std::vector<DrawnHome> homes = {};
    std::vector<std::vector<geo::Feet>> oldWay = {};  ///< what is no longer driven
    bool isVeiled = false;                            ///< the ground pales, as for several runs
};

/// Around all stops, places and ways; empty for a scene without any.
[[nodiscard]] streets::Box extentOf(const Scene& scene);

/// What of a scene lies under a pixel.
struct Hit {
    enum class Kind : std::uint8_t { Stop, Leg, Place, Home };
    Kind kind = Kind::Stop;
    std::size_t run = 0;    ///< of a stop or leg
    std::size_t index = 0;  ///< of the stop or leg in its run, of the place or home in the scene

    friend bool operator==(const Hit&, const Hit&) = default;
};

}  // namespace map
