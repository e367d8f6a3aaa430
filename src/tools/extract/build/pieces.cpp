#include "tools/extract/build/pieces.h"

#include <algorithm>
#include <numeric>

#include "tools/extract/build/geometry.h"

namespace tools::extract {

namespace {

using streets::Node;
using streets::Piece;
using streets::StreetClass;

constexpr double StreetThinning = 1;      // feet
constexpr double SignalBeforeFeet = 150;  // from a stop line to its crossing
constexpr double SamePlace = 1.0 / 8;     // feet; the file keeps sixteenths

/// A run of known points of a way, none twice in a row.
using Run = std::vector<std::uint32_t>;

/// What is known of each point of the extract.
struct PointUse {
    std::uint8_t arms = 0;  ///< ways out of it, along streets for vehicles
    bool isCut = false;
    PointTraits traits = {};
};

/// Streets that still lack the places of their points: these are four times as large as the
/// points' numbers, and follow once the pieces are sorted.
struct UnsortedStreets {
    CutStreets cut;
    std::vector<std::uint32_t> points;  ///< of all pieces, by their numbers in the extract
};

class Cutter {
public:
    Cutter(const Extract& extract, std::span<const geo::Feet> places, NameTable& names)
        : extract_(extract),
          places_(places),
          names_(names),
          uses_(places.size()),
          sameAs_(places.size()) {
        std::iota(sameAs_.begin(), sameAs_.end(), 0U);
        cut_.nodeOf.assign(places.size(), CutStreets::None);
    }

    UnsortedStreets cut() {
        for (const auto& [node, traits] : extract_.marks) {
            uses_[node].traits = traits;
        }
        forEachRun([&](const Run& run, const ExtractWay&) { joinSamePlaces(run); });
        forEachRun([&](const Run& run, const ExtractWay& way) { countArms(run, way); });
        setCuts();
        forEachRun([&](const Run& run, const ExtractWay& way) { giveSignals(run, way); });
        forEachRun([&](const Run& run, const ExtractWay& way) { cutRun(run, way); });
        for (std::uint32_t i = 0; i < sameAs_.size(); ++i) {
            cut_.nodeOf[i] = cut_.nodeOf[same(i)];
        }
        return {std::move(cut_), std::move(points_)};
    }

private:
    template <class Take>
    void forEachRun(const Take& take) {
        for (const ExtractWay& way : extract_.ways) {
            if (way.street < 0) {
                continue;
            }
            Run run;
            for (const std::uint32_t node : way.nodes) {
                if (node == ExtractWay::Missing) {
                    takeRun(run, way, take);
                } else if (run.empty() || run.back() != same(node)) {
                    run.push_back(same(node));
                }
            }
            takeRun(run, way, take);
        }
    }

    template <class Take>
    void takeRun(Run& run, const ExtractWay& way, const Take& take) {
        if (run.size() > 1) {
            take(run, way);
        }
        run.clear();
    }

    [[nodiscard]] const StreetTraits& street(const ExtractWay& way) const {
        return extract_.streets[static_cast<std::size_t>(way.street)];
    }
    [[nodiscard]] bool isForVehicles(const ExtractWay& way) const {
        return street(way).kind != StreetClass::Footway;
    }

    [[nodiscard]] std::uint32_t same(std::uint32_t node) {
        while (sameAs_[node] != node) {
            node = sameAs_[node] = sameAs_[sameAs_[node]];
        }
        return node;
    }

    /// Points one upon the other would leave streets without length between them.
    void joinSamePlaces(const Run& run) {
        for (std::size_t i = 1; i < run.size(); ++i) {
            if (feetBetween(places_[run[i - 1]], places_[run[i]]) < SamePlace) {
                const std::uint32_t gone = same(run[i]);
                const std::uint32_t stays = same(run[i - 1]);
                sameAs_[gone] = stays;
            }
        }
    }

    void countArms(const Run& run, const ExtractWay& way) {
        if (!isForVehicles(way)) {
            return;
        }
        constexpr std::uint8_t Many = 200;
        for (std::size_t i = 0; i < run.size(); ++i) {
            const bool isEnd = i == 0 || i + 1 == run.size();
            PointUse& use = uses_[run[i]];
            use.arms = static_cast<std::uint8_t>(std::min<int>(Many, use.arms + (isEnd ? 1 : 2)));
            use.isCut = use.isCut || isEnd;
        }
    }

    void setCuts() {
        for (PointUse& use : uses_) {
            use.isCut = use.isCut || use.arms > 2 || use.traits.levelCrossing ||
                        use.traits.turningCircle || use.traits.barrier;
        }
    }

    void giveSignals(const Run& run, const ExtractWay& way) {
        for (std::size_t i = 0; i < run.size() && isForVehicles(way); ++i) {
            if (!uses_[run[i]].traits.signal || uses_[run[i]].arms > 2) {
                continue;
            }
            const std::uint32_t crossing =
                std::min(crossingBeyond(run, i, 1), crossingBeyond(run, i, -1), [](auto a, auto b) {
                    return a.feet < b.feet;
                }).node;
            if (crossing == CutStreets::None) {
                uses_[run[i]].isCut = true;
            } else {
                uses_[run[i]].traits.signal = false;
                uses_[crossing].traits.signal = true;
            }
        }
    }

    struct Crossing {
        std::uint32_t node = CutStreets::None;
        double feet = std::numeric_limits<double>::infinity();
    };

    /// The next crossing along the run.
    [[nodiscard]] Crossing crossingBeyond(const Run& run, std::size_t from, int step) const {
        double feet = 0;
        for (std::size_t i = from; feet <= SignalBeforeFeet;) {
            if (uses_[run[i]].arms > 2) {
                return {run[i], feet};
            }
            if ((step < 0 && i == 0) || (step > 0 && i + 1 == run.size())) {
                break;
            }
            const std::size_t next = step < 0 ? i - 1 : i + 1;
            feet += feetBetween(places_[run[i]], places_[run[next]]);
            i = next;
        }
        return {};
    }

    void cutRun(const Run& run, const ExtractWay& way) {
        std::size_t first = 0;
        for (std::size_t i = 1; i < run.size(); ++i) {
            if (i + 1 == run.size() || (isForVehicles(way) && uses_[run[i]].isCut)) {
                addLoopless(std::span(run).subspan(first, i + 1 - first), way);
                first = i;
            }
        }
    }

    /// One that comes back to its beginning becomes two, so that its directions stay apart.
    void addLoopless(std::span<const std::uint32_t> part, const ExtractWay& way) {
        const bool isLoop = part.front() == part.back();
        if (isLoop && part.size() < 3) {
            return;
        }
        const std::size_t middle = isLoop ? part.size() / 2 : part.size() - 1;
        add(part.subspan(0, middle + 1), way);
        if (isLoop) {
            uses_[part[middle]].isCut = true;
            add(part.subspan(middle), way);
        }
    }

    void add(std::span<const std::uint32_t> part, const ExtractWay& way) {
        const auto line = thinned(part, places_, StreetThinning);
        const StreetTraits& traits = street(way);
        cut_.piecesOfWays.emplace_back(static_cast<std::uint32_t>(&way - extract_.ways.data()),
                                       static_cast<std::uint32_t>(cut_.pieces.size()));
        cut_.pieces.push_back({.from = nodeAt(part.front()),
                               .to = nodeAt(part.back()),
                               .name = names_.numberOf(traits.name),
                               .firstPoint = static_cast<std::uint32_t>(points_.size()),
                               .points = static_cast<std::uint32_t>(line.size()),
                               .feet = static_cast<float>(lengthOf(placesAlong(line, places_))),
                               .kind = traits.kind,
                               .milesPerHour = traits.milesPerHour,
                               .forward = traits.forward,
                               .backward = traits.backward,
                               .roundabout = traits.roundabout,
                               .clearanceInches = traits.clearanceInches,
                               .weightTenths = traits.weightTenths});
        points_.insert(points_.end(), line.begin(), line.end());
    }

    /// Beside a barrier each street has an end of its own.
    std::uint32_t nodeAt(std::uint32_t point) {
        std::uint32_t& known = cut_.nodeOf[point];
        const PointTraits& traits = uses_[point].traits;
        if (known == CutStreets::None || traits.barrier) {
            known = static_cast<std::uint32_t>(cut_.nodes.size());
            cut_.nodes.push_back({.at = places_[point],
                                  .signal = traits.signal,
                                  .turningCircle = traits.turningCircle,
                                  .levelCrossing = traits.levelCrossing});
        }
        return known;
    }

    const Extract& extract_;
    std::span<const geo::Feet> places_;
    NameTable& names_;
    std::vector<PointUse> uses_;
    std::vector<std::uint32_t> sameAs_;
    CutStreets cut_;
    std::vector<std::uint32_t> points_;
};

/// The old number of each new one, sorted by what `key` says of the old.
template <class Key>
std::vector<std::uint32_t> orderBy(std::size_t count, const Key& key) {
    std::vector<std::pair<std::uint64_t, std::uint32_t>> keyed;
    keyed.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        keyed.emplace_back(key(i), i);
    }
    std::ranges::sort(keyed);
    std::vector<std::uint32_t> order;
    order.reserve(count);
    std::ranges::transform(keyed, std::back_inserter(order),
                           [](const auto& one) { return one.second; });
    return order;
}

/// The new number of each old one.
std::vector<std::uint32_t> inverse(const std::vector<std::uint32_t>& order) {
    std::vector<std::uint32_t> numbers(order.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) {
        numbers[order[i]] = i;
    }
    return numbers;
}

void sortNodes(CutStreets& cut, const geo::Feet& centre) {
    const auto order = orderBy(cut.nodes.size(), [&](std::uint32_t i) {
        const geo::Feet& at = cut.nodes[i].at;
        return placeOrder({at.x - centre.x, at.y - centre.y});
    });
    const auto numbers = inverse(order);
    std::vector<Node> nodes;
    nodes.reserve(order.size());
    for (const std::uint32_t old : order) {
        nodes.push_back(cut.nodes[old]);
    }
    cut.nodes = std::move(nodes);
    for (Piece& piece : cut.pieces) {
        piece.from = numbers[piece.from];
        piece.to = numbers[piece.to];
    }
    for (std::uint32_t& node : cut.nodeOf) {
        node = node == CutStreets::None ? node : numbers[node];
    }
}

/// Gives them the places of their points, too.
void sortPieces(CutStreets& cut, std::span<const std::uint32_t> points,
                std::span<const geo::Feet> places) {
    const auto order =
        orderBy(cut.pieces.size(), [&](std::uint32_t i) { return cut.pieces[i].from; });
    const auto numbers = inverse(order);
    std::vector<Piece> pieces;
    pieces.reserve(order.size());
    cut.points.reserve(points.size());
    for (const std::uint32_t old : order) {
        Piece piece = cut.pieces[old];
        for (const std::uint32_t point : points.subspan(piece.firstPoint, piece.points)) {
            cut.points.push_back(places[point]);
        }
        piece.firstPoint = static_cast<std::uint32_t>(cut.points.size()) - piece.points;
        pieces.push_back(piece);
    }
    cut.pieces = std::move(pieces);
    for (auto& [way, piece] : cut.piecesOfWays) {
        piece = numbers[piece];
    }
    std::ranges::sort(cut.piecesOfWays);
}

}  // namespace

std::vector<std::uint32_t> CutStreets::piecesOf(std::uint32_t way) const {
    std::vector<std::uint32_t> found;
    for (auto at = std::ranges::lower_bound(piecesOfWays, std::pair{way, 0U});
         at != piecesOfWays.end() && at->first == way; ++at) {
        found.push_back(at->second);
    }
    return found;
}

CutStreets cutStreets(const Extract& extract, std::span<const geo::Feet> places,
                      const geo::Feet& centre, NameTable& names) {
    auto [cut, points] = Cutter(extract, places, names).cut();
    sortNodes(cut, centre);
    sortPieces(cut, points, places);
    return std::move(cut);
}

}  // namespace tools::extract
