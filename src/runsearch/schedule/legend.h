#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/frame.h"

namespace schedule {

/// What the colours and signs of a chart mean; only those that can be seen at its zoom.
class Legend : public QWidget {
    Q_OBJECT

public:
    explicit Legend(QWidget* parent = nullptr);

    /// Paints itself anew only where that changes what it says.
    void show(const Frame& frame);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {100, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// All that decides what it says.
    struct Shown {
        std::vector<TimeZone> zones;
        Order order = Order::ByRoute;
        Seconds tightUnder = 0;
        Detail detail = Detail::Cells;
        double unit = 0;
        const Colours* colours = nullptr;

        friend bool operator==(const Shown&, const Shown&) = default;
    };

    /// Takes as many lines as its entries need at its width.
    void fitLines();

    Frame frame_;
    Shown shown_;
    std::unique_ptr<Words> words_;
    int lines_ = 1;
};

/// Paints it into a rectangle, for paper; as many entries as there is room for.
void paintLegend(QPainter& painter, const Frame& frame, const QRectF& area);

}  // namespace schedule
