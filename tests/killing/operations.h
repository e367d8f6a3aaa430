#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/ado/connection.h"

namespace killing {

/// The databases of a district that group operations work on, opened as the program does.
struct District {
    /// Of a folder, or at a place on a server.
    explicit District(const std::string& folder);

    ado::Connection routing;
    ado::Connection cross;
};

/// One group operation over the whole district.
struct Operation {
    /// What is written as one: a run with its stops, a route with its runs, a stop with its log
    /// row.
    enum class Unit { Run, Route, MovedStop };

    std::string_view name;
    void (*perform)(District& district);
    Unit unit = Unit::Run;
    /// A first step over all units that is made as one; null for none.
    void (*firstStep)(District& district) = nullptr;
};

[[nodiscard]] std::span<const Operation> operations();

/// Raises std::invalid_argument for another name.
[[nodiscard]] const Operation& operationOf(std::string_view name);

}  // namespace killing
