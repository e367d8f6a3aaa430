#pragma once

#include <QRectF>
#include <optional>
#include <vector>

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/colours.h"
#include "runsearch/schedule/plan.h"
#include "runsearch/schedule/timescale.h"
#include "runsearch/schedule/words.h"

namespace schedule {

/// The height of the band of zones over the hours, in pixels of the measures.
constexpr double ZoneBand = 14;

/// How much of a bar a row of that height has room for.
enum class Detail { Cells, Solid, Outlined, SmallWords, Words, Idle, TwoLines };

/// A chart as it is looked at: the part of it, how large, and where on the paper or screen.
struct Frame {
    const Plan* plan = nullptr;
    const Chart* chart = nullptr;
    const Colours* colours = nullptr;
    Words* words = nullptr;
    double unit = 1;  ///< pixels for a pixel of the measures
    double rowHeight = 26;
    double top = 0;                   ///< how much of the rows is scrolled away upwards
    TimeScale scale;                  ///< x from the left edge of `plot`
    QRectF heads, plot, axis, curve;  ///< axis and curve stand over the plot, heads left of it
    int selected = None;              ///< a run
    int held = None;                  ///< a run that is being moved, which is left out
    const std::vector<bool>* faded = nullptr;  ///< by run

    [[nodiscard]] Detail detail() const;
    [[nodiscard]] double x(double time) const { return plot.left() + scale.xOf(time); }
    [[nodiscard]] double y(int row) const { return plot.top() + row * rowHeight - top; }
    /// The rows in view, the second one not included.
    [[nodiscard]] std::pair<int, int> rowsInView() const;
    /// Where a bar is painted; at least 2 pixels wide.
    [[nodiscard]] QRectF rectOf(const Bar& bar) const;
    /// The bar at a point; null where there is none.
    [[nodiscard]] const Bar* barAt(QPointF point) const;
    /// The row at a height; None where there is none.
    [[nodiscard]] int rowAt(double y) const;
    [[nodiscard]] bool isFaded(const Bar& bar) const {
        return faded != nullptr && (*faded)[static_cast<std::size_t>(bar.run)];
    }
};

/// Parts `area` into heads, axis, curve and plot.
void divide(Frame& frame, const QRectF& area);

/// All of it: grounds, rows, heads, axis and curve.
void paintFrame(QPainter& painter, const Frame& frame);

// The parts, in the order in which they are painted.
void paintGround(QPainter& painter, const Frame& frame);
void paintLinks(QPainter& painter, const Frame& frame, const Row& row, int number);
void paintBars(QPainter& painter, const Frame& frame, const Row& row, int number);
void paintTroubles(QPainter& painter, const Frame& frame, const Row& row, int number);
/// All rows in small cells, the ground with them.
void paintCells(QPainter& painter, const Frame& frame);
/// The lines of the hours and of their parts through an area of the plot.
void paintGrid(QPainter& painter, const Frame& frame, const QRectF& area);
void paintHeads(QPainter& painter, const Frame& frame);
void paintAxis(QPainter& painter, const Frame& frame);
void paintCurve(QPainter& painter, const Frame& frame);
/// The band of a school with the lines of its bells through the lanes below.
void paintSchool(QPainter& painter, const Frame& frame, const Row& row, int number);

/// A rounded plate with a word on it, its left edge at `left`, its middle at y.
void paintPlate(QPainter& painter, const Frame& frame, double left, double y, std::string_view text,
                const QColor& ground, const QColor& ink);
/// Where the number of a run stands whose bar, by its place in the row, is too narrow for it;
/// nothing where it stands in its bar or nowhere.
[[nodiscard]] std::optional<QRectF> numberBeside(QPainter& painter, const Frame& frame,
                                                 const Row& row, std::size_t place);
[[nodiscard]] double plateWidth(const Frame& frame, std::string_view text);
/// A curve as an area over the bottom of a rectangle; `full` is the number at its top.
void paintSteps(QPainter& painter, const QRectF& area, const TimeScale& scale,
                const StepCurve& curve, int full, const QColor& colour);

}  // namespace schedule
