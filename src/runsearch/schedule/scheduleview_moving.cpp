#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "runsearch/schedule/hovercard.h"
#include "runsearch/schedule/scheduleview.h"

namespace schedule {

namespace {

constexpr double WheelStep = 120;
constexpr double ZoomPerStep = 1.25;
/// A stretch of the hours narrower than this was a click.
constexpr double LeastStretch = 6;

double middleOf(const Bar& bar) { return (bar.start + bar.end) / 2.0; }

bool isBand(const Row& row) {
    return row.kind == RowKind::School || row.kind == RowKind::ClosedSchool;
}

}  // namespace

/// A run that the planner has chosen, by whatever way.
void ScheduleView::choose(int run) {
    const bool isOther = run != frame_.selected;
    select(run);
    if (isOther) {
        emit runChosen(run);
    }
}

void ScheduleView::wheelEvent(QWheelEvent* event) {
    if (frame_.chart == nullptr) {
        return;
    }
    const auto turned = event->angleDelta();
    const double steps = (turned.y() != 0 ? turned.y() : turned.x()) / WheelStep;
    const auto point = event->position();
    const auto keys = event->modifiers();
    if ((keys & Qt::ControlModifier) != 0 && (keys & Qt::ShiftModifier) != 0) {
        zoomRows(steps > 0 ? 1 : -1, point.y() - frame_.plot.top());
    } else if ((keys & Qt::ControlModifier) != 0) {
        zoomTime(std::pow(ZoomPerStep, steps), point.x() - frame_.plot.left());
    } else {
        const bool across = (keys & Qt::ShiftModifier) != 0 || turned.y() == 0;
        auto* bar = across ? horizontalScrollBar() : verticalScrollBar();
        bar->setValue(bar->value() - qRound(steps * 3 * bar->singleStep()));
    }
    hideCard();
    event->accept();
}

void ScheduleView::moveInRow(int direction) {
    const auto& bars = frame_.chart->bars;
    const auto* now = selectedBar();
    if (bars.empty()) {
        return;
    }
    if (now == nullptr) {
        choose(bars.front().run);
        return;
    }
    const auto next = now - bars.data() + direction;
    if (next >= 0 && next < static_cast<std::ptrdiff_t>(bars.size()) &&
        bars[static_cast<std::size_t>(next)].row == now->row) {
        choose(bars[static_cast<std::size_t>(next)].run);
    }
}

/// To the bar nearest in time on the next row that has one.
void ScheduleView::moveToRow(int direction) {
    const auto* now = selectedBar();
    if (now == nullptr) {
        moveInRow(direction);
        return;
    }
    const auto& rows = frame_.chart->rows;
    for (int row = now->row + direction; row >= 0 && row < static_cast<int>(rows.size());
         row += direction) {
        const auto bars = frame_.chart->barsOf(rows[static_cast<std::size_t>(row)]);
        if (!bars.empty()) {
            choose(std::ranges::min_element(bars, {}, [&](const Bar& bar) {
                       return std::abs(middleOf(bar) - middleOf(*now));
                   })->run);
            return;
        }
    }
}

bool ScheduleView::moveByKey(int key) {
    switch (key) {
        case Qt::Key_Left:
        case Qt::Key_Right:
            moveInRow(key == Qt::Key_Left ? -1 : 1);
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
            moveToRow(key == Qt::Key_Up ? -1 : 1);
            return true;
        case Qt::Key_Home:
        case Qt::Key_End: {
            auto* across = horizontalScrollBar();
            across->setValue(key == Qt::Key_Home ? across->minimum() : across->maximum());
            return true;
        }
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            verticalScrollBar()->triggerAction(key == Qt::Key_PageUp
                                                   ? QAbstractSlider::SliderPageStepSub
                                                   : QAbstractSlider::SliderPageStepAdd);
            return true;
        default:
            return false;
    }
}

bool ScheduleView::zoomByKey(int key) {
    const double x = pointer_ && frame_.plot.contains(*pointer_)
                         ? pointer_->x() - frame_.plot.left()
                         : frame_.plot.width() / 2;
    switch (key) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            zoomTime(ZoomPerStep, x);
            return true;
        case Qt::Key_Minus:
            zoomTime(1 / ZoomPerStep, x);
            return true;
        case Qt::Key_F:
            fit();
            return true;
        default:
            return false;
    }
}

void ScheduleView::keyPressEvent(QKeyEvent* event) {
    if (frame_.chart == nullptr) {
        return;
    }
    const int key = event->key();
    const bool isPlain = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if (key == Qt::Key_Escape && (drag_ || card_->isVisible())) {
        drag_ ? endDrag(false) : hideCard();
    } else if (sketchByKey(*event)) {
    } else if (isPlain && key == Qt::Key_N) {
        goToProblem((event->modifiers() & Qt::ShiftModifier) != 0 ? -1 : 1);
    } else if (isPlain && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        if (selectedBar() != nullptr) {
            emit runActivated(frame_.selected);
        }
    } else if (isPlain && key == Qt::Key_Space) {
        showCard(frame_.selected);
    } else if (!(isPlain && (moveByKey(key) || zoomByKey(key)))) {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void ScheduleView::pointAt(QPointF point) {
    const bool isOverPlot = frame_.plot.contains(point);
    const bool isOverDay =
        isOverPlot || frame_.axis.contains(point) || frame_.curve.contains(point);
    pointer_ = isOverDay ? std::optional(point) : std::nullopt;
    const auto* bar = isOverPlot && !stretchFrom_ ? frame_.barAt(point) : nullptr;
    const bool named = frame_.detail() != Detail::Cells;
    showCardSoon(bar != nullptr && named ? bar->run : None);
    viewport()->update();
}

bool ScheduleView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) {
        pointer_.reset();
        hideCard();
        viewport()->update();
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void ScheduleView::mousePressEvent(QMouseEvent* event) {
    if (frame_.chart == nullptr) {
        return;
    }
    const auto point = event->position();
    if (frame_.axis.contains(point) || frame_.curve.contains(point)) {
        if (event->button() == Qt::LeftButton) {
            stretchFrom_ = point.x() - frame_.plot.left();
        }
        return;
    }
    if (const auto* bar = frame_.barAt(point)) {
        choose(bar->run);
        if (event->button() == Qt::LeftButton) {
            pressBar(*bar, point);
        }
        return;
    }
    const int row = point.y() >= frame_.plot.top() ? frame_.rowAt(point.y()) : None;
    if (row != None && event->button() == Qt::LeftButton) {
        const auto& clicked = frame_.chart->rows[static_cast<std::size_t>(row)];
        if (isBand(clicked) &&
            (point.x() < frame_.plot.left() || clicked.kind == RowKind::ClosedSchool)) {
            emit schoolClicked(clicked.subject);
        }
    }
}

void ScheduleView::mouseMoveEvent(QMouseEvent* event) {
    if (frame_.chart == nullptr) {
        return;
    }
    const auto point = event->position();
    const bool isFar =
        pressedAt_ && (point - *pressedAt_).manhattanLength() >= QApplication::startDragDistance();
    if (drag_ || isFar) {
        dragTo(point, event->modifiers());
        return;
    }
    pointAt(point);
}

void ScheduleView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (stretchFrom_) {
        const double from = *stretchFrom_;
        const double until = event->position().x() - frame_.plot.left();
        stretchFrom_.reset();
        if (std::abs(until - from) >= LeastStretch) {
            showStretch(frame_.scale.timeAt(std::min(from, until)),
                        frame_.scale.timeAt(std::max(from, until)));
        }
        viewport()->update();
    }
    endDrag(true);
}

void ScheduleView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (frame_.chart == nullptr || event->button() != Qt::LeftButton) {
        return;
    }
    if (frame_.axis.contains(event->position()) || frame_.curve.contains(event->position())) {
        fit();
    } else if (const auto* bar = frame_.barAt(event->position())) {
        hideCard();
        choose(bar->run);
        emit runActivated(bar->run);
    }
}

void ScheduleView::contextMenuEvent(QContextMenuEvent* event) {
    if (frame_.chart == nullptr) {
        return;
    }
    hideCard();
    auto at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard && frame_.selected != None) {
        at = viewport()->mapToGlobal(barRect(frame_.selected).bottomLeft());
    } else if (event->reason() == QContextMenuEvent::Mouse &&
               frame_.barAt(event->pos()) == nullptr) {
        return;
    }
    emit menuAsked(at);
}

}  // namespace schedule
