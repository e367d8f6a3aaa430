#include "platform/controls/gauge.h"

#include <QPainter>
#include <algorithm>

#include "platform/controls/access.h"
#include "platform/controls/tones.h"

namespace controls {

namespace {

/// "48 of 44", which no bar of the toolkit can say.
class GaugeAccess : public QAccessibleWidget {
public:
    explicit GaugeAccess(Gauge& gauge) : QAccessibleWidget(&gauge, QAccessible::ProgressBar) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const auto& gauge = static_cast<const Gauge&>(*widget());
        return kind == QAccessible::Value && gauge.limit() > 0
                   ? Gauge::tr("%1 of %2").arg(gauge.taken()).arg(gauge.limit())
                   : QAccessibleWidget::text(kind);
    }
};

}  // namespace

Gauge::Gauge(QWidget* parent) : QWidget(parent) {
    makeAccessible<Gauge, GaugeAccess>();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Gauge::setValues(double taken, double limit) {
    taken_ = taken;
    limit_ = limit;
    update();
}

QSize Gauge::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 12, fontMetrics().height()};
}

void Gauge::paintEvent(QPaintEvent*) {
    if (limit_ <= 0) {
        return;
    }
    QPainter painter(this);
    const int tall = std::max(4, height() / 2);
    const QRect bar(0, (height() - tall) / 2, width(), tall);
    // The tick stands at four fifths, so that there is room to show what is too many.
    const int tick = std::min(bar.width() * 4 / 5, bar.width() - 2);
    const int end = static_cast<int>(std::clamp(tick * taken_ / limit_, 0.0, 1.0 * bar.width()));
    painter.fillRect(bar, palette().color(QPalette::Mid));
    painter.fillRect(QRect(bar.left(), bar.top(), std::min(tick, end), tall),
                     palette().color(QPalette::Highlight));
    if (end > tick) {
        painter.fillRect(QRect(tick, bar.top(), end - tick, tall),
                         QBrush(inkOf(Tone::Wrong, palette()), Qt::Dense3Pattern));
    }
    painter.fillRect(QRect(tick, 0, 2, height()), palette().color(QPalette::WindowText));
}

}  // namespace controls
