#include "platform/base/error.h"

#include <fmt/format.h>

#include "platform/base/text.h"

namespace base {

void RunTimeError::raisedBy(std::string_view statement) {
    constexpr std::size_t Longest = 2000;
    if (!statement_.empty()) {
        return;
    }
    const auto beginning = firstCharacters(statement, Longest);
    statement_ = beginning.size() == statement.size()
                     ? std::string(statement)
                     : fmt::format("{} … ({} bytes in all)", beginning, statement.size());
}

void raise(int number) {
    switch (number) {
        case errors::InvalidProcedureCall:
            throw RunTimeError(number, "Invalid procedure call or argument");
        case errors::Overflow:
            throw RunTimeError(number, "Overflow");
        case errors::OutOfMemory:
            throw RunTimeError(number, "Out of memory");
        case errors::SubscriptOutOfRange:
            throw RunTimeError(number, "Subscript out of range");
        case errors::TypeMismatch:
            throw RunTimeError(number, "Type mismatch");
        case errors::InternalError:
            throw RunTimeError(number, "Internal error");
        case errors::FileNotFound:
            throw RunTimeError(number, "File not found");
        case errors::PermissionDenied:
            throw RunTimeError(number, "Permission denied");
        case errors::PathFileAccess:
            throw RunTimeError(number, "Path/File access error");
        case errors::ObjectNotSet:
            throw RunTimeError(number, "Object variable or With block variable not set");
        case errors::InvalidUseOfNull:
            throw RunTimeError(number, "Invalid use of Null");
        default:
            throw RunTimeError(number, "Application-defined or object-defined error");
    }
}

}  // namespace base
