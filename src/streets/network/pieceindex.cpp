#include "streets/network/pieceindex.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace streets {

namespace {

constexpr double SmallestCellFeet = 500;
constexpr double MostCells = 2e6;

Box emptyBox() {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    return {{Infinity, Infinity}, {-Infinity, -Infinity}};
}

void extend(Box& box, geo::Feet place) {
    box.low = {std::min(box.low.x, place.x), std::min(box.low.y, place.y)};
    box.high = {std::max(box.high.x, place.x), std::max(box.high.y, place.y)};
}

}  // namespace

Box PieceIndex::boxOf(const Piece& piece) const {
    Box box = emptyBox();
    for (const geo::Feet& place : map_.pointsOf(piece)) {
        extend(box, place);
    }
    return box;
}

PieceIndex::PieceIndex(const StreetMap& map, const std::function<bool(std::uint32_t)>& isWanted)
    : map_(map), cellFeet_(SmallestCellFeet) {
    std::vector<std::pair<std::uint32_t, Box>> wanted;
    Box all = emptyBox();
    for (std::uint32_t i = 0; i < map.pieces.size(); ++i) {
        if (isWanted(i)) {
            wanted.emplace_back(i, boxOf(map.pieces[i]));
            extend(all, wanted.back().second.low);
            extend(all, wanted.back().second.high);
        }
    }
    if (!wanted.empty()) {
        low_ = all.low;
        const double width = all.high.x - all.low.x;
        const double height = all.high.y - all.low.y;
        cellFeet_ = std::max(SmallestCellFeet, std::sqrt(width * height / MostCells));
        columns_ = static_cast<std::int64_t>(width / cellFeet_) + 1;
        rows_ = static_cast<std::int64_t>(height / cellFeet_) + 1;
    }
    firstPiece_.assign(static_cast<std::size_t>(columns_ * rows_) + 1, 0);
    const auto forEachPlace = [&](const auto& take) {
        for (const auto& wantedPiece : wanted) {
            forEachCell(cellsOf(wantedPiece.second),
                        [&](std::size_t cell) { take(cell, wantedPiece.first); });
        }
    };
    forEachPlace([&](std::size_t cell, std::uint32_t) { ++firstPiece_[cell + 1]; });
    for (std::size_t i = 1; i < firstPiece_.size(); ++i) {
        firstPiece_[i] += firstPiece_[i - 1];
    }
    pieces_.resize(firstPiece_.back());
    auto next = firstPiece_;
    forEachPlace([&](std::size_t cell, std::uint32_t piece) { pieces_[next[cell]++] = piece; });
}

PieceIndex::Cells PieceIndex::cellsOf(const Box& box) const {
    const auto cell = [&](double feet, double low, std::int64_t count) {
        const double at = std::floor((feet - low) / cellFeet_);
        return static_cast<std::int64_t>(std::clamp(at, 0.0, static_cast<double>(count - 1)));
    };
    return {cell(box.low.x, low_.x, columns_), cell(box.low.y, low_.y, rows_),
            cell(box.high.x, low_.x, columns_), cell(box.high.y, low_.y, rows_)};
}

template <typename Take>
void PieceIndex::forEachCell(const Cells& cells, Take take) const {
    for (std::int64_t row = cells.low; row <= cells.high; ++row) {
        for (std::int64_t column = cells.left; column <= cells.right; ++column) {
            take(static_cast<std::size_t>(row * columns_ + column));
        }
    }
}

std::vector<NearPiece> PieceIndex::near(geo::Feet place, double feet) const {
    std::vector<std::uint32_t> found;
    forEachCell(cellsOf({{place.x - feet, place.y - feet}, {place.x + feet, place.y + feet}}),
                [&](std::size_t cell) {
                    found.insert(found.end(), pieces_.begin() + firstPiece_[cell],
                                 pieces_.begin() + firstPiece_[cell + 1]);
                });
    std::ranges::sort(found);
    found.erase(std::unique(found.begin(), found.end()), found.end());
    std::vector<NearPiece> near;
    for (const std::uint32_t piece : found) {
        const Foot foot = nearestFoot(map_.pointsOf(map_.pieces[piece]), place);
        if (foot.distance <= feet) {
            near.push_back({piece, foot});
        }
    }
    std::ranges::stable_sort(near, {}, [](const NearPiece& one) { return one.foot.distance; });
    return near;
}

}  // namespace streets
