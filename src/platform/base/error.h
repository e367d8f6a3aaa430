#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace base {

/// Error numbers of the run time that the program itself raises or tests for.
namespace errors {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int InternalError = 51;
inline constexpr int FileNotFound = 53;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccess = 75;
inline constexpr int ObjectNotSet = 91;
inline constexpr int InvalidUseOfNull = 94;
}  // namespace errors

/// A run-time error with the number that the error handler reports. Everything that can be trapped
/// derives from it; the end of the program does not (see EndProgram).
class RunTimeError : public std::runtime_error {
public:
    RunTimeError(int number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    [[nodiscard]] int number() const noexcept { return number_; }
    [[nodiscard]] std::string description() const { return what(); }
    /// The SQL statement that raised it, cut where it is very long; "" for any other error.
    [[nodiscard]] const std::string& statement() const noexcept { return statement_; }
    /// Notes the statement unless one is known already.
    void raisedBy(std::string_view statement);

private:
    int number_;
    std::string statement_;
};

/// Raises RunTimeError with the run time's own text for one of `errors`.
[[noreturn]] void raise(int number);

/// Thrown to end the program at once. No std::exception on purpose: no trap may swallow it.
struct EndProgram {
    int exitCode = 0;
};

}  // namespace base
