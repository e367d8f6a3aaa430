#pragma once

#include <QWidget>
#include <cstdint>

namespace runedit {

/// A bar of the passengers beside the seats of their bus: a tick stands at the seats, and what goes
/// beyond it is hatched.
class SeatBar : public QWidget {
    Q_OBJECT

public:
    explicit SeatBar(QWidget* parent = nullptr);

    void setLoad(std::int64_t passengers, std::int64_t seats);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::int64_t passengers_ = 0;
    std::int64_t seats_ = 0;
};

}  // namespace runedit
