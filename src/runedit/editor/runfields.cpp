#include "runedit/editor/runfields.h"

#include "platform/base/date.h"
#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/base/timetext.h"
#include "startup/base/mdlNONULL.h"

namespace runedit {

namespace {

constexpr std::array<FieldInfo, RunTexts::Count> Fields{{
    {RunField::RunId, "Run", "Run ID", FieldKind::Code},
    {RunField::Description, "Description", "Description", FieldKind::Text},
    {RunField::School, "School", "School", FieldKind::Code},
    {RunField::TripType, "TripType", "Trip Type", FieldKind::Code},
    {RunField::RunFamily, "RunFamily", "Run Family", FieldKind::Code},
    {RunField::LocCode, "LocCode", "Location", FieldKind::Code},
    {RunField::VehType, "VehType", "Vehicle Type", FieldKind::Code},
    {RunField::Capacity, "Capacity", "Capacity", FieldKind::Text},
    {RunField::BellTime, "BellTime", "Bell Time", FieldKind::Time},
    {RunField::OverFill, "OverFill", "Over Fill", FieldKind::Whole},
    {RunField::Pickup, "Pickup", "Pickup", FieldKind::YesNo},
    {RunField::TimeToUse, "TimeToUse", "Time To Use", FieldKind::Text},
    {RunField::StartTime, "StartTime", "Start Time", FieldKind::Time},
    {RunField::EndTime, "EndTime", "End Time", FieldKind::Time},
    {RunField::Comment, "Comment", "Comment", FieldKind::Text},
    {RunField::TotalStudents, "Total_Students", "Passengers", FieldKind::Whole},
    {RunField::TotalMiles, "total_miles", "Distance", FieldKind::Number},
    {RunField::TotalTime, "total_time", "Ride Time", FieldKind::Number},
    {RunField::TotalStops, "total_stops", "Number of Stops", FieldKind::Whole},
    {RunField::ClosedStreets, "GIS_CLOSEDSTREETFILENAME", "Closed Streets File", FieldKind::Text},
    {RunField::Monday, "monday", "Monday", FieldKind::YesNo},
    {RunField::Tuesday, "tuesday", "Tuesday", FieldKind::YesNo},
    {RunField::Wednesday, "wednesday", "Wednesday", FieldKind::YesNo},
    {RunField::Thursday, "thursday", "Thursday", FieldKind::YesNo},
    {RunField::Friday, "friday", "Friday", FieldKind::YesNo},
    {RunField::Regenerate, "Regenerate", "Regenerate", FieldKind::YesNo},
    {RunField::Active, "Active", "Active", FieldKind::YesNo},
}};

std::string timeText(const base::Value& stored) {
    return stored.isNull() || (stored.isText() && base::trim(stored.heldText()).empty())
               ? std::string()
               : base::tidyTime(stored.asDate().timeValue().text());
}

base::Value timeValueOf(std::string_view text) {
    const auto time = base::Date::parse(base::tidyTime(text));
    if (!time) {
        base::raise(base::errors::TypeMismatch);
    }
    return time->timeValue();
}

base::Value parsedNumber(FieldKind kind, std::string_view text) {
    const double number = base::Value(text).asNumber();
    return kind == FieldKind::Whole ? base::Value(base::roundHalfEven(number)) : number;
}

bool isNumber(FieldKind kind) { return kind == FieldKind::Whole || kind == FieldKind::Number; }

}  // namespace

std::span<const FieldInfo> runFields() { return Fields; }

const FieldInfo& infoOf(RunField field) { return Fields[static_cast<std::size_t>(field)]; }

bool RunTexts::isYes(RunField field) const { return (*this)[field] == yesNoText(true); }

RunTexts textsOfNewRun() {
    RunTexts texts;
    for (const auto& info : Fields) {
        texts[info.field] = shownText(info, {});
    }
    texts[RunField::Active] = texts[RunField::Pickup] = yesNoText(true);
    texts[RunField::TimeToUse] = FromStart;
    return texts;
}

std::string yesNoText(bool yes) { return base::Value(yes).asText(); }

std::string shownText(const FieldInfo& info, const base::Value& stored) {
    if (isNumber(info.kind)) {
        return startup::NoNullNumber(stored).asText();
    }
    if (info.kind == FieldKind::YesNo) {
        return yesNoText(!stored.isNull() && stored.asBoolean());
    }
    if (info.kind == FieldKind::Time) {
        return timeText(stored);
    }
    const std::string text = startup::NoNullString(stored).asText();
    return info.kind == FieldKind::Code || text == " " ? std::string(base::trimRight(text)) : text;
}

base::Value storedValue(const FieldInfo& info, std::string_view text) {
    if (base::trim(text).empty()) {
        return isNumber(info.kind) ? base::Value(0) : base::Value();
    }
    switch (info.kind) {
        case FieldKind::Code:
            return base::trim(text);
        case FieldKind::Text:
            return text;
        case FieldKind::Time:
            return timeValueOf(text);
        case FieldKind::YesNo:
            return base::Value(text).asBoolean();
        default:
            return parsedNumber(info.kind, text);
    }
}

bool timesFromStart(const RunTexts& texts) {
    return base::trim(texts[RunField::TimeToUse]) == FromStart;
}

}  // namespace runedit
