#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/records/fields.h"
#include "platform/ado/connection.h"
#include "platform/base/date.h"

/// Reading and saving the record that a form edits. What another program does to it meanwhile is
/// noticed: nothing is overwritten that the planner has not been told of.
namespace data {

/// The record that a statement finds; nothing where there is none. The statement names the columns
/// of all fields, which may come from joined tables.
[[nodiscard]] std::optional<Record> readRecord(ado::Connection& connection,
                                               const FieldTable& fields, std::string_view select);

/// Who saves, and when.
struct Author {
    std::string user;
    base::Date now;
};

enum class SaveOutcome {
    Saved,
    Taken,    ///< a new record's key belongs to another one by now; nothing was written
    Changed,  ///< another program has changed the record; nothing was written
    Deleted,  ///< another program has deleted it; nothing was written
};

struct SaveResult {
    SaveOutcome outcome;
    std::optional<Record> stored;  ///< as it is now; nothing where it was deleted
};

/// Saves the entries of the record that the statement finds, as one unit of work: the fields that
/// were touched, or all that stand in the form for a new record; ChangedBy and changeddt; CreatedBy
/// and CREATEDDT of a new one; STATUSCHGDT where ACTIVE changes. The entries must have passed
/// findFault. Raises store::StoreError.
[[nodiscard]] SaveResult saveRecord(ado::Connection& connection, std::string_view select,
                                    const Entries& entries, const Author& author);

}  // namespace data
