#pragma once

#include <span>

#include "platform/base/value.h"

namespace jet {

/// A function that translated statements call and that the store must know under this name.
/// Arguments come as the store holds them (a date-time as its ISO text, yes/no as 0 or 1); a date
/// result goes back as its ISO text, a yes/no result as 0 or 1. `call` may raise RunTimeError,
/// which fails the statement.
struct StoreFunction {
    const char* name;
    int arguments;
    /// The same arguments always give the same result.
    bool deterministic;
    base::Value (*call)(std::span<const base::Value> arguments);
};

/// The date itself; raises "Overflow" (6) for one outside the calendar, the years 100 to 9999.
[[nodiscard]] base::Date withinCalendar(base::Date date);

/// All of them, jet_like(text, pattern) first.
[[nodiscard]] std::span<const StoreFunction> storeFunctions();

}  // namespace jet
