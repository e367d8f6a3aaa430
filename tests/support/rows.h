#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

namespace support {

/// The rows of a query (in the program's own dialect), each its cells parted by "|"; Null is
/// "Null".
inline std::vector<std::string> rowsOf(ado::Recordset& records) {
    std::vector<std::string> rows;
    for (; !records.Eof(); records.MoveNext()) {
        auto& row = rows.emplace_back();
        for (int i = 0; i < records.fieldCount(); ++i) {
            const auto value = records.Fields(i).Value();
            row += (i == 0 ? "" : "|") + (value.isNull() ? "Null" : value.asText());
        }
    }
    return rows;
}
inline std::vector<std::string> rowsOf(std::string_view query, ado::Connection& connection) {
    ado::Recordset records;
    records.Open(query, connection);
    return rowsOf(records);
}

/// Texts in one, parted by a blank or what is given.
inline std::string joined(const std::vector<std::string>& texts, std::string_view by = " ") {
    std::string all;
    for (const auto& text : texts) {
        all.append(&text == &texts.front() ? "" : by).append(text);
    }
    return all;
}

}  // namespace support
