#include "map/ground/strokes.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "map/ground/camera.h"

namespace map {

namespace {

using streets::Piece;

/// Which pieces meet at each node.
class Meetings {
public:
    explicit Meetings(const streets::StreetMap& streets) : first_(streets.nodes.size() + 1) {
        for (const Piece& piece : streets.pieces) {
            ++first_[piece.from + 1];
            ++first_[piece.to + 1];
        }
        for (std::size_t node = 1; node < first_.size(); ++node) {
            first_[node] += first_[node - 1];
        }
        pieces_.resize(streets.pieces.size() * 2);
        std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
        for (std::uint32_t i = 0; i < streets.pieces.size(); ++i) {
            pieces_[next[streets.pieces[i].from]++] = i;
            pieces_[next[streets.pieces[i].to]++] = i;
        }
    }
    [[nodiscard]] std::span<const std::uint32_t> at(std::uint32_t node) const {
        return std::span(pieces_).subspan(first_[node], first_[node + 1] - first_[node]);
    }

private:
    std::vector<std::uint32_t> first_;
    std::vector<std::uint32_t> pieces_;
};

/// A piece as a stroke takes it: along its points or against them.
struct Taken {
    std::uint32_t piece;
    bool against;
};

bool isOneWay(const Piece& piece) { return piece.forward != piece.backward; }

class Joiner {
public:
    Joiner(const streets::StreetMap& streets, const std::vector<std::uint32_t>& closed)
        : streets_(streets),
          meetings_(streets),
          isTaken_(streets.pieces.size()),
          isClosed_(streets.pieces.size()) {
        for (const std::uint32_t piece : closed) {
            isClosed_.at(piece) = true;
        }
        joined_.points.reserve(streets.points.size());
    }

    JoinedStrokes join() {
        for (std::uint32_t piece = 0; piece < streets_.pieces.size(); ++piece) {
            if (!isTaken_[piece] && streets_.pieces[piece].points >= 2) {
                write(chainOf(piece));
            }
        }
        return std::move(joined_);
    }

private:
    /// As it is driven where only one direction is.
    [[nodiscard]] Taken asDriven(std::uint32_t piece) const {
        const Piece& street = streets_.pieces[piece];
        return {piece, isOneWay(street) && street.backward};
    }
    [[nodiscard]] std::uint32_t beginOf(Taken taken) const {
        const Piece& piece = streets_.pieces[taken.piece];
        return taken.against ? piece.to : piece.from;
    }
    [[nodiscard]] std::uint32_t endOf(Taken taken) const {
        return beginOf({taken.piece, !taken.against});
    }
    /// The point that comes so many after its beginning.
    [[nodiscard]] geo::Feet pointOf(Taken taken, std::size_t count) const {
        const auto points = streets_.pointsOf(streets_.pieces[taken.piece]);
        return taken.against ? points[points.size() - 1 - count] : points[count];
    }

    [[nodiscard]] bool goesWith(std::uint32_t one, std::uint32_t other) const {
        const Piece& a = streets_.pieces[one];
        const Piece& b = streets_.pieces[other];
        return a.name == b.name && a.kind == b.kind && isOneWay(a) == isOneWay(b) &&
               isClosed_[one] == isClosed_[other];
    }

    /// How straight `next` goes on behind `last`: 1 straight on, -1 back.
    [[nodiscard]] double straightness(Taken last, Taken next) const {
        const auto size = streets_.pieces[last.piece].points;
        const geo::Feet before = pointOf(last, size - 2);
        const geo::Feet node = pointOf(last, size - 1);
        const geo::Feet behind = pointOf(next, 1);
        const double x1 = node.x - before.x, y1 = node.y - before.y;
        const double x2 = behind.x - node.x, y2 = behind.y - node.y;
        const double lengths = std::hypot(x1, y1) * std::hypot(x2, y2);
        return lengths > 0 ? (x1 * x2 + y1 * y2) / lengths : 1;
    }

    [[nodiscard]] std::optional<Taken> nextOf(Taken last, bool backwards) const {
        std::optional<Taken> best;
        double straightest = -0.5;
        for (const std::uint32_t piece : meetings_.at(endOf(last))) {
            if (isTaken_[piece] || !goesWith(last.piece, piece) ||
                streets_.pieces[piece].points < 2) {
                continue;
            }
            const Taken next{piece, beginOf({piece, false}) != endOf(last)};
            const bool isDriven = !isOneWay(streets_.pieces[piece]) ||
                                  next.against == (asDriven(piece).against != backwards);
            const double straight = isDriven ? straightness(last, next) : -1;
            if (straight > straightest) {
                best = next;
                straightest = straight;
            }
        }
        return best;
    }

    void extend(std::vector<Taken>& chain, bool backwards) {
        while (const auto next = nextOf(chain.back(), backwards)) {
            isTaken_[next->piece] = true;
            chain.push_back(*next);
        }
    }

    [[nodiscard]] static std::vector<Taken> turned(std::vector<Taken> chain) {
        std::ranges::reverse(chain);
        for (Taken& taken : chain) {
            taken.against = !taken.against;
        }
        return chain;
    }

    [[nodiscard]] std::vector<Taken> chainOf(std::uint32_t piece) {
        isTaken_[piece] = true;
        std::vector<Taken> chain{asDriven(piece)};
        extend(chain, false);
        chain = turned(std::move(chain));
        extend(chain, true);
        return turned(std::move(chain));
    }

    void write(const std::vector<Taken>& chain) {
        const Piece& first = streets_.pieces[chain.front().piece];
        JoinedStroke stroke{.kind = first.kind,
                            .name = first.name,
                            .firstPoint = static_cast<std::uint32_t>(joined_.points.size()),
                            .oneWay = isOneWay(first),
                            .closed = isClosed_[chain.front().piece],
                            .box = emptyBox()};
        joined_.points.push_back(pointOf(chain.front(), 0));
        for (const Taken taken : chain) {
            for (std::size_t i = 1; i < streets_.pieces[taken.piece].points; ++i) {
                joined_.points.push_back(pointOf(taken, i));
            }
        }
        stroke.points = static_cast<std::uint32_t>(joined_.points.size()) - stroke.firstPoint;
        for (std::size_t i = stroke.firstPoint; i < joined_.points.size(); ++i) {
            stretch(stroke.box, joined_.points[i]);
        }
        joined_.strokes.push_back(stroke);
    }

    const streets::StreetMap& streets_;
    Meetings meetings_;
    std::vector<bool> isTaken_;
    std::vector<bool> isClosed_;
    JoinedStrokes joined_;
};

}  // namespace

JoinedStrokes joinedStrokes(const streets::StreetMap& streets,
                            const std::vector<std::uint32_t>& closed) {
    return Joiner(streets, closed).join();
}

}  // namespace map
