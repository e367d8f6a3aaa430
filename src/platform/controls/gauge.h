#pragma once

#include <QWidget>

namespace controls {

/// A small bar that shows how much of a limit is taken: a tick stands at the limit, and what lies
/// beyond it is hatched. Without a limit it shows nothing.
class Gauge : public QWidget {
    Q_OBJECT

public:
    explicit Gauge(QWidget* parent = nullptr);

    void setValues(double taken, double limit);
    [[nodiscard]] double taken() const { return taken_; }
    [[nodiscard]] double limit() const { return limit_; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double taken_ = 0;
    double limit_ = 0;
};

}  // namespace controls
