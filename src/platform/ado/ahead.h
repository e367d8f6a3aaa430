#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/plan.h"
#include "platform/base/notcopied.h"

namespace ado {

/// A plan with a statement prepared for it and its literals bound.
struct BoundStatement {
    std::shared_ptr<Plan> plan;
    std::unique_ptr<store::Statement> statement;
};

/// Reads that were sent and not waited for yet.
struct SentAhead {
    std::vector<std::string> texts = {};
    std::vector<BoundStatement> bound = {};
    bool outlivesWrites = false;
    std::unique_ptr<store::Fetch> rows = nullptr;  ///< of them; null where nothing was sent
};

/// Reads whose rows were fetched before anybody asked for them. Each is handed out once.
class ReadsAhead : private base::NotCopied {
public:
    using Ticket = std::uint64_t;

    ~ReadsAhead() { clear(); }

    [[nodiscard]] Ticket newTicket() { return ++tickets_; }
    /// `outlivesWrites` where nothing that is written concerns it.
    void add(Ticket ticket, std::string_view text, BoundStatement bound, bool outlivesWrites);
    [[nodiscard]] bool has(std::string_view text) const;
    /// The one with exactly that text.
    [[nodiscard]] std::optional<BoundStatement> take(std::string_view text);

    void drop(Ticket ticket);
    void dropWhatWritesConcern();
    void clear();

private:
    struct Read {
        Ticket ticket;
        std::string text;
        BoundStatement bound;
        bool outlivesWrites;
    };
    template <class Which>
    void dropIf(Which which);

    std::vector<Read> reads_;
    Ticket tickets_ = 0;
};

}  // namespace ado
