#include "data/lists/samelist.h"

namespace data {

bool isSameList(const table::TextTable& one, const table::TextTable& other) {
    if (one.columns != other.columns || one.hiddenFields != other.hiddenFields ||
        one.rowCount() != other.rowCount()) {
        return false;
    }
    const std::size_t width = one.columns.size() + one.hiddenFields.size();
    for (std::size_t row = 0; row < one.rowCount(); ++row) {
        if (one.isRed(row, 0) != other.isRed(row, 0)) {
            return false;
        }
        for (std::size_t column = 0; column < width; ++column) {
            if (one.value(row, column) != other.value(row, column)) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace data
