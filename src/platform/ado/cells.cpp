#include "platform/ado/cells.h"

#include "platform/base/text.h"
#include "platform/jet/functions.h"
#include "platform/store/base/cellvalue.h"

namespace ado {

using store::CellType;
using store::ColumnKind;

store::Cell cellOf(const base::Value& stored) {
    store::Cell cell;
    if (stored.isText()) {
        cell.type = CellType::Text;
        cell.text = stored.heldText();
    } else if (stored.isDouble()) {
        cell.type = CellType::Real;
        cell.real = stored.asNumber();
    } else if (stored.isInteger()) {
        cell.type = CellType::Integer;
        cell.integer = stored.asInteger();
    }
    return cell;
}

namespace {

double numberOf(const store::Cell& cell) {
    return cell.type == CellType::Integer ? static_cast<double>(cell.integer) : cell.real;
}

base::Value dateOf(const store::Cell& cell) {
    if (cell.type != CellType::Text) {
        return base::Value(numberOf(cell)).asDate();
    }
    if (const auto date = base::Date::fromIso(cell.text)) {
        return *date;
    }
    const auto date = base::Date::parse(cell.text);
    return date ? base::Value(*date) : base::Value(cell.text);
}

base::Value wholeOf(const store::Cell& cell) {
    return cell.type == CellType::Integer ? base::Value(cell.integer)
                                          : base::Value(base::roundHalfEven(cell.real));
}

}  // namespace

base::Value valueOf(ColumnKind kind, const store::Cell& cell) {
    if (cell.type == CellType::Null) {
        return {};
    }
    if (kind == ColumnKind::Date) {
        return dateOf(cell);
    }
    if (cell.type == CellType::Text) {
        return cell.text;
    }
    switch (kind) {
        case ColumnKind::Integer:
        case ColumnKind::Counter:
            return wholeOf(cell);
        case ColumnKind::Number:
            return numberOf(cell);
        case ColumnKind::Single:
            return base::singleOf(numberOf(cell));
        case ColumnKind::YesNo:
            return numberOf(cell) != 0;
        default:
            return store::storedValue(cell);
    }
}

base::Value storedValue(ColumnKind kind, const base::Value& value) {
    if (value.isNull()) {
        return kind == ColumnKind::YesNo ? base::Value(0) : base::Value();
    }
    switch (kind) {
        case ColumnKind::Code:
            return base::codeOf(value.asText());
        case ColumnKind::Text:
            return value.asText();
        case ColumnKind::Integer:
        case ColumnKind::Counter:
            return value.asInteger();
        case ColumnKind::Number:
            return value.asNumber();
        case ColumnKind::Single:
            return base::singleOf(value.asNumber());
        case ColumnKind::YesNo:
            return value.asBoolean() ? 1 : 0;
        case ColumnKind::Date:
            return jet::withinCalendar(value.asDate()).iso();
    }
    return {};
}

RowBuffer::Block& RowBuffer::blockForNextRow() {
    if (size_ % RowsPerBlock == 0) {
        blocks_.emplace_back();
    }
    ++size_;
    return blocks_.back();
}

void RowBuffer::append(Block& block, const store::Cell& cell) {
    Packed packed{cell.type, 0, {cell.integer}};
    if (cell.type == CellType::Real) {
        packed.real = cell.real;
    } else if (cell.type == CellType::Text) {
        packed.length = static_cast<std::uint32_t>(cell.text.size());
        packed.offset = block.texts.size();
        block.texts += cell.text;
    }
    block.cells.push_back(packed);
}

void RowBuffer::append(const store::Statement& row) {
    Block& block = blockForNextRow();
    for (std::size_t column = 0; column < columns_; ++column) {
        append(block, row.cell(static_cast<int>(column)));
    }
}

void RowBuffer::append(const std::vector<base::Value>& stored) {
    Block& block = blockForNextRow();
    for (const base::Value& value : stored) {
        append(block, cellOf(value));
    }
}

store::Cell RowBuffer::cell(std::size_t row, int column) const {
    const Block& block = blocks_[row / RowsPerBlock];
    const Packed& packed =
        block.cells[row % RowsPerBlock * columns_ + static_cast<std::size_t>(column)];
    store::Cell cell;
    cell.type = packed.type;
    if (packed.type == CellType::Text) {
        cell.text = std::string_view(block.texts).substr(packed.offset, packed.length);
    } else if (packed.type == CellType::Real) {
        cell.real = packed.real;
    } else {
        cell.integer = packed.integer;
    }
    return cell;
}

}  // namespace ado
