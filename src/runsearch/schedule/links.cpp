#include <QPaintEngine>
#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "runsearch/schedule/frame.h"

namespace schedule {

namespace {

constexpr double PinWidth = 5.6;  ///< in the frame's units

void paintPin(QPainter& painter, const Frame& frame, const QRectF& rect) {
    const double x = rect.center().x();
    const double stem = 0.8 * frame.unit;
    painter.fillRect(rect, frame.colours->ground);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(x - stem, rect.top(), 2 * stem, rect.height()), frame.colours->words);
    painter.setPen(Qt::NoPen);
    painter.setBrush(frame.colours->words);
    painter.drawEllipse(QPointF(x, rect.top() + rect.width() / 2), rect.width() / 2,
                        rect.width() / 2);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// Empty trips, idle time and bells of one row of a route.
class LinkPainter {
public:
    LinkPainter(QPainter& painter, const Frame& frame, const Row& row, double y)
        : painter_(painter),
          frame_(frame),
          row_(row),
          y_(y),
          hasWords_(frame.detail() >= Detail::SmallWords) {}

    void paint(std::span<const Bar> bars);

private:
    /// Of a row, in pixels.
    struct Stretch {
        double left;
        double right;

        [[nodiscard]] double width() const { return right - left; }
        [[nodiscard]] double middle() const { return (left + right) / 2; }
        /// The broader side stays.
        void leaveOut(double from, double until) {
            if (from < right && until > left) {
                (from - left > right - until ? right : left) =
                    from - left > right - until ? from : until;
            }
        }
    };

    void paintFirst(const Bar& bar);
    void paintLast(const Bar& bar);
    void paintBetween(const Bar& bar);
    void paintTrip(double from, double until);
    void paintMinutes(double from, Seconds time);
    void paintGarage(double x);
    void paintIdle(const Bar& bar, Seconds from, Seconds until);
    void paintUnknown(const Bar& bar);
    void paintDotted(double from, double until, Qt::PenStyle style);
    [[nodiscard]] Stretch freeBefore(const Bar& bar, Seconds from, Seconds until) const;
    void paintPatch(double middle, std::string_view text);
    void paintBell(Seconds bell);
    /// Whether the run before it or it itself is being moved.
    [[nodiscard]] bool touchesHeld(const Bar& bar) const {
        return frame_.held != None && (bar.run == frame_.held || bar.change.former == frame_.held);
    }
    [[nodiscard]] const ScheduledRun& runOf(const Bar& bar) const {
        return frame_.plan->run(bar.run);
    }

    QPainter& painter_;
    const Frame& frame_;
    const Row& row_;
    double y_;
    bool hasWords_;
};

void LinkPainter::paint(std::span<const Bar> bars) {
    if (bars.empty()) {
        return;
    }
    const Bar* last = &bars.front();
    for (const auto& bar : bars) {
        if (!touchesHeld(bar)) {
            bar.change.former == None ? paintFirst(bar) : paintBetween(bar);
        }
        last = bar.end >= last->end ? &bar : last;
    }
    if (last->run != frame_.held) {
        paintLast(*last);
    }
    for (const auto& bar : bars) {
        if (hasWords_ && bar.run != frame_.held && runOf(bar).bell) {
            paintBell(*runOf(bar).bell);
        }
    }
}

void LinkPainter::paintFirst(const Bar& bar) {
    const auto before = runOf(bar).before.time.value_or(0);
    if (before > 0) {
        paintTrip(frame_.x(bar.start - before), frame_.x(bar.start));
        paintGarage(frame_.x(bar.start - before));
        paintMinutes(frame_.x(bar.start - before), before);
    }
}

void LinkPainter::paintLast(const Bar& bar) {
    const auto after = runOf(bar).after.time.value_or(0);
    if (after > 0) {
        paintTrip(frame_.x(bar.end), frame_.x(bar.end + after));
        paintGarage(frame_.x(bar.end + after));
        paintMinutes(frame_.x(bar.end), after);
    }
}

void LinkPainter::paintBetween(const Bar& bar) {
    const auto& change = bar.change;
    if (bar.start <= change.leaves) {
        return;
    }
    if (!change.isKnown) {
        paintUnknown(bar);
        return;
    }
    const auto arrives = std::min(change.arrives, bar.start);
    const auto sets = std::max(change.sets, arrives);
    paintTrip(frame_.x(change.leaves), frame_.x(arrives));
    paintMinutes(frame_.x(change.leaves), change.arrives - change.leaves);
    if (change.viaGarage) {
        paintTrip(frame_.x(sets), frame_.x(bar.start));
        paintGarage(frame_.x(arrives));
        paintGarage(frame_.x(sets));
    }
    if (change.trouble == Trouble::Nothing) {
        paintIdle(bar, arrives, sets);
    }
}

void LinkPainter::paintTrip(double from, double until) {
    if (until <= frame_.plot.left() || from >= frame_.plot.right()) {
        return;
    }
    const double height = hasWords_ ? 3 * frame_.unit : 1;
    painter_.fillRect(QRectF(from, std::floor(y_ - height / 2), until - from, height),
                      frame_.colours->emptyTrip);
}

void LinkPainter::paintMinutes(double from, Seconds time) {
    const auto text = fmt::format("{} empty", minutesOf(time));
    if (frame_.detail() == Detail::TwoLines &&
        time / frame_.scale.secondsPerPixel > frame_.words->width(text, Type::Small)) {
        painter_.setPen(frame_.colours->idle);
        frame_.words->draw(painter_, from + 4 * frame_.unit, y_ + 9 * frame_.unit, text,
                           Type::Small);
    }
}

void LinkPainter::paintGarage(double x) {
    if (hasWords_) {
        painter_.fillRect(QRectF(std::round(x) - 2 * frame_.unit, y_ - 4 * frame_.unit,
                                 5 * frame_.unit, 8 * frame_.unit),
                          frame_.colours->emptyTrip);
    }
}

void LinkPainter::paintDotted(double from, double until, Qt::PenStyle style) {
    const double left = std::max(from, frame_.plot.left());
    const double right = std::min(until, frame_.plot.right());
    if (hasWords_ && right > left) {
        painter_.setPen(QPen(frame_.colours->soft, 1, style));
        const double y = std::floor(y_) + 0.5;
        painter_.drawLine(QPointF(left, y), QPointF(right, y));
    }
}

void LinkPainter::paintPatch(double middle, std::string_view text) {
    const double width = frame_.words->width(text, Type::Small) + 8 * frame_.unit;
    painter_.fillRect(QRectF(middle - width / 2, y_ - 6 * frame_.unit, width, 12 * frame_.unit),
                      frame_.colours->ground);
    painter_.setPen(frame_.colours->idle);
    frame_.words->drawMiddle(painter_, middle, y_, text, Type::Small);
}

/// Between two times before a bar, without what the numbers beside narrow bars take, and on the
/// broader side of a bell.
LinkPainter::Stretch LinkPainter::freeBefore(const Bar& bar, Seconds from, Seconds until) const {
    Stretch free{frame_.x(from), frame_.x(until)};
    const auto bars = frame_.chart->barsOf(row_);
    const auto place = static_cast<std::size_t>(&bar - bars.data());
    for (std::size_t i = place == 0 ? 0 : place - 1; i <= place; ++i) {
        if (const auto number = numberBeside(painter_, frame_, row_, i)) {
            free.leaveOut(number->left(), number->right());
        }
        if (const auto bell = runOf(bars[i]).bell) {
            const double x = frame_.x(*bell);
            free.leaveOut(x - PinWidth / 2 * frame_.unit, x + PinWidth / 2 * frame_.unit);
        }
    }
    return free;
}

void LinkPainter::paintIdle(const Bar& bar, Seconds from, Seconds until) {
    paintDotted(frame_.x(from), frame_.x(until), Qt::DotLine);
    if (frame_.detail() < Detail::Words || from >= until) {
        return;
    }
    const auto minutes = std::to_string(minutesLeft(until - from));
    const auto free = freeBefore(bar, from, until);
    for (const auto& text : {minutes + " min idle", minutes}) {
        if (frame_.words->width(text, Type::Small) + 20 * frame_.unit <= free.width()) {
            paintPatch(free.middle(), text);
            return;
        }
    }
}

void LinkPainter::paintUnknown(const Bar& bar) {
    paintDotted(frame_.x(bar.change.leaves), frame_.x(bar.start), Qt::DashLine);
    if (frame_.detail() < Detail::Words) {
        return;
    }
    constexpr auto Text = "empty trip not known";
    const auto free = freeBefore(bar, bar.change.leaves, bar.start);
    if (frame_.words->width(Text, Type::Small) + 20 * frame_.unit <= free.width()) {
        paintPatch(free.middle(), Text);
    }
}

/// A pin with some ground on either side, so that lines behind it do not run into it.
void LinkPainter::paintBell(Seconds bell) {
    const double x = frame_.x(bell);
    if (x < frame_.plot.left() - 4 || x > frame_.plot.right() + 4) {
        return;
    }
    const QSizeF size(PinWidth * frame_.unit, 16 * frame_.unit);
    const QPointF corner(x - size.width() / 2, y_ - size.height() / 2);
    if (painter_.paintEngine()->type() == QPaintEngine::Raster) {
        const auto& pin = frame_.words->sign(
            size, painter_.device()->devicePixelRatioF(),
            [&](QPainter& painter) { paintPin(painter, frame_, QRectF(QPointF(), size)); });
        painter_.drawPixmap(QPointF(std::round(corner.x()), std::round(corner.y())), pin);
    } else {
        paintPin(painter_, frame_, QRectF(corner, size));
    }
}

}  // namespace

void paintLinks(QPainter& painter, const Frame& frame, const Row& row, int number) {
    if (row.kind == RowKind::Route) {
        LinkPainter(painter, frame, row, frame.y(number) + frame.rowHeight / 2)
            .paint(frame.chart->barsOf(row));
    }
}

}  // namespace schedule
