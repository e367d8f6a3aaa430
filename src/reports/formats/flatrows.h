#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "reports/formats/writer.h"

namespace reports {

/// Rows that stand alone, so that they can be sorted, filtered and taken elsewhere: before a row's
/// cells the titles of its groups, behind them what is remarked of it.
class FlatRows {
public:
    using OnRow = std::function<void(const std::vector<base::Value>& cells)>;

    FlatRows(const KnownContent& content, OnRow onRow);

    /// The report's columns with those of groups before them and of remarks behind. A group whose
    /// title is a column of its own has no other one.
    [[nodiscard]] const std::vector<Column>& columns() const { return columns_; }
    /// Where the report's own columns begin.
    [[nodiscard]] std::size_t first() const { return first_; }
    [[nodiscard]] bool hasRemarks() const { return hasRemarks_; }

    /// A row is handed on when all that belongs to it is known. Totals are left out.
    void take(const Item& item);
    void finish() { flush(); }

private:
    void put(const GroupHead& head);
    void put(const Row& row);
    void put(const Remark& remark);
    template <class Other>
    void put(const Other& /*other*/) {
        flush();
    }
    void flush();

    OnRow onRow_;
    std::vector<Column> columns_;
    std::size_t first_ = 0;
    bool hasRemarks_;
    std::vector<std::optional<std::size_t>> columnOfGroup_;
    std::vector<base::Value> titles_;
    std::optional<Row> row_;  ///< whose remarks are still to come
    std::vector<std::string> remarks_;
};

}  // namespace reports
