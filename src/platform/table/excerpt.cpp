#include "platform/table/excerpt.h"

#include <numeric>
#include <utility>

namespace table {

Excerpt wholeRows(const TextTable& table, std::vector<std::size_t> rows) {
    std::vector<std::size_t> columns(table.columns.size());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    return {table, std::move(columns), std::move(rows)};
}

}  // namespace table
