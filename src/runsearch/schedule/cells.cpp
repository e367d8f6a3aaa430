#include <QImage>
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "runsearch/schedule/frame.h"

namespace schedule {

namespace {

constexpr double CellPixels = 2;
/// Shades of a zone in the cells, from 18 to 100 % of its colour.
constexpr int Shades = 17;
constexpr double PalestShade = 0.18;

/// One colour as it is laid over something else and as it is over plain ground.
struct CellColour {
    QRgb over = 0;  ///< premultiplied
    QRgb onGround = 0;
};

QRgb laidOver(QRgb over, QRgb ground) {
    const int rest = 255 - qAlpha(over);
    const auto mixed = [&](int a, int b) { return a + b * rest / 255; };
    return qRgb(mixed(qRed(over), qRed(ground)), mixed(qGreen(over), qGreen(ground)),
                mixed(qBlue(over), qBlue(ground)));
}

/// What of one line of cells changes from each cell to the next: how many bars of each zone, how
/// many in all, how many that overlap. Bars are added by their two ends; a cell is looked at anew
/// only where one begins or ends.
class CellLine {
public:
    /// `size` is that of a cell on the axis of the frame.
    CellLine(const Frame& frame, double size);

    void add(const Bar& bar);
    /// Tells each stretch of cells of one colour by its first cell and the one behind its last, and
    /// forgets all bars.
    void take(auto&& stretch);

private:
    static constexpr std::size_t Zones = 6;  ///< the fifth begins again; the last is none
    static constexpr std::size_t All = 6;
    static constexpr std::size_t Red = 7;
    static constexpr std::size_t Bits = 64;
    using Counts = std::array<std::int16_t, 8>;

    void mark(std::size_t kind, double from, double until);
    [[nodiscard]] CellColour mixed(QColor colour, double share) const;
    [[nodiscard]] const CellColour& colourOf(const Counts& counts) const;
    void change(std::size_t cell, std::size_t kind, int by);

    const Frame& frame_;
    double size_;
    double full_;  ///< bars of a cell that is wholly in use
    std::size_t cells_;
    std::vector<Counts> changes_;          ///< by cell
    std::vector<std::uint64_t> isChange_;  ///< a cell a bit, so that the others are passed over
    std::array<CellColour, Zones * Shades> table_{};
    CellColour nothing_, red_;
};

CellLine::CellLine(const Frame& frame, double size)
    : frame_(frame),
      size_(size),
      full_(std::max(size / frame.rowHeight, 1.0)),
      cells_(static_cast<std::size_t>(frame.plot.width() / size) + 1),
      changes_(cells_ + 1),
      isChange_(cells_ / Bits + 1),
      nothing_(mixed(frame.colours->ground, 0)),
      red_(mixed(frame.colours->red, 1)) {
    for (std::size_t i = 0; i < table_.size(); ++i) {
        const auto zone = i / Shades;
        const double shade = static_cast<double>(i % Shades) / (Shades - 1);
        table_[i] = mixed(zone + 1 == Zones ? frame.colours->noZone.edge
                                            : frame.colours->zone(static_cast<int>(zone)).solid,
                          PalestShade + (1 - PalestShade) * shade);
    }
}

CellColour CellLine::mixed(QColor colour, double share) const {
    colour.setAlphaF(static_cast<float>(share));
    const auto over = qPremultiply(colour.rgba());
    return {over, laidOver(over, frame_.colours->ground.rgb())};
}

/// Every cell from one x to another, at least one; of them those that are in view.
void CellLine::mark(std::size_t kind, double from, double until) {
    const double first = std::floor(from / size_);
    const double last = std::max(std::floor(until / size_), first + 1);
    const auto cells = static_cast<double>(cells_);
    if (last > 0 && first < cells) {
        change(static_cast<std::size_t>(std::max(first, 0.0)), kind, 1);
        change(static_cast<std::size_t>(std::min(last, cells)), kind, -1);
    }
}

void CellLine::change(std::size_t cell, std::size_t kind, int by) {
    auto& count = changes_[cell][kind];
    count = static_cast<std::int16_t>(count + by);
    isChange_[cell / Bits] |= std::uint64_t{1} << cell % Bits;
}

void CellLine::add(const Bar& bar) {
    const double from = frame_.scale.xOf(bar.start);
    const double until = frame_.scale.xOf(bar.end);
    if (frame_.isFaded(bar)) {
        return;
    }
    mark(bar.zone == None ? Zones - 1 : static_cast<std::size_t>(bar.zone) % (Zones - 1), from,
         until);
    mark(All, from, until);
    const auto& overlap = frame_.chart->overlaps[static_cast<std::size_t>(bar.run)];
    const double shared = frame_.scale.xOf(bar.start + overlap.seconds) + size_;
    if (overlap.other != None) {
        mark(Red, from, std::min(shared, until));
    }
}

const CellColour& CellLine::colourOf(const Counts& counts) const {
    if (counts[All] == 0 || counts[Red] > 0) {
        return counts[All] == 0 ? nothing_ : red_;
    }
    const auto shade = std::min(static_cast<int>(counts[All] / full_ * (Shades - 1)), Shades - 1);
    const auto* most = std::max_element(counts.begin(), counts.begin() + Zones);
    return table_[static_cast<std::size_t>(most - counts.begin()) * Shades +
                  static_cast<std::size_t>(shade)];
}

void CellLine::take(auto&& stretch) {
    Counts counts{};
    std::size_t from = 0;
    for (std::size_t word = 0; word < isChange_.size(); ++word) {
        for (; isChange_[word] != 0; isChange_[word] &= isChange_[word] - 1) {
            const auto cell =
                word * Bits + static_cast<std::size_t>(std::countr_zero(isChange_[word]));
            stretch(from, cell, colourOf(counts));
            from = cell;
            for (std::size_t kind = 0; kind < counts.size(); ++kind) {
                counts[kind] = static_cast<std::int16_t>(counts[kind] + changes_[cell][kind]);
            }
            changes_[cell] = {};
        }
    }
    stretch(from, cells_, colourOf(counts));
}

/// The cells with the ground, the hours and the peak behind them, in one picture of the plot: of
/// many small things none is worth a call to the painter.
class CellPicture {
public:
    /// `ratio` is pixels of the device for one of the frame.
    CellPicture(const Frame& frame, double ratio);

    [[nodiscard]] QImage painted();

private:
    /// A pixel that is not plain ground, on every line of the picture or on dashes.
    struct Mark {
        std::size_t x = 0;
        QRgb colour = 0;
        bool isDashed = false;
        QRgb over = 0;  ///< what is laid over it on the line that is being painted
    };

    void findMarks();
    void paintLine(int y, int below);
    void writeMarks(QRgb* pixels, int y) const;

    const Frame& frame_;
    double ratio_;
    int cell_;  ///< pixels of the device
    QImage image_;
    CellLine line_;
    std::vector<Mark> marks_;  ///< by x
};

CellPicture::CellPicture(const Frame& frame, double ratio)
    : frame_(frame),
      ratio_(ratio),
      cell_(std::max(1, qRound(CellPixels * ratio))),
      image_((frame.plot.size() * ratio).toSize(), QImage::Format_RGB32),
      line_(frame, cell_ / ratio) {
    findMarks();
}

void CellPicture::findMarks() {
    QImage strip(image_.width(), 1, QImage::Format_RGB32);
    strip.fill(frame_.colours->ground);
    QPainter painter(&strip);
    painter.scale(ratio_, ratio_);
    painter.translate(-frame_.plot.topLeft());
    paintGrid(painter, frame_, frame_.plot);
    painter.end();
    const auto* pixels = reinterpret_cast<const QRgb*>(strip.constScanLine(0));
    const auto peak = frame_.chart->buses.withRiders.peak();
    const auto peakAt = std::floor(frame_.scale.xOf(peak.at) * ratio_);
    for (int x = 0; x < image_.width(); ++x) {
        const bool isPeak = peak.count > 0 && x == peakAt;
        if (isPeak || pixels[x] != frame_.colours->ground.rgb()) {
            marks_.push_back({static_cast<std::size_t>(x),
                              isPeak ? frame_.colours->idle.rgb() : pixels[x], isPeak});
        }
    }
}

void CellPicture::writeMarks(QRgb* pixels, int y) const {
    constexpr int Dash = 4;
    constexpr int DashAndGap = 6;
    for (const auto& mark : marks_) {
        if (!mark.isDashed || y % DashAndGap < Dash) {
            pixels[mark.x] = laidOver(mark.over, mark.colour);
        }
    }
}

/// What was added, from one line of pixels to another.
void CellPicture::paintLine(int y, int below) {
    auto* pixels = reinterpret_cast<QRgb*>(image_.scanLine(y));
    const auto width = static_cast<std::size_t>(image_.width());
    const auto size = static_cast<std::size_t>(cell_);
    auto mark = marks_.begin();
    line_.take([&](std::size_t from, std::size_t until, const CellColour& colour) {
        const auto right = std::min(until * size, width);
        std::fill(pixels + std::min(from * size, right), pixels + right, colour.onGround);
        for (; mark != marks_.end() && mark->x < right; ++mark) {
            mark->over = colour.over;
        }
    });
    for (int next = y + 1; next < below; ++next) {
        auto* line = reinterpret_cast<QRgb*>(image_.scanLine(next));
        std::copy_n(pixels, width, line);
        writeMarks(line, next);
    }
    writeMarks(pixels, y);
}

QImage CellPicture::painted() {
    auto [row, last] = frame_.rowsInView();
    for (int y = 0; y < image_.height(); y += cell_) {
        const double until = frame_.plot.top() + (y + cell_) / ratio_;
        for (; row < last && frame_.y(row) < until; ++row) {
            const auto& each = frame_.chart->rows[static_cast<std::size_t>(row)];
            if (each.kind != RowKind::NoTimes) {
                std::ranges::for_each(frame_.chart->barsOf(each),
                                      [&](const Bar& bar) { line_.add(bar); });
            }
        }
        paintLine(y, std::min(y + cell_, image_.height()));
    }
    image_.setDevicePixelRatio(ratio_);
    return image_;
}

}  // namespace

void paintCells(QPainter& painter, const Frame& frame) {
    const auto ratio = painter.device()->devicePixelRatioF();
    painter.drawImage(frame.plot.topLeft(), CellPicture(frame, ratio).painted());
}

}  // namespace schedule
