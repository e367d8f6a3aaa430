#include "platform/ado/ahead.h"

#include <algorithm>
#include <utility>

namespace ado {

void ReadsAhead::add(Ticket ticket, std::string_view text, BoundStatement bound,
                     bool outlivesWrites) {
    reads_.push_back({ticket, std::string(text), std::move(bound), outlivesWrites});
}

bool ReadsAhead::has(std::string_view text) const {
    return std::ranges::find(reads_, text, &Read::text) != reads_.end();
}

std::optional<BoundStatement> ReadsAhead::take(std::string_view text) {
    const auto at = std::ranges::find(reads_, text, &Read::text);
    if (at == reads_.end()) {
        return std::nullopt;
    }
    BoundStatement bound = std::move(at->bound);
    reads_.erase(at);
    return bound;
}

template <class Which>
void ReadsAhead::dropIf(Which which) {
    const auto gone = std::stable_partition(reads_.begin(), reads_.end(),
                                            [&](const Read& read) { return !which(read); });
    for (auto read = gone; read != reads_.end(); ++read) {
        read->bound.plan->giveBack(std::move(read->bound.statement));
    }
    reads_.erase(gone, reads_.end());
}

void ReadsAhead::drop(Ticket ticket) {
    dropIf([ticket](const Read& read) { return read.ticket == ticket; });
}

void ReadsAhead::dropWhatWritesConcern() {
    dropIf([](const Read& read) { return !read.outlivesWrites; });
}

void ReadsAhead::clear() {
    dropIf([](const Read&) { return true; });
}

}  // namespace ado
