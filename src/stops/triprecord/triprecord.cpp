#include "stops/triprecord/triprecord.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace stops {

namespace {

using data::Entries;
using data::Fault;
using data::Field;
using data::FieldKind;
using data::FieldUse;
using data::Rule;
using data::shownField;

constexpr std::size_t MaxCommentCharacters = 255;
constexpr auto InvalidTimeText =
    "Oops, you have entered an invalid time at stop.  Please enter the time again, such as "
    "07:05 AM.";
constexpr auto BlankTimeText =
    "Oops, you have taken the time at stop away.  A stop that is on a run and has been timed needs "
    "its time.  Please enter it again, such as 07:05 AM.";
constexpr auto CommentCharactersText =
    "Oops, the comment has characters that are none to read, such as control characters.  Please "
    "type it instead of pasting it.";

/// More than these no school bus takes or drives.
Rule passengers() {
    return data::upTo(999, "Invalid Number of Passengers",
                      "Oops, you have entered an invalid number of passengers.  Please enter a "
                      "whole number from 0 to 999.");
}

Rule amount(const char* name, const char* what) {
    return data::upTo(999.99, fmt::format("Invalid {}", name),
                      fmt::format("Oops, you have entered an invalid {}.  Please enter the {}, "
                                  "from 0 to 999.99.",
                                  base::lowered(name), what));
}

std::optional<Fault> timeFault(const Field& field, const Entries& entries) {
    const auto& time = entries.entered[field.column];
    const bool mayBeBlank = !TripRecord(entries.known).isTimed();
    if (time.isDate() || (time.isNull() && mayBeBlank)) {
        return std::nullopt;
    }
    return time.isNull() ? Fault{"Blank Time at Stop", BlankTimeText}
                         : Fault{"Invalid Time at Stop", InvalidTimeText};
}

std::optional<Fault> characterFault(const Field& field, const Entries& entries) {
    const auto text = entries.entered.text(field.column);
    const bool isReadable = std::ranges::none_of(text, [](char c) {
        return (static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t') || c == '\x7f';
    });
    return isReadable ? std::nullopt
                      : std::optional(Fault{"Invalid Comment", CommentCharactersText});
}

}  // namespace

const data::FieldTable& tripFields() {
    using enum FieldKind;
    static const Rule load = amount("Load Time", "minutes at the stop");
    static const Rule drive = amount("Driving Time", "minutes from the stop before");
    static const Rule distance = amount("Distance", "miles from the stop before");
    static const Rule length = data::atMost(MaxCommentCharacters);
    static const data::FieldTable fields{
        {"NUM_STUDENTS", "Passengers", Number, "NUM_STUDENTS", {passengers()}},
        {"LOAD_TIME", "Load time", Number, "LOAD_TIME", {load}},
        {"TIME_TOSTOP", "Driving time", Number, "TIME_TOSTOP", {drive}},
        {"DIST_TOSTOP", "Distance", Number, "DIST_TOSTOP", {distance}},
        {"TIME_AT_STOP", "Time at stop", DateTime, "TIME_AT_STOP", {{timeFault}}},
        {"RUN_PICKUP_SIDE", "Pick-up side", Choice, "RUN_PICKUP_SIDE"},
        {"ACTIVE", "Active", YesNo, "Active"},
        {"COMMENT", "Comment", Text, "Comment", {{characterFault}, length}},
        {"RUN", "Run", Key, "", {}, FieldUse::Watched},
        {"RUNSEQ", "Place on the run", Number, "", {}, FieldUse::Watched},
        shownField("ID", Number),
        shownField("INT_STOPID", Number),
        shownField("STOPID", Key),
        shownField("DESCRIPTION", Key),
        shownField("ADDR1", Key),
        shownField("STOPTYPE", Key),
        shownField("RIGHTSIDE", YesNo),
        shownField("TRIPTYPE", Key),
        shownField("ChangedBy", Key),
        shownField("changeddt", DateTime)};
    return fields;
}

TripRecord::TripRecord(const data::Record& stored)
    : fields(stored),
      id(stored["ID"].asInteger()),
      intStopId(stored["INT_STOPID"].asInteger()),
      stopId(stored.text("STOPID")),
      stopType(stored.text("STOPTYPE")),
      tripType(stored.text("TRIPTYPE")),
      run(stored.text("RUN")) {}

bool TripRecord::isTimed() const {
    return isOnRun() && !base::equalsNoCase(stopType, data::stoptype::Directional);
}

std::optional<base::Date> TripRecord::timeAtStop() const {
    const auto& time = fields["TIME_AT_STOP"];
    return time.isDate() ? std::optional(time.asDate()) : std::nullopt;
}

std::string tripRecordSql(std::int64_t id) {
    return fmt::format(
        "SELECT STOP.STOPID, STOP.DESCRIPTION, STOP.ADDR1, STOP.STOPTYPE, STOP.RIGHTSIDE,"
        " STOP.COMMENT, STOP_TRIPTYPE.* FROM STOP INNER JOIN STOP_TRIPTYPE"
        " ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.ID={}",
        id);
}

std::vector<std::int64_t> tripRecordsOf(ado::Connection& routing, std::string_view run) {
    return ado::readAll(
        fmt::format("SELECT STOP_TRIPTYPE.ID FROM STOP INNER JOIN STOP_TRIPTYPE ON"
                    " STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.RUN='{}'"
                    " ORDER BY STOP_TRIPTYPE.RUNSEQ, STOP_TRIPTYPE.ID",
                    ado::escaped(base::trim(run))),
        routing, [](ado::Recordset& rows) { return rows["ID"].asInteger(); });
}

}  // namespace stops
