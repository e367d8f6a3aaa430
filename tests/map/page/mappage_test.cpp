#include "map/page/mappage.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "map/drawing/theme.h"
#include "map/small/smallmap.h"
#include "support/inventedcity.h"
#include "support/temporaryfolder.h"

namespace {

map::Scene oneRun() {
    map::DrawnRun run{.legs = {{.line = {{-1000, -600}, {-1000, 600}, {1000, 600}}}}};
    run.stops.push_back({.at = {-980, -600}, .onStreet = geo::Feet{-1000, -600}, .number = "1"});
    return {.runs = {run}};
}

map::MapPage onePage() {
    map::MapPage page{.ground = map::streetGround(support::inventedCity(12), {}),
                      .scene = oneRun(),
                      .shown = map::Camera({0, 0}, 4, {900, 600})};
    page.heading = {.title = "Run 31-2", .selection = "Morning", .district = "Four Towns"};
    return page;
}

int pixelsOf(const QImage& image, const QColor& colour, const QRect& in) {
    int count = 0;
    for (int y = in.top(); y <= in.bottom(); ++y) {
        for (int x = in.left(); x <= in.right(); ++x) {
            count += image.pixelColor(x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

TEST(MapPage, HasTheHeadOfAReportAboveAndTheWholeOfWhatIsShownBelow) {
    auto page = onePage();
    page.scene.homes.push_back({.at = {0, 0}, .label = "12"});
    QImage paper(792, 612, QImage::Format_RGB32);
    paper.fill(Qt::white);
    QPainter painter(&paper);
    map::paintMapPage(painter, {792, 612}, page);
    painter.end();
    EXPECT_GT(pixelsOf(paper, Qt::black, {36, 20, 300, 40}), 50);
    // The way goes along three sides of what is shown, never over the edge of the map.
    const QColor way = map::lightTheme().way;
    const QRect map(36, 70, 720, 500);
    EXPECT_GT(pixelsOf(paper, way, map), 800);
    EXPECT_EQ(pixelsOf(paper, way, paper.rect()), pixelsOf(paper, way, map));
    EXPECT_EQ(pixelsOf(paper, map::lightTheme().walk, paper.rect()), 0);
    EXPECT_EQ(paper.pixelColor(10, 300), QColor(Qt::white));
}

TEST(MapPage, IsAFileOfLinesOrNone) {
    const support::TemporaryFolder folder;
    const QString path = QString::fromStdString(folder.path() + "/map.pdf");
    EXPECT_EQ(map::saveMapPage(path, onePage()), "");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF"));
    EXPECT_EQ(bytes.count("/Subtype /Image"), 0);
    EXPECT_EQ(bytes.count("/Type /Page\n"), 1);
    EXPECT_NE(map::saveMapPage(QString::fromStdString(folder.path() + "/none/map.pdf"), onePage()),
              "");
}

TEST(SmallMap, ShowsTheWholeRunInTheColoursOfTheFormOrSaysWhyNot) {
    map::SmallMap small;
    small.resize(320, 200);
    small.showScene(map::bareGround(), {}, "nothing");
    EXPECT_THAT(small.accessibleDescription().toStdString(), testing::HasSubstr("place"));
    small.showScene(map::streetGround(support::inventedCity(12), {}), oneRun(), "Run 31-2");
    EXPECT_EQ(small.accessibleDescription(), "Run 31-2");
    const auto waysIn = [&](const QPalette& palette, const map::Theme& theme) {
        small.setPalette(palette);
        small.grab();
        EXPECT_TRUE(QTest::qWaitFor([&] { return small.isSettled(); }, 20000));
        return pixelsOf(small.grab().toImage(), theme.way, {0, 0, 320, 200});
    };
    EXPECT_GT(waysIn(QPalette(Qt::white), map::lightTheme()), 300);
    EXPECT_GT(waysIn(QPalette(QColor(30, 30, 30)), map::darkTheme()), 300);
    int wanted = 0;
    QObject::connect(&small, &map::SmallMap::mapWanted, [&] { ++wanted; });
    QTest::mouseDClick(&small, Qt::LeftButton);
    EXPECT_EQ(wanted, 1);
    small.say("The streets could not be read.");
    EXPECT_EQ(pixelsOf(small.grab().toImage(), map::darkTheme().way, {0, 0, 320, 200}), 0);
}

}  // namespace
