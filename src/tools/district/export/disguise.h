#pragma once

#include <cstdint>
#include <string_view>

#include "platform/base/value.h"

namespace tools::district {

/// What is written in the place of a cell so that a district can be shown to strangers: invented
/// names, addresses and phones of students and their numbers, invented names of staff, no remarks
/// on addresses, no passwords.
struct Disguise {
    std::string_view table;
    std::string_view column;
    std::string_view person;  ///< the column that says whose cell it is
    base::Value (*invent)(std::int64_t person);
};

/// The disguise of a column; null where its cells stay as they are.
[[nodiscard]] const Disguise* disguiseOf(std::string_view table, std::string_view column);

}  // namespace tools::district
