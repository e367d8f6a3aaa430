#pragma once

#include <cstdint>
#include <string_view>

#include "platform/jet/dialect.h"

namespace jet {

/// What a function takes in a place, and so how an argument of another kind is converted.
enum class Takes : std::uint8_t {
    Anything,
    Text,
    Number,
    Date,
    Condition,
    Ordered,  ///< anything, written so that the store orders it as the dialect does
};

enum class Gives : std::uint8_t {
    Text,
    Integer,
    Number,
    Date,
    YesNo,
    First,   ///< the kind of its first argument
    Branch,  ///< the kind of the first branch that is not Null (IIF, Switch, Nz)
};

/// A function of the dialect with one number of arguments.
struct Builtin {
    static constexpr int AnyPairs = -1;  ///< any even number of arguments

    std::string_view name;  ///< upper case, without $
    int arguments;
    Takes takes[3];
    Gives gives;
    Op op;
    bool aggregate = false;
};

/// The function of that name and number of arguments; null where there is none. `known` tells
/// whether the name alone is one. The name may end in $.
[[nodiscard]] const Builtin* findBuiltin(std::string_view name, std::size_t arguments, bool& known);

}  // namespace jet
