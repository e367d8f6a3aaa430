#pragma once

namespace ado {

/// Values are the interface's own numbers.
enum class ObjectState { Closed = 0, Open = 1 };
enum class CursorType { ForwardOnly = 0, Keyset = 1, Dynamic = 2, Static = 3 };
enum class LockType { ReadOnly = 1, Pessimistic = 2, Optimistic = 3 };

namespace errors {
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int SelectNotExecutable = 3065;  ///< Execute was given a SELECT, or Open none
inline constexpr int NotInThisContext = 3219;     ///< going back in a forward-only recordset
inline constexpr int ItemNotFound = 3265;  ///< no such field, or a bare name that is ambiguous
inline constexpr int ObjectClosed = 3704;
inline constexpr int ObjectOpen = 3705;
inline constexpr int NotUpdatable = 3251;
inline constexpr int RecordDeleted = -2147217885;  ///< the row was deleted by another user
inline constexpr int RecordChanged = -2147217864;  ///< the row was changed by another user
inline constexpr int NoTransaction = -2147168242;  ///< commit or rollback without a beginning
}  // namespace errors

}  // namespace ado
