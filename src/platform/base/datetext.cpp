#include "platform/base/datetext.h"

namespace base {

std::optional<Date> typedDay(std::string_view typed) {
    const bool hasTime = typed.find_first_of(":AaPp") != std::string_view::npos;
    const bool hasDay = typed.find_first_of("/-") != std::string_view::npos;
    return hasDay && !hasTime ? Date::parse(typed) : std::nullopt;
}

}  // namespace base
