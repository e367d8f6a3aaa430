#include "runsearch/schedule/busplot.h"

#include <QFontInfo>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "platform/controls/access.h"
#include "platform/controls/qtext.h"
#include "runsearch/schedule/frame.h"

namespace schedule {

namespace {

/// Whole hours around all that a curve counts.
std::pair<Seconds, Seconds> hoursOf(const StepCurve& curve) {
    if (curve.steps().empty()) {
        return {6 * Hour, 18 * Hour};
    }
    const auto from = curve.steps().front().at / Hour * Hour;
    const auto until = (curve.steps().back().at + Hour - 1) / Hour * Hour;
    return {from, std::max(until, from + Hour)};
}

TimeScale scaleOf(const StepCurve& curve, double pixels) {
    const auto [from, until] = hoursOf(curve);
    return {static_cast<double>(from), (until - from) / std::max(pixels, 1.0)};
}

std::string peakText(const std::string& name, const StepCurve& curve) {
    const auto peak = curve.peak();
    return peak.count == 0 ? name + ": no bus in use"
                           : fmt::format("{}: peak {} at {}", name, peak.count,
                                         clockText(peak.at, HalfOfDay::Told));
}

class PlotPainter {
public:
    PlotPainter(QPainter& painter, const QWidget& widget, const Summary& all, const Summary* group)
        : painter_(painter),
          unit_(std::max(QFontInfo(widget.font()).pixelSize() / 13.0, 0.8)),
          words_(widget.font(), unit_),
          colours_(coloursFor(widget.palette())),
          all_(all),
          group_(group),
          rect_(widget.rect()) {}

    void paint();

private:
    void paintLegendLine(int line, const QColor& colour, const std::string& text, Type type);
    void paintGrid(const QRectF& area, const TimeScale& scale, int full);
    void paintPeak(const QRectF& area, const TimeScale& scale, const StepCurve& curve, int full);

    QPainter& painter_;
    double unit_;
    Words words_;
    const Colours& colours_;
    const Summary& all_;
    const Summary* group_;
    QRectF rect_;
};

void PlotPainter::paint() {
    painter_.fillRect(rect_, colours_.ground);
    painter_.setPen(colours_.frame);
    painter_.drawRect(rect_.adjusted(0.5, 0.5, -0.5, -0.5));
    painter_.setPen(colours_.words);
    words_.draw(painter_, 12 * unit_, 16 * unit_, "Buses in use", Type::Title);
    int line = 0;
    if (group_ != nullptr) {
        paintLegendLine(line++, colours_.accent, peakText(group_->name, group_->buses), Type::Bold);
    }
    paintLegendLine(line++, colours_.curve, peakText("All runs of the search", all_.buses),
                    Type::Normal);
    const QRectF area =
        rect_.adjusted(44 * unit_, (34 + 18 * line) * unit_, -16 * unit_, -26 * unit_);
    if (area.height() < 20) {
        return;
    }
    const auto scale = scaleOf(all_.buses, area.width());
    const int full = std::max(all_.buses.peak().count, 1) + 1;
    paintGrid(area, scale, full);
    paintSteps(painter_, area, scale, all_.buses, full, colours_.curve);
    if (group_ != nullptr) {
        paintSteps(painter_, area, scale, group_->buses, full, colours_.accent);
        paintPeak(area, scale, group_->buses, full);
    }
    paintPeak(area, scale, all_.buses, full);
}

void PlotPainter::paintLegendLine(int line, const QColor& colour, const std::string& text,
                                  Type type) {
    const double y = (38 + 18 * line) * unit_;
    painter_.fillRect(QRectF(12 * unit_, y - 5 * unit_, 10 * unit_, 10 * unit_), colour);
    painter_.setPen(colours_.words);
    words_.drawWithin(painter_, 28 * unit_, y, rect_.width() - 40 * unit_, text, type);
}

void PlotPainter::paintGrid(const QRectF& area, const TimeScale& scale, int full) {
    int step = 1;
    while (area.height() * step / full < 24 * unit_) {
        step = step == 1 ? 5 : step * 2;
    }
    for (int count = 0; count <= full; count += step) {
        const double y = std::floor(area.bottom() - area.height() * count / full) + 0.5;
        painter_.setPen(colours_.grid);
        painter_.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        painter_.setPen(colours_.soft);
        words_.drawRight(painter_, area.left() - 6 * unit_, y, std::to_string(count), Type::Normal);
    }
    const auto [from, until] = hoursOf(all_.buses);
    const auto hours = std::max(stepOf(scale, 40 * unit_), Hour);
    for (Seconds at = from; at <= until; at += hours) {
        const double x = std::floor(area.left() + scale.xOf(at)) + 0.5;
        painter_.setPen(colours_.grid);
        painter_.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
        painter_.setPen(colours_.soft);
        const bool told = at == from || at % (Day / 2) == 0;
        words_.drawMiddle(painter_, x, area.bottom() + 12 * unit_,
                          clockText(at, told ? HalfOfDay::Told : HalfOfDay::Left), Type::Normal);
    }
}

void PlotPainter::paintPeak(const QRectF& area, const TimeScale& scale, const StepCurve& curve,
                            int full) {
    const auto peak = curve.peak();
    if (peak.count == 0) {
        return;
    }
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(colours_.ground, 1.5));
    painter_.setBrush(colours_.words);
    painter_.drawEllipse(QPointF(area.left() + scale.xOf(peak.at),
                                 area.bottom() - area.height() * peak.count / full),
                         3.5 * unit_, 3.5 * unit_);
    painter_.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace

BusPlot::BusPlot(QWidget* parent) : QWidget(parent) {
    constexpr int LeastHeight = 150;
    setMinimumHeight(LeastHeight);
    controls::makeAccessible<BusPlot, controls::PictureAccess>();
}

void BusPlot::showCurves(const Summary& all, const Summary* group) {
    all_ = &all;
    group_ = group;
    setAccessibleName(controls::toQt(peakText("Buses in use", all.buses)));
    update();
}

void BusPlot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (all_ != nullptr) {
        PlotPainter(painter, *this, *all_, group_).paint();
    }
}

void paintDay(QPainter& painter, const QRectF& area, const StepCurve& curve, const Plan& plan,
              const StepCurve& all, const QPalette& palette, const QColor& ink) {
    const auto& colours = coloursFor(palette);
    const auto scale = scaleOf(all, area.width());
    const auto [from, until] = hoursOf(all);
    painter.save();
    painter.setPen(colours.hours);
    for (Seconds at = from; at <= until; at += 2 * Hour) {
        const double x = std::floor(area.left() + scale.xOf(at)) + 0.5;
        painter.drawLine(QPointF(x, area.top() - 3), QPointF(x, area.bottom() + 2));
    }
    const int full = curve.peak().count;
    const auto within = [&](Seconds start, Seconds end, const QColor& colour) {
        const double left = std::max(area.left() + scale.xOf(start), area.left());
        painter.setClipRect(QRectF(
            left, area.top(), std::max(area.left() + scale.xOf(end) - left, 0.0), area.height()));
        paintSteps(painter, area, scale, curve, full, colour);
    };
    within(from, until, ink.isValid() ? ink : colours.noZone.edge);
    for (std::size_t i = 0; i < plan.zones.size() && !ink.isValid(); ++i) {
        within(plan.zones[i].start, plan.zones[i].end, colours.zone(static_cast<int>(i)).solid);
    }
    painter.restore();
}

}  // namespace schedule
