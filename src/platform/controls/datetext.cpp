#include "platform/controls/datetext.h"

namespace controls {

std::optional<base::Date> typedDay(std::string_view typed) {
    const bool hasTime = typed.find_first_of(":AaPp") != std::string_view::npos;
    const bool hasDay = typed.find_first_of("/-") != std::string_view::npos;
    return hasDay && !hasTime ? base::Date::parse(typed) : std::nullopt;
}

}  // namespace controls
