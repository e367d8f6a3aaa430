#include "runedit/editor/runrecord.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "platform/base/text.h"
#include "startup/base/mdlNONULL.h"

namespace runedit {

namespace {

std::string auditText(const ado::Field& field) {
    return std::string(base::trim(startup::NoNullString(field.Value()).asText()));
}

StoredRun storedRunOf(ado::Recordset& row) {
    StoredRun run;
    for (const auto& info : runFields()) {
        run.texts[info.field] = shownText(info, row[info.column].Value());
    }
    run.audit = {auditText(row["CreatedBy"]), auditText(row["CREATEDDT"]),
                 auditText(row["ChangedBy"]), auditText(row["changeddt"]),
                 auditText(row["STATUSCHGDT"])};
    return run;
}

void write(ado::Recordset& row, RunField field, const RunTexts& texts) {
    const auto& info = infoOf(field);
    row[info.column].Value(storedValue(info, texts[field]));
}

/// Fields that are written one after the other; the id and the status are not among them.
bool isPlainField(RunField field) { return field != RunField::RunId && field != RunField::Active; }

void writeStatus(ado::Recordset& row, const RunTexts& texts, base::Date now) {
    const auto& info = infoOf(RunField::Active);
    if (shownText(info, row[info.column].Value()) != texts[RunField::Active]) {
        write(row, RunField::Active, texts);
        row["STATUSCHGDT"].Value(now);
    }
}

void finish(ado::Recordset& row, const RunTexts& texts, const Author& author) {
    writeStatus(row, texts, author.now);
    row["ChangedBy"].Value(author.user);
    row["changeddt"].Value(author.now);
    row.Update();
}

void addRow(ado::Recordset& row, const RunTexts& texts, const Author& author) {
    row.AddNew();
    write(row, RunField::RunId, texts);
    row["Regenerate"].Value(false);
    for (const auto* total : {"total_time", "total_miles", "Total_Students", "total_stops"}) {
        row[total].Value(0);
    }
    row["CreatedBy"].Value(author.user);
    row["CREATEDDT"].Value(author.now);
    for (const auto& info : runFields()) {
        if (isPlainField(info.field)) {
            write(row, info.field, texts);
        }
    }
    finish(row, texts, author);
}

void changeRow(ado::Recordset& row, const RunEntries& entries, const RunTexts& texts,
               const Author& author) {
    // Untouched fields, the totals among them, keep what is stored.
    for (const auto& info : runFields()) {
        if (isPlainField(info.field) && entries.isTouched(info.field, texts[info.field])) {
            write(row, info.field, texts);
        }
    }
    finish(row, texts, author);
}

std::string inWords(const FieldInfo& info, const std::string& text) {
    if (info.kind == FieldKind::YesNo) {
        return text == yesNoText(true) ? "Yes" : "No";
    }
    return base::trim(text).empty() ? "empty" : fmt::format("\"{}\"", text);
}

}  // namespace

std::string describe(const std::vector<FieldChange>& changes) {
    std::string lines;
    for (const auto& change : changes) {
        const auto& info = infoOf(change.field);
        lines += fmt::format("{}: was {}, is now {}", info.caption, inWords(info, change.shown),
                             inWords(info, change.stored));
        lines += change.entered ? fmt::format(", you entered {}\n", inWords(info, *change.entered))
                                : "\n";
    }
    return lines;
}

std::optional<StoredRun> readStoredRun(ado::Connection& routing, std::string_view run) {
    ado::Recordset row;
    return data::openRun(row, routing, base::trim(run)) ? std::optional(storedRunOf(row))
                                                        : std::nullopt;
}

void RunEntries::filled(const RunTexts& stored, const RunTexts& shown) {
    stored_ = stored;
    shown_ = shown;
}

void RunEntries::filled(RunField field, const std::string& stored, const std::string& shown) {
    stored_[field] = stored;
    shown_[field] = shown;
}

bool RunEntries::anyTouched(const RunTexts& entered) const {
    const auto fields = runFields();
    return std::any_of(fields.begin(), fields.end(), [&](const FieldInfo& info) {
        return isTouched(info.field, entered[info.field]);
    });
}

std::vector<FieldChange> RunEntries::changesByOthers(const RunTexts& storedNow,
                                                     const RunTexts& entered) const {
    std::vector<FieldChange> changes;
    for (const auto& [field, column, caption, kind] : runFields()) {
        if (isTotal(field) || storedNow[field] == stored_[field]) {
            continue;
        }
        changes.push_back({field, stored_[field], storedNow[field], {}});
        if (isTouched(field, entered[field])) {
            changes.back().entered = entered[field];
        }
    }
    return changes;
}

bool isTotal(RunField field) {
    return field >= RunField::TotalStudents && field <= RunField::TotalStops;
}

SaveResult createRun(ado::Connection& routing, const RunTexts& texts, const Author& author) {
    ado::CommitOnExit unit(routing);
    ado::Recordset row;
    if (data::openRun(row, routing, base::trim(texts[RunField::RunId]), ado::CursorType::Dynamic)) {
        return {SaveOutcome::IdTaken, storedRunOf(row)};
    }
    addRow(row, texts, author);
    row.Resync();
    SaveResult result{SaveOutcome::Saved, storedRunOf(row)};
    row.Close();
    unit.commit();
    return result;
}

SaveResult changeRun(ado::Connection& routing, const RunEntries& entries, const RunTexts& texts,
                     const Author& author) {
    // From here to the commit no other program can write, so what is compared is what is changed.
    ado::CommitOnExit unit(routing);
    ado::Recordset row;
    if (!data::openRun(row, routing, base::trim(texts[RunField::RunId]),
                       ado::CursorType::Dynamic)) {
        return {SaveOutcome::Deleted};
    }
    const auto stored = storedRunOf(row);
    if (auto changes = entries.changesByOthers(stored.texts, texts); !changes.empty()) {
        return {SaveOutcome::Changed, stored, std::move(changes)};
    }
    changeRow(row, entries, texts, author);
    row.Resync();
    SaveResult result{SaveOutcome::Saved, storedRunOf(row)};
    row.Close();
    unit.commit();
    return result;
}

}  // namespace runedit
