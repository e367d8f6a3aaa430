#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/store/postgres/link.h"

namespace store::postgres {

/// One statement with its parameters and rows; what is prepared it shares with those of the same
/// text. Its rows are fetched together when the first one is asked for, so that
/// the connection is free for others at once; very many rows in an order come in blocks, each when
/// the one before is read. `link` outlives it.
class PostgresStatement final : public Statement {
public:
    PostgresStatement(Link& link, std::string_view sql, SharedQueries& queries);
    ~PostgresStatement() override;
    PostgresStatement(const PostgresStatement&) = delete;
    PostgresStatement& operator=(const PostgresStatement&) = delete;

    void bind(int parameter, const base::Value& value) override;
    bool step() override;
    void reset() override;

    [[nodiscard]] int columnCount() const override;
    [[nodiscard]] Cell cell(int column) const override;
    [[nodiscard]] CellType type(int column) const override { return cell(column).type; }
    [[nodiscard]] std::int64_t integer(int column) const override;
    [[nodiscard]] double real(int column) const override;
    [[nodiscard]] std::string_view text(int column) const override;

    /// What it runs with, for who runs it together with others and gives it the answer.
    [[nodiscard]] Call call() { return {query_.get(), &parameters_}; }
    void take(Result rows) { rows_ = std::move(rows); }

private:
    void fetch() const;
    [[nodiscard]] bool fetchMore();
    [[nodiscard]] Result block(std::int64_t from, std::int64_t count);

    Link& link_;
    std::string sql_;  ///< without the limit of a block
    bool hasBlocks_;
    std::shared_ptr<Query> query_;
    std::vector<Parameter> parameters_;
    mutable Result rows_;
    int row_ = -1;
    std::int64_t before_ = 0;  ///< rows in the blocks before this one
};

/// A cell of an answer as the store's interface gives it; its text belongs to the answer.
[[nodiscard]] Cell cellOf(const PGresult* rows, int row, int column);

/// The same as a value of its own: Null, whole number, number or text.
[[nodiscard]] base::Value storedOf(const PGresult* rows, int row, int column);

}  // namespace store::postgres
