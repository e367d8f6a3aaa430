#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/base/value.h"
#include "platform/store/base/database.h"
#include "tools/district/import/map/binding.h"

namespace tools::district {

/// Thrown for a line that cannot be imported: which field, and why.
struct Refusal {
    std::string field;
    std::string reason;
};

/// A cell of a file as its column stores it. A yes/no that is missing is no. Raises Refusal with an
/// empty field.
[[nodiscard]] base::Value valueOf(const BoundCell& cell, const store::Column& column,
                                  TextRule rule);

/// Adds a value to a text that is the same for equal values of the column, and only for them.
void appendDigestText(const base::Value& value, store::ColumnKind kind, std::string& text);
void appendDigestText(const store::Cell& cell, store::ColumnKind kind, std::string& text);

/// The same for a key, in which codes and texts are equal without regard to case and trailing
/// blanks.
void appendKeyText(const base::Value& value, std::string& text);

[[nodiscard]] std::uint64_t digestOf(std::string_view text);

/// A stored cell as a value of its column.
[[nodiscard]] base::Value storedValue(const store::Cell& cell, store::ColumnKind kind);

/// As a list of changes shows it: times as hours and minutes, Null as nothing.
[[nodiscard]] std::string shownValue(const base::Value& value);

}  // namespace tools::district
