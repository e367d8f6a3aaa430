#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "streets/network/directedgraph.h"

namespace streets {

/// Finds the quickest ways from a halt. Kept for the next search, because clearing what it noted of
/// a large map costs more than a short way.
class Search {
public:
    explicit Search(const DirectedGraph& graph) : graph_(graph), labels_(graph.size()) {}

    /// Looks for ways from a halt until those to all goals are known, or all that can be reached.
    void run(const Halt& from, std::span<const Halt> goals);

    /// The pieces from the one halt's to the other one's, which was a goal; empty where nothing
    /// leads there.
    [[nodiscard]] std::vector<DirectedPiece> way(const Halt& from, const Halt& goal) const;

private:
    using Entry = std::uint64_t;  // a cost's bits above a piece: costs are not negative

    struct Label {
        float cost = 0;  ///< at the piece's beginning
        DirectedPiece previous = 0;
        std::uint32_t search = 0;  ///< that wrote the two above
        std::uint32_t goalOf = 0;  ///< the search that waits for this piece
    };

    void begin();
    void improve(DirectedPiece piece, DirectedPiece previous, float cost);
    [[nodiscard]] bool isKnown(DirectedPiece piece) const {
        return labels_[piece].search == search_;
    }

    const DirectedGraph& graph_;
    std::vector<Label> labels_;
    std::vector<Entry> queue_;
    std::uint32_t search_ = 0;
};

/// Searches that are not in use, for any thread.
class SearchPool {
public:
    explicit SearchPool(const DirectedGraph& graph) : graph_(graph) {}

    /// Gives its search back at the end.
    class Lease {
    public:
        explicit Lease(SearchPool& pool) : pool_(pool), search_(pool.take()) {}
        ~Lease() { pool_.giveBack(std::move(search_)); }
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
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
