#pragma once

#include <string>

#include "reports/base/content.h"

/// How a driver's sheet says what is stored.
namespace reports {

/// "Grace Garza" for "Garza, Grace".
[[nodiscard]] std::string calledName(const std::string& lastFirst);

/// "Monday to Friday" for "MTWTF", "Monday and Wednesday" for "M.W..".
[[nodiscard]] std::string weekdays(const std::string& days);

/// What a stop's description adds to its address: "at 23rd Avenue" of "65th Street at 23rd Avenue";
/// the whole of one without a corner; nothing of one that says the same.
[[nodiscard]] std::string cornerOf(const std::string& description, const std::string& address);

/// A line of the directions: its sign from how it begins, the street's name strong, the miles of
/// its second text. What is neither a direction nor a turn back is a caution.
[[nodiscard]] SheetWay wayOf(const std::string& type, const std::string& text,
                             const std::string& secondText);

}  // namespace reports
