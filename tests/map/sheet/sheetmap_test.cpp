#include <QImage>
#include <QPainter>

#include "map/drawing/theme.h"
#include "map/drawing/wholepicture.h"
#include "map/sheet/recording.h"
#include "map/sheet/sheetmaps.h"
#include "reports/preview/pagepainter.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/inventedcity.h"
#include "support/runbuilder.h"
#include "support/temporaryfolder.h"

namespace {

using support::TestDistrict;

QImage paper() {
    QImage image(600, 300, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

map::Scene runWithAWayBack() {
    map::DrawnRun run{.legs = {{.line = {{-1000, -600}, {-1000, 600}, {1000, 600}}},
                               {.line = {{1000, 600}, {1000, -600}}, .isEmpty = true}}};
    run.stops.push_back({.at = {-980, -600}, .onStreet = geo::Feet{-1000, -600}, .number = "1"});
    return {.runs = {run}, .places = {{.at = {900, 500}, .name = "Oak Elementary"}}};
}

TEST(Recording, PaintedAgainIsThePictureThatWasPainted) {
    const auto ground = map::streetGround(support::inventedCity(12), {});
    const auto paint = [&](QPainter& painter) {
        map::paintMap(painter, *ground, runWithAWayBack(), map::lightTheme(),
                      map::Camera({0, 0}, 6, {600, 300}));
    };
    QImage direct = paper();
    QPainter directly(&direct);
    paint(directly);
    directly.end();
    struct Recorded : reports::Drawable {
        explicit Recorded(std::function<void(QPainter&)> how) : paint(std::move(how)) {}
        [[nodiscard]] reports::Picture drawn(float width, float height) const override {
            return map::recorded({width, height}, paint);
        }
        [[nodiscard]] std::string told() const override { return ""; }
        [[nodiscard]] std::string attribution() const override { return ""; }
        std::function<void(QPainter&)> paint;
    };
    reports::Page page;
    page.pictures.push_back({0, 0, 600, 300, std::make_shared<Recorded>(paint)});
    QImage again = paper();
    QPainter painter(&again);
    reports::PagePainter().paint(painter, page, 1);
    painter.end();
    double apart = 0;
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 600; ++x) {
            apart += std::abs(qGray(direct.pixel(x, y)) - qGray(again.pixel(x, y))) > 40 ? 1 : 0;
        }
    }
    EXPECT_LT(apart, 600 * 300 / 100) << "letters are hinted otherwise, nothing else";
    EXPECT_EQ(again.pixelColor(600 / 2 - 1000 / 6 + 2, 150), map::lightTheme().way);
}

void fillRuns(const TestDistrict& district) {
    support::fillSmall(district);
    support::RunBuilder("PLACED")
        .school("OAK")
        .with("PICKUP", true)
        .stop("P1", {.ofStop = {{"XPOS", 100}, {"YPOS", 200}}})
        .stop("P2", {.ofStop = {{"XPOS", 5000}, {"YPOS", 900}}})
        .into(district);
    support::RunBuilder("NOWHERE").school("OAK").stop("N1", {}).into(district);
}

class DriversMaps : public support::DistrictSession {
protected:
    DriversMaps() : DistrictSession(fillRuns) {}

    std::shared_ptr<const reports::Drawable> mapOf(const std::string& run) {
        return map::SheetMaps(*startup::gcnRouting, grid_).of(run);
    }

private:
    std::shared_ptr<const streets::DistrictStreets> grid_ = streets::openStreets({});
};

TEST_F(DriversMaps, AreOfRunsThatCanBeDrawnAtAnySize) {
    EXPECT_EQ(mapOf("GONE"), nullptr);
    EXPECT_EQ(mapOf("NOWHERE"), nullptr);
    const auto map = mapOf("PLACED");
    ASSERT_NE(map, nullptr);
    EXPECT_THAT(map->told(), testing::HasSubstr("PLACED"));
    for (const float width : {532.0F, 720.0F}) {
        const auto picture = map->drawn(width, 150);
        EXPECT_EQ(picture.width, width);
        const auto isWay = [](const reports::Picture::Path& path) {
            return !path.look.filled && path.look.colour == reports::Colour{0x1f, 0x6f, 0xd1};
        };
        EXPECT_TRUE(std::ranges::any_of(picture.paths, isWay));
    }
}

}  // namespace
