#include "streets/network/search.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace streets {

namespace {

constexpr double SamePlace = 0.01;  // feet

}  // namespace

bool isAhead(const Halt& from, const Halt& to) {
    return from.piece == to.piece && to.along >= from.along - SamePlace;
}

void Search::begin() {
    if (search_ == std::numeric_limits<std::uint32_t>::max()) {
        std::ranges::fill(labels_, Label{});
        search_ = 0;
    }
    ++search_;
    queue_.clear();
}

void Search::improve(DirectedPiece piece, DirectedPiece previous, float cost) {
    Label& label = labels_[piece];
    if (label.search == search_ && label.cost <= cost) {
        return;
    }
    label.cost = cost;
    label.previous = previous;
    label.search = search_;
    queue_.push_back((Entry{std::bit_cast<std::uint32_t>(cost)} << 32U) | piece);
    std::ranges::push_heap(queue_, std::greater());
}

void Search::run(const Halt& from, std::span<const Halt> goals) {
    begin();
    std::size_t waiting = 0;
    for (const Halt& goal : goals) {
        Label& label = labels_[goal.piece];
        waiting += label.goalOf != search_ && !isAhead(from, goal) ? 1 : 0;
        label.goalOf = isAhead(from, goal) ? label.goalOf : search_;
    }
    const double ahead = from.along / graph_.feetPerSecond(from.piece);
    for (const Turn& turn : graph_.turnsFrom(from.piece)) {
        improve(turn.to, from.piece, static_cast<float>(std::max(turn.cost - ahead, 0.0)));
    }
    while (!queue_.empty() && waiting > 0) {
        const Entry next = queue_.front();
        std::ranges::pop_heap(queue_, std::greater());
        queue_.pop_back();
        const auto piece = static_cast<DirectedPiece>(next);
        const auto cost = std::bit_cast<float>(static_cast<std::uint32_t>(next >> 32U));
        Label& label = labels_[piece];
        if (cost > label.cost) {
            continue;
        }
        if (label.goalOf == search_) {
            label.goalOf = 0;
            --waiting;
        }
        for (const Turn& turn : graph_.turnsFrom(piece)) {
            improve(turn.to, piece, cost + turn.cost);
        }
    }
}

std::vector<DirectedPiece> Search::way(const Halt& from, const Halt& goal) const {
    if (isAhead(from, goal)) {
        return {from.piece};
    }
    if (!isKnown(goal.piece)) {
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
