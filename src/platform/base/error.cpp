#include "platform/base/error.h"

#include <fmt/format.h>

#include "platform/base/lookup.h"
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
    static constexpr std::pair<int, const char*> Texts[] = {
        {errors::InvalidProcedureCall, "Invalid procedure call or argument"},
        {errors::Overflow, "Overflow"},
        {errors::OutOfMemory, "Out of memory"},
        {errors::SubscriptOutOfRange, "Subscript out of range"},
        {errors::TypeMismatch, "Type mismatch"},
        {errors::InternalError, "Internal error"},
        {errors::FileNotFound, "File not found"},
        {errors::PermissionDenied, "Permission denied"},
        {errors::PathFileAccess, "Path/File access error"},
        {errors::ObjectNotSet, "Object variable or With block variable not set"},
        {errors::InvalidUseOfNull, "Invalid use of Null"}};
    throw RunTimeError(number,
                       lookUp(Texts, number, "Application-defined or object-defined error"));
}

}  // namespace base
