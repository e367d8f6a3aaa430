#include <deque>
#include <sstream>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "tools/extract/tags/measures.h"
#include "tools/extract/tags/traits.h"

namespace {

using namespace tools::extract;
using streets::GroundKind;
using streets::StreetClass;

/// "highway=residential; oneway=-1" as tags, whose texts stay for the whole run.
Tags tags(const std::string& text) {
    static std::deque<std::string> texts;
    Tags all;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ';');) {
        texts.push_back(part.substr(part.find_first_not_of(' ')));
        const std::string_view tag = texts.back();
        all.add(tag.substr(0, tag.find('=')), tag.substr(tag.find('=') + 1));
    }
    return all;
}

/// "2 Name -> 35": class, name, directions, limit.
std::string street(const std::string& text) {
    const auto traits = streetOf(tags(text));
    if (!traits) {
        return "none";
    }
    return fmt::format("{} {}{}{}{}{}", static_cast<int>(traits->kind), traits->name,
                       traits->backward ? "<" : "", traits->forward ? ">" : "",
                       traits->roundabout ? "o" : "",
                       traits->milesPerHour == 0 ? "" : std::to_string(traits->milesPerHour));
}

TEST(StreetTags, SayWhereABusMayDrive) {
    const std::pair<const char*, const char*> streets[] = {
        {"highway=residential; name=N High St", "6 North High Street<>"},
        {"highway=living_street; name=\x01\tA\x7f", "6 A<>"},
        {"highway=motorway; ref=I 71;US 23", "0 I 71>"},
        {"highway=motorway; oneway=no", "0 <>"},
        {"highway=motorway_link; ref=I 71", "7 <>"},
        {"highway=primary; oneway=yes; maxspeed=35 mph", "2 >35"},
        {"highway=primary; oneway=-1", "2 <"},
        {"highway=primary; oneway=reversible", "2 "},
        {"highway=primary; oneway=alternating", "2 <>"},
        {"highway=primary; oneway=yes; oneway:bus=no", "2 <>"},
        {"highway=tertiary; junction=roundabout", "4 >o"},
        {"highway=tertiary; junction=circular; oneway=-1", "4 <o"},
        {"highway=service; access=private", "8 "},
        {"highway=service; access=no; bus=yes", "8 <>"},
        {"highway=residential; motor_vehicle=yes; bus=no", "6 "},
        {"highway=residential; access=destination", "6 <>"},
        {"highway=residential; access=military;motor_vehicle=", "6 "},
        {"highway=residential; motor_vehicle:backward=no", "6 >"},
        {"highway=residential; vehicle=no", "6 "},
        {"highway=service; service=emergency_access", "8 "},
        {"highway=pedestrian; name=Plaza; bus=designated", "8 Plaza<>"},
        {"highway=footway; oneway=yes", "9 "},
        {"highway=footway; footway=sidewalk", "none"},
        {"highway=track", "9 "},
        {"highway=pedestrian; area=yes", "none"},
        {"highway=construction; construction=primary", "none"},
        {"highway=proposed", "none"},
        {"highway=RESIDENTIAL", "none"},
        {"building=yes", "none"},
        {"highway=secondary; maxspeed=50", "3 <>31"},
        {"highway=secondary; maxspeed=45 mph; maxspeed:bus=40 mph", "3 <>40"},
        {"highway=secondary; maxspeed:forward=45 mph; maxspeed:backward=35 mph", "3 <>35"},
        {"highway=secondary; maxspeed=signals", "3 <>"},
        {"highway=secondary; maxspeed=35 mph|25 mph", "3 <>25"}};
    for (const auto& [text, wanted] : streets) {
        EXPECT_EQ(street(text), wanted) << text;
    }
}

TEST(StreetTags, SayHeightsWeightsAndSpeedsInManyUnits) {
    const std::pair<const char*, int> inches[] = {
        {"4.2", 165},        {"4,2 m", 165}, {"13'6\"", 162},
        {"13 ft 6 in", 162}, {"13'", 156},   {"420 cm", 165},
        {"default", 0},      {"none", 0},    {"", 0},
        {"-3", 0},           {"4.2.1", 0},   {"1e9", 0},
        {"12'6\";10'", 120}, {"99999999", 0}};
    for (const auto& [text, wanted] : inches) {
        EXPECT_EQ(inchesIn(text), wanted) << text;
    }
    const std::pair<const char*, int> tenths[] = {
        {"10", 110}, {"7.5t", 82}, {"10 st", 100}, {"9000 kg", 99}, {"20000 lbs", 100}, {"ten", 0}};
    for (const auto& [text, wanted] : tenths) {
        EXPECT_EQ(shortTonTenthsIn(text), wanted) << text;
    }
    EXPECT_EQ(milesPerHourIn("35mph"), 35);
    EXPECT_EQ(milesPerHourIn("80 km/h"), 50);
    EXPECT_EQ(milesPerHourIn("0"), 0);
    EXPECT_EQ(milesPerHourIn("900"), 0);
    const auto low = streetOf(tags("highway=residential; maxheight=11'; maxweight=5 st"));
    EXPECT_EQ(low->clearanceInches, 132);
    EXPECT_EQ(low->weightTenths, 50);
}

TEST(PointTags, SayWhatABusMeets) {
    EXPECT_TRUE(pointOf(tags("highway=crossing; crossing=traffic_signals")).signal);
    EXPECT_TRUE(pointOf(tags("highway=turning_loop")).turningCircle);
    EXPECT_TRUE(pointOf(tags("railway=level_crossing")).levelCrossing);
    EXPECT_FALSE(pointOf(tags("railway=crossing; highway=stop; name=x")).any());
    for (const auto* const text : {"barrier=bollard", "barrier=block; access=no",
                                   "barrier=gate; motor_vehicle=private", "barrier=new_thing"}) {
        EXPECT_TRUE(pointOf(tags(text)).barrier) << text;
    }
    for (const auto* const text :
         {"barrier=gate", "barrier=bollard; bus=yes", "barrier=toll_booth", "access=no"}) {
        EXPECT_FALSE(pointOf(tags(text)).barrier) << text;
    }
}

TEST(TurnTags, CountForBuses) {
    const auto told = [](const std::string& text) {
        const auto turn = turnOf(tags(text));
        return !turn ? "none" : turn->only ? "only" : turn->uTurn ? "u" : "no";
    };
    EXPECT_STREQ(told("type=restriction; restriction=no_left_turn"), "no");
    EXPECT_STREQ(told("type=restriction; restriction=only_straight_on"), "only");
    EXPECT_STREQ(told("type=restriction; restriction=no_u_turn"), "u");
    EXPECT_STREQ(told("type=restriction; restriction=no_left_turn; except=psv"), "none");
    EXPECT_STREQ(told("type=restriction; restriction:hgv=no_left_turn"), "none");
    EXPECT_STREQ(told("type=restriction; restriction:conditional=no_left_turn @ (07:00-09:00)"),
                 "no");
    EXPECT_STREQ(told("type=restriction; restriction=left"), "none");
    EXPECT_STREQ(told("type=route; restriction=no_left_turn"), "none");
}

TEST(GroundTags, SayWhatLiesThere) {
    EXPECT_EQ(areaOf(tags("natural=water")), GroundKind::Water);
    EXPECT_EQ(areaOf(tags("amenity=school; building=yes")), GroundKind::School);
    EXPECT_EQ(areaOf(tags("building=no; leisure=pitch")), GroundKind::Pitch);
    EXPECT_EQ(areaOf(tags("building=shed; leisure=park")), GroundKind::Building);
    EXPECT_EQ(areaOf(tags("amenity=school; leisure=park")), GroundKind::School);
    EXPECT_EQ(areaOf(tags("landuse=cemetery")), GroundKind::Park);
    EXPECT_EQ(areaOf(tags("landuse=commercial")), std::nullopt);
    EXPECT_EQ(lineOf(tags("railway=rail")), GroundKind::Rail);
    EXPECT_EQ(lineOf(tags("railway=rail; service=yard")), std::nullopt);
    EXPECT_EQ(lineOf(tags("waterway=stream; tunnel=culvert")), std::nullopt);
    const auto house = houseOf(tags("addr:housenumber= 12 ; addr:street=W 5th Ave"));
    ASSERT_TRUE(house);
    EXPECT_EQ(house->number + " " + house->street, "12 West 5th Avenue");
    EXPECT_FALSE(houseOf(tags("addr:housenumber=12")));
}

}  // namespace
