#pragma once

namespace ado {

/// Values are the interface's own numbers.
enum class ObjectState { Closed = 0, Open = 1 };
enum class CursorType { ForwardOnly = 0, Keyset = 1, Dynamic = 2, Static = 3 };
enum class LockType { ReadOnly = 1, Pessimistic = 2, Optimistic = 3 };

namespace errors {
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int ItemNotFound = 3265;       ///< no such field, or a bare name that is ambiguous
inline constexpr int ObjectClosed = 3704;
inline constexpr int ObjectOpen = 3705;
inline constexpr int NotUpdatable = 3251;
inline constexpr int RecordDeleted = -2147217885;  ///< the row was deleted by another user
inline constexpr int RecordChanged = -2147217864;  ///< the row was changed by another user
}  // namespace errors

}  // namespace ado
