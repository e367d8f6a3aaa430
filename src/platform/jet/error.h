#pragma once

#include <cstddef>
#include <string>

#include "platform/base/error.h"

namespace jet {

/// A statement that is not understood. The description names the position (1-based) and shows the
/// text around it.
class SqlError : public base::RunTimeError {
public:
    SqlError(int number, const std::string& description, std::size_t position)
        : base::RunTimeError(number, description), position_(position) {}
    /// The character of the statement, 1-based; 0 where no one place is wrong.
    [[nodiscard]] std::size_t position() const noexcept { return position_; }

private:
    std::size_t position_;
};

namespace errors {
inline constexpr int Syntax = -2147217900;        ///< not a statement of the dialect
inline constexpr int NoSuchTable = -2147217865;   ///< a table that the connection does not see
inline constexpr int NoSuchColumn = -2147217904;  ///< a name that is no column of the tables used
inline constexpr int TypeMismatch = -2147217913;  ///< text compared with a number, and the like
}  // namespace errors

}  // namespace jet
