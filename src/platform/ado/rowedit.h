#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/ado/cursor.h"
#include "platform/ado/rowlayout.h"
#include "platform/ado/session.h"

namespace ado {

/// What is being changed in a recordset, and what it has changed: the values set but not yet
/// written, and those written or read again since the rows were fetched, which show wherever the
/// same row of a table appears in the result.
class RowEdit {
public:
    /// `source` is the statement that the rows come from. All three outlive this.
    RowEdit(Session& session, Cursor& cursor, const std::string& source)
        : session_(session), cursor_(cursor), source_(source) {}

    /// Whether fields may differ from what the cursor holds.
    [[nodiscard]] bool isActive() const { return isEditing() || !known_.empty(); }
    /// Whether there is something for Update to write.
    [[nodiscard]] bool isEditing() const { return adding_ || !pending_.empty(); }
    [[nodiscard]] bool isAdding() const { return adding_; }

    /// The present content of a field.
    [[nodiscard]] store::Cell cell(int column) const;

    /// Raises NotUpdatable for a column that cannot be written, "Type mismatch" (13).
    void set(int column, const base::Value& value);
    void beginAdding();
    void cancel();
    /// Raises RecordDeleted, RecordChanged, store::StoreError; what was set then stays set.
    void write();
    /// Raises as write() does, and NotUpdatable where the rows come from several tables.
    void remove();
    void readAgain();

private:
    using TableRow = std::pair<int, std::int64_t>;  ///< table of the layout, row key
    struct TableRowHash {
        std::size_t operator()(const TableRow& row) const noexcept {
            return static_cast<std::size_t>(row.second) * 31 + static_cast<std::size_t>(row.first);
        }
    };
    using Values = std::map<int, base::Value>;  ///< stored values by column of the result

    [[nodiscard]] const RowLayout& layout() const;
    [[nodiscard]] std::optional<std::int64_t> keyOf(int table) const;
    [[nodiscard]] const base::Value* knownValue(int column) const;
    [[nodiscard]] store::Cell fetchedCell(int column) const;
    [[nodiscard]] store::Cell newCell(int column) const;
    [[nodiscard]] store::FetchedRow fetchedRow(int table) const;
    [[nodiscard]] std::map<int, Values> changesByTable() const;
    [[nodiscard]] std::vector<store::ColumnValue> named(const Values& values) const;
    [[nodiscard]] std::optional<Values> readRow(int table, std::int64_t key) const;
    [[nodiscard]] int soleTable() const;
    void requireUpdatable() const;

    void writeChanges(const std::map<int, Values>& changes);
    void remember(int table, std::int64_t key, const Values& values);
    void insert();
    void showInserted(int table, const base::Value& key);

    Session& session_;
    Cursor& cursor_;
    const std::string& source_;
    bool adding_ = false;
    Values pending_;
    mutable Values defaults_;  ///< of the row being added, as they are asked for
    std::unordered_map<TableRow, Values, TableRowHash> known_;
};

}  // namespace ado
