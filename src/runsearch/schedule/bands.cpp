#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "runsearch/schedule/frame.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

namespace {

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

/// `free` is where no words stand yet.
void paintBells(QPainter& painter, const Frame& frame, int band, double middle, double free) {
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
            const double width = plateWidth(frame, text);
            const double left = std::max(x - width / 2, free);
            if (left > x) {
                continue;  // no room on its line
            }
            painter.setPen(Qt::NoPen);
            paintPlate(painter, frame, left, middle, text, frame.colours->words,
                       frame.colours->ground);
            free = left + width + 2 * frame.unit;
        }
    }
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
    double free = frame.plot.left();
    if (frame.detail() >= Detail::SmallWords) {
        const auto text = schoolText(*frame.plan, *frame.chart, number);
        const double gap = 6 * frame.unit;
        painter.setPen(frame.colours->soft);
        frame.words->draw(painter, free + gap, middle, text, Type::Normal);
        free += frame.words->width(text, Type::Normal) + 2 * gap;
    }
    paintBells(painter, frame, number, middle, free);
}

}  // namespace schedule
