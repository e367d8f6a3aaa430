#pragma once

#include <QWidget>

#include "runsearch/schedule/summaries.h"

namespace schedule {

/// The summary's column that is drawn.
constexpr int LastSummaryColumn = 11;

/// Buses in use over the day: those of one group before those of all, both peaks told in words.
class BusPlot : public QWidget {
    Q_OBJECT

public:
    explicit BusPlot(QWidget* parent = nullptr);

    /// Both outlive what is shown of them; the group may be null.
    void showCurves(const Summary& all, const Summary* group);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Summary* all_ = nullptr;
    const Summary* group_ = nullptr;
};

/// A day in small, in the colours of its zones, to its own peak; on the time scale of `all`. `ink`
/// stands for the zones' colours where it is valid.
void paintDay(QPainter& painter, const QRectF& area, const StepCurve& curve, const Plan& plan,
              const StepCurve& all, const QPalette& palette, const QColor& ink);

}  // namespace schedule
