#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "runedit/validation/rules.h"
#include "tools/district/users/permissions.h"

namespace tools::district {

/// A vehicle type with its seats at the three capacity levels.
struct VehicleType {
    std::string_view code;
    std::string_view description;
    int high = 0;
    int medium = 0;
    int low = 0;
    int overfill = 0;
    bool active = true;
    std::vector<runedit::NeedCount> needs = {};  ///< that it can carry, by code

    [[nodiscard]] int seats(std::string_view level) const;
};

[[nodiscard]] const std::vector<VehicleType>& vehicleTypes();
/// Raises "Subscript out of range" for an unknown code.
[[nodiscard]] const VehicleType& vehicleType(std::string_view code);

/// Special needs, the commonest first; the last one needs a lift.
inline constexpr std::array<std::string_view, 4> NeedCodes = {"AIDE", "SEAT", "HARN", "WC"};

namespace triptype {
inline constexpr std::string_view Morning = "AM";
inline constexpr std::string_view Afternoon = "PM";
inline constexpr std::string_view Noon = "MID";
inline constexpr std::string_view Summer = "SUM";
}  // namespace triptype

/// The users of a new district, none with a password: one may do everything, one may only print,
/// and the built-in account is not asked.
namespace user {
inline constexpr std::string_view Planner = "PLANNER";
inline constexpr std::string_view Clerk = "CLERK";
inline constexpr std::string_view BuiltIn = BuiltInAccount;
}  // namespace user

/// Who may do everything in a new district of one's own.
struct Administrator {
    std::string user = "ADMIN";
    std::string password;
};

/// Rows of one table that a district starts with.
struct CodeRows {
    data::DatabaseFile file = data::DatabaseFile::Routing;
    std::string table;
    std::vector<std::string> columns;
    std::vector<std::vector<base::Value>> rows;
};

/// What the sample and the invented districts start with: code tables, time zones, permissions,
/// activity codes and the vehicle types.
[[nodiscard]] std::vector<CodeRows> codeRows();

/// What every district has: the trip types AM and PM, the stop types that the program names, time
/// zones, activity codes, the permissions and one user who has them all. Raises
/// InvalidProcedureCall (5) for a password that cannot be stored.
[[nodiscard]] std::vector<CodeRows> startingRows(const Administrator& administrator);

}  // namespace tools::district
