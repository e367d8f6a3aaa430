#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/date.h"
#include "tools/district/import/plan/comparison.h"
#include "tools/district/import/plan/rowsink.h"

namespace tools::district {

/// Who is noted as having changed a row, and when.
struct ImportAudit {
    std::string user;
    base::Date now;
    bool isKept = false;  ///< the sources themselves say who changed a row
};

/// Writes rows into the files of a district, whose transactions somebody else has begun. Runs and
/// stop trips get their audit columns.
class TableWriter final : public RowSink {
public:
    TableWriter(const OpenDistrict& district, ImportAudit audit)
        : district_(district), audit_(std::move(audit)) {}

    std::int64_t add(const StoredTable& table, std::span<const store::Column* const> columns,
                     std::span<const base::Value> values) override;
    void change(const StoredTable& table, std::int64_t row,
                std::span<const store::Column* const> columns,
                std::span<const base::Value> values) override;
    void remove(const StoredTable& table, std::int64_t row) override;

private:
    /// A statement for rows that give the same columns of a table.
    struct Insertion {
        const StoredTable* table = nullptr;
        std::vector<const store::Column*> given;
        std::unique_ptr<store::Statement> statement;  ///< given columns, audit columns, counter
        const store::Column* counter = nullptr;
        std::size_t counterGiven = 0;  ///< its place among the given; behind them where it is not
    };

    [[nodiscard]] store::Database& fileOf(const StoredTable& table) const {
        return *district_.at(table.file());
    }
    [[nodiscard]] bool isAudited(const StoredTable& table) const;
    [[nodiscard]] std::vector<store::ColumnValue> auditOf(const StoredTable& table) const;
    Insertion& insertionOf(const StoredTable& table, std::span<const store::Column* const> columns);
    Insertion prepareInsertion(const StoredTable& table,
                               std::span<const store::Column* const> columns);
    std::int64_t addFirst(const Insertion& into, std::span<const base::Value> values);
    store::Statement& prepared(const StoredTable& table, const std::string& sql);

    const OpenDistrict& district_;
    ImportAudit audit_;
    std::vector<Insertion> insertions_;
    std::map<const store::Table*, std::int64_t> lastNumbers_;
    std::map<std::string, std::unique_ptr<store::Statement>> statements_;
};

}  // namespace tools::district
