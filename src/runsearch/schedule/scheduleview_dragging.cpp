#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "runsearch/schedule/hovercard.h"
#include "runsearch/schedule/scheduleview.h"
#include "runsearch/schedule/timescale.h"

namespace schedule {

/// The card keeps so many rows away from the bar that is held.
constexpr double RowsToCard = 5;
/// So far to the side a run that is taken to another route keeps its time.
constexpr double Sideways = 8;

void ScheduleView::pressBar(const Bar& bar, QPointF point) {
    const bool mayDrag = sketching_.drop && frame_.chart->layout.order == Order::ByRoute &&
                         frame_.detail() >= Detail::SmallWords && frame_.plan->run(bar.run).start;
    if (mayDrag) {
        pressedAt_ = point;
        grip_ =
            static_cast<Seconds>(frame_.scale.timeAt(point.x() - frame_.plot.left())) - bar.start;
    }
}

/// Whole minutes, with Alt seconds; Shift keeps the time, Ctrl the route. On the way to another
/// route the time stays until the pointer has clearly gone sideways.
void ScheduleView::dragTo(QPointF point, Qt::KeyboardModifiers keys) {
    const auto& run = frame_.plan->run(frame_.selected);
    Drag drag{frame_.selected, run.route, *run.start};
    const int row = frame_.rowAt(point.y());
    if ((keys & Qt::ControlModifier) == 0 && row != None) {
        const auto& target = frame_.chart->rows[static_cast<std::size_t>(row)];
        drag.route = target.kind == RowKind::Route     ? target.subject
                     : target.kind == RowKind::NoRoute ? None
                                                       : drag.route;
    }
    const bool isSideways = drag.route == run.route || !pressedAt_ ||
                            std::abs(point.x() - pressedAt_->x()) >= Sideways * frame_.unit;
    if ((keys & Qt::ShiftModifier) == 0 && isSideways) {
        const double time = frame_.scale.timeAt(point.x() - frame_.plot.left()) - grip_;
        const double snap = (keys & Qt::AltModifier) != 0 ? 1 : Minute;
        drag.start = std::clamp(static_cast<Seconds>(std::round(time / snap) * snap), 0, Day - 1);
    }
    keepDragging(drag);
}

void ScheduleView::keepDragging(const Drag& drag) {
    if (!drag_) {
        frame_.held = drag.run;
        repaintAll();
    } else if (drag_->start != drag.start) {
        slacks_.clear();
    }
    drag_ = drag;
    cardTimer_.stop();
    cardRun_ = None;
    card_->showCard(sketching_.card(drag), frame_.colours->accent, frame_.unit);
    const double away = RowsToCard * frame_.rowHeight;
    placeCard(heldRect().adjusted(0, -away, 0, away));
    viewport()->update();
}

void ScheduleView::endDrag(bool drops) {
    pressedAt_.reset();
    if (!drag_) {
        return;
    }
    const auto drag = *drag_;
    drag_.reset();
    slacks_.clear();
    frame_.held = None;
    hideCard();
    repaintAll();
    const auto& run = frame_.plan->run(drag.run);
    if (drops && (drag.start != *run.start || drag.route != run.route)) {
        sketching_.drop(drag);
    }
}

/// Without a mouse: Ctrl and the arrows move the selected run, a minute or a row at a time.
bool ScheduleView::sketchByKey(const QKeyEvent& event) {
    const auto* bar = selectedBar();
    if ((event.modifiers() & Qt::ControlModifier) == 0 || !sketching_.drop || bar == nullptr ||
        frame_.chart->layout.order != Order::ByRoute || !frame_.plan->run(bar->run).start) {
        return false;
    }
    const auto& run = frame_.plan->run(bar->run);
    Drag drag{bar->run, run.route, *run.start};
    const auto& rows = frame_.chart->rows;
    const auto toRow = [&](int direction) {
        const int row = bar->row + direction;
        if (row < 0 || row >= std::ssize(rows)) {
            return;
        }
        if (const auto& to = rows[static_cast<std::size_t>(row)]; to.kind == RowKind::Route) {
            drag.route = to.subject;
        }
    };
    switch (event.key()) {
        case Qt::Key_Left:
        case Qt::Key_Right: {
            const Seconds step = (event.modifiers() & Qt::ShiftModifier) != 0 ? 5 * Minute : Minute;
            drag.start += event.key() == Qt::Key_Left ? -step : step;
            drag.start = std::clamp(drag.start, 0, Day - 1);
            break;
        }
        case Qt::Key_Up:
        case Qt::Key_Down:
            toRow(event.key() == Qt::Key_Up ? -1 : 1);
            break;
        default:
            return false;
    }
    if (drag.start != *run.start || drag.route != run.route) {
        const auto card = sketching_.card(drag);
        sketching_.drop(drag);
        tellMoved(card);
    }
    return true;
}

/// The card of a run that was moved by a key, beside its new place.
void ScheduleView::tellMoved(const Card& card) {
    const auto* bar = selectedBar();
    if (bar == nullptr) {
        return;
    }
    reveal(*bar);
    cardRun_ = bar->run;
    card_->showCard(card, frame_.colours->accent, frame_.unit);
    placeCard(frame_.rectOf(*bar));
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        event.setChild(static_cast<int>(bar - frame_.chart->bars.data()));
        QAccessible::updateAccessibility(&event);
    }
}

/// Where the bar that is dragged would stand; the lowest row in view for no route.
QRectF ScheduleView::heldRect() const {
    const auto& rows = frame_.chart->rows;
    const auto row = std::ranges::find_if(rows, [&](const Row& each) {
        return drag_->route == None ? each.kind == RowKind::NoRoute
                                    : each.kind == RowKind::Route && each.subject == drag_->route;
    });
    const auto& run = frame_.plan->run(drag_->run);
    const auto height = barRect(drag_->run).height();
    const double left = frame_.x(drag_->start);
    const double y =
        frame_.y(static_cast<int>(row - rows.begin())) + (frame_.rowHeight - height) / 2;
    const double length = (*run.end - *run.start) / frame_.scale.secondsPerPixel;
    return {left, y, std::max(length, 2.0), static_cast<double>(height)};
}

void ScheduleView::paintDrag(QPainter& painter) {
    if (!drag_) {
        return;
    }
    paintSlacks(painter);
    painter.save();
    painter.setClipRect(frame_.plot);
    const QRectF from(barRect(drag_->run));
    const auto held = heldRect();
    const auto& colours = *frame_.colours;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colours.soft, 1, Qt::DashLine));
    painter.drawRect(from.adjusted(0.5, 0.5, -0.5, -0.5));
    painter.setPen(QPen(colours.soft, 1, Qt::DotLine));
    painter.drawLine(from.center(), held.center());
    painter.setPen(QPen(colours.accent, 1, Qt::DashLine));
    painter.drawLine(QPointF(held.left(), frame_.plot.top()), held.topLeft());
    painter.drawLine(QPointF(held.right(), frame_.plot.top()), held.topRight());
    paintHeldTrips(painter, held);
    const int zone = zoneAt(frame_.plan->zones, drag_->start);
    painter.fillRect(held, colours.zone(zone).fill);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colours.accent, 2));
    painter.drawRoundedRect(held.adjusted(-1, -1, 1, 1), 2, 2);
    painter.setPen(colours.words);
    frame_.words->draw(painter, held.left() + 7 * frame_.unit, held.center().y(),
                       frame_.plan->run(drag_->run).id, Type::Bold);
    painter.restore();
}

/// The empty trips that the bus would have to it and from it, and what is left of their time or
/// missing.
void ScheduleView::paintHeldTrips(QPainter& painter, const QRectF& held) {
    const auto fit = sketching_.fit(*drag_);
    const double y = held.center().y();
    const double unit = frame_.unit;
    const auto trip = [&](Seconds from, Seconds until) {
        painter.fillRect(QRectF(frame_.x(from), std::floor(y - 1.5 * unit),
                                frame_.x(until) - frame_.x(from), 3 * unit),
                         frame_.colours->accent);
    };
    const auto paint = [&](const Change& change, Seconds until, double plateEnd) {
        if (change.trouble == Trouble::Overlap || !change.isKnown) {
            return;
        }
        trip(change.leaves, std::min(change.arrives, until));
        trip(std::max(change.sets, change.leaves), until);
        if (change.trouble != Trouble::Nothing) {
            const bool isTight = change.trouble == Trouble::Tight;
            const auto text = isTight ? fmt::format("{} min", minutesLeft(change.slack))
                                      : fmt::format("{} min short", minutesOf(change.slack));
            painter.setPen(isTight ? QPen(frame_.colours->amberLine, 1) : QPen(Qt::NoPen));
            paintPlate(painter, frame_, plateEnd - plateWidth(frame_, text), y, text,
                       isTight ? frame_.colours->amber : frame_.colours->red,
                       isTight ? frame_.colours->onAmber : frame_.colours->onRed);
        }
    };
    if (fit.before) {
        paint(*fit.before, drag_->start, held.left() - 4 * unit);
    }
    if (fit.after) {
        const auto next = *frame_.plan->run(fit.next).start;
        paint(*fit.after, next, frame_.x(next) - 4 * unit);
    }
}

/// For every route sign and minutes: what is left, or what is missing.
void ScheduleView::paintSlacks(QPainter& painter) {
    painter.save();
    painter.setClipRect(QRectF(frame_.heads.left(), frame_.axis.top(), frame_.heads.width(),
                               frame_.heads.height()));
    const double right = frame_.heads.right() - 7 * frame_.unit;
    const auto [first, last] = frame_.rowsInView();
    painter.setPen(frame_.colours->soft);
    frame_.words->drawRight(painter, right, frame_.axis.bottom() - 12 * frame_.unit, "Slack",
                            Type::Normal);
    painter.setClipRect(
        QRectF(frame_.heads.left(), frame_.plot.top(), frame_.heads.width(), frame_.plot.height()));
    for (int row = first; row < last; ++row) {
        if (frame_.chart->rows[static_cast<std::size_t>(row)].kind == RowKind::Route) {
            paintSlack(painter, row, right);
        }
    }
    painter.restore();
}

const std::optional<Change>& ScheduleView::slackOf(int row) {
    const auto known = slacks_.find(row);
    if (known != slacks_.end()) {
        return known->second;
    }
    const int route = frame_.chart->rows[static_cast<std::size_t>(row)].subject;
    const Drag there{drag_->run, route, drag_->start};
    return slacks_.emplace(row, sketching_.fit(there).worse()).first->second;
}

void ScheduleView::paintSlack(QPainter& painter, int row, double right) {
    const double middle = frame_.y(row) + frame_.rowHeight / 2;
    painter.setPen(frame_.colours->words);
    if (frame_.chart->rows[static_cast<std::size_t>(row)].subject ==
        frame_.plan->run(drag_->run).route) {
        frame_.words->drawRight(painter, right, middle, "from", Type::Normal);
        return;
    }
    const auto& slack = slackOf(row);
    if (!slack) {
        return;
    }
    const bool isShort = slack->trouble > Trouble::Tight;
    const auto minutes = isShort          ? "−" + std::to_string(minutesOf(slack->slack))
                         : slack->isKnown ? std::to_string(minutesLeft(slack->slack))
                                          : std::string("?");
    painter.setPen(isShort ? frame_.colours->redWords : frame_.colours->words);
    frame_.words->drawRight(painter, right, middle, minutes, Type::Normal);
    paintSign(painter, {right - 36 * frame_.unit, middle}, frame_.unit,
              slack->isKnown ? slack->trouble : Trouble::Tight, *frame_.colours);
}

}  // namespace schedule
