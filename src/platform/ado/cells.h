#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/value.h"
#include "platform/store/database.h"

namespace ado {

/// One cell as the store holds it. The text belongs to whoever gave the view.
struct CellView {
    store::CellType type = store::CellType::Null;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view text = {};

    /// The cell of a statement's current row.
    [[nodiscard]] static CellView of(const store::Statement& row, int column);
    /// A stored value, see storedValue.
    [[nodiscard]] static CellView of(const base::Value& stored);
    /// As a value of its own: Null, whole number, number or text.
    [[nodiscard]] base::Value stored() const;
};

/// A cell read as its column's kind. What cannot be read so (a text that is no date, from another
/// tool) is given as it stands.
[[nodiscard]] base::Value valueOf(store::ColumnKind kind, const CellView& cell);

/// A value as a column of that kind stores it: Null, whole number, number or text. Raises "Type
/// mismatch" (13). Null in a yes/no column is No.
[[nodiscard]] base::Value storedValue(store::ColumnKind kind, const base::Value& value);

/// Rows copied out of a statement, in blocks; cells are read back as views.
class RowBuffer {
public:
    explicit RowBuffer(int columns) : columns_(static_cast<std::size_t>(columns)) {}

    void append(const store::Statement& row);
    void append(const std::vector<base::Value>& stored);

    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] CellView cell(std::size_t row, int column) const;

private:
    static constexpr std::size_t RowsPerBlock = 256;

    struct Cell {
        store::CellType type;
        std::uint32_t length;
        union {
            std::int64_t integer;
            double real;
            std::size_t offset;
        };
    };
    struct Block {
        std::vector<Cell> cells;
        std::string texts;
    };

    Block& blockForNextRow();
    static void append(Block& block, const CellView& view);

    std::size_t columns_;
    std::size_t size_ = 0;
    std::vector<Block> blocks_;
};

}  // namespace ado
