#include "runsearch/schedule/legend.h"

#include <QPainter>
#include <QPicture>

#include <fmt/format.h>

#include "platform/controls/access.h"
#include "platform/controls/qtext.h"
#include "runsearch/schedule/hovercard.h"

namespace schedule {

namespace {

constexpr double Height = 22;
constexpr double Swatch = 18;
constexpr double SwatchHeight = 13;
constexpr double LineHeight = 18;

/// Writes entries one after another while there is room, in as many lines as the area has.
class LegendPainter {
public:
    LegendPainter(QPainter& painter, const Frame& frame, const QRectF& area)
        : painter_(painter),
          frame_(frame),
          area_(area),
          x_(area.left()),
          y_(area.height() < 2 * LineHeight * frame.unit
                 ? area.center().y()
                 : area.top() + LineHeight * frame.unit / 2) {}

    void paint();
    /// How many lines it has written.
    [[nodiscard]] int lines() const {
        return 1 + qRound((y_ - area_.top()) / (LineHeight * unit()) - 0.5);
    }
    /// The entries that were written, parted by commas.
    [[nodiscard]] const std::string& said() const { return said_; }

private:
    using Sample = std::function<void(const QRectF&)>;
    void entry(const std::string& text, const Sample& sample, double width = Swatch);
    void zoneEntry(const std::string& text, int zone);
    void lineEntry(const std::string& text, Qt::PenStyle style, double height, bool garage);
    void tick(const std::string& text, const QColor& colour);
    void paintSmall();
    void paintFull();
    [[nodiscard]] double unit() const { return frame_.unit; }

    QPainter& painter_;
    const Frame& frame_;
    QRectF area_;
    double x_;
    double y_;  ///< the middle of a line
    std::string said_;
};

void LegendPainter::entry(const std::string& text, const Sample& sample, double width) {
    const double needed = (width + 6) * unit() + frame_.words->width(text, Type::Normal);
    const double half = LineHeight * unit() / 2;
    if (x_ + needed > area_.right() && y_ + 3 * half <= area_.bottom()) {
        x_ = area_.left();
        y_ += 2 * half;
    }
    if (x_ + needed > area_.right()) {
        return;
    }
    const double y = y_;
    said_ += (said_.empty() ? "" : ", ") + text;
    sample({x_, y - SwatchHeight * unit() / 2, width * unit(), SwatchHeight * unit()});
    painter_.setPen(frame_.colours->soft);
    frame_.words->draw(painter_, x_ + (width + 5) * unit(), y, text, Type::Normal);
    x_ += needed + 12 * unit();
}

void LegendPainter::zoneEntry(const std::string& text, int zone) {
    const auto colours = frame_.colours->zone(zone);
    const bool isSmall = frame_.detail() < Detail::Outlined;
    entry(text, [&](const QRectF& rect) {
        painter_.fillRect(rect, isSmall ? colours.solid : colours.edge);
        if (!isSmall || zone == None) {
            painter_.fillRect(rect, colours.edge);
            painter_.fillRect(rect.adjusted(isSmall ? 1 : 3, 1, -1, -1),
                              isSmall ? frame_.colours->ground : colours.fill);
        }
        if (zone == None && !isSmall) {
            painter_.fillRect(rect.adjusted(1, 1, -1, -1), QBrush(colours.edge, Qt::BDiagPattern));
        }
    });
}

void LegendPainter::lineEntry(const std::string& text, Qt::PenStyle style, double height,
                              bool garage) {
    entry(text, [&](const QRectF& rect) {
        const double y = rect.center().y();
        painter_.setPen(
            QPen(style == Qt::SolidLine ? frame_.colours->emptyTrip : frame_.colours->soft, height,
                 style, Qt::FlatCap));
        painter_.drawLine(QPointF(rect.left(), y), QPointF(rect.right(), y));
        if (garage) {
            painter_.fillRect(QRectF(rect.left(), y - 4 * unit(), 5 * unit(), 8 * unit()),
                              frame_.colours->emptyTrip);
        }
    });
}

void LegendPainter::tick(const std::string& text, const QColor& colour) {
    entry(
        text,
        [&](const QRectF& rect) {
            painter_.fillRect(rect.adjusted(0, 4 * unit(), 0, -4 * unit()), colour);
        },
        3);
}

void LegendPainter::paintSmall() {
    lineEntry("Empty", Qt::SolidLine, 1, false);
    if (frame_.chart->layout.order == Order::ByRoute) {
        tick("Overlap, or empty trip too long", frame_.colours->red);
        tick(fmt::format("Under {} min", frame_.chart->layout.tightUnder / Minute),
             frame_.colours->amber);
    }
}

void LegendPainter::paintFull() {
    const auto& colours = *frame_.colours;
    const bool byRoute = frame_.chart->layout.order == Order::ByRoute;
    if (byRoute) {
        entry(
            "Bell",
            [&](const QRectF& rect) {
                painter_.fillRect(QRectF(rect.center().x() - 0.8, rect.top(), 1.6, rect.height()),
                                  colours.words);
                painter_.setPen(Qt::NoPen);
                painter_.setBrush(colours.words);
                painter_.drawEllipse(QPointF(rect.center().x(), rect.top() + 2.8), 2.8, 2.8);
            },
            6);
        lineEntry("Empty, from garage", Qt::SolidLine, 3 * unit(), true);
        lineEntry("Idle", Qt::DotLine, 1, false);
        const auto minutes = std::to_string(frame_.chart->layout.tightUnder / Minute);
        entry(
            "Under " + minutes + " min",
            [&](const QRectF& rect) {
                painter_.setPen(QPen(colours.amberLine, 1));
                paintPlate(painter_, frame_, rect.left(), rect.center().y(), "9", colours.amber,
                           colours.onAmber);
            },
            20);
    }
    entry("Overlap", [&](const QRectF& rect) {
        painter_.fillRect(rect, QBrush(colours.red, Qt::BDiagPattern));
        painter_.fillRect(QRectF(rect.left(), rect.top(), rect.width(), 2.5), colours.red);
        painter_.fillRect(QRectF(rect.left(), rect.bottom() - 2.5, rect.width(), 2.5), colours.red);
    });
    entry(
        "To be resolved",
        [&](const QRectF& rect) {
            painter_.fillRect(rect, QBrush(colours.zone(1).edge, Qt::BDiagPattern));
        },
        7);
    entry(
        "Warnings",
        [&](const QRectF& rect) {
            painter_.setPen(Qt::NoPen);
            painter_.setBrush(colours.words);
            painter_.drawPolygon(
                QPolygonF{rect.topLeft(), rect.topRight(), {rect.right(), rect.top() + 8}});
        },
        8);
}

void LegendPainter::paint() {
    for (std::size_t i = 0; i < frame_.plan->zones.size(); ++i) {
        zoneEntry(frame_.plan->zones[i].name, static_cast<int>(i));
    }
    zoneEntry("No zone", None);
    if (frame_.detail() == Detail::Cells) {
        tick("Overlap", frame_.colours->red);
    } else if (frame_.detail() < Detail::SmallWords) {
        paintSmall();
    } else {
        paintFull();
    }
}

}  // namespace

void paintLegend(QPainter& painter, const Frame& frame, const QRectF& area) {
    LegendPainter(painter, frame, area).paint();
}

Legend::Legend(QWidget* parent) : QWidget(parent) {
    controls::makeAccessible<Legend, controls::PictureAccess>();
}

void Legend::show(const Frame& frame) {
    const auto& layout = frame.chart->layout;
    Shown shown{frame.plan->zones, layout.order, layout.tightUnder,
                frame.detail(),    frame.unit,   frame.colours};
    frame_ = frame;
    if (words_ == nullptr || shown != shown_) {
        words_ = std::make_unique<Words>(font(), frame.unit);
        shown_ = std::move(shown);
        frame_.words = words_.get();
        fitLines();
        update();
    }
    frame_.words = words_.get();
}

void Legend::fitLines() {
    if (frame_.chart == nullptr || frame_.words == nullptr) {
        return;
    }
    constexpr double MostLines = 4;
    QPicture nothing;
    QPainter painter(&nothing);
    LegendPainter trial(painter, frame_,
                        QRectF(0, 0, width(), MostLines * LineHeight * frame_.unit));
    trial.paint();
    setAccessibleName(tr("Legend: %1").arg(controls::toQt(trial.said())));
    if (const int lines = trial.lines(); lines != lines_) {
        lines_ = lines;
        updateGeometry();
    }
}

void Legend::resizeEvent(QResizeEvent*) { fitLines(); }

QSize Legend::sizeHint() const {
    const double height = lines_ == 1 ? Height : LineHeight * lines_;
    return {600, qCeil(height * std::max(frame_.unit, 1.0))};
}

void Legend::paintEvent(QPaintEvent*) {
    if (frame_.chart != nullptr) {
        QPainter painter(this);
        paintLegend(painter, frame_, rect());
    }
}

}  // namespace schedule
