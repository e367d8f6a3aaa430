#include <QImage>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include <fmt/format.h>

#include "runsearch/schedule/frame.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

namespace {

constexpr double CellPixels = 2;
/// Shades of a zone in the cells, from 18 to 100 % of its colour.
constexpr int Shades = 17;
constexpr double PalestShade = 0.18;

struct BellLine {
    int runs = 0;
    int first = 0;  ///< the rows that it goes through
    int last = 0;
};

/// The bells of a school's runs with the lanes that have them.
std::map<Seconds, BellLine> bellsBelow(const Frame& frame, int band) {
    std::map<Seconds, BellLine> bells;
    const auto& rows = frame.chart->rows;
    for (auto i = static_cast<std::size_t>(band) + 1;
         i < rows.size() && rows[i].kind == RowKind::Lane; ++i) {
        for (const auto& bar : frame.chart->barsOf(rows[i])) {
            if (const auto& bell = frame.plan->run(bar.run).bell) {
                auto& line = bells[*bell];
                const int row = static_cast<int>(i);
                line.first = line.runs == 0 ? row : line.first;
                line.last = row;
                ++line.runs;
            }
        }
    }
    return bells;
}

void paintBells(QPainter& painter, const Frame& frame, int band, double middle) {
    const auto bells = bellsBelow(frame, band);
    for (const auto& [bell, line] : bells) {
        const double x = frame.x(bell);
        const double top = frame.y(line.first);
        painter.fillRect(
            QRectF(x - 0.8 * frame.unit, top, 1.6 * frame.unit, frame.y(line.last + 1) - top),
            frame.colours->words);
        if (frame.detail() >= Detail::SmallWords) {
            const auto text = bells.size() == 1
                                  ? fmt::format("bell {}", clockText(bell))
                                  : fmt::format("bell {} · {}", clockText(bell), line.runs);
            painter.setPen(Qt::NoPen);
            paintPlate(painter, frame, x - plateWidth(frame, text) / 2, middle, text,
                       frame.colours->words, frame.colours->ground);
        }
    }
}

/// Counters of how much of each cell each zone has, added up in one pass over the bars.
class Cells {
public:
    explicit Cells(const Frame& frame)
        : frame_(frame),
          columns_(static_cast<int>(frame.plot.width() / CellPixels) + 1),
          rows_(static_cast<int>(frame.plot.height() / CellPixels) + 1),
          counts_(Zones * size()),
          red_(size()) {}

    void add(const Bar& bar);
    [[nodiscard]] QImage image() const;

private:
    static constexpr std::size_t Zones = 6;  ///< the fifth begins again; the last is none

    [[nodiscard]] std::size_t size() const {
        return static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_);
    }
    [[nodiscard]] int column(double time) const {
        return std::clamp(static_cast<int>(frame_.scale.xOf(time) / CellPixels), 0, columns_ - 1);
    }
    [[nodiscard]] QList<QRgb> colours() const;

    const Frame& frame_;
    int columns_;
    int rows_;
    std::vector<std::uint16_t> counts_;
    std::vector<std::uint8_t> red_;
};

void Cells::add(const Bar& bar) {
    const double y = frame_.y(bar.row) - frame_.plot.top();
    const int row = static_cast<int>(y / CellPixels);
    const bool isOut =
        frame_.x(bar.end) < frame_.plot.left() || frame_.x(bar.start) > frame_.plot.right();
    if (y < 0 || row >= rows_ || isOut || frame_.isFaded(bar) ||
        frame_.chart->rowOf(bar).kind == RowKind::NoTimes) {
        return;
    }
    const auto begin = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_);
    const auto zone = bar.zone == None ? Zones - 1 : static_cast<std::size_t>(bar.zone) % 5;
    const auto first = static_cast<std::size_t>(column(bar.start));
    const auto last = static_cast<std::size_t>(std::max(column(bar.end), column(bar.start) + 1));
    auto* counts = counts_.data() + zone * size() + begin;
    for (auto i = first; i < std::min(last, static_cast<std::size_t>(columns_)); ++i) {
        ++counts[i];
    }
    const auto& overlap = frame_.chart->overlaps[static_cast<std::size_t>(bar.run)];
    if (overlap.other != None) {
        const auto until = static_cast<std::size_t>(column(bar.start + overlap.seconds));
        std::fill(red_.begin() + static_cast<std::ptrdiff_t>(begin + first),
                  red_.begin() + static_cast<std::ptrdiff_t>(begin + until + 1), 1);
    }
}

QList<QRgb> Cells::colours() const {
    QList<QRgb> table{frame_.colours->red.rgb()};
    for (std::size_t zone = 0; zone < Zones; ++zone) {
        const auto colour = zone + 1 == Zones ? frame_.colours->noZone.edge
                                              : frame_.colours->zone(static_cast<int>(zone)).solid;
        for (int shade = 0; shade < Shades; ++shade) {
            const double share = PalestShade + (1 - PalestShade) * shade / (Shades - 1);
            table.append(qRgba(colour.red(), colour.green(), colour.blue(), qRound(255 * share)));
        }
    }
    table.append(qRgba(0, 0, 0, 0));
    return table;
}

QImage Cells::image() const {
    QImage image(columns_, rows_, QImage::Format_Indexed8);
    const auto table = colours();
    image.setColorTable(table);
    const auto nothing = static_cast<uchar>(table.size() - 1);
    const double full = std::max(CellPixels / frame_.rowHeight, 1.0);
    for (int y = 0; y < rows_; ++y) {
        auto* line = image.scanLine(y);
        for (int x = 0; x < columns_; ++x) {
            const auto cell = static_cast<std::size_t>(y) * static_cast<std::size_t>(columns_) +
                              static_cast<std::size_t>(x);
            std::size_t most = 0;
            int all = 0;
            for (std::size_t zone = 0; zone < Zones; ++zone) {
                const int count = counts_[zone * size() + cell];
                all += count;
                most = count > counts_[most * size() + cell] ? zone : most;
            }
            const int shade =
                std::clamp(static_cast<int>(all / full * (Shades - 1)), 0, Shades - 1);
            line[x] = red_[cell] != 0 ? 0
                      : all == 0      ? nothing
                                 : static_cast<uchar>(1 + static_cast<int>(most) * Shades + shade);
        }
    }
    return image;
}

}  // namespace

void paintSchool(QPainter& painter, const Frame& frame, const Row& row, int number) {
    const double y = frame.y(number);
    const double middle = y + frame.rowHeight / 2;
    painter.fillRect(QRectF(frame.plot.left(), y, frame.plot.width(), frame.rowHeight),
                     frame.colours->grid);
    if (row.kind == RowKind::ClosedSchool) {
        std::vector<Interval> intervals;
        for (const auto& bar : frame.chart->barsOf(row)) {
            intervals.push_back({bar.start, bar.end});
        }
        const StepCurve curve(intervals);
        paintSteps(painter,
                   QRectF(frame.plot.left(), y + 2, frame.plot.width(), frame.rowHeight - 3),
                   frame.scale, curve, curve.peak().count, frame.colours->curve);
    }
    if (frame.detail() >= Detail::SmallWords) {
        painter.setPen(frame.colours->soft);
        frame.words->draw(painter, frame.plot.left() + 6 * frame.unit, middle,
                          schoolText(*frame.plan, *frame.chart, number), Type::Normal);
    }
    paintBells(painter, frame, number, middle);
}

void paintCells(QPainter& painter, const Frame& frame) {
    Cells cells(frame);
    for (const auto& bar : frame.chart->bars) {
        cells.add(bar);
    }
    const auto image = cells.image();
    painter.drawImage(QRectF(frame.plot.left(), frame.plot.top(), image.width() * CellPixels,
                             image.height() * CellPixels),
                      image);
}

}  // namespace schedule
