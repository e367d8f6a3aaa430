#include "platform/ado/cells.h"

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace ado {

using store::CellType;
using store::ColumnKind;

CellView CellView::of(const store::Statement& row, int column) {
    CellView view;
    view.type = row.type(column);
    switch (view.type) {
        case CellType::Null:
            break;
        case CellType::Integer:
            view.integer = row.integer(column);
            break;
        case CellType::Real:
            view.real = row.real(column);
            break;
        case CellType::Text:
            view.text = row.text(column);
            break;
    }
    return view;
}

CellView CellView::of(const base::Value& stored) {
    CellView view;
    if (stored.isText()) {
        view.type = CellType::Text;
        view.text = stored.heldText();
    } else if (stored.isDouble()) {
        view.type = CellType::Real;
        view.real = stored.asNumber();
    } else if (stored.isInteger()) {
        view.type = CellType::Integer;
        view.integer = stored.asInteger();
    }
    return view;
}

base::Value CellView::stored() const {
    switch (type) {
        case CellType::Null:
            break;
        case CellType::Integer:
            return integer;
        case CellType::Real:
            return real;
        case CellType::Text:
            return text;
    }
    return {};
}

namespace {

double numberOf(const CellView& cell) {
    return cell.type == CellType::Integer ? static_cast<double>(cell.integer) : cell.real;
}

base::Value dateOf(const CellView& cell) {
    if (cell.type != CellType::Text) {
        return base::Value(numberOf(cell)).asDate();
    }
    if (const auto date = base::Date::fromIso(cell.text)) {
        return *date;
    }
    const auto date = base::Date::parse(cell.text);
    return date ? base::Value(*date) : base::Value(cell.text);
}

base::Value wholeOf(const CellView& cell) {
    return cell.type == CellType::Integer ? base::Value(cell.integer)
                                          : base::Value(base::roundHalfEven(cell.real));
}

/// A code never ends in blanks, but a text of blanks alone keeps one.
std::string codeOf(const std::string& text) {
    const std::string_view trimmed = base::trimRight(text);
    return trimmed.empty() && !text.empty() ? " " : std::string(trimmed);
}

}  // namespace

base::Value valueOf(ColumnKind kind, const CellView& cell) {
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
            return cell.stored();
    }
}

base::Value storedValue(ColumnKind kind, const base::Value& value) {
    if (value.isNull()) {
        return kind == ColumnKind::YesNo ? base::Value(0) : base::Value();
    }
    switch (kind) {
        case ColumnKind::Code:
            return codeOf(value.asText());
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
            return value.asDate().iso();
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

void RowBuffer::append(Block& block, const CellView& view) {
    Cell cell{view.type, 0, {view.integer}};
    if (view.type == CellType::Real) {
        cell.real = view.real;
    } else if (view.type == CellType::Text) {
        cell.length = static_cast<std::uint32_t>(view.text.size());
        cell.offset = block.texts.size();
        block.texts += view.text;
    }
    block.cells.push_back(cell);
}

void RowBuffer::append(const store::Statement& row) {
    Block& block = blockForNextRow();
    for (std::size_t column = 0; column < columns_; ++column) {
        append(block, CellView::of(row, static_cast<int>(column)));
    }
}

void RowBuffer::append(const std::vector<base::Value>& stored) {
    Block& block = blockForNextRow();
    for (const base::Value& value : stored) {
        append(block, CellView::of(value));
    }
}

CellView RowBuffer::cell(std::size_t row, int column) const {
    const Block& block = blocks_[row / RowsPerBlock];
    const Cell& cell =
        block.cells[row % RowsPerBlock * columns_ + static_cast<std::size_t>(column)];
    CellView view;
    view.type = cell.type;
    switch (cell.type) {
        case CellType::Null:
            break;
        case CellType::Integer:
            view.integer = cell.integer;
            break;
        case CellType::Real:
            view.real = cell.real;
            break;
        case CellType::Text:
            view.text = std::string_view(block.texts).substr(cell.offset, cell.length);
            break;
    }
    return view;
}

}  // namespace ado
