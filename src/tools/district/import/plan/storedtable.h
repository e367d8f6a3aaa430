#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "platform/store/base/database.h"
#include "tools/district/import/plan/keymap.h"

namespace tools::district {

/// The rows of one table of the district as an import sees them: by key, each with a digest of the
/// columns that the import brings, and one column kept as a note.
class StoredTable {
public:
    /// Brings the values of a key into the form in which keys are compared.
    using TidyKey = std::function<void(std::vector<base::Value>&)>;
    /// Whether several rows may have a key.
    using RepeatKey = std::function<bool(const std::vector<base::Value>&)>;

    StoredTable(data::DatabaseFile file, const store::Table& table, std::vector<std::string> key);

    [[nodiscard]] data::DatabaseFile file() const { return file_; }
    [[nodiscard]] const store::Table& table() const { return table_; }
    [[nodiscard]] const std::vector<std::string>& key() const { return key_; }
    [[nodiscard]] const std::vector<const store::Column*>& compared() const { return compared_; }

    // Before it is read.
    /// Compares these columns, too.
    void compare(const std::vector<std::string>& columns);
    void noteColumn(std::string column) { noteColumn_ = std::move(column); }
    void tidyKeys(TidyKey tidy) { tidy_ = std::move(tidy); }
    void repeatKeys(RepeatKey repeat) { repeat_ = std::move(repeat); }

    /// Reads the table; it is new or forgotten.
    void read(store::Database& database);
    void forget() { rows_ = {}; }

    /// The key as a text; the values are tidied.
    [[nodiscard]] std::string keyText(std::vector<base::Value> values) const;
    /// Whether several rows may have that key: they are told apart by their order.
    [[nodiscard]] bool mayRepeat(const std::vector<base::Value>& key) const {
        return mayRepeat_ || (repeat_ && repeat_(key));
    }
    /// Of values for compared(), in that order.
    [[nodiscard]] std::uint64_t digest(std::span<const base::Value> values) const;

    [[nodiscard]] KeyMap& rows() { return rows_; }
    [[nodiscard]] std::string_view note(std::uint32_t number) const { return *notes_[number]; }
    [[nodiscard]] std::uint32_t numberOfNote(std::string_view note);
    /// A number for a new row that is not going to be written; below 0.
    [[nodiscard]] std::int64_t madeUpRow() { return --lastMadeUp_; }

private:
    void readRow(const store::Statement& row, std::size_t keyColumns);

    data::DatabaseFile file_;
    const store::Table& table_;
    std::vector<std::string> key_;
    std::vector<const store::Column*> keyColumns_;
    std::vector<const store::Column*> compared_;
    std::string noteColumn_;
    TidyKey tidy_;
    RepeatKey repeat_;
    KeyMap rows_;
    std::unordered_map<std::string, std::uint32_t> noteNumbers_;
    std::vector<const std::string*> notes_;
    std::int64_t lastMadeUp_ = 0;
    bool mayRepeat_ = false;
};

}  // namespace tools::district
