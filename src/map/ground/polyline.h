#pragma once

#include <QPointF>
#include <QRectF>
#include <span>
#include <vector>

/// Lines of a picture, in pixels; y grows downwards.
namespace map {

using Line = std::vector<QPointF>;

/// A place on a line and where the line goes there, as a unit vector.
struct LinePlace {
    QPointF at;
    QPointF along;
};

/// A line that is walked by its length.
class MeasuredLine {
public:
    explicit MeasuredLine(Line points);

    [[nodiscard]] double length() const { return ends_.empty() ? 0 : ends_.back(); }
    [[nodiscard]] const Line& points() const { return points_; }
    /// So many pixels after its beginning; the ends go no farther.
    [[nodiscard]] LinePlace at(double pixels) const;

private:
    Line points_;
    std::vector<double> ends_;  ///< of the segments, from the line's beginning
};

/// A part of a line.
struct LinePart {
    Line points;
    double from = 0;  ///< pixels from the line's beginning
};

/// What of a line lies in a rectangle, in its order.
[[nodiscard]] std::vector<LinePart> clipped(std::span<const QPointF> line, const QRectF& to);

/// A place each so many pixels, counted from the beginning of the whole line, so that they stand
/// still while another part of it is seen.
[[nodiscard]] std::vector<LinePlace> placesAlong(const LinePart& part, double apart);

/// Without the points that the line passes within so many pixels; both ends stay.
[[nodiscard]] Line simplified(std::span<const QPointF> line, double pixels);

/// The line beside this one, on the right of who walks it, by so many pixels for each segment.
[[nodiscard]] Line beside(std::span<const QPointF> line, std::span<const double> pixels);
[[nodiscard]] Line beside(std::span<const QPointF> line, double pixels);

/// How far a place is from the line.
[[nodiscard]] double distanceTo(std::span<const QPointF> line, QPointF place);

[[nodiscard]] inline double dot(QPointF one, QPointF other) {
    return QPointF::dotProduct(one, other);
}
[[nodiscard]] double lengthOf(QPointF way);
/// A quarter turn to the right of who walks this way.
[[nodiscard]] inline QPointF rightOf(QPointF way) { return {-way.y(), way.x()}; }

}  // namespace map
