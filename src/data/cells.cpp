#include "data/cells.h"

#include <utility>

#include "startup/mdlNONULL.h"

namespace data {

base::Value cellValue(controls::CellKind kind, base::Value value) {
    switch (kind) {
        case controls::CellKind::Text:
            return startup::NoNullString(std::move(value));
        case controls::CellKind::Number:
            return startup::NoNullNumber(std::move(value));
        default:
            return value;
    }
}

}  // namespace data
