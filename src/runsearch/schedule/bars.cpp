#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "runsearch/schedule/frame.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

namespace {

constexpr double LeftEdge = 3;
constexpr double TextFrom = 7;
constexpr double TextUntil = 4;
constexpr double ResolveWidth = 7;
constexpr double WarningSize = 8;
constexpr double FadedOpacity = 0.4;

/// Slanting lines all over a rectangle.
void hatch(QPainter& painter, const QRectF& rect, const QColor& colour, double apart,
           double width) {
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, width));
    const int lines = static_cast<int>(std::ceil((rect.width() + rect.height()) / apart));
    for (int line = 0; line < lines; ++line) {
        const double x = rect.left() - rect.height() + line * apart;
        painter.drawLine(QPointF(x, rect.bottom()), QPointF(x + rect.height(), rect.top()));
    }
    painter.restore();
}

bool isInView(const Frame& frame, const QRectF& rect) {
    return rect.right() >= frame.plot.left() - 2 && rect.left() <= frame.plot.right() + 2;
}

/// One bar among those of its row.
class BarPainter {
public:
    BarPainter(QPainter& painter, const Frame& frame, const Row& row, std::size_t place)
        : painter_(painter),
          frame_(frame),
          row_(row),
          bars_(frame.chart->barsOf(row)),
          place_(place),
          bar_(bars_[place]),
          run_(frame.plan->run(bar_.run)),
          rect_(frame.rectOf(bar_)),
          colours_(frame.colours->zone(run_.start ? bar_.zone : None)) {}

    void paint();
    /// Where the number stands whose bar is too narrow for it; nothing where it is not beside.
    [[nodiscard]] std::optional<QRectF> besideRect() const;

private:
    [[nodiscard]] bool isHollow() const { return bar_.zone == None || !run_.start; }
    [[nodiscard]] double unit() const { return frame_.unit; }
    void paintSolid();
    void paintOutlined();
    void paintMarks();
    void paintWords();
    void paintBeside();
    void paintTimes();
    [[nodiscard]] double freeRight() const;
    [[nodiscard]] double freeLeft() const;
    [[nodiscard]] double wordsFrom() const;
    [[nodiscard]] Type bold() const {
        return frame_.detail() == Detail::SmallWords ? Type::SmallBold : Type::Bold;
    }
    [[nodiscard]] double roomForWords() const {
        return rect_.right() - TextUntil * unit() - wordsFrom();
    }
    [[nodiscard]] std::string second() const;

    QPainter& painter_;
    const Frame& frame_;
    const Row& row_;
    std::span<const Bar> bars_;
    std::size_t place_;
    const Bar& bar_;
    const ScheduledRun& run_;
    QRectF rect_;
    ZoneColours colours_;
};

void BarPainter::paint() {
    const auto detail = frame_.detail();
    const bool fades = frame_.isFaded(bar_);
    painter_.setOpacity(fades ? FadedOpacity : 1);
    if (detail == Detail::Solid) {
        paintSolid();
    } else {
        paintOutlined();
    }
    if (detail >= Detail::SmallWords) {
        paintMarks();
        paintWords();
        if (row_.kind == RowKind::Lane) {
            paintTimes();
        }
    }
    painter_.setOpacity(1);
}

void BarPainter::paintSolid() {
    if (isHollow()) {
        painter_.setPen(frame_.colours->noZone.edge);
        painter_.setBrush(Qt::NoBrush);
        painter_.drawRect(rect_.adjusted(0.5, 0.5, -0.5, -0.5));
    } else {
        painter_.fillRect(rect_, colours_.solid);
    }
}

void BarPainter::paintOutlined() {
    painter_.fillRect(rect_, colours_.edge);
    painter_.fillRect(rect_.adjusted(std::min(LeftEdge * unit(), rect_.width()), 1, -1, -1),
                      colours_.fill);
    if (isHollow() && frame_.detail() >= Detail::SmallWords) {
        hatch(painter_, rect_.adjusted(1, 1, -1, -1), colours_.edge, 6 * unit(), 0.8);
    }
}

void BarPainter::paintMarks() {
    if (run_.needsMap) {
        const QRectF mark(rect_.left(), rect_.top(), std::min(ResolveWidth * unit(), rect_.width()),
                          rect_.height());
        painter_.fillRect(mark, frame_.colours->ground);
        hatch(painter_, mark, colours_.edge, 4 * unit(), 1.8 * unit());
    }
    if (run_.hasWarnings && rect_.width() > WarningSize) {
        const double size = WarningSize * unit();
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(frame_.colours->words);
        painter_.drawPolygon(QPolygonF{{rect_.right() - size, rect_.top()},
                                       {rect_.right(), rect_.top()},
                                       {rect_.right(), rect_.top() + size}});
        painter_.setRenderHint(QPainter::Antialiasing, false);
    }
}

/// Behind what another run of the row shares with it.
double BarPainter::wordsFrom() const {
    const auto& overlap = frame_.chart->overlaps[static_cast<std::size_t>(bar_.run)];
    const bool shares =
        overlap.other != None && overlap.of == Overlap::Of::Route && row_.kind == RowKind::Route;
    const Seconds hatched = shares                                  ? overlap.seconds
                            : bar_.change.trouble == Trouble::Short ? -bar_.change.slack
                                                                    : 0;
    const double shared = hatched / frame_.scale.secondsPerPixel;
    const double mark = run_.needsMap ? ResolveWidth + 2 : TextFrom;
    return std::max(rect_.left() + shared + 3 * unit(), rect_.left() + mark * unit());
}

std::string BarPainter::second() const {
    if (row_.kind == RowKind::Lane) {
        const auto* route = frame_.plan->routeOf(run_);
        return route == nullptr || route->vehicle.empty() ? "" : "bus " + route->vehicle;
    }
    return frame_.plan->school(run_.school).code;
}

void BarPainter::paintWords() {
    const auto plain = frame_.detail() == Detail::SmallWords ? Type::Small : Type::Normal;
    auto& words = *frame_.words;
    const double from = wordsFrom();
    double room = roomForWords();
    const double width = words.width(run_.id, bold());
    if (width > room) {
        paintBeside();
        return;
    }
    const double y = rect_.center().y();
    painter_.setPen(frame_.colours->words);
    words.draw(painter_, from, y, run_.id, bold());
    const auto riders = run_.students > 0 ? std::to_string(run_.students) : std::string();
    const auto name = second();
    const double gap = 8 * unit();
    room -= width + gap;
    const double nameWidth = name.empty() ? 0 : words.width(name, plain);
    if (name.empty() || nameWidth > room) {
        return;
    }
    words.draw(painter_, from + width + gap, y, name, plain);
    room -= nameWidth + gap + (run_.hasWarnings ? 5 * unit() : 0);
    if (!riders.empty() && words.width(riders, plain) <= room) {
        words.drawRight(painter_,
                        rect_.right() - (run_.hasWarnings ? WarningSize + 1 : TextUntil) * unit(),
                        y, riders, plain);
    }
}

/// Where the next bar or the bell begins, whichever is nearer.
double BarPainter::freeRight() const {
    double until = frame_.plot.right();
    if (place_ + 1 < bars_.size()) {
        until = std::min(until, frame_.rectOf(bars_[place_ + 1]).left());
    }
    if (run_.bell && row_.kind == RowKind::Route && *run_.bell >= bar_.end) {
        until = std::min(until, frame_.x(*run_.bell) - 5 * unit());
    }
    return until - rect_.right();
}

double BarPainter::freeLeft() const {
    const double from = place_ > 0 ? frame_.rectOf(bars_[place_ - 1]).right() : frame_.plot.left();
    return plateText(*frame_.plan, *frame_.chart, bar_).empty() ? rect_.left() - from : 0;
}

std::optional<QRectF> BarPainter::besideRect() const {
    const double width = frame_.words->width(run_.id, bold());
    if (row_.kind == RowKind::Lane || frame_.detail() < Detail::SmallWords ||
        width <= roomForWords()) {
        return std::nullopt;
    }
    const double pad = 4 * unit();
    const bool right = freeRight() >= width + 2 * pad;
    if (!right && freeLeft() < width + 2 * pad) {
        return std::nullopt;
    }
    return QRectF(right ? rect_.right() + pad : rect_.left() - pad - width, rect_.top(), width,
                  rect_.height());
}

/// On a patch of ground.
void BarPainter::paintBeside() {
    if (const auto place = besideRect()) {
        painter_.fillRect(place->adjusted(-1, 0, 1, 0), frame_.colours->ground);
        painter_.setPen(frame_.colours->words);
        frame_.words->draw(painter_, place->left(), rect_.center().y(), run_.id, bold());
    }
}

void BarPainter::paintTimes() {
    painter_.setPen(frame_.colours->soft);
    const double y = rect_.center().y();
    const auto start = clockText(bar_.start);
    const auto end = clockText(bar_.end);
    frame_.words->drawRight(painter_, rect_.left() - 3 * unit(), y, start, Type::Small);
    // A bell's line that goes through the end says as much.
    const double after = rect_.right() + (6 * unit()) + frame_.words->width(end, Type::Small);
    const double bell = run_.bell ? frame_.x(*run_.bell) : after;
    if (bell < rect_.right() || bell >= after) {
        frame_.words->draw(painter_, rect_.right() + 3 * unit(), y, end, Type::Small);
    }
}

class TroublePainter {
public:
    TroublePainter(QPainter& painter, const Frame& frame, const Row& row)
        : painter_(painter), frame_(frame), row_(row) {}

    void paint(const Bar& bar);

private:
    void paintTick(const QRectF& rect, bool isRed);
    void paintShared(const Bar& bar, const QRectF& rect);
    void paintShort(const Bar& bar, const QRectF& rect);
    void paintTightStretch(const Bar& bar, const QRectF& rect);
    void paintRules(const QRectF& shared);
    [[nodiscard]] double leftOf(const Bar& bar, const QRectF& rect) const;
    void paintPlateOf(const Bar& bar, const QRectF& rect, bool isTight);

    QPainter& painter_;
    const Frame& frame_;
    const Row& row_;
    double plateEnd_ = std::numeric_limits<double>::lowest();  ///< of the last plate in the row
};

void TroublePainter::paint(const Bar& bar) {
    const auto trouble = frame_.chart->troubleOf(bar);
    if (trouble == Trouble::Nothing || row_.kind == RowKind::ClosedSchool) {
        return;
    }
    const auto rect = frame_.rectOf(bar);
    const bool hasWords = frame_.detail() >= Detail::SmallWords;
    if (!hasWords) {
        const auto run = static_cast<std::size_t>(bar.run);
        const bool isFirst =
            frame_.chart->overlaps[run].other == None && bar.change.trouble == Trouble::Nothing;
        if (!isFirst) {
            paintTick(rect, trouble != Trouble::Tight);
        }
        return;
    }
    paintShared(bar, rect);
    if (row_.kind != RowKind::Route) {
        return;
    }
    if (trouble == Trouble::Short) {
        paintShort(bar, rect);
    } else if (trouble == Trouble::Tight) {
        paintTightStretch(bar, rect);
    }
    paintPlateOf(bar, rect, trouble == Trouble::Tight);
}

/// A tick with ground on either side, so that it is told apart without its colour.
void TroublePainter::paintTick(const QRectF& rect, bool isRed) {
    const double width = 3 * frame_.unit;
    painter_.fillRect(QRectF(rect.left() - 1, rect.top(), width + 2, rect.height()),
                      frame_.colours->ground);
    painter_.fillRect(QRectF(rect.left(), rect.top(), width, rect.height()),
                      isRed ? frame_.colours->red : frame_.colours->amber);
}

void TroublePainter::paintRules(const QRectF& shared) {
    const double width = 2.5 * frame_.unit;
    painter_.fillRect(QRectF(shared.left() - 1, shared.top() - 1, shared.width() + 2, width),
                      frame_.colours->red);
    painter_.fillRect(
        QRectF(shared.left() - 1, shared.bottom() + 1 - width, shared.width() + 2, width),
        frame_.colours->red);
}

void TroublePainter::paintShared(const Bar& bar, const QRectF& rect) {
    const auto run = static_cast<std::size_t>(bar.run);
    const auto& earlier = frame_.chart->overlaps[run];
    const auto& later = frame_.chart->overlapped[run];
    if (earlier.other != None) {
        const QRectF shared(rect.left(), rect.top(),
                            std::max(earlier.seconds / frame_.scale.secondsPerPixel, 2.0),
                            rect.height());
        if (earlier.of == Overlap::Of::Route && row_.kind == RowKind::Route) {
            hatch(painter_, shared, frame_.colours->red, 4 * frame_.unit, 1.4 * frame_.unit);
        }
        paintRules(shared);
    }
    if (later.other != None && (later.of != Overlap::Of::Route || row_.kind != RowKind::Route)) {
        const double left = frame_.x(*frame_.plan->run(later.other).start);
        paintRules({left, rect.top(), std::max(later.seconds / frame_.scale.secondsPerPixel, 2.0),
                    rect.height()});
    }
}

/// The empty trip arrives after the run has begun: the stretch until then.
void TroublePainter::paintShort(const Bar& bar, const QRectF& rect) {
    const double width = std::min(-bar.change.slack / frame_.scale.secondsPerPixel, rect.width());
    const QRectF missed(rect.left(), rect.top(), std::max(width, 3.0), rect.height());
    hatch(painter_, missed, frame_.colours->red, 4 * frame_.unit, 1.4 * frame_.unit);
    paintRules(missed);
}

void TroublePainter::paintTightStretch(const Bar& bar, const QRectF& rect) {
    const double left = frame_.x(bar.change.arrives);
    const double height = 3 * frame_.unit;
    painter_.fillRect(QRectF(left, rect.center().y() - height / 2,
                             std::max(frame_.x(bar.change.sets) - left, 1.0), height),
                      frame_.colours->amber);
}

/// Of the bar, or of the one that it overlaps, whose words the plate would cover.
double TroublePainter::leftOf(const Bar& bar, const QRectF& rect) const {
    const auto& overlap = frame_.chart->overlaps[static_cast<std::size_t>(bar.run)];
    if (overlap.other == None || overlap.of != Overlap::Of::Route) {
        return rect.left();
    }
    const int other = frame_.chart->barOf[static_cast<std::size_t>(overlap.other)];
    return std::min(rect.left(),
                    frame_.rectOf(frame_.chart->bars[static_cast<std::size_t>(other)]).left());
}

void TroublePainter::paintPlateOf(const Bar& bar, const QRectF& rect, bool isTight) {
    const auto text = plateText(*frame_.plan, *frame_.chart, bar);
    if (text.empty()) {
        return;
    }
    const double width = plateWidth(frame_, text);
    double left = leftOf(bar, rect) - width - 4 * frame_.unit;
    if (isTight) {
        const double from = frame_.x(bar.change.arrives);
        const double until = frame_.x(bar.change.sets);
        left = until - from > width ? (from + until - width) / 2
                                    : std::min(left, until - width - 2 * frame_.unit);
    }
    // Of many overlaps at once those are told that can be read; the card tells the others.
    if (left < plateEnd_) {
        return;
    }
    plateEnd_ = left + width;
    const auto& colours = *frame_.colours;
    if (isTight) {
        painter_.setPen(QPen(colours.amberLine, 1));
    } else {
        painter_.setPen(Qt::NoPen);
    }
    paintPlate(painter_, frame_, left, rect.center().y(), text,
               isTight ? colours.amber : colours.red, isTight ? colours.onAmber : colours.onRed);
}

}  // namespace

double plateWidth(const Frame& frame, std::string_view text) {
    return frame.words->width(text, Type::SmallBold) + 8 * frame.unit;
}

void paintPlate(QPainter& painter, const Frame& frame, double left, double y, std::string_view text,
                const QColor& ground, const QColor& ink) {
    const double height = 14 * frame.unit;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(left, y - height / 2, plateWidth(frame, text), height),
                            3 * frame.unit, 3 * frame.unit);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(ink);
    frame.words->draw(painter, left + 4 * frame.unit, y, text, Type::SmallBold);
}

std::optional<QRectF> numberBeside(QPainter& painter, const Frame& frame, const Row& row,
                                   std::size_t place) {
    return BarPainter(painter, frame, row, place).besideRect();
}

void paintBars(QPainter& painter, const Frame& frame, const Row& row, int) {
    if (row.kind == RowKind::ClosedSchool) {
        return;
    }
    const auto bars = frame.chart->barsOf(row);
    for (std::size_t i = 0; i < bars.size(); ++i) {
        if (bars[i].run != frame.held &&
            isInView(frame,
                     frame.rectOf(bars[i]).adjusted(-60 * frame.unit, 0, 60 * frame.unit, 0))) {
            BarPainter(painter, frame, row, i).paint();
        }
    }
}

void paintTroubles(QPainter& painter, const Frame& frame, const Row& row, int) {
    if (row.kind == RowKind::NoTimes) {
        return;
    }
    TroublePainter troubles(painter, frame, row);
    for (const auto& bar : frame.chart->barsOf(row)) {
        const bool touchesHeld =
            frame.held != None && (bar.run == frame.held || bar.change.former == frame.held);
        if (!touchesHeld &&
            isInView(frame, frame.rectOf(bar).adjusted(-160 * frame.unit, 0, 0, 0))) {
            troubles.paint(bar);
        }
    }
}

}  // namespace schedule
