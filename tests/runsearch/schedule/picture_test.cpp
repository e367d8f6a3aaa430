#include <QFont>
#include <QImage>
#include <QPainter>
#include <algorithm>

#include <gtest/gtest.h>

#include "runsearch/schedule/frame.h"
#include "runsearch/schedule/randomday.h"

namespace schedule {

namespace {

constexpr int Cell = 2;

struct Looked {
    Looked(unsigned seed, double rowHeight, Order order, int runs = 400)
        : plan(randomDay(seed, runs)),
          chart(layOut(plan, {.order = order, .tightUnder = 2 * Hour})) {
        frame.plan = &plan;
        frame.chart = &chart;
        frame.colours = &coloursOfPaper();
        frame.words = &words;
        frame.rowHeight = rowHeight;
        divide(frame, QRectF(0, 0, 700, 200));
        frame.scale = TimeScale::fitting(chart.from + 2 * Hour, chart.until - Hour, 500);
        frame.top = 2.5 * rowHeight;
    }
    template <class Paint, class... More>
    [[nodiscard]] QImage painted(Paint paint, const More&... more) const {
        QImage image(700, 200, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        paint(painter, frame, more...);
        return image;
    }
    /// What looking at each bar says of a cell: nothing, a bar, or one that overlaps another.
    [[nodiscard]] Trouble lookedUp(int column, int line) const {
        auto worst = Trouble::Nothing;
        for (const auto& bar : chart.bars) {
            const double y = bar.row * frame.rowHeight - frame.top;
            const int from = cellOf(bar.start);
            if (chart.rowOf(bar).kind == RowKind::NoTimes || y < -frame.rowHeight ||
                std::max(static_cast<int>(y / Cell), 0) != line || column < from) {
                continue;
            }
            const auto shared = chart.overlaps[static_cast<std::size_t>(bar.run)].seconds;
            const bool isRed = shared > 0 && column <= cellOf(bar.start + shared);
            const bool isThere = column < std::max(cellOf(bar.end), from + 1);
            worst = std::max(worst, !isThere ? Trouble::Nothing
                                    : isRed  ? Trouble::Overlap
                                             : Trouble::Tight);
        }
        return worst;
    }
    [[nodiscard]] int cellOf(Seconds time) const {
        return static_cast<int>(std::floor(frame.scale.xOf(time) / Cell));
    }

    Plan plan;
    Chart chart;
    Words words{QFont(), 1};
    Frame frame;
};

TEST(Picture, PaintsTheCellsThatLookingAtEachBarFinds) {
    for (const double height : {0.3, 1.0, 3.0}) {
        for (const auto order : {Order::ByRoute, Order::BySchool}) {
            Looked looked(7, height, order);
            const auto image = looked.painted(paintCells);
            const std::vector<bool> all(looked.plan.runs.size(), true);
            looked.frame.faded = &all;
            const auto empty = looked.painted(paintCells);
            const auto corner = looked.frame.plot.topLeft().toPoint();
            for (int column = 0; column < 240; ++column) {
                for (int line = 0; line < 40; ++line) {
                    const auto at = corner + QPoint(column * Cell, line * Cell);
                    const auto found = looked.lookedUp(column, line);
                    const bool isRed = image.pixel(at) == looked.frame.colours->red.rgb();
                    ASSERT_EQ(image.pixel(at) != empty.pixel(at), found != Trouble::Nothing)
                        << column << ", " << line << " of rows of " << height;
                    ASSERT_EQ(isRed, found == Trouble::Overlap) << column << ", " << line;
                }
            }
        }
    }
}

TEST(Picture, MarksWhatIsLeftOfATightChange) {
    Looked looked(5, 26, Order::ByRoute, 60);
    const auto amber = looked.frame.colours->amber.rgb();
    int marked = 0;
    for (int number = 0; number < static_cast<int>(looked.chart.rows.size()); ++number) {
        const auto& row = looked.chart.rows[static_cast<std::size_t>(number)];
        looked.frame.top = number * looked.frame.rowHeight;
        const auto image = looked.painted(paintTroubles, row, number);
        for (const auto& bar : looked.chart.barsOf(row)) {
            const QPoint at(qRound(looked.frame.x(bar.change.arrives) + 0.5),
                            qRound(looked.frame.rectOf(bar).center().y()));
            if (looked.chart.troubleOf(bar) == Trouble::Tight && looked.frame.plot.contains(at)) {
                EXPECT_EQ(image.pixel(at), amber) << bar.run;
                ++marked;
            }
        }
    }
    EXPECT_GT(marked, 0);
}

TEST(Picture, PaintsTheGreatestNumberOfEachPixelOfACurve) {
    const auto plan = randomDay(3, 300);
    const auto& curve = layOut(plan, {}).buses.withRiders;
    const int full = curve.peak().count;
    QImage image(300, full, QImage::Format_RGB32);
    for (const double perPixel : {20.0, 97.0, 240.0}) {
        const TimeScale scale{10.0 * Hour, perPixel};
        image.fill(Qt::white);
        QPainter painter(&image);
        paintSteps(painter, QRectF(image.rect()), scale, curve, full, Qt::black);
        painter.end();
        for (int x = 0; x < image.width(); ++x) {
            int most = 0;
            const double begin = scale.timeAt(x);
            for (int i = 0; begin + i < scale.timeAt(x + 1); ++i) {
                most = std::max(most, curve.at(static_cast<Seconds>(begin + i)));
            }
            int height = 0;
            while (height < full && image.pixelColor(x, full - 1 - height) == Qt::black) {
                ++height;
            }
            ASSERT_EQ(height, most) << x << " at " << perPixel;
        }
    }
}

}  // namespace

}  // namespace schedule
