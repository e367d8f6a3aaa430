#include "runedit/editor/runfields.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/lookups/mdlGetItems.h"
#include "platform/base/date.h"

namespace runedit {

namespace {

using data::Entries;
using data::Fault;
using data::Field;
using data::FieldUse;
using data::GetLocCode;
using data::GetRunFamily;
using data::GetSchool;
using data::GetTripType;
using data::GetVehType;
using data::Rule;
using data::shownField;
using MaybeFault = std::optional<Fault>;

constexpr std::string_view NotFound = "NOT FOUND";
constexpr std::string_view IllegalCharacters = "#%*'/\\\"";
constexpr std::string_view ClosedStreets = "GIS_CLOSEDSTREETFILENAME";
constexpr std::string_view FromStart = "Start Time";

// Codes of the faults; an illegal character in the run's id and an unknown vehicle type have the
// same one: meant as it is. The suite's other programs do not know the last two.
constexpr int BlankRunId = 1;
constexpr int TakenRunId = 2;
constexpr int IllegalRunId = 7;
constexpr int InvalidTime = 8;
constexpr int OverFillBeyond = 9;
constexpr int TooLong = 10;

// The longest texts that are saved, in characters. A run's id names files of the map software.
constexpr std::size_t MaxRunId = 30;
constexpr std::size_t MaxText = 255;
constexpr std::size_t MaxComment = 4000;

MaybeFault runIdFault(const Field& field, const Entries& entries) {
    const auto runId = entries.entered.text(field.column);
    if (runId.empty()) {
        return Fault{"Blank RunID", "Oops, you have not entered a RunID.  Please do so."};
    }
    if (runId.find_first_of(IllegalCharacters) != std::string::npos) {
        // Two backslashes stand in the text itself.
        return Fault{"Illegal Character in the RUNID",
                     "Oops, you have entered a RunID using one of the following characters: "
                     "(#, %, *, /, \\\\, \", ') these are not allowed.  Please change your "
                     "Run ID.",
                     IllegalRunId};
    }
    // The id of a stored run is locked.
    const auto other = entries.isNew ? data::GetRun(runId) : std::string(NotFound);
    return other == NotFound ? MaybeFault() : conflictingRunId(other);
}

using LookUp = std::string (*)(const std::string& key);

MaybeFault keyFault(const std::string& key, const char* name, LookUp lookUp) {
    const auto title = fmt::format("Invalid {}", name);
    if (key.empty() || lookUp(key) != NotFound) {
        return std::nullopt;
    }
    return Fault{title, fmt::format("Oops, you have entered a {} that is not in the list.  Please "
                                    "do so.",
                                    name)};
}

/// A key that is not blank must be known.
Rule known(const char* name, LookUp lookUp, int code) {
    const auto check = [=](const Field& field, const Entries& entries) {
        return keyFault(entries.entered.text(field.column), name, lookUp);
    };
    return {check, code, true};
}

MaybeFault timeFault(const Field& field, const data::Record& run) {
    if (run[field.column].isDate()) {
        return std::nullopt;
    }
    return Fault{
        fmt::format("Invalid {}", field.caption),
        fmt::format("Oops, you have entered an Invalid {}.  Please reenter the time, making sure "
                    "to include the ':' to seperate the hour from minutes (hh:mm:ss AM format).",
                    field.caption),
        InvalidTime, field.column};
}

MaybeFault timeFault(const data::Record& run, std::string_view column) {
    return timeFault(data::fieldOf(runFields(), column), run);
}

MaybeFault enteredTimeFault(const Field& field, const Entries& entries) {
    return timeFault(field, entries.entered);
}

Rule overFill() {
    return data::upTo(999, "Invalid Over Fill",
                      "Oops, you have entered an Over Fill that is not a number of seats.  Please "
                      "enter a whole number from 0 to 999.",
                      OverFillBeyond);
}

constexpr std::string_view Times[] = {"BellTime", "StartTime", "EndTime"};
constexpr std::string_view Days[] = {"monday", "tuesday", "wednesday", "thursday", "friday"};

std::string hhmm(const Entries& entries, std::string_view column) {
    return entries.entered[column].asDate().hhmm();
}

bool isDayAlone(const std::string& text) {
    const auto date = base::Date::parse(text);
    return date && *date == date->dateValue() && *date != date->timeValue();
}

bool endsBeforeItStarts(const Entries& entries) {
    return (entries.isTouched("StartTime") || entries.isTouched("EndTime")) &&
           entries.entered["EndTime"].asDate() < entries.entered["StartTime"].asDate();
}

bool isNewForNoDay(const Entries& entries) {
    return entries.isNew && std::ranges::none_of(Days, [&](std::string_view day) {
               return entries.entered.isYes(day);
           });
}

}  // namespace

const data::FieldTable& runFields() {
    using enum data::FieldKind;
    static const Rule runId{runIdFault, BlankRunId, true};
    static const Rule text = data::atMost(MaxText, TooLong);
    static const Rule time{enteredTimeFault, InvalidTime, true};
    static const data::FieldTable fields{
        {"Run", "Run ID", Key, "RunID", {runId, data::atMost(MaxRunId, TooLong)}, FieldUse::Fixed},
        {"Description", "Description", Text, "RunDesc", {text}},
        {"School", "School", Key, "cmbSchool", {known("School", GetSchool, 4)}},
        {"TripType", "Trip Type", Key, "cmbTripType", {known("Trip Type", GetTripType, 5)}},
        {"RunFamily", "Run Family", Key, "cmbRunFamily", {known("Run Family ID", GetRunFamily, 3)}},
        {"LocCode", "Location", Key, "cmbLOCCODE", {known("Location", GetLocCode, 6)}},
        {"VehType", "Vehicle Type", Key, "cmbVEHTYPE", {known("Vehicle Type", GetVehType, 7)}},
        {"Capacity", "Capacity", Choice, "cmbCapacity"},
        {"BellTime", "Bell Time", Time, "BellTime", {time}},
        {"OverFill", "Over Fill", Number, "OverFill", {overFill()}, FieldUse::Edited, 0},
        {"Pickup", "Pickup", YesNo, "Pickup"},
        {"TimeToUse", "Time To Use", Choice, "TimeToUse", {}, FieldUse::Edited, "End Time"},
        {"StartTime", "Start Time", Time, "StartTime", {time}},
        {"EndTime", "End Time", Time, "EndTime", {time}},
        {"Comment", "Comment", Text, "Comment", {data::atMost(MaxComment, TooLong)}},
        shownField("Total_Students", Number, "TotalPass"),
        shownField("total_miles", Number, "TotalDistance"),
        shownField("total_time", Number, "TotalRideTime"),
        shownField("total_stops", Number, "TotalStops"),
        {ClosedStreets, "Closed Streets File", Text, ClosedStreets, {text}},
        {"monday", "Monday", YesNo, "chkMonday"},
        {"tuesday", "Tuesday", YesNo, "chkTuesday"},
        {"wednesday", "Wednesday", YesNo, "chkWednesday"},
        {"thursday", "Thursday", YesNo, "chkThursday"},
        {"friday", "Friday", YesNo, "chkFriday"},
        {"Regenerate", "Regenerate", YesNo, "Regenerate"},
        {"ACTIVE", "Active", YesNo, "Active"},
        shownField("INT_ROUTEID", Number),
        shownField("CreatedBy", Key),
        shownField("CREATEDDT", DateTime),
        shownField("ChangedBy", Key),
        shownField("changeddt", DateTime),
        shownField("STATUSCHGDT", DateTime)};
    return fields;
}

std::vector<std::string> keyReads(const data::Record& entered) {
    constexpr std::pair<const char*, LookUp> Keys[]{{"School", GetSchool},
                                                    {"TripType", GetTripType},
                                                    {"RunFamily", GetRunFamily},
                                                    {"LocCode", GetLocCode},
                                                    {"VehType", GetVehType}};
    std::vector<std::string> reads;
    for (const auto& [column, lookUp] : Keys) {
        if (const auto key = entered.text(column); !key.empty()) {
            reads.push_back(data::questionOf(lookUp, key));
        }
    }
    return reads;
}

data::Record newRun() {
    data::Record run(runFields());
    run.set("ACTIVE", true);
    run.set("Pickup", true);
    run.set("TimeToUse", FromStart);
    return run;
}

data::Fault conflictingRunId(const std::string& otherDescription) {
    return {"Conflicting RunID",
            "Oops, you have entered a RunID that is already being used by another run.  The "
            "description of the other conflicting run is: " +
                otherDescription + ".  Please change the RunID.",
            TakenRunId, "Run"};
}

std::string doubtsAbout(const Entries& entries, const TypedText& typed) {
    std::string doubts;
    for (const auto column : Times) {
        if (const auto text = typed(column); entries.isTouched(column) && isDayAlone(text)) {
            doubts += fmt::format(
                "The {}, {}, is a day without a time of day.  It is saved as {}.\n",
                data::fieldOf(runFields(), column).caption, text, hhmm(entries, column));
        }
    }
    if (endsBeforeItStarts(entries)) {
        doubts += fmt::format("The run starts at {}, after it ends at {}.\n",
                              hhmm(entries, "StartTime"), hhmm(entries, "EndTime"));
    }
    if (isNewForNoDay(entries)) {
        doubts += "No day is ticked, so the run is driven on no day of the week.\n";
    }
    return doubts;
}

bool timesFromStart(const data::Record& run) { return run.text("TimeToUse") == FromStart; }

std::optional<data::Fault> findTimeFault(const data::Record& run) {
    auto fault = timeFault(run, timesFromStart(run) ? "StartTime" : "EndTime");
    return fault || run["BellTime"].isNull() ? fault : timeFault(run, "BellTime");
}

}  // namespace runedit
