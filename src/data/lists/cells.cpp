#include "data/lists/cells.h"

#include "platform/base/text.h"
#include "startup/base/mdlNONULL.h"

namespace data {

void setCell(table::TextTable& table, std::size_t row, std::size_t column,
             const ado::Field& field) {
    switch (table.columns[column].kind) {
        case table::CellKind::Text: {
            // NoNullString without making a value: most cells of a list are texts.
            const auto text = field.textView();
            table.setText(row, column, base::trim(text).empty() ? " " : text);
            break;
        }
        case table::CellKind::Number:
            table.set(row, column, startup::NoNullNumber(field.Value()));
            break;
        default:
            table.set(row, column, field.Value());
    }
}

}  // namespace data
