#include <QPaintEngine>
#include <algorithm>
#include <cmath>

#include "runsearch/schedule/frame.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

namespace {

constexpr double LabelApart = 52;
constexpr double LineApart = 24;
constexpr double PeakLabel = 14;
/// Rows without words name every tenth, and none nearer than this.
constexpr double NameApart = 40;
constexpr double SlackColumn = 44;
/// Ground without stripes is painted in parts of this height.
constexpr double PartHeight = 24;

Seconds firstMultiple(double time, Seconds step) {
    return static_cast<Seconds>(std::ceil(time / step)) * step;
}

double lastTime(const Frame& frame) { return frame.scale.timeAt(frame.plot.width()); }

void forEachStep(const Frame& frame, Seconds step, auto&& act) {
    for (Seconds at = firstMultiple(frame.scale.origin, step); at <= lastTime(frame); at += step) {
        act(at);
    }
}

bool isHour(Seconds time) { return time % Hour == 0; }
/// AM and PM stand at the first hour in view and at noon and midnight.
bool tellsHalf(const Frame& frame, Seconds at) {
    return at % (Day / 2) == 0 || at == firstMultiple(frame.scale.origin, Hour);
}

void paintPeakLine(QPainter& painter, const Frame& frame) {
    const auto peak = frame.chart->buses.withRiders.peak();
    if (peak.count > 0) {
        painter.setPen(QPen(frame.colours->idle, 1, Qt::DashLine));
        const double x = std::floor(frame.x(peak.at)) + 0.5;
        painter.drawLine(QPointF(x, frame.plot.top()), QPointF(x, frame.plot.bottom()));
    }
}

/// A round number that leaves two or three lines under the greatest.
int curveStep(int peak) {
    int unit = 1;
    for (;; unit *= 10) {
        for (const int factor : {1, 2, 5}) {
            if (factor * unit * 4 > peak) {
                return factor * unit;
            }
        }
    }
}

void paintPeak(QPainter& painter, const Frame& frame, double top, double perBus) {
    const auto peak = frame.chart->buses.withRiders.peak();
    if (peak.count == 0) {
        return;
    }
    const double x = frame.x(peak.at);
    const double y = frame.curve.bottom() - peak.count * perBus;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(frame.colours->ground, 1.5));
    painter.setBrush(frame.colours->words);
    painter.drawEllipse(QPointF(x, y), 3.5 * frame.unit, 3.5 * frame.unit);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(frame.colours->words);
    const auto text = "peak " + std::to_string(peak.count) + " at " + clockText(peak.at);
    const double half = frame.words->width(text, Type::Bold) / 2;
    const double middle = std::clamp(x - 8 * frame.unit, frame.curve.left() + half + 2,
                                     frame.curve.right() - half - 2);
    if (x >= frame.curve.left() && x <= frame.curve.right()) {
        frame.words->drawMiddle(painter, middle, top + PeakLabel / 2 * frame.unit, text,
                                Type::Bold);
    }
}

void paintCurveHead(QPainter& painter, const Frame& frame, int step, double perBus) {
    const QRectF head(frame.heads.left(), frame.curve.top(), frame.heads.width(),
                      frame.curve.height());
    const double unit = frame.unit;
    const double left = head.left() + 8 * unit;
    painter.fillRect(head, frame.colours->heads);
    painter.setPen(frame.colours->words);
    frame.words->draw(painter, left, head.top() + 11 * unit, "Buses in use", Type::CaptionBold);
    painter.fillRect(QRectF(left, head.top() + 25 * unit, 9 * unit, 9 * unit),
                     frame.colours->curve);
    painter.fillRect(QRectF(left, head.top() + 42 * unit, 9 * unit, 9 * unit),
                     frame.colours->curveOut);
    painter.setPen(frame.colours->soft);
    frame.words->draw(painter, left + 14 * unit, head.top() + 29 * unit, "with riders",
                      Type::Normal);
    frame.words->draw(painter, left + 14 * unit, head.top() + 46 * unit, "and empty", Type::Normal);
    for (int count = step; count * perBus < frame.curve.height() - PeakLabel * unit;
         count += step) {
        frame.words->drawRight(painter, head.right() - 7 * unit,
                               frame.curve.bottom() - count * perBus, std::to_string(count),
                               Type::Normal);
    }
}

void paintFrameLines(QPainter& painter, const Frame& frame) {
    painter.setPen(frame.colours->frame);
    const auto below = [&](double y) {
        painter.drawLine(QPointF(frame.heads.left(), y), QPointF(frame.plot.right(), y));
    };
    below(std::floor(frame.axis.bottom()) - 0.5);
    below(std::floor(frame.curve.bottom()) - 0.5);
    const double x = std::floor(frame.plot.left()) - 0.5;
    painter.drawLine(QPointF(x, frame.heads.top()), QPointF(x, frame.heads.bottom()));
}

int bandOver(const Frame& frame, int row) {
    const auto& rows = frame.chart->rows;
    const auto isLane = [&](int place) {
        return place < static_cast<int>(rows.size()) &&
               rows[static_cast<std::size_t>(place)].kind == RowKind::Lane;
    };
    while (row > 0 && isLane(row)) {
        --row;
    }
    return row;
}

void paintBands(QPainter& painter, const Frame& frame, double height) {
    for (std::size_t i = 0; i < frame.plan->zones.size(); ++i) {
        const auto& zone = frame.plan->zones[i];
        for (const Seconds shift : {0, static_cast<int>(Day)}) {
            const double left = std::max(frame.x(zone.start + shift), frame.axis.left());
            const double right = std::min(frame.x(zone.end + shift), frame.axis.right());
            if (right - left < 1) {
                continue;
            }
            painter.fillRect(QRectF(left, frame.axis.top(), right - left - 1, height),
                             frame.colours->zone(static_cast<int>(i)).fill);
            painter.setPen(frame.colours->words);
            const double room = right - left - 10 * frame.unit;
            if (room > 20 * frame.unit) {
                frame.words->drawWithin(painter, left + 6 * frame.unit,
                                        frame.axis.top() + height / 2, room, zone.name,
                                        Type::Small);
            }
        }
    }
}

}  // namespace

void paintGrid(QPainter& painter, const Frame& frame, const QRectF& area) {
    const auto step = stepOf(frame.scale, LineApart * frame.unit);
    forEachStep(frame, step, [&](Seconds at) {
        const auto& colour = at % Day == 0 ? frame.colours->soft
                             : isHour(at)  ? frame.colours->hours
                                           : frame.colours->grid;
        painter.fillRect(QRectF(std::floor(frame.x(at)), area.top(), 1, area.height()), colour);
    });
}

namespace {

/// Ground and hours from one height to another. A picture is filled from top to bottom, so that its
/// lines meet pixels that were just written; on paper a line goes through in one.
void paintPart(QPainter& painter, const Frame& frame, const QRectF& part, const QColor& colour) {
    painter.fillRect(part, colour);
    if (painter.paintEngine()->type() == QPaintEngine::Raster) {
        paintGrid(painter, frame, part);
    }
}

}  // namespace

void paintGround(QPainter& painter, const Frame& frame) {
    const auto [first, last] = frame.rowsInView();
    const bool stripes =
        frame.detail() >= Detail::SmallWords && frame.chart->layout.order == Order::ByRoute;
    const double height = stripes ? frame.rowHeight : PartHeight;
    const double until = std::max(frame.plot.bottom(), frame.y(last));
    const double start = stripes ? frame.y(first) : frame.plot.top();
    const int parts = static_cast<int>(std::ceil((until - start) / height));
    for (int i = 0; i < parts; ++i) {
        const bool isOdd = stripes && first + i < last && (first + i) % 2 == 1;
        paintPart(painter, frame,
                  {frame.plot.left(), start + i * height, frame.plot.width(), height},
                  isOdd ? frame.colours->oddRow : frame.colours->ground);
    }
    if (painter.paintEngine()->type() != QPaintEngine::Raster) {
        paintGrid(painter, frame, frame.plot);
    }
    paintPeakLine(painter, frame);
    // A band that is scrolled away still has its bells in the lanes below it.
    for (int row = bandOver(frame, first); row < last; ++row) {
        const auto& each = frame.chart->rows[static_cast<std::size_t>(row)];
        if (each.kind == RowKind::School || each.kind == RowKind::ClosedSchool) {
            paintSchool(painter, frame, each, row);
        }
    }
}

void paintAxis(QPainter& painter, const Frame& frame) {
    const QRectF all(frame.heads.left(), frame.axis.top(), frame.heads.width() + frame.axis.width(),
                     frame.axis.height());
    const double unit = frame.unit;
    painter.save();
    painter.fillRect(all, frame.colours->heads);
    const bool byRoute = frame.chart->layout.order == Order::ByRoute;
    const double y = frame.axis.bottom() - 12 * unit;
    painter.setPen(frame.colours->words);
    const double left = frame.heads.left() + 8 * unit;
    const char* title = byRoute ? "Route" : "School";
    frame.words->draw(painter, left, y, title, Type::CaptionBold);
    painter.setPen(frame.colours->soft);
    if (byRoute && frame.detail() >= Detail::SmallWords) {
        frame.words->draw(painter, left + frame.words->width(title, Type::CaptionBold) + 6 * unit,
                          y, "Driver", Type::Normal);
        frame.words->drawRight(painter, frame.heads.right() - 7 * unit, y,
                               frame.held == None ? "Bus" : "Slack", Type::Normal);
    }
    painter.setClipRect(frame.axis);
    paintBands(painter, frame, ZoneBand * unit);
    forEachStep(
        frame,
        stepOf(frame.scale, LabelApart * unit * (frame.scale.secondsPerPixel > 30 ? 1.2 : 1)),
        [&](Seconds at) {
            painter.setPen(isHour(at) ? frame.colours->words : frame.colours->soft);
            const auto text =
                clockText(at, tellsHalf(frame, at) ? HalfOfDay::Told : HalfOfDay::Left);
            frame.words->drawMiddle(painter, frame.x(at), y, text,
                                    isHour(at) ? Type::CaptionBold : Type::Normal);
        });
    painter.restore();
    paintFrameLines(painter, frame);
}

namespace {

/// The greatest number that each pixel of a width holds.
std::vector<int> mostOfPixels(double width, const TimeScale& scale, const StepCurve& curve) {
    std::vector<int> most(static_cast<std::size_t>(std::ceil(width)));
    const auto& steps = curve.steps();
    const double perSecond = 1 / scale.secondsPerPixel;
    double right = steps.empty() ? 0 : (steps.front().at - scale.origin) * perSecond;
    for (std::size_t i = 0; i + 1 < steps.size() && right < width; ++i) {
        const double left = std::max(right, 0.0);
        right = (steps[i + 1].at - scale.origin) * perSecond;
        if (right > 0) {
            const auto until = static_cast<std::size_t>(std::ceil(std::min(right, width)));
            for (auto x = static_cast<std::size_t>(left); x < until; ++x) {
                most[x] = std::max(most[x], steps[i].count);
            }
        }
    }
    return most;
}

}  // namespace

void paintSteps(QPainter& painter, const QRectF& area, const TimeScale& scale,
                const StepCurve& curve, int full, const QColor& colour) {
    if (full <= 0) {
        return;
    }
    const auto most = mostOfPixels(area.width(), scale, curve);
    const auto pixels = most.size();
    for (std::size_t left = 0; left < pixels;) {
        auto right = left + 1;
        while (right < pixels && most[right] == most[left]) {
            ++right;
        }
        if (most[left] > 0) {
            const double height = area.height() * most[left] / full;
            const double until = std::min(static_cast<double>(right), area.width());
            painter.fillRect(QRectF(area.left() + static_cast<double>(left), area.bottom() - height,
                                    until - static_cast<double>(left), height),
                             colour);
        }
        left = right;
    }
}

void paintCurve(QPainter& painter, const Frame& frame) {
    const auto& buses = frame.chart->buses;
    const int full = std::max({buses.out.peak().count, buses.withRiders.peak().count, 1});
    const QRectF area = frame.curve.adjusted(0, PeakLabel * frame.unit, 0, -1);
    const double perBus = area.height() / full;
    const int step = curveStep(full);
    painter.save();
    paintCurveHead(painter, frame, step, perBus);
    painter.setClipRect(frame.curve);
    painter.fillRect(frame.curve, frame.colours->ground);
    paintSteps(painter, area, frame.scale, buses.out, full, frame.colours->curveOut);
    paintSteps(painter, area, frame.scale, buses.withRiders, full, frame.colours->curve);
    painter.setPen(frame.colours->hours);
    for (int count = step; count < full; count += step) {
        const double y = std::floor(area.bottom() - count * perBus) + 0.5;
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
    paintPeak(painter, frame, frame.curve.top(), perBus);
    painter.restore();
    paintFrameLines(painter, frame);
}

namespace {

/// The worst of each row at its head; rows lower than a pixel share one.
void paintStrips(QPainter& painter, const Frame& frame, int first, int last) {
    for (int row = first; row < last;) {
        const double y = frame.y(row);
        auto worst = Trouble::Nothing;
        do {
            worst = std::max(worst, frame.chart->rows[static_cast<std::size_t>(row)].worst);
            ++row;
        } while (row < last && frame.y(row) < y + 1);
        if (worst != Trouble::Nothing) {
            painter.fillRect(QRectF(frame.heads.right() - 6 * frame.unit, y, 4 * frame.unit,
                                    std::max(frame.rowHeight, 1.0)),
                             worst == Trouble::Tight ? frame.colours->amber : frame.colours->red);
        }
    }
}

void paintTriangle(QPainter& painter, const Frame& frame, QPointF middle, bool isOpen) {
    const double size = 4 * frame.unit;
    const QPolygonF down{{middle.x() - size, middle.y() - size / 2},
                         {middle.x() + size, middle.y() - size / 2},
                         {middle.x(), middle.y() + size / 2}};
    const QPolygonF right{{middle.x() - size / 2, middle.y() - size},
                          {middle.x() + size / 2, middle.y()},
                          {middle.x() - size / 2, middle.y() + size}};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(frame.colours->soft);
    painter.drawPolygon(isOpen ? down : right);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void paintHead(QPainter& painter, const Frame& frame, const Row& row, double y) {
    const auto head = headOf(*frame.plan, *frame.chart, row);
    const double unit = frame.unit;
    const double left = frame.heads.left();
    const bool isSchool = row.kind == RowKind::School || row.kind == RowKind::ClosedSchool;
    const bool isLane = row.kind == RowKind::Lane;
    const bool twoLines = frame.detail() == Detail::TwoLines && !isSchool;
    const double middle = y + frame.rowHeight / 2 - (twoLines ? 9 * unit : 0);
    if (isSchool) {
        paintTriangle(painter, frame, {left + 11 * unit, middle}, row.kind == RowKind::School);
    }
    const double nameAt = left + (isSchool || isLane ? 20 : 8) * unit;
    painter.setPen(frame.colours->words);
    const bool isSmall = frame.detail() == Detail::SmallWords;
    const auto nameType = isSmall ? Type::Bold : Type::CaptionBold;
    const bool noDetail = isSchool || head.detail.empty();
    frame.words->drawWithin(painter, nameAt, middle,
                            noDetail ? frame.heads.right() - nameAt - 6 * unit : 60 * unit,
                            head.name, nameType);
    painter.setPen(frame.colours->soft);
    // While a run is held the slack stands there.
    const bool showsBus = !head.bus.empty() && frame.held == None;
    const double busWidth = frame.held != None ? SlackColumn * unit
                            : showsBus         ? frame.words->width(head.bus, Type::Bold) + 6
                                               : 0;
    const double detailAt =
        twoLines ? nameAt
                 : std::max(nameAt + 38 * unit,
                            nameAt + frame.words->width(head.name, nameType) + 8 * unit);
    const double room = frame.heads.right() - 7 * unit - busWidth - detailAt;
    if (!head.detail.empty() && room > 16 * unit) {
        frame.words->drawWithin(painter, detailAt, middle + (twoLines ? 17 * unit : 0), room,
                                head.detail, Type::Normal);
    }
    if (showsBus) {
        painter.setPen(head.isBusTwice ? frame.colours->redWords : frame.colours->soft);
        frame.words->drawRight(painter, frame.heads.right() - 7 * unit, middle, head.bus,
                               head.isBusTwice ? Type::Bold : Type::Normal);
    }
}

void paintTenth(QPainter& painter, const Frame& frame, int row) {
    const double y = std::floor(frame.y(row)) + 0.5;
    painter.setPen(frame.colours->hours);
    painter.drawLine(QPointF(frame.heads.left(), y), QPointF(frame.plot.left(), y));
    painter.setPen(frame.colours->soft);
    const auto head =
        headOf(*frame.plan, *frame.chart, frame.chart->rows[static_cast<std::size_t>(row)]);
    const double room = frame.heads.width() - 20 * frame.unit;
    const double width = std::min(frame.words->width(head.name, Type::Normal), room);
    frame.words->drawWithin(painter, frame.heads.right() - 12 * frame.unit - width,
                            y + 7 * frame.unit, room, head.name, Type::Normal);
}

/// Names over a hairline: of schools all that have room, of routes every tenth or fewer, and the
/// first of each other kind.
void paintTenths(QPainter& painter, const Frame& frame, int first, int last) {
    const auto& rows = frame.chart->rows;
    int each = 10;
    while (each * frame.rowHeight < NameApart * frame.unit) {
        each += each % 100 == 0 ? 100 : 10;
    }
    double free = frame.plot.top();
    for (int row = first; row < last; ++row) {
        const auto kind = rows[static_cast<std::size_t>(row)].kind;
        const bool isOther = row > 0 && rows[static_cast<std::size_t>(row - 1)].kind != kind;
        const bool named = frame.chart->layout.order == Order::BySchool
                               ? kind != RowKind::Lane
                               : row % each == 0 || isOther;
        if (named && frame.y(row) >= free) {
            paintTenth(painter, frame, row);
            free = frame.y(row) + 15 * frame.unit;
        }
    }
}

}  // namespace

void paintHeads(QPainter& painter, const Frame& frame) {
    painter.save();
    const QRectF column(frame.heads.left(), frame.plot.top(), frame.heads.width(),
                        frame.plot.height());
    painter.setClipRect(column);
    painter.fillRect(column, frame.colours->heads);
    const auto [first, last] = frame.rowsInView();
    const bool named = frame.detail() >= Detail::SmallWords;
    for (int row = first; row < last && named; ++row) {
        const auto& each = frame.chart->rows[static_cast<std::size_t>(row)];
        const double y = frame.y(row);
        const bool band = each.kind == RowKind::School || each.kind == RowKind::ClosedSchool;
        if (band || (row % 2 == 1 && frame.chart->layout.order == Order::ByRoute)) {
            painter.fillRect(QRectF(column.left(), y, column.width(), frame.rowHeight),
                             band ? frame.colours->grid : frame.colours->oddRow);
        }
        paintHead(painter, frame, each, y);
    }
    if (!named) {
        paintStrips(painter, frame, first, last);
        paintTenths(painter, frame, first, last);
    }
    painter.restore();
}

}  // namespace schedule
