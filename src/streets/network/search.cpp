#include "streets/network/search.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace streets {

constexpr double SamePlace = 0.01;  // feet
constexpr std::size_t FewGoals = 8;
constexpr double Careful = 0.999;  // a street's length is rounded

bool isAhead(const Halt& from, const Halt& to) {
    return from.piece == to.piece && to.along >= from.along - SamePlace;
}

void Search::begin() {
    if (search_ == std::numeric_limits<std::uint32_t>::max() / 2) {
        std::ranges::fill(labels_, Label{});
        search_ = 0;
    }
    ++search_;
    queue_.clear();
}

void Search::setGoals(const Halt& from, std::span<const Halt> goals) {
    goalsLeft_ = 0;
    goalBox_.reset();
    for (const Halt& goal : goals) {
        if (isAhead(from, goal) || isGoal_[goal.piece]) {
            continue;
        }
        isGoal_[goal.piece] = true;
        ++goalsLeft_;
        const geo::Feet at = graph_.beginPlace(goal.piece);
        Box box = goalBox_.value_or(Box{at, at});
        box.low = {std::min(box.low.x, at.x), std::min(box.low.y, at.y)};
        box.high = {std::max(box.high.x, at.x), std::max(box.high.y, at.y)};
        goalBox_ = box;
    }
    if (goalsLeft_ > FewGoals) {
        goalBox_.reset();
    }
}

float Search::ahead(DirectedPiece piece) const {
    if (!goalBox_) {
        return 0;
    }
    const geo::Feet at = graph_.beginPlace(piece);
    const double east = std::max({goalBox_->low.x - at.x, at.x - goalBox_->high.x, 0.0});
    const double north = std::max({goalBox_->low.y - at.y, at.y - goalBox_->high.y, 0.0});
    const double feet = std::sqrt(east * east + north * north);
    return static_cast<float>(Careful * feet / graph_.mostFeetPerSecond());
}

void Search::improve(DirectedPiece piece, DirectedPiece previous, float cost) {
    Label& label = labels_[piece];
    if (label.state >= 2 * search_ && (label.state > 2 * search_ || label.cost <= cost)) {
        return;
    }
    label = {cost, previous, 2 * search_};
    queue_.push(std::bit_cast<std::uint32_t>(cost + ahead(piece)), piece);
}

void Search::run(const Halt& from, std::span<const Halt> goals) {
    begin();
    setGoals(from, goals);
    const double driven = from.along / graph_.feetPerSecond(from.piece);
    for (const Turn& turn : graph_.turnsFrom(from.piece)) {
        improve(turn.to, from.piece, static_cast<float>(std::max(turn.cost - driven, 0.0)));
    }
    while (!queue_.empty() && goalsLeft_ > 0) {
        const DirectedPiece piece = queue_.pop();
        if (isFinal(piece)) {
            continue;
        }
        Label& label = labels_[piece];
        label.state |= 1U;
        goalsLeft_ -= isGoal_[piece] ? 1 : 0;
        for (const Turn& turn : graph_.turnsFrom(piece)) {
            improve(turn.to, piece, label.cost + turn.cost);
        }
    }
    for (const Halt& goal : goals) {
        isGoal_[goal.piece] = false;
    }
}

std::vector<DirectedPiece> Search::way(const Halt& from, const Halt& goal) const {
    if (isAhead(from, goal)) {
        return {from.piece};
    }
    if (!isFinal(goal.piece)) {
        return {};
    }
    std::vector<DirectedPiece> pieces{goal.piece};
    do {
        pieces.push_back(labels_[pieces.back()].previous);
    } while (pieces.back() != from.piece);
    std::ranges::reverse(pieces);
    return pieces;
}

std::unique_ptr<Search> SearchPool::take() {
    const std::scoped_lock lock(mutex_);
    if (idle_.empty()) {
        return std::make_unique<Search>(graph_);
    }
    auto search = std::move(idle_.back());
    idle_.pop_back();
    return search;
}

void SearchPool::giveBack(std::unique_ptr<Search> search) {
    const std::scoped_lock lock(mutex_);
    idle_.push_back(std::move(search));
}

}  // namespace streets
