#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/ado/enums.h"
#include "platform/base/notcopied.h"
#include "platform/base/value.h"

namespace ado {

class Recordset;

/// One column of the current row. Obtained once from Recordset::Fields, it stays good for all rows.
class Field {
public:
    [[nodiscard]] const std::string& Name() const;
    /// The current row's value as its column's kind. Raises NoCurrentRecord.
    [[nodiscard]] base::Value Value() const;
    /// Sets the value that Update will write. Raises NotUpdatable, NoCurrentRecord.
    void Value(const base::Value& value);

    [[nodiscard]] bool isNull() const;
    /// A text cell without a copy, as it is stored (Null is empty, a date-time is its ISO text);
    /// holds until the cursor moves or anything is written on the connection.
    [[nodiscard]] std::string_view textView() const;

    // Shorthands for Value() and its conversions.
    [[nodiscard]] std::string asText() const { return Value().asText(); }
    [[nodiscard]] double asNumber() const { return Value().asNumber(); }
    [[nodiscard]] std::int64_t asInteger() const { return Value().asInteger(); }
    [[nodiscard]] bool asBoolean() const { return Value().asBoolean(); }

private:
    friend class Recordset;
    Field(Recordset* owner, int index) : owner_(owner), index_(index) {}
    Recordset* owner_;
    int index_;
};

/// Rows of one SELECT, read lazily. A forward-only recordset reads on as it moves; the others also
/// move back and count. Rows of base tables can be changed, added and deleted where the statement
/// allows it; writes go by row key and only where every fetched column still holds what was
/// fetched. A change not yet written is written when the record is left. What this recordset has
/// written shows in all its rows.
class Recordset : private base::NotCopied {
public:
    Recordset();  ///< closed
    /// Opened, see Open.
    Recordset(std::string_view source, Connection& connection,
              CursorType cursor = CursorType::ForwardOnly, LockType lock = LockType::Optimistic);
    ~Recordset();

    /// Stands on the first row. Raises jet::SqlError, store::StoreError, SelectNotExecutable,
    /// ObjectOpen, ObjectClosed (the connection).
    void Open(std::string_view source, Connection& connection,
              CursorType cursor = CursorType::ForwardOnly, LockType lock = LockType::Optimistic);
    void Close();
    [[nodiscard]] ObjectState State() const;

    /// After the last and before the first row; both are true for an empty result.
    [[nodiscard]] bool Eof() const;
    [[nodiscard]] bool Bof() const;
    // Raise NoCurrentRecord without a row to leave. Forward-only: MoveFirst runs the statement
    // again, MovePrevious and MoveLast raise NotInThisContext.
    void MoveNext();
    void MovePrevious();
    void MoveFirst();
    void MoveLast();
    /// Rows in all; -1 for a forward-only recordset.
    [[nodiscard]] std::int64_t RecordCount();

    [[nodiscard]] int fieldCount() const;
    [[nodiscard]] Field& Fields(int index);
    /// By name without regard to case; "TABLE.COLUMN" where a join has two of one name, whose bare
    /// name raises ItemNotFound, as does an unknown one.
    [[nodiscard]] Field& Fields(std::string_view name);
    Field& operator[](std::string_view name) { return Fields(name); }

    /// A new row with the table's defaults; written by Update, it is then the current row, and the
    /// last. Raises NotUpdatable.
    void AddNew();
    /// Writes the changed fields. Raises RecordDeleted, RecordChanged, store::StoreError.
    void Update();
    void CancelUpdate();
    /// Deletes the current row; MoveNext goes on to the next one.
    void Delete();
    /// Reads the current row again from the tables; RecordDeleted where it is gone.
    void Resync();

private:
    friend class Field;
    struct State_;
    [[nodiscard]] State_& open() const;
    std::unique_ptr<State_> state_;
};

/// What `of` makes of each row of a question, in its order.
template <class Of>
[[nodiscard]] auto readAll(std::string_view source, Connection& connection, Of of) {
    std::vector<std::invoke_result_t<Of&, Recordset&>> all;
    for (Recordset rows(source, connection); !rows.Eof(); rows.MoveNext()) {
        all.push_back(of(rows));
    }
    return all;
}

}  // namespace ado
