#pragma once

#include <string_view>

#include <sqlite3.h>

#include "platform/base/notcopied.h"
#include "platform/store/base/database.h"
#include "platform/store/sqlite/faults.h"

namespace store::sqlite {

/// A stored value as it is: Null, whole number, number or text.
[[nodiscard]] base::Value plainValue(sqlite3_value* value);

/// One prepared statement of the engine. `source` outlives it.
class PreparedStatement final : public Statement, private base::NotCopied {
public:
    /// Raises StoreError; text behind the first statement is refused.
    PreparedStatement(const Source& source, std::string_view sql);
    ~PreparedStatement() override;

    void bind(int parameter, const base::Value& value) override;
    bool step() override;
    void reset() override;

    [[nodiscard]] int columnCount() const override;
    [[nodiscard]] Cell cell(int column) const override;
    [[nodiscard]] CellType type(int column) const override;
    [[nodiscard]] std::int64_t integer(int column) const override;
    [[nodiscard]] double real(int column) const override;
    [[nodiscard]] std::string_view text(int column) const override;

    /// The cell as it is stored.
    [[nodiscard]] base::Value stored(int column) const;

private:
    const Source& source_;
    sqlite3_stmt* statement_ = nullptr;
    bool writes_ = false;
};

}  // namespace store::sqlite
