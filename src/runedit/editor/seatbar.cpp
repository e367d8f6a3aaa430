#include "runedit/editor/seatbar.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "runedit/editor/inks.h"

namespace runedit {

namespace {

constexpr int WidthInLines = 5;
constexpr double FreeBehind = 1.15;  // of what is shown, so that the tick never stands at the edge

}  // namespace

SeatBar::SeatBar(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SeatBar::setLoad(std::int64_t passengers, std::int64_t seats) {
    passengers_ = std::max<std::int64_t>(passengers, 0);
    seats_ = std::max<std::int64_t>(seats, 0);
    update();
}

QSize SeatBar::sizeHint() const {
    const int line = fontMetrics().height();
    return {line * WidthInLines, line * 3 / 4};
}

void SeatBar::paintEvent(QPaintEvent* /*event*/) {
    const double most =
        FreeBehind * static_cast<double>(std::max<std::int64_t>({passengers_, seats_, 1}));
    const auto place = [&](std::int64_t count) {
        return static_cast<int>(width() * static_cast<double>(count) / most);
    };
    const int edge = height() / 4;
    const QRect track(0, edge, width(), height() - 2 * edge);
    const int seated = place(std::min(passengers_, seats_));
    QPainter painter(this);
    painter.fillRect(track, palette().mid());
    painter.fillRect(track.adjusted(0, 0, seated - width(), 0), palette().highlight());
    if (passengers_ > seats_) {
        const QRect beyond(seated, track.top(), place(passengers_) - seated, track.height());
        painter.fillRect(beyond, palette().base());
        painter.fillRect(beyond, QBrush(inksOf(palette()).red, Qt::BDiagPattern));
    }
    painter.fillRect(QRect(place(seats_), 0, 2, height()), palette().windowText());
}

}  // namespace runedit
