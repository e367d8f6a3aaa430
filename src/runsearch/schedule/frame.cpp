#include "runsearch/schedule/frame.h"

#include <algorithm>
#include <cmath>

namespace schedule {

namespace {

constexpr double HourLine = 22;
constexpr double CurveHeight = 66;
constexpr double RouteHeads = 184;
constexpr double SchoolHeads = 216;
constexpr double UntimedWidth = 90;

/// A row's height as the measures count it, and how much is taken off for the bar.
double barHeight(double row) {
    return row >= 44   ? 24
           : row >= 26 ? row - 8
           : row >= 18 ? row - 4
           : row >= 14 ? row - 2
           : row > 7   ? row - 3
                       : std::max(row - 1, 1.0);
}

}  // namespace

Detail Frame::detail() const {
    const double row = rowHeight / unit;
    return row < 4    ? Detail::Cells
           : row < 8  ? Detail::Solid
           : row < 14 ? Detail::Outlined
           : row < 18 ? Detail::SmallWords
           : row < 22 ? Detail::Words
           : row < 44 ? Detail::Idle
                      : Detail::TwoLines;
}

std::pair<int, int> Frame::rowsInView() const {
    const int rows = static_cast<int>(chart->rows.size());
    const int first = std::clamp(static_cast<int>(top / rowHeight), 0, rows);
    const int last = static_cast<int>(std::ceil((top + plot.height()) / rowHeight));
    return {first, std::clamp(last, first, rows)};
}

QRectF Frame::rectOf(const Bar& bar) const {
    const double height = barHeight(rowHeight / unit) * unit;
    const double above = y(bar.row) + (rowHeight - height) / 2;
    const auto& row = chart->rowOf(bar);
    if (row.kind == RowKind::NoTimes) {
        const auto place = static_cast<double>(&bar - &chart->bars[row.first]);
        return {plot.left() + (6 + place * UntimedWidth) * unit, above, (UntimedWidth - 8) * unit,
                height};
    }
    const double left = x(bar.start);
    return {left, above, std::max(x(bar.end) - left, 2.0), height};
}

int Frame::rowAt(double at) const {
    const int row = static_cast<int>(std::floor((at - plot.top() + top) / rowHeight));
    return row >= 0 && row < static_cast<int>(chart->rows.size()) ? row : None;
}

const Bar* Frame::barAt(QPointF point) const {
    const int number = plot.contains(point) ? rowAt(point.y()) : None;
    if (number == None) {
        return nullptr;
    }
    const auto& row = chart->rows[static_cast<std::size_t>(number)];
    if (row.kind == RowKind::ClosedSchool) {
        return nullptr;
    }
    const Bar* found = nullptr;
    for (const auto& bar : chart->barsOf(row)) {
        const auto rect = rectOf(bar);
        if (rect.left() - 2 <= point.x() && point.x() <= rect.right() + 2) {
            found = &bar;
        }
    }
    return found;
}

void divide(Frame& frame, const QRectF& area) {
    const double unit = frame.unit;
    const bool byRoute = frame.chart->layout.order == Order::ByRoute;
    const double left = (byRoute ? RouteHeads : SchoolHeads) * unit;
    const double axis = (ZoneBand + HourLine) * unit;
    const double above = axis + CurveHeight * unit;
    const double width = std::max(area.width() - left, 1.0);
    frame.axis = {area.left() + left, area.top(), width, axis};
    frame.curve = {area.left() + left, area.top() + axis, width, CurveHeight * unit};
    frame.heads = {area.left(), area.top(), left, area.height()};
    frame.plot = {area.left() + left, area.top() + above, width,
                  std::max(area.height() - above, 1.0)};
}

void paintFrame(QPainter& painter, const Frame& frame) {
    painter.save();
    painter.setClipRect(frame.plot);
    if (frame.detail() == Detail::Cells) {
        paintCells(painter, frame);
    } else {
        paintGround(painter, frame);
        const auto [first, last] = frame.rowsInView();
        for (const auto paint : {&paintLinks, &paintBars, &paintTroubles}) {
            for (int row = first; row < last; ++row) {
                paint(painter, frame, frame.chart->rows[static_cast<std::size_t>(row)], row);
            }
        }
    }
    painter.restore();
    paintHeads(painter, frame);
    paintAxis(painter, frame);
    paintCurve(painter, frame);
}

}  // namespace schedule
