#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/value.h"

/// What the run editor's fields hold, apart from any control.
namespace runedit {

/// The fields in the order in which they are written to the run's row.
enum class RunField : std::size_t {
    RunId,
    Description,
    School,
    TripType,
    RunFamily,
    LocCode,
    VehType,
    Capacity,
    BellTime,
    OverFill,
    Pickup,
    TimeToUse,
    StartTime,
    EndTime,
    Comment,
    TotalStudents,
    TotalMiles,
    TotalTime,
    TotalStops,
    ClosedStreets,
    Monday,
    Tuesday,
    Wednesday,
    Thursday,
    Friday,
    Regenerate,
    Active,
};

enum class FieldKind {
    Code,   ///< a key; trailing blanks mean nothing
    Text,   ///< free text, stored as typed
    Time,   ///< a time of day
    Whole,  ///< a whole number
    Number,
    YesNo,
};

struct FieldInfo {
    RunField field;
    std::string_view column;   ///< of table RUN
    std::string_view caption;  ///< what planners call it
    FieldKind kind;
};

[[nodiscard]] std::span<const FieldInfo> runFields();
[[nodiscard]] const FieldInfo& infoOf(RunField field);

/// A text for each field: yes/no is "True" or "False", a time "07:05 AM" once it is tidied, nothing
/// is "".
class RunTexts {
public:
    static constexpr std::size_t Count = static_cast<std::size_t>(RunField::Active) + 1;

    [[nodiscard]] std::string& operator[](RunField field) { return texts_[index(field)]; }
    [[nodiscard]] const std::string& operator[](RunField field) const {
        return texts_[index(field)];
    }
    [[nodiscard]] bool isYes(RunField field) const;

    friend bool operator==(const RunTexts&, const RunTexts&) = default;

private:
    static constexpr std::size_t index(RunField field) { return static_cast<std::size_t>(field); }
    std::array<std::string, Count> texts_;
};

/// What a new run starts with: active, a pickup run timed from its start, the rest empty.
[[nodiscard]] RunTexts textsOfNewRun();

[[nodiscard]] std::string yesNoText(bool yes);

/// The text that a field shows for a stored value. Null and blanks are "", but 0 for a number.
[[nodiscard]] std::string shownText(const FieldInfo& info, const base::Value& stored);

/// The value that a field's text is stored as: Null for a blank one, but 0 for a number. Raises
/// "Type mismatch" (13) for a text that is none of its kind.
[[nodiscard]] base::Value storedValue(const FieldInfo& info, std::string_view text);

/// The choice that times a run from its start; any other one times it from its end.
inline constexpr std::string_view FromStart = "Start Time";
[[nodiscard]] bool timesFromStart(const RunTexts& texts);

}  // namespace runedit
