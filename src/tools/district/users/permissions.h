#pragma once

#include <array>
#include <string_view>

namespace tools::district {

/// The name under which the suite keeps this program's permissions.
inline constexpr std::string_view Product = "ROUTING";

/// May do everything as long as it has no password.
inline constexpr std::string_view BuiltInAccount = "R.T.E.";

/// One of the program's permissions.
struct Permission {
    std::string_view code;         ///< as it is stored
    std::string_view name;         ///< of the button that it covers
    std::string_view word;         ///< as a command line names it
    std::string_view description;  ///< what it lets a user do
};

inline constexpr std::array<Permission, 5> Permissions = {{
    {"RTG210", "New", "new", "Make a new run"},
    {"RTG230", "Delete", "delete", "Delete a run"},
    {"RTG250", "Change Bell Times", "bell-times", "Change bell times"},
    {"RTG260", "Group Change", "group-change", "Change a group of runs"},
    {"RTG270", "Print", "print", "Print and export"},
}};

/// The permission of that code, name or word, without regard to case, blanks and signs; null where
/// there is none.
[[nodiscard]] const Permission* findPermission(std::string_view text);

}  // namespace tools::district
