#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/value.h"
#include "platform/store/base/database.h"

namespace ado {

/// A stored value as a cell; its text belongs to the value.
[[nodiscard]] store::Cell cellOf(const base::Value& stored);

/// A cell read as its column's kind. What cannot be read so (a text that is no date, from another
/// tool) is given as it stands.
[[nodiscard]] base::Value valueOf(store::ColumnKind kind, const store::Cell& cell);

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
    [[nodiscard]] store::Cell cell(std::size_t row, int column) const;

private:
    static constexpr std::size_t RowsPerBlock = 256;

    struct Packed {
        store::CellType type;
        std::uint32_t length;  ///< of a text
        union {
            std::int64_t integer;
            double real;
            std::size_t offset;  ///< of a text in its block
        };
    };
    struct Block {
        std::vector<Packed> cells;
        std::string texts;
    };

    Block& blockForNextRow();
    static void append(Block& block, const store::Cell& cell);

    std::size_t columns_;
    std::size_t size_ = 0;
    std::vector<Block> blocks_;
};

}  // namespace ado
