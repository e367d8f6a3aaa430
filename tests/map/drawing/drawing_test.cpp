#include <QImage>
#include <QPainter>
#include <QTest>
#include <atomic>
#include <cmath>

#include <gtest/gtest.h>

#include "map/drawing/lanes.h"
#include "map/drawing/mappicture.h"
#include "map/drawing/scenelayout.h"
#include "map/drawing/wholepicture.h"
#include "support/inventedcity.h"

namespace {

using map::Camera;
using map::Hit;
using map::Scene;

constexpr QSize Size(640, 480);
const Camera Middle({0, 0}, 4, Size);

QImage blank() { return {Size, QImage::Format_RGB32}; }

QImage wholePicture(const map::Ground& ground, const Scene& scene, const Camera& camera) {
    QImage image = blank();
    QPainter painter(&image);
    map::paintMap(painter, ground, scene, map::lightTheme(), camera);
    return image;
}

/// A run that goes straight north through the plane's zero, a stop at each end.
Scene straightRun() {
    map::DrawnRun run{.legs = {{.line = {{0, -600}, {0, 600}}}}};
    for (const double y : {-600.0, 600.0}) {
        run.stops.push_back({.at = {20, y}, .onStreet = geo::Feet{0, y}, .number = "7"});
    }
    return {.runs = {run}};
}

/// Streets without names, so that nothing depends on how large a picture is.
std::shared_ptr<const map::Ground> namelessGround() {
    auto city = std::make_shared<streets::StreetMap>(*support::inventedCity(16));
    std::ranges::fill(city->names, std::string());
    return map::streetGround(city, {});
}

/// The share of pixels that differ by more than the rounding of a moved picture.
double difference(const QImage& one, const QImage& other) {
    int differing = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y), b = other.pixelColor(x, y);
            const int most = std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                       std::abs(a.blue() - b.blue())});
            differing += most > 24 ? 1 : 0;
        }
    }
    return static_cast<double>(differing) / (one.width() * one.height());
}

TEST(MapLanes, PutRunsThatShareAStreetSideBySide) {
    const map::DrawnRun first{.legs = {{.line = {{0, 0}, {100, 0}, {100, 100}}}}};
    // Halts in the middle of the first block, then leaves the other run's way.
    const map::DrawnRun second{
        .legs = {{.line = {{0, 0}, {40, 0}}}, {.line = {{40, 0}, {100, 0}, {200, 0}}}}};
    const map::DrawnRun against{.legs = {{.line = {{100, 0}, {0, 0}}}}};
    const auto lanes = map::lanesOf({first, second, against, first});
    EXPECT_EQ(lanes[0], (map::RunLanes{{0, 0}}));
    EXPECT_EQ(lanes[1], (map::RunLanes{{1}, {1, 0}}));
    EXPECT_EQ(lanes[2], (map::RunLanes{{0}}));
    EXPECT_EQ(lanes[3], (map::RunLanes{{2, 2}}));
}

TEST(MapDrawing, DrivesOnTheRightAndStopsAtTheDoor) {
    const QImage image =
        wholePicture(*map::streetGround(support::inventedCity(2), {}), straightRun(), Middle);
    const QColor way = map::lightTheme().way;
    const auto isWay = [&](int x, int y) {
        for (int dy = -6; dy <= 6; ++dy) {  // past a chevron
            if (image.pixelColor(x, y + dy) == way) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(isWay(320 + 3, 240));
    EXPECT_FALSE(isWay(320 - 3, 240));
    EXPECT_TRUE(isWay(320 + 2 + 12, 240 - 150));  // the edge of the disc, east of the street
    EXPECT_FALSE(isWay(320 - 12, 240 - 150));
}

TEST(MapDrawing, FindsEachStopBelowItsDiscAndTheWayBetween) {
    Scene scene = straightRun();
    scene.places.push_back({.at = {-400, 0}, .name = "School"});
    for (int i = 0; i < 8; ++i) {  // all at one corner
        scene.runs[0].stops.push_back({.at = {10, 0}, .onStreet = geo::Feet{0, 0}});
    }
    map::TextWidths widths;
    const auto layout = map::layScene(scene, map::lanesOf(scene.runs), true, Middle,
                                      {.window = {0, 0, 640, 480}}, widths);
    ASSERT_EQ(layout.stops.size(), 10U);
    for (const map::StopMark& mark : layout.stops) {
        EXPECT_EQ(map::hitIn(layout, scene, Middle, mark.centre),
                  (Hit{Hit::Kind::Stop, 0, mark.stop}));
    }
    EXPECT_EQ(map::hitIn(layout, scene, Middle, {325, 150}), (Hit{Hit::Kind::Leg, 0, 0}));
    EXPECT_EQ(map::hitIn(layout, scene, Middle, {225, 240}), (Hit{Hit::Kind::Place, 0, 0}));
    EXPECT_EQ(map::hitIn(layout, scene, Middle, {40, 40}), std::nullopt);
}

TEST(MapDrawing, NamesPlacesWhereTheyAreReadWhateverCoversTheWindow) {
    map::TextWidths widths;
    const QRectF window(0, 0, 640, 480);
    const map::Sight sight{.window = window, .covered = {{590, 8, 40, 140}, {0, 440, 110, 40}}};
    for (int y = 10; y < 480; y += 47) {
        for (int x = 10; x < 640; x += 31) {
            const QPointF at(x, y);
            const auto covers = [&](const QRectF& box) {
                return box.adjusted(-20, -20, 20, 20).contains(at);
            };
            if (std::ranges::any_of(sight.covered, covers)) {
                continue;
            }
            Scene scene;
            scene.places.push_back({.at = Middle.toFeet(at), .name = "Oak Elementary"});
            const auto layout = map::layScene(scene, {}, true, Middle, sight, widths);
            const QRectF box = layout.plates.at(0).box;
            EXPECT_TRUE(sight.shows(box)) << x << " " << y;
            EXPECT_FALSE(box.contains(layout.places[0]));
        }
    }
}

TEST(MapDrawing, LeavesHomesOutOfWholePictures) {
    Scene scene = straightRun();
    const QImage without = wholePicture(*map::bareGround(), scene, Middle);
    scene.homes.push_back({.at = {200, 200}, .label = "12", .walk = {{200, 200}, {0, 0}}});
    EXPECT_EQ(wholePicture(*map::bareGround(), scene, Middle), without);
}

/// The picture of a window, waited for.
class WindowMap : public testing::Test {
protected:
    QImage painted(const Camera& camera) {
        QImage image = blank();
        QPainter painter(&image);
        picture_.paint(painter, camera);
        return image;
    }
    QImage settled(const Camera& camera) {
        painted(camera);
        EXPECT_TRUE(QTest::qWaitFor([&] { return picture_.isSettled(camera); }, 20000));
        return painted(camera);
    }

    std::atomic<int> newer_ = 0;
    map::MapPicture picture_{[this] { ++newer_; }};
};

TEST_F(WindowMap, ShowsWhatTheWholePictureShowsWhereverItIsMoved) {
    const auto ground = namelessGround();
    const Scene scene = straightRun();
    picture_.setGround(ground);
    picture_.setScene(scene);
    EXPECT_LT(difference(settled(Middle), wholePicture(*ground, scene, Middle)), 0.0005);
    EXPECT_GE(newer_, 1);
    // Within the border the last picture is moved; beyond it another one is waited for.
    const Camera moved = Middle.movedBy({120, -60});
    EXPECT_LT(difference(painted(moved), wholePicture(*ground, scene, moved)), 0.0005);
    const Camera far = Middle.movedBy({700, 300});
    EXPECT_LT(difference(settled(far), wholePicture(*ground, scene, far)), 0.0005);
    const Camera nearer = Middle.zoomedAbout({100, 100}, 1.6);
    EXPECT_LT(difference(settled(nearer), wholePicture(*ground, scene, nearer)), 0.0005);
}

TEST_F(WindowMap, ShowsARunOfManyLegsAsItIsWhileOneOfItsStopsIsDragged) {
    const auto ground = namelessGround();
    Scene scene = straightRun();
    auto& legs = scene.runs[0].legs;
    for (int i = 0; i < 80; ++i) {
        const double x = -2400 + 60 * i;
        legs.push_back({.line = {{x, -800}, {x, 800}, {x + 30, 800}}});
    }
    picture_.setGround(ground);
    picture_.setScene(scene);
    settled(Middle);
    for (int i = 0; i < 6; ++i) {
        // The second stop that is dragged is another one.
        auto& leg = legs[i < 3 ? 42 : 50];
        leg.line[1].x += 20;
        leg.isEmpty = i == 5;
        picture_.setScene(scene);
        EXPECT_LT(difference(painted(Middle), wholePicture(*ground, scene, Middle)), 0.003) << i;
    }
}

TEST_F(WindowMap, TakesTheLastOfManyWishesAndEndsInTheMiddleOfOne) {
    picture_.setGround(map::streetGround(support::inventedCity(60), {}));
    Camera camera = Middle;
    for (int i = 0; i < 40; ++i) {
        camera = camera.zoomedAbout({320, 240}, i % 2 == 0 ? 0.5 : 1.9);
        picture_.setScene(straightRun());
        painted(camera);
    }
    settled(camera);
    picture_.setTheme(map::darkTheme());
    EXPECT_FALSE(picture_.isSettled(camera));
    EXPECT_EQ(settled(camera).pixelColor(2, 2).lightness() < 128, true);
    painted(camera.movedBy({5000, 0}));
}

}  // namespace
