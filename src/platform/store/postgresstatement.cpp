#include "platform/store/postgresstatement.h"

#include <charconv>

namespace store::postgres {

namespace {

template <class Number>
Number numberIn(std::string_view text) {
    Number number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// What the server's types are here.
CellType cellTypeOf(Oid type) {
    switch (type) {
        case 16:  // boolean
        case 20:  // bigint, smallint, integer
        case 21:
        case 23:
            return CellType::Integer;
        case 700:  // real, double precision, numeric
        case 701:
        case 1700:
            return CellType::Real;
        default:
            return CellType::Text;
    }
}

}  // namespace

Cell cellOf(const PGresult* rows, int row, int column) {
    const Library& pq = library();
    Cell cell;
    if (pq.isNull(rows, row, column) != 0) {
        return cell;
    }
    const std::string_view text(pq.value(rows, row, column),
                                static_cast<std::size_t>(pq.length(rows, row, column)));
    cell.type = cellTypeOf(pq.columnType(rows, column));
    if (cell.type == CellType::Text) {
        cell.text = text;
    } else if (cell.type == CellType::Real) {
        cell.real = numberIn<double>(text);
    } else {
        cell.integer = text == "t" ? 1 : numberIn<std::int64_t>(text);
    }
    return cell;
}

base::Value storedOf(const PGresult* rows, int row, int column) {
    const Cell cell = cellOf(rows, row, column);
    switch (cell.type) {
        case CellType::Null:
            return {};
        case CellType::Integer:
            return cell.integer;
        case CellType::Real:
            return cell.real;
        case CellType::Text:
            break;
    }
    return cell.text;
}

void PostgresStatement::bind(int parameter, const base::Value& value) {
    const auto place = static_cast<std::size_t>(parameter);
    if (parameters_.size() <= place) {
        parameters_.resize(place + 1);
    }
    parameters_[place] = typed(value);
}

void PostgresStatement::fetch() const {
    if (rows_ == nullptr) {
        rows_ = link_.run(query_, parameters_);
    }
}

bool PostgresStatement::step() {
    fetch();
    return ++row_ < library().rowCount(rows_.get());
}

void PostgresStatement::reset() {
    rows_.reset();
    row_ = -1;
    parameters_.clear();
}

int PostgresStatement::columnCount() const {
    fetch();
    return library().columnCount(rows_.get());
}

Cell PostgresStatement::cell(int column) const { return cellOf(rows_.get(), row_, column); }

std::int64_t PostgresStatement::integer(int column) const {
    const Cell held = cell(column);
    return held.type == CellType::Integer ? held.integer
           : held.type == CellType::Real  ? static_cast<std::int64_t>(held.real)
                                          : numberIn<std::int64_t>(held.text);
}

double PostgresStatement::real(int column) const {
    const Cell held = cell(column);
    return held.type == CellType::Real      ? held.real
           : held.type == CellType::Integer ? static_cast<double>(held.integer)
                                            : numberIn<double>(held.text);
}

std::string_view PostgresStatement::text(int column) const {
    if (library().isNull(rows_.get(), row_, column) != 0) {
        return {};
    }
    return {library().value(rows_.get(), row_, column),
            static_cast<std::size_t>(library().length(rows_.get(), row_, column))};
}

}  // namespace store::postgres
