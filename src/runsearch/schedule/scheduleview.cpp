#include "runsearch/schedule/scheduleview.h"

#include <QAccessible>
#include <QFontInfo>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/base/text.h"
#include "runsearch/schedule/hovercard.h"

namespace schedule {

/// The form's font at the usual size, which the measures are made for.
constexpr double UsualFontPixels = 13;
constexpr double LeastRow = 4;
constexpr std::array RowSteps{4.0, 6.0, 10.0, 14.0, 18.0, 26.0, 44.0};
constexpr double UsualRow = 26;
constexpr double TighterRow = 24;
constexpr int HighScreen = 900;
/// What is left free before the first and after the last time.
constexpr double DayMargin = 15 * Minute;
constexpr int CardAfterMs = 300;

ScheduleView::ScheduleView(QWidget* parent)
    : QAbstractScrollArea(parent), card_(new HoverCard(viewport())) {
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setAccessibleName(tr("Run schedule"));
    cardTimer_.setSingleShot(true);
    cardTimer_.setInterval(CardAfterMs);
    connect(&cardTimer_, &QTimer::timeout, this, [this] { showCard(cardRun_); });
}

ScheduleView::~ScheduleView() = default;

double ScheduleView::unit() const {
    return std::max(QFontInfo(font()).pixelSize() / UsualFontPixels, 0.8);
}

QSize ScheduleView::sizeHint() const { return {900, 420}; }

void ScheduleView::showChart(const Plan& plan, const Chart& chart) {
    hideCard();
    endDrag(false);
    const bool isFirst = frame_.chart == nullptr;
    // The run that was selected is known by its id: the plan may be another one.
    const auto selected = frame_.plan != nullptr && frame_.selected != None ? selectedId_ : "";
    frame_.plan = &plan;
    frame_.chart = &chart;
    faded_.clear();
    frame_.faded = nullptr;
    const auto found = std::ranges::find(plan.runs, selected, &ScheduledRun::id);
    frame_.selected = selected.empty() || found == plan.runs.end()
                          ? None
                          : static_cast<int>(found - plan.runs.begin());
    arrange();
    if (isFirst) {
        setRowHeight(window()->height() < HighScreen ? TighterRow : UsualRow);
    }
    if (showsDay_) {
        fitTime();
    }
}

void ScheduleView::arrange() {
    if (frame_.chart == nullptr) {
        return;
    }
    frame_.unit = unit();
    words_ = std::make_unique<Words>(font(), frame_.unit);
    frame_.words = words_.get();
    frame_.colours = &coloursFor(palette());
    frame_.rowHeight = rowStep_ * frame_.unit;
    divide(frame_, QRectF(viewport()->rect()));
    updateScrollBars();
    repaintAll();
}

void ScheduleView::repaintAll() {
    isPainted_ = false;
    viewport()->update();
    emit viewChanged();
}

void ScheduleView::setScale(TimeScale scale) {
    showsDay_ = false;
    frame_.scale = scale;
    updateScrollBars();
    repaintAll();
}

void ScheduleView::fitTime() {
    showStretch(frame_.chart->from - DayMargin, frame_.chart->until + DayMargin);
    showsDay_ = true;
}

void ScheduleView::showStretch(double from, double until) {
    setScale(TimeScale::fitting(from, until, frame_.plot.width()));
}

void ScheduleView::fit() {
    if (frame_.chart == nullptr) {
        return;
    }
    fitTime();
    const auto rows = std::max<double>(static_cast<double>(frame_.chart->rows.size()), 1);
    const double room = frame_.plot.height() / frame_.unit / rows;
    setRowHeight(room >= LeastRow ? std::floor(std::min(room, RowSteps.back())) : room);
}

void ScheduleView::setRowHeight(double pixels) {
    const double first = frame_.top / frame_.rowHeight;
    rowStep_ = std::max(pixels, 1e-3);
    frame_.rowHeight = rowStep_ * frame_.unit;
    frame_.top = first * frame_.rowHeight;
    updateScrollBars();
    repaintAll();
}

void ScheduleView::zoomTime(double factor, double x) { setScale(frame_.scale.zoomed(factor, x)); }

void ScheduleView::zoomRows(int steps, double y) {
    const double row = (frame_.top + y) / frame_.rowHeight;
    const auto* next = std::ranges::lower_bound(RowSteps, rowStep_);
    auto place = next - RowSteps.begin();
    const bool isBetween = next == RowSteps.end() || *next != rowStep_;
    place += steps > 0 && isBetween ? steps - 1 : steps;
    const auto last = static_cast<std::ptrdiff_t>(RowSteps.size()) - 1;
    if (place < 0 && frame_.plot.height() / frame_.unit <
                         static_cast<double>(frame_.chart->rows.size()) * LeastRow) {
        fit();
        return;
    }
    setRowHeight(RowSteps[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(place, 0, last))]);
    frame_.top = row * frame_.rowHeight - y;
    updateScrollBars();
    repaintAll();
}

/// The bars show where the scale and the rows are; moving them moves these.
void ScheduleView::updateScrollBars() {
    if (frame_.chart == nullptr || isScrolling_) {
        return;
    }
    isScrolling_ = true;
    const double perPixel = frame_.scale.secondsPerPixel;
    const double from = std::min<double>(frame_.chart->from - Hour, frame_.scale.origin);
    const double until =
        std::max(frame_.chart->until + double{Hour}, frame_.scale.timeAt(frame_.plot.width()));
    auto& across = *horizontalScrollBar();
    across.setPageStep(static_cast<int>(frame_.plot.width()));
    across.setSingleStep(40);
    across.setRange(static_cast<int>(std::floor(from / perPixel)),
                    static_cast<int>(std::ceil(until / perPixel - frame_.plot.width())));
    across.setValue(static_cast<int>(std::lround(frame_.scale.origin / perPixel)));
    auto& down = *verticalScrollBar();
    const double all = frame_.rowHeight * static_cast<double>(frame_.chart->rows.size());
    const int most = std::max(0, static_cast<int>(std::ceil(all - frame_.plot.height())));
    down.setPageStep(static_cast<int>(frame_.plot.height()));
    down.setSingleStep(std::max(1, static_cast<int>(frame_.rowHeight)));
    down.setRange(0, most);
    frame_.top = std::clamp(frame_.top, 0.0, static_cast<double>(most));
    down.setValue(static_cast<int>(frame_.top));
    isScrolling_ = false;
}

void ScheduleView::scrollContentsBy(int, int) {
    if (isScrolling_ || frame_.chart == nullptr) {
        return;
    }
    hideCard();
    frame_.scale.origin = horizontalScrollBar()->value() * frame_.scale.secondsPerPixel;
    showsDay_ = false;
    frame_.top = verticalScrollBar()->value();
    repaintAll();
}

void ScheduleView::resizeEvent(QResizeEvent*) {
    if (frame_.chart == nullptr) {
        return;
    }
    const double from = frame_.scale.origin;
    const double until = frame_.scale.timeAt(frame_.plot.width());
    divide(frame_, QRectF(viewport()->rect()));
    showsDay_ ? fitTime() : showStretch(from, until);
}

void ScheduleView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        arrange();
    }
    QAbstractScrollArea::changeEvent(event);
}

void ScheduleView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    if (frame_.chart == nullptr) {
        painter.fillRect(viewport()->rect(), palette().base());
        return;
    }
    const auto ratio = devicePixelRatioF();
    if (picture_.size() != viewport()->size() * ratio) {
        picture_ = QPixmap(viewport()->size() * ratio);
        picture_.setDevicePixelRatio(ratio);
        isPainted_ = false;
    }
    if (!isPainted_) {
        QPainter body(&picture_);
        body.setFont(font());
        frame_.faded = faded_.empty() ? nullptr : &faded_;
        paintFrame(body, frame_);
        isPainted_ = true;
    }
    painter.drawPixmap(0, 0, picture_);
    paintSelection(painter);
    paintStretch(painter);
    paintDrag(painter);
    paintPointer(painter);
    paintEmpty(painter);
}

void ScheduleView::paintEmpty(QPainter& painter) {
    if (frame_.chart->runs.empty()) {
        painter.setPen(frame_.colours->soft);
        painter.drawText(frame_.plot, Qt::AlignCenter,
                         frame_.plan->runs.empty() ? tr("No run meets the search any more.")
                                                   : tr("No run of the search runs on that day."));
    }
}

/// One pixel of ground, then two in the accent colour: the zone stays to be seen.
void ScheduleView::paintSelection(QPainter& painter) {
    const auto* bar = selectedBar();
    if (bar == nullptr || bar->run == frame_.held || frame_.detail() == Detail::Cells ||
        frame_.chart->rowOf(*bar).kind == RowKind::ClosedSchool) {
        return;
    }
    painter.save();
    painter.setClipRect(frame_.plot);
    const auto rect = frame_.rectOf(*bar);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(frame_.colours->ground, 1));
    painter.drawRect(rect.adjusted(-0.5, -0.5, 0.5, 0.5));
    painter.setPen(QPen(frame_.colours->accent, hasFocus() ? 2 : 1.5));
    painter.drawRoundedRect(rect.adjusted(-2, -2, 2, 2), 2, 2);
    painter.restore();
}

void ScheduleView::paintPointer(QPainter& painter) {
    if (!pointer_ || drag_ || pointer_->x() < frame_.plot.left()) {
        return;
    }
    const double x = std::floor(pointer_->x()) + 0.5;
    const auto time = static_cast<Seconds>(frame_.scale.timeAt(x - frame_.plot.left()));
    painter.setPen(frame_.colours->accent);
    painter.drawLine(QPointF(x, frame_.axis.bottom()), QPointF(x, frame_.plot.bottom()));
    const auto plate = [&](double y, const std::string& text, bool beside) {
        painter.setPen(Qt::NoPen);
        const double width = plateWidth(frame_, text);
        const double left = beside && x + 6 + width < frame_.plot.right() ? x + 6
                            : beside                                      ? x - 6 - width
                                                                          : x - width / 2;
        paintPlate(painter, frame_, left, y, text, frame_.colours->accentFill, Qt::white);
    };
    plate(frame_.axis.bottom() - 11 * frame_.unit, clockText(time, HalfOfDay::Told), false);
    const auto& buses = frame_.chart->buses;
    plate(frame_.curve.bottom() - 11 * frame_.unit,
          std::to_string(buses.withRiders.at(time)) + " with riders, " +
              std::to_string(buses.out.at(time)) + " out",
          true);
}

void ScheduleView::paintStretch(QPainter& painter) {
    if (stretchFrom_ && pointer_) {
        auto colour = frame_.colours->accent;
        colour.setAlphaF(0.2F);
        const double left = std::min(*stretchFrom_ + frame_.plot.left(), pointer_->x());
        const double right = std::max(*stretchFrom_ + frame_.plot.left(), pointer_->x());
        painter.fillRect(QRectF(left, frame_.axis.top(), right - left, viewport()->height()),
                         colour);
    }
}

const Bar* ScheduleView::selectedBar() const {
    if (frame_.chart == nullptr || frame_.selected == None) {
        return nullptr;
    }
    const int place = frame_.chart->barOf[static_cast<std::size_t>(frame_.selected)];
    return place == None ? nullptr : &frame_.chart->bars[static_cast<std::size_t>(place)];
}

void ScheduleView::select(int run, Reveal revealed) {
    frame_.selected = run;
    selectedId_ = run == None ? "" : frame_.plan->run(run).id;
    const auto* bar = selectedBar();
    if (bar != nullptr && revealed == Reveal::Yes) {
        reveal(*bar);
    }
    viewport()->update();
    if (bar != nullptr && QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(static_cast<int>(bar - frame_.chart->bars.data()));
        QAccessible::updateAccessibility(&event);
    }
}

void ScheduleView::reveal(const Bar& bar) {
    const double y = frame_.y(bar.row);
    if (y < frame_.plot.top() || y + frame_.rowHeight > frame_.plot.bottom()) {
        frame_.top = std::max(0.0, bar.row * frame_.rowHeight - frame_.plot.height() / 3);
        updateScrollBars();
        repaintAll();
    }
    const auto rect = frame_.rectOf(bar);
    if (frame_.plan->run(bar.run).start &&
        (rect.left() < frame_.plot.left() || rect.right() > frame_.plot.right())) {
        frame_.scale.origin = bar.start - frame_.plot.width() / 4 * frame_.scale.secondsPerPixel;
        updateScrollBars();
        repaintAll();
    }
}

QRect ScheduleView::barRect(int run) const {
    const int place = frame_.chart->barOf[static_cast<std::size_t>(run)];
    return place == None
               ? QRect()
               : frame_.rectOf(frame_.chart->bars[static_cast<std::size_t>(place)]).toRect();
}

void ScheduleView::goToProblem(int direction) {
    const auto& problems = frame_.chart->problems;
    if (problems.empty()) {
        return;
    }
    const auto* now = selectedBar();
    const auto place = now == nullptr ? std::ptrdiff_t{-1} : now - frame_.chart->bars.data();
    const auto at = [](const Problem& problem) { return static_cast<std::ptrdiff_t>(problem.bar); };
    auto next = direction > 0 ? std::ranges::upper_bound(problems, place, {}, at)
                              : std::ranges::lower_bound(problems, place, {}, at);
    if (direction > 0) {
        next = next == problems.end() ? problems.begin() : next;
    } else {
        next = std::prev(next == problems.begin() ? problems.end() : next);
    }
    choose(frame_.chart->bars[next->bar].run);
    showCard(frame_.selected);
}

int ScheduleView::find(const std::string& typed, From from) {
    faded_.clear();
    int found = 0;
    if (!base::trim(typed).empty()) {
        faded_.assign(frame_.plan->runs.size(), true);
        const Bar* first = nullptr;
        const Bar* next = nullptr;
        const auto* now = selectedBar();
        for (const auto& bar : frame_.chart->bars) {
            if (isFound(*frame_.plan, frame_.plan->run(bar.run), typed)) {
                faded_[static_cast<std::size_t>(bar.run)] = false;
                ++found;
                first = first == nullptr ? &bar : first;
                next = next == nullptr && now != nullptr && &bar > now ? &bar : next;
            }
        }
        const auto* chosen = from == From::Next && next != nullptr ? next : first;
        if (chosen != nullptr) {
            choose(chosen->run);
        }
    }
    repaintAll();
    return found;
}

bool ScheduleView::isCardShown() const { return card_->isVisible(); }

void ScheduleView::showCardSoon(int run) {
    if (run == cardRun_ && (card_->isVisible() || cardTimer_.isActive())) {
        return;
    }
    const bool wasOpen = card_->isVisible();
    hideCard();
    cardRun_ = run;
    if (run != None && wasOpen) {
        showCard(run);
    } else if (run != None) {
        cardTimer_.start();
    }
}

void ScheduleView::showCard(int run) {
    if (run == None || frame_.chart == nullptr || barRect(run).isNull()) {
        return;
    }
    cardRun_ = run;
    const auto& bar =
        frame_.chart
            ->bars[static_cast<std::size_t>(frame_.chart->barOf[static_cast<std::size_t>(run)])];
    card_->showCard(cardOf(*frame_.plan, *frame_.chart, run), frame_.colours->zone(bar.zone).edge,
                    frame_.unit);
    placeCard(frame_.rectOf(bar));
}

/// Beside the bar's end and below it, else above it; where neither has room, at the foot.
void ScheduleView::placeCard(const QRectF& bar) {
    const auto area = viewport()->rect();
    const int below = qRound(bar.bottom() + 6);
    const int above = qRound(bar.top() - 6) - card_->height();
    const int left = std::min(qRound(bar.right() + 12), area.right() - card_->width() - 4);
    const bool fitsBelow = below + card_->height() <= area.bottom();
    const int lowest = std::max(area.bottom() - card_->height(), 0);
    card_->move(std::max(left, 4), fitsBelow ? below : above >= 0 ? above : lowest);
}

void ScheduleView::hideCard() {
    cardTimer_.stop();
    cardRun_ = None;
    card_->hide();
}

}  // namespace schedule
