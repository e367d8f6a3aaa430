#include "platform/store/base/cellvalue.h"

namespace store {

base::Value storedValue(const Cell& cell) {
    switch (cell.type) {
        case CellType::Null:
            break;
        case CellType::Integer:
            return cell.integer;
        case CellType::Real:
            return cell.real;
        case CellType::Text:
            return cell.text;
    }
    return {};
}

}  // namespace store
