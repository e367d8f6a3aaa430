#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The text of a recorded warning, taken apart for reading.
namespace runedit {

/// Its statements one by one, without the signs between them.
[[nodiscard]] std::vector<std::string> statementsOf(std::string_view warning);

/// The id of the stop that it is about; "" where it names none.
[[nodiscard]] std::string stopNamedIn(std::string_view warning);

/// A field of the run whose change may mend what a warning tells.
struct MendingField {
    std::string_view warningType;
    std::string_view control;
    std::string_view caption;
};
/// Null where no field does.
[[nodiscard]] const MendingField* mendingFieldOf(std::string_view warningType);

}  // namespace runedit
