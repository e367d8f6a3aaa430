#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/frame.h"

namespace schedule {

/// What the colours and signs of a chart mean; only those that can be seen at its zoom.
class Legend : public QWidget {
    Q_OBJECT

public:
    explicit Legend(QWidget* parent = nullptr) : QWidget(parent) {}

    void show(const Frame& frame);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {100, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Frame frame_;
    std::unique_ptr<Words> words_;
};

/// Paints it into a rectangle, for paper; as many entries as there is room for.
void paintLegend(QPainter& painter, const Frame& frame, const QRectF& area);

}  // namespace schedule
