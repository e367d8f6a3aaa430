#include "map/ground/ground.h"

#include <map>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "map/ground/camera.h"
#include "map/ground/polyline.h"
#include "map/ground/strokes.h"
#include "map/ground/zoomrules.h"
#include "support/inventedcity.h"

namespace {

using map::Camera;
using map::Line;
using map::MeasuredLine;

Line randomLine(std::mt19937& random, double reach) {
    std::uniform_real_distribution<double> step(-reach, reach);
    Line line{{0, 0}};
    for (int i = 0; i < 12; ++i) {
        line.emplace_back(line.back() + QPointF(step(random), step(random)));
    }
    return line;
}

TEST(MapCamera, KeepsThePlaceBelowThePointerWhileItZooms) {
    const Camera camera({1000, 2000}, 10, {800, 600});
    const QPointF pointer(123, 456);
    const geo::Feet place = camera.toFeet(pointer);
    for (const double times : {1.25, 1 / 1.25, 1000.0, 0.0001}) {
        const Camera zoomed = camera.zoomedAbout(pointer, times);
        EXPECT_NEAR(map::lengthOf(zoomed.toPixels(place) - pointer), 0, 1e-6) << times;
        EXPECT_GE(zoomed.feetPerPixel(), Camera::Nearest);
        EXPECT_LE(zoomed.feetPerPixel(), Camera::Farthest);
    }
    EXPECT_NEAR(map::lengthOf(camera.movedBy({5, -7}).toPixels(place) - pointer - QPointF(5, -7)),
                0, 1e-9);
    EXPECT_LT(camera.toPixels({1000, 2100}).y(), 300);  // north is up
}

TEST(MapCamera, ShowsAWholeBoxWithItsMargin) {
    const streets::Box box{{0, 0}, {30000, 1000}};
    const Camera camera = Camera::showing(box, {800, 600}, 60);
    EXPECT_NEAR(camera.toPixels(box.low).x(), 60, 1e-6);
    EXPECT_NEAR(camera.toPixels(box.high).x(), 740, 1e-6);
    const Camera point = Camera::showing({{5, 5}, {5, 5}}, {800, 600});
    EXPECT_EQ(point.feetPerPixel(), Camera::Nearest);
    EXPECT_EQ(point.toPixels({5, 5}), QPointF(400, 300));
}

TEST(MapLines, ClipToWhatManySamplesSayIsInside) {
    std::mt19937 random(3);
    const QRectF box(-40, -30, 80, 60);
    for (int round = 0; round < 60; ++round) {
        const MeasuredLine line(randomLine(random, 60));
        double inside = 0;
        for (const map::LinePart& part : map::clipped(line.points(), box)) {
            inside += MeasuredLine(part.points).length();
            EXPECT_NEAR(map::lengthOf(line.at(part.from).at - part.points.front()), 0, 1e-6);
        }
        constexpr int Samples = 20000;
        double sampled = 0;
        for (int i = 0; i < Samples; ++i) {
            const bool isInside = box.contains(line.at(line.length() * (i + 0.5) / Samples).at);
            sampled += isInside ? line.length() / Samples : 0;
        }
        EXPECT_NEAR(inside, sampled, 0.5);
    }
}

TEST(MapLines, AreSimplifiedAndShiftedAsFarAsSaid) {
    std::mt19937 random(4);
    for (int round = 0; round < 60; ++round) {
        const Line line = randomLine(random, 20);
        for (const QPointF point : line) {
            EXPECT_LE(map::distanceTo(map::simplified(line, 5), point), 5 + 1e-9);
        }
    }
    const Line bent{{0, 0}, {100, 0}, {200, 80}, {300, 80}};
    for (const double aside : {6.0, -6.0}) {
        const MeasuredLine shifted(map::beside(bent, aside));
        for (int at = 0; at <= shifted.length(); ++at) {
            // More at corners.
            EXPECT_NEAR(map::distanceTo(bent, shifted.at(at).at), 6.2, 0.2001);
        }
        EXPECT_EQ(shifted.at(0).at, QPointF(0, aside));  // walking east, south is on the right
    }
}

TEST(MapStrokes, HoldEachPieceOnceAndGoAlongOneWayStreets) {
    const auto city = support::inventedCity(12);
    const auto joined = map::joinedStrokes(*city, {0});
    std::map<std::pair<double, double>, std::size_t> middles;
    for (std::size_t i = 0; i < city->pieces.size(); ++i) {
        const geo::Feet middle = city->pointsOf(city->pieces[i])[1];
        middles[{middle.x, middle.y}] = i;
    }
    std::vector<int> met(city->pieces.size());
    for (const map::JoinedStroke& stroke : joined.strokes) {
        const auto points = std::span(joined.points).subspan(stroke.firstPoint, stroke.points);
        for (std::size_t i = 1; i + 1 < points.size(); i += 2) {
            const std::size_t index = middles.at({points[i].x, points[i].y});
            const streets::Piece& piece = city->pieces[index];
            ++met[index];
            EXPECT_EQ(stroke.name, piece.name);
            EXPECT_EQ(stroke.closed, index == 0);
            const bool isAgainst = points[i - 1].x == city->nodes[piece.to].at.x;
            EXPECT_EQ(stroke.oneWay, !piece.forward);
            EXPECT_EQ(stroke.oneWay, isAgainst && stroke.oneWay);  // driven backwards only
        }
    }
    EXPECT_THAT(met, testing::Each(1));
    EXPECT_EQ(joined.strokes.size(), 2U * 13 + 1);  // each street in one, but the closed block
}

TEST(MapGround, ShowsOfAGridWhatTheScaleShows) {
    const auto grid = map::gridGround(1320);
    const auto near = grid->partIn({{0, 0}, {13000, 13000}}, 20);
    std::map<std::string_view, streets::StreetClass> kinds;
    for (const map::Stroke& stroke : near.strokes) {
        kinds[stroke.name] = stroke.kind;
    }
    EXPECT_EQ(kinds.size(), 20U);
    EXPECT_EQ(kinds.at("1st Street"), streets::StreetClass::Primary);
    EXPECT_EQ(kinds.at("5th Avenue"), streets::StreetClass::Secondary);
    EXPECT_EQ(kinds.at("2nd Avenue"), streets::StreetClass::Residential);
    EXPECT_EQ(grid->partIn({{0, 0}, {13000, 13000}}, 80).strokes.size(), 6U);
    EXPECT_TRUE(grid->attribution().empty());
}

TEST(MapGround, GivesOfAStreetMapWhatReachesIntoABoxNarrowestFirst) {
    const auto ground = map::streetGround(support::inventedCity(12), {});
    const auto part = ground->partIn({{-100, -100}, {100, 100}}, 10);
    EXPECT_LT(part.strokes.size(), 12U);
    EXPECT_TRUE(std::ranges::is_sorted(
        part.strokes, {}, [](const map::Stroke& stroke) { return map::rankOf(stroke.kind); }));
    EXPECT_EQ(part.areas.size(), 1U);
    EXPECT_EQ(ground->partIn({{9e5, 9e5}, {9.1e5, 9.1e5}}, 10).strokes.size(), 0U);
    EXPECT_EQ(ground->attribution(), "© Somebody");
}

}  // namespace
