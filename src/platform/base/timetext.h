#pragma once

#include <string>
#include <string_view>

#include "platform/base/date.h"

namespace base {

/// A typed time of day in the form that time boxes show: "7:5 am", "705", "7:05a" and "07:05" all
/// become "07:05 AM"; seconds stay where there are some. Blanks alone become "". A text that is no
/// time of day comes back as it is, so that the form can refuse it.
[[nodiscard]] std::string tidyTime(std::string_view typed);

/// "7:05 AM", for sentences and paper; where times stand below one another they have Date::hhmm().
[[nodiscard]] std::string clockText(Date time);

}  // namespace base
