#include "stops/triprecord/triprecord.h"

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"
#include "runedit/validation/checkedrun.h"
#include "startup/base/fieldvalues.h"

namespace stops {

namespace {

constexpr auto RecordSql =
    "SELECT STOP.STOPID, STOP.DESCRIPTION, STOP.ADDR1, STOP.STOPTYPE, STOP.RIGHTSIDE,"
    " STOP.COMMENT, STOP_TRIPTYPE.* FROM STOP INNER JOIN STOP_TRIPTYPE"
    " ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.ID={}";

std::string trimmedText(const ado::Field& field) {
    return std::string(base::trim(startup::textOf(field)));
}

bool isText(TripField field) {
    return field == TripField::PickupSide || field == TripField::Comment;
}

base::Value fieldValue(ado::Recordset& row, TripField field) {
    base::Value value = row[columnOf(field)].Value();
    return isText(field) && (value.isNull() || base::trim(value.asText()).empty()) ? base::Value("")
                                                                                   : value;
}

TripRecord recordOf(ado::Recordset& row) {
    TripRecord record;
    record.id = row["ID"].asInteger();
    record.intStopId = row["INT_STOPID"].asInteger();
    record.stopId = trimmedText(row["STOPID"]);
    record.description = trimmedText(row["DESCRIPTION"]);
    record.address = trimmedText(row["ADDR1"]);
    record.stopType = trimmedText(row["STOPTYPE"]);
    record.rightSideOnly = runedit::yesNoOf(row["RIGHTSIDE"]);
    record.tripType = trimmedText(row["TRIPTYPE"]);
    record.run = trimmedText(row["RUN"]);
    record.sequence = startup::wholeOf(row["RUNSEQ"]);
    record.changedBy = trimmedText(row["ChangedBy"]);
    record.changed = startup::timeOf(row["changeddt"]);
    for (const TripField field : AllTripFields) {
        record.fields[field] = fieldValue(row, field);
    }
    return record;
}

/// Whether the planner has seen the record as it is stored now.
bool sameAsSeen(const TripRecord& held, const TripRecord& stored) {
    return held.fields == stored.fields && held.run == stored.run &&
           held.sequence == stored.sequence;
}

void writeRecord(ado::Connection& routing, const TripRecord& held, const TripFields& entered,
                 const Stamp& stamp) {
    ado::Recordset row;
    row.Open(
        fmt::format("SELECT STOP_TRIPTYPE.* FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.ID={}", held.id),
        routing, ado::CursorType::Dynamic);
    for (const TripField field : AllTripFields) {
        if (field != TripField::Comment && entered[field] != held.fields[field]) {
            row[columnOf(field)].Value(entered[field]);
        }
    }
    if (entered[TripField::Active] != held.fields[TripField::Active]) {
        row["STATUSCHGDT"].Value(stamp.now);
    }
    row["ChangedBy"].Value(stamp.user);
    row["changeddt"].Value(stamp.now);
    row.Update();
}

void writeComment(ado::Connection& routing, std::int64_t intStopId, const base::Value& comment) {
    ado::Recordset row;
    row.Open(fmt::format("SELECT STOP.* FROM STOP WHERE STOP.INT_STOPID={}", intStopId), routing,
             ado::CursorType::Dynamic);
    row[columnOf(TripField::Comment)].Value(comment);
    row.Update();
}

}  // namespace

bool TripRecord::isTimed() const {
    return isOnRun() && !base::equalsNoCase(stopType, data::stoptype::Directional);
}

std::optional<TripRecord> readTripRecord(ado::Connection& routing, std::int64_t id) {
    ado::Recordset row;
    row.Open(fmt::format(RecordSql, id), routing);
    return row.Eof() ? std::nullopt : std::optional(recordOf(row));
}

std::vector<std::int64_t> tripRecordsOf(ado::Connection& routing, std::string_view run) {
    ado::Recordset rows;
    rows.Open(fmt::format("SELECT STOP_TRIPTYPE.ID FROM STOP INNER JOIN STOP_TRIPTYPE ON"
                          " STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.RUN='{}'"
                          " ORDER BY STOP_TRIPTYPE.RUNSEQ, STOP_TRIPTYPE.ID",
                          ado::escaped(base::trim(run))),
              routing);
    std::vector<std::int64_t> ids;
    for (; !rows.Eof(); rows.MoveNext()) {
        ids.push_back(rows["ID"].asInteger());
    }
    return ids;
}

std::string changesByOthers(const TripRecord& held, const TripRecord& stored,
                            const TripFields& entered) {
    std::string changes = changesByOthers(held.fields, stored.fields, entered);
    if (stored.run != held.run || stored.sequence != held.sequence) {
        changes +=
            fmt::format("{}It is now {}, at place {}", changes.empty() ? "" : "\n",
                        stored.isOnRun() ? "on run " + stored.run : "on no run", stored.sequence);
    }
    return changes;
}

SaveOutcome saveTripRecord(ado::Connection& routing, const TripRecord& held,
                           const TripFields& entered, const Stamp& stamp) {
    ado::CommitOnExit unit(routing);
    auto stored = readTripRecord(routing, held.id);
    if (!stored) {
        return {SaveResult::Deleted, std::nullopt};
    }
    if (!sameAsSeen(held, *stored)) {
        return {SaveResult::Changed, std::move(stored)};
    }
    writeRecord(routing, held, entered, stamp);
    if (entered[TripField::Comment] != held.fields[TripField::Comment]) {
        writeComment(routing, held.intStopId, entered[TripField::Comment]);
    }
    stored = readTripRecord(routing, held.id);
    unit.commit();
    return {SaveResult::Saved, std::move(stored)};
}

}  // namespace stops
