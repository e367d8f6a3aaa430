#include "streets/directions/directions.h"

#include <gmock/gmock.h>

namespace streets {

namespace {

/// A stretch that begins at a crossing with one other street.
Stretch street(std::string_view name, double feet, double heading) {
    return {.name = name, .feet = feet, .headingIn = heading, .headingOut = heading, .others = 1};
}

std::vector<std::string> told(const std::vector<Stretch>& stretches) {
    const Leg way{.stretches = stretches};
    const std::vector<DirectedStop> stops{{.stopId = "A", .address = "First"},
                                          {.stopId = "B", .address = "Last", .way = &way}};
    std::vector<std::string> lines;
    for (const auto& line : directionsOf({.stops = stops}, Wording::Streets)) {
        if (line.type != "Start" && line.type != "Stop" && line.type != "Total") {
            lines.push_back(line.text1 + " | " + line.text2 + " | " + line.shortText);
        }
    }
    return lines;
}

using testing::ElementsAre;

}  // namespace

TEST(StreetDirections, PutPiecesOfAStreetTogether) {
    auto light = street("Weber Road", 2600, 90);
    light.signal = true;
    auto crossing = street("Weber Road", 800, 85);
    crossing.levelCrossing = true;
    EXPECT_THAT(
        told({street("Fourth Street", 500, 0), street("North Fourth Street", 500, 10),
              street("", 80, 10), street("Fourth Street", 200, 5), light, crossing,
              street("Bridge", 200, 80), street("Weber Road", 100, 85), street("", 100, 175),
              street("Arcadia Avenue", 240, 180), street("Arcadia Avenue", 300, 270)}),
        ElementsAre("Go north on Fourth Street | 0.2 miles | north Fourth Street",
                    "At the light turn right onto Weber Road, go east | 0.7 miles | "
                    "right Weber Road",
                    "Railroad crossing, stop and look | SKIP | Crossing",
                    "Turn right onto Arcadia Avenue, go south | 350 feet | "
                    "right Arcadia Avenue",
                    "Stay on Arcadia Avenue, it turns right | 300 feet | "
                    "right Arcadia Avenue"));
}

TEST(StreetDirections, TellRampsRoundaboutsAndTurningBack) {
    auto ramp = street("", 900, 40);
    ramp.kind = StreetClass::Ramp;
    auto freeway = street("Olentangy Freeway", 5280, 20);
    freeway.kind = StreetClass::Motorway;
    const Stretch ring{.feet = 60, .roundabout = true, .others = 1};
    const Stretch entry{.feet = 20, .roundabout = true};
    auto back = street("Mill Street", 200, 270);
    back.uTurn = true;
    auto deadEnd = back;
    deadEnd.headingIn = deadEnd.headingOut = 90;
    deadEnd.others = 0;
    EXPECT_THAT(told({street("High Street", 500, 0), ramp, freeway, ring, ring, entry, ring,
                      street("Mill Street", 400, 90), back, deadEnd}),
                ElementsAre("Go north on High Street | 0.1 miles | north High Street",
                            "Take the ramp on the right | 0.2 miles | right the ramp",
                            "Merge onto Olentangy Freeway, go north | 1.0 miles | "
                            "north Olentangy Freeway",
                            "At the roundabout take the third exit onto Mill Street, go east | "
                            "0.1 miles | exit 3 Mill Street",
                            "Make a U-turn on Mill Street | SKIP | Turn back",
                            "Continue west on Mill Street | 200 feet | west Mill Street",
                            "Turn round at the end of Mill Street | SKIP | Turn back",
                            "Continue east on Mill Street | 200 feet | east Mill Street"));
}

}  // namespace streets
