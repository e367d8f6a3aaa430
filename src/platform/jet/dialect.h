#pragma once

#include <cstdint>
#include <string_view>

#include "platform/jet/translate.h"

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
    YesNo,  ///< a number as a condition
    IsYes,  ///< a yes/no value that is yes
    IsNo,
    YesNumber,  ///< a yes/no value as a number: yes is -1
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
    Any,    ///< the least of yes/no values: yes where one is
    All,    ///< the greatest: yes where all are
    AnyOf,  ///< of a group's rows any one's value, which is the same in all
    // conditions and forms
    IsNull,
    Same,  ///< its argument alone
    End,
};

/// A store's way to write an operation; {0}, {1}, {2} stand for its arguments, {now} for the
/// present time.
struct Dialect {
    /// Whether kinds are never mixed, a group's columns are named in GROUP BY or taken from any
    /// row, joins always have a condition, and rows come in no order of their own.
    bool isStrict;
    std::string_view resultMark;  ///< in front of a result column that is a bare column
    std::string_view yes;
    std::string_view no;
    std::string_view ascending;   ///< behind a key of an order
    std::string_view descending;  ///< Nulls stand first in an order, last in a descending one
    Binding likeTo;               ///< the text beyond all that begin with a pattern's fixed part
    std::string_view templates[static_cast<int>(Op::End)];

    [[nodiscard]] std::string_view operator[](Op op) const {
        return templates[static_cast<int>(op)];
    }
};

/// SQLite 3.40 with the functions of storeFunctions(), or PostgreSQL 15 with its own under the same
/// names.
[[nodiscard]] const Dialect& dialectOf(store::Engine engine);

}  // namespace jet
