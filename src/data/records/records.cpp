#include "data/records/records.h"

#include <utility>

#include "platform/ado/recordset.h"

namespace data {

namespace {

Record recordOf(ado::Recordset& row, const FieldTable& fields) {
    Record record(fields);
    for (const Field& field : fields) {
        record.set(field.column, row[field.column].Value());
    }
    return record;
}

bool isWritten(const Field& field, const Entries& entries) {
    return entries.isNew ? !field.control.empty()
                         : field.use == FieldUse::Edited && entries.isTouched(field.column);
}

void write(ado::Recordset& row, const Entries& entries, const Author& author) {
    if (row["ACTIVE"].asBoolean() != entries.entered.isYes("ACTIVE")) {
        row["STATUSCHGDT"].Value(author.now);
    }
    for (const Field& field : entries.entered.fields()) {
        if (isWritten(field, entries)) {
            row[field.column].Value(entries.entered[field.column]);
        }
    }
    row["ChangedBy"].Value(author.user);
    row["changeddt"].Value(author.now);
    row.Update();
}

}  // namespace

std::optional<Record> readRecord(ado::Connection& connection, const FieldTable& fields,
                                 std::string_view select) {
    ado::Recordset row(select, connection);
    return row.Eof() ? std::nullopt : std::optional(recordOf(row, fields));
}

SaveResult saveRecord(ado::Connection& connection, std::string_view select, const Entries& entries,
                      const Author& author) {
    // From here to the commit no other program can write, so what is compared is what is changed.
    ado::CommitOnExit unit(connection, {.reads = {std::string(select)}, .writesTogether = true});
    ado::Recordset row(select, connection, ado::CursorType::Dynamic);
    const FieldTable& fields = entries.entered.fields();
    if (entries.isNew) {
        if (!row.Eof()) {
            return {SaveOutcome::Taken, recordOf(row, fields)};
        }
        row.AddNew();
        row["CreatedBy"].Value(author.user);
        row["CREATEDDT"].Value(author.now);
    } else if (row.Eof()) {
        return {SaveOutcome::Deleted, std::nullopt};
    } else if (auto stored = recordOf(row, fields); !changesByOthers(entries, stored).empty()) {
        return {SaveOutcome::Changed, std::move(stored)};
    }
    write(row, entries, author);
    SaveResult result{SaveOutcome::Saved, recordOf(row, fields)};
    row.Close();
    unit.commit();
    return result;
}

}  // namespace data
