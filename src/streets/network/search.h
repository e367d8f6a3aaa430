#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "platform/base/notcopied.h"
#include "streets/network/directedgraph.h"
#include "streets/network/monotonequeue.h"

namespace streets {

/// Finds the quickest ways from a halt. Kept for the next search, because clearing what it noted of
/// a large map costs more than a short way.
class Search {
public:
    explicit Search(const DirectedGraph& graph)
        : graph_(graph), labels_(graph.size()), isGoal_(graph.size()) {}

    /// Looks for ways from a halt until those to all goals are known, or all that can be reached.
    void run(const Halt& from, std::span<const Halt> goals);

    /// The pieces from the one halt's to the other one's, which was a goal; empty where nothing
    /// leads there.
    [[nodiscard]] std::vector<DirectedPiece> way(const Halt& from, const Halt& goal) const;

private:
    struct Label {
        float cost = 0;  ///< at the piece's beginning
        DirectedPiece previous = 0;
        std::uint32_t state = 0;  ///< twice the search that wrote the two above, and 1 when final
    };

    void begin();
    void setGoals(const Halt& from, std::span<const Halt> goals);
    void improve(DirectedPiece piece, DirectedPiece previous, float cost);
    /// Seconds that it takes from a piece at least to the goals, where they are few.
    [[nodiscard]] float ahead(DirectedPiece piece) const;
    [[nodiscard]] bool isFinal(DirectedPiece piece) const {
        return labels_[piece].state == 2 * search_ + 1;
    }

    const DirectedGraph& graph_;
    std::vector<Label> labels_;
    MonotoneQueue queue_;
    std::vector<bool> isGoal_;
    std::size_t goalsLeft_ = 0;
    std::optional<Box> goalBox_;
    std::uint32_t search_ = 0;
};

/// Searches that are not in use, for any thread.
class SearchPool {
public:
    explicit SearchPool(const DirectedGraph& graph) : graph_(graph) {}

    /// Gives its search back at the end.
    class Lease : private base::NotCopied {
    public:
        explicit Lease(SearchPool& pool) : pool_(pool), search_(pool.take()) {}
        ~Lease() { pool_.giveBack(std::move(search_)); }
        Search* operator->() const { return search_.get(); }

    private:
        SearchPool& pool_;
        std::unique_ptr<Search> search_;
    };

private:
    std::unique_ptr<Search> take();
    void giveBack(std::unique_ptr<Search> search);

    const DirectedGraph& graph_;
    std::mutex mutex_;
    std::vector<std::unique_ptr<Search>> idle_;
};

/// Whether a bus that halts here comes to the other halt by driving on along the same piece.
[[nodiscard]] bool isAhead(const Halt& from, const Halt& to);

}  // namespace streets
