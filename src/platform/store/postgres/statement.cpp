#include "platform/store/postgres/statement.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include <fmt/format.h>

#include "platform/store/base/cellvalue.h"

namespace store::postgres {

namespace {

template <class Number>
Number numberIn(std::string_view text) {
    Number number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// As many rows as a list of runs has, so that only lists like the log's come in blocks.
constexpr std::int64_t FirstBlock = 25'000;
constexpr std::int64_t EverythingElse = std::numeric_limits<std::int64_t>::max();

bool isOrderedAndEndless(std::string_view sql) {
    return sql.starts_with("SELECT ") && sql.find(" ORDER BY ") != std::string_view::npos &&
           sql.find(" LIMIT ") == std::string_view::npos &&
           sql.find(" FETCH FIRST ") == std::string_view::npos;
}

std::string limited(std::string_view sql, bool isLimited) {
    return isLimited ? fmt::format("{} LIMIT {}", sql, FirstBlock) : std::string(sql);
}

bool isSameRow(const PGresult* one, int row, const PGresult* other, int place) {
    const Library& pq = library();
    for (int column = 0; column < pq.columnCount(one); ++column) {
        if (pq.isNull(one, row, column) != pq.isNull(other, place, column) ||
            std::string_view(pq.value(one, row, column)) != pq.value(other, place, column)) {
            return false;
        }
    }
    return true;
}

/// Where the last row of a block stands in the next one; -1 where it does not.
int placeOf(const PGresult* one, int row, const PGresult* next) {
    const int count = library().rowCount(next);
    for (int place = 0; place < count; ++place) {
        if (isSameRow(one, row, next, place)) {
            return place;
        }
    }
    return -1;
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
    return storedValue(cellOf(rows, row, column));
}

PostgresStatement::PostgresStatement(Link& link, std::string_view sql, SharedQueries& queries)
    : link_(link),
      sql_(sql),
      hasBlocks_(isOrderedAndEndless(sql)),
      query_(queries.of(limited(sql, hasBlocks_))) {}

PostgresStatement::~PostgresStatement() {
    if (query_.use_count() == 1) {
        link_.release(*query_);
    }
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
        rows_ = link_.run(*query_, parameters_);
    }
}

bool PostgresStatement::step() {
    fetch();
    return ++row_ < library().rowCount(rows_.get()) || fetchMore();
}

Result PostgresStatement::block(std::int64_t from, std::int64_t count) {
    Query next(fmt::format("{} OFFSET {} LIMIT {}", sql_, from, count));
    return link_.run(next, parameters_);
}

/// The next block, which begins with the row that was read last: where another one stands there
/// now, rows were added or removed meanwhile, and that row is looked for.
bool PostgresStatement::fetchMore() {
    constexpr std::int64_t NextBlock = 100'000;
    const int last = library().rowCount(rows_.get()) - 1;
    if (!hasBlocks_ || last + 1 < (before_ == 0 ? FirstBlock : NextBlock)) {
        return false;
    }
    std::int64_t from = before_ + last;
    Result next = block(from, NextBlock);
    int place = placeOf(rows_.get(), last, next.get());
    if (place < 0) {
        from = 0;
        next = block(0, EverythingElse);
        place = std::max(placeOf(rows_.get(), last, next.get()), 0);
        hasBlocks_ = false;
    }
    before_ = from;
    rows_ = std::move(next);
    row_ = place + 1;
    return row_ < library().rowCount(rows_.get());
}

void PostgresStatement::reset() {
    rows_.reset();
    row_ = -1;
    before_ = 0;
    hasBlocks_ = isOrderedAndEndless(sql_);
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
