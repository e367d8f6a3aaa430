#include "map/names/namelayout.h"

#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "map/ground/zoomrules.h"
#include "map/names/abbreviation.h"
#include "support/inventedcity.h"

namespace {

using map::Camera;
using map::PlacedName;
using map::Surroundings;

double widthOf(std::string_view text, const map::NameStyle& style) {
    return static_cast<double>(text.size()) * style.pixels * 0.6;
}

std::vector<PlacedName> namesAt(double feetPerPixel, const Surroundings& around = {}) {
    const auto ground = map::streetGround(support::inventedCity(24), {});
    const Camera camera({0, 0}, feetPerPixel, {1200, 900});
    return map::layNames(ground->partIn(camera.seen(), feetPerPixel), camera, around, widthOf);
}

std::string textOf(const PlacedName& name) {
    std::string text;
    for (const map::PlacedText& part : name.texts) {
        text += part.text;
    }
    return text;
}

bool meet(const PlacedName& one, const std::vector<QRectF>& boxes) {
    return std::ranges::any_of(one.boxes, [&](const QRectF& box) {
        return std::ranges::any_of(boxes,
                                   [&](const QRectF& other) { return box.intersects(other); });
    });
}

TEST(MapNames, NeverOverlapAndNeverStandUpsideDown) {
    const Surroundings around{{{0, 0, 200, 100}, {600, 400, 60, 60}}, {}};
    const QRectF picture(0, 0, 1200, 900);
    for (const double feetPerPixel : {1.0, 2.5, 5.0, 8.0, 12.0, 30.0}) {
        const auto names = namesAt(feetPerPixel, around);
        EXPECT_GT(names.size(), 3U) << feetPerPixel;
        std::map<std::string, std::vector<QPointF>> places;
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_FALSE(meet(names[i], around.reserved));
            for (std::size_t j = 0; j < i; ++j) {
                EXPECT_FALSE(meet(names[i], names[j].boxes))
                    << textOf(names[i]) << " over " << textOf(names[j]) << " at " << feetPerPixel;
            }
            for (const QRectF& box : names[i].boxes) {
                EXPECT_TRUE(picture.contains(box));
            }
            double before = names[i].texts.front().degrees;
            double sum = 0;
            for (const map::PlacedText& text : names[i].texts) {
                const double turn = std::abs(std::remainder(text.degrees - before, 360));
                EXPECT_LT(turn, 24) << textOf(names[i]);
                before = text.degrees;
                sum += text.degrees;
            }
            EXPECT_LE(std::abs(sum) / static_cast<double>(names[i].texts.size()), 96)
                << textOf(names[i]);
            const QPointF at = names[i].boxes[names[i].boxes.size() / 2].center();
            for (const QPointF other : places[textOf(names[i])]) {
                EXPECT_GT(map::lengthOf(other - at), 330) << textOf(names[i]);
            }
            places[textOf(names[i])].push_back(at);
        }
    }
}

TEST(MapNames, CoverEveryLetter) {
    for (const PlacedName& name : namesAt(6)) {
        for (const map::PlacedText& text : name.texts) {
            const double half = widthOf(text.text, name.style) / 2 - 1;
            const double angle = text.degrees * M_PI / 180;
            const QPointF along(std::cos(angle) * half, std::sin(angle) * half);
            for (const QPointF place : {text.centre, text.centre + along, text.centre - along}) {
                EXPECT_TRUE(std::ranges::any_of(name.boxes, [&](const QRectF& box) {
                    return box.contains(place);
                })) << text.text;
            }
        }
    }
}

TEST(MapNames, StandBesideTheWayThatRunsOnTheirStreet) {
    const auto grid = map::gridGround(1320);
    const Camera camera({660, 660}, 12, {500, 500});
    const auto part = grid->partIn(camera.seen(), 12);
    const auto heightOf = [&](const Surroundings& around) {
        for (const PlacedName& name : map::layNames(part, camera, around, widthOf)) {
            if (textOf(name) == "1st St") {
                return name.boxes.front().center().y();
            }
        }
        return -1.0;
    };
    EXPECT_NEAR(heightOf({}), 250, 0.5);
    const double beside = heightOf({{}, {{{0, 250}, {500, 250}}}});
    EXPECT_GE(std::abs(beside - 250),
              map::streetWidth(streets::StreetClass::Primary, 12) / 2 + 4 + 6);
    EXPECT_LT(std::abs(beside - 250), 30);
}

TEST(MapNames, AreSpelledOutWhereThereIsRoom) {
    const auto has = [](const std::vector<PlacedName>& names, const std::string& text) {
        return std::ranges::any_of(names, [&](const auto& name) { return textOf(name) == text; });
    };
    EXPECT_TRUE(has(namesAt(2.5), "East Mlder Street"));
    EXPECT_FALSE(has(namesAt(5.5), "East Mlder Street"));
    EXPECT_TRUE(has(namesAt(5.5), "E Mlder St"));
    EXPECT_TRUE(has(namesAt(5.5), "Long Park"));
    EXPECT_FALSE(has(namesAt(14), "E Nlder St"));  // residential streets are named below 13
}

TEST(MapNames, AreAbbreviatedByWholeWords) {
    const std::map<std::string, std::string> known{{"North High Street", "N High St"},
                                                   {"East Avenue", "E Ave"},
                                                   {"Broadway", "Broadway"},
                                                   {"Street Road", "Street Rd"},
                                                   {"Northeast Freeway", "NE Fwy"},
                                                   {"Thurber Drive West", "Thurber Dr W"},
                                                   {"Key West", "Key West"},
                                                   {"Court of the Lane", "Court of the Ln"},
                                                   {"", ""}};
    for (const auto& [name, brief] : known) {
        EXPECT_EQ(map::abbreviated(name), brief);
    }
}

TEST(MapNames, EndEarlyWhereNobodyWaits) {
    const auto ground = map::streetGround(support::inventedCity(24), {});
    const Camera camera({0, 0}, 5, {1200, 900});
    int asked = 0;
    const auto names = map::layNames(ground->partIn(camera.seen(), 5), camera, {}, widthOf,
                                     [&] { return ++asked < 3; });
    EXPECT_LT(names.size(), namesAt(5).size() / 2);
}

}  // namespace
