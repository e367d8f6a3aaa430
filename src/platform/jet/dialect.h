#pragma once

#include <cstdint>
#include <string_view>

namespace jet {

/// Everything that stores write differently.
enum class Op : std::uint8_t {
    // comparing
    NoCase,     ///< a text to compare without case
    TrimRight,  ///< a text without trailing blanks
    Like,       ///< text, pattern without brackets
    LikeAny,    ///< text, any pattern
    // arithmetic
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    // texts
    Trim,
    TrimLeft,
    Upper,
    Lower,
    Length,
    Left,
    Right,
    Mid,
    MidToEnd,
    Find,
    FindFrom,
    Replace,
    FormatText,
    FormatNumber,
    FormatDate,
    EmptyForNull,
    // conversions
    NumberText,
    SignedText,  ///< a blank in the place of a minus
    DateText,
    YesNoText,
    CodeText,
    LeadingNumber,
    ToNumber,
    ToWhole,
    ToLong,
    ToShort,
    ToSingle,
    ToDate,
    ToDays,
    YesNo,
    Coalesce,
    // numbers
    Abs,
    Floor,
    Truncate,
    Round,
    RoundTo,
    Sign,
    // dates
    Now,
    Today,
    TimeOfDay,
    DatePart,
    TimePart,
    Year,
    Month,
    Day,
    Hour,
    Minute,
    Second,
    Weekday,
    DateAdd,
    DateDiff,
    DateInterval,
    // aggregates
    CountRows,
    Count,
    Sum,
    Average,
    Least,
    Greatest,
    First,
    Last,
    // conditions and forms
    IsNull,
    Same,  ///< its argument alone
    End,
};

/// A store's way to write an operation; {0}, {1}, {2} stand for its arguments.
struct Dialect {
    char parameterMark;           ///< of a parameter
    bool parametersAreNumbered;   ///< its number stands behind it
    std::string_view resultMark;  ///< in front of a result column that is a bare column
    std::string_view templates[static_cast<int>(Op::End)];

    [[nodiscard]] std::string_view operator[](Op op) const {
        return templates[static_cast<int>(op)];
    }
};

/// SQLite 3.40 with the functions of storeFunctions().
[[nodiscard]] const Dialect& sqliteDialect();

}  // namespace jet
