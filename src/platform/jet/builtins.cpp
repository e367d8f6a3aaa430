#include "platform/jet/builtins.h"

#include "platform/base/text.h"

namespace jet {

namespace {

constexpr auto A = Takes::Anything;
constexpr auto T = Takes::Text;
constexpr auto N = Takes::Number;
constexpr auto D = Takes::Date;
constexpr auto C = Takes::Condition;
constexpr auto O = Takes::Ordered;

constexpr Builtin Functions[] = {
    {"IIF", 3, {C, A, A}, Gives::Branch, Op::Same},
    {"SWITCH", Builtin::AnyPairs, {C, A}, Gives::Branch, Op::Same},
    {"NZ", 1, {A}, Gives::Branch, Op::Coalesce},
    {"NZ", 2, {A, A}, Gives::Branch, Op::Coalesce},
    {"ISNULL", 1, {A}, Gives::YesNo, Op::IsNull},
    {"TRIM", 1, {T}, Gives::Text, Op::Trim},
    {"LTRIM", 1, {T}, Gives::Text, Op::TrimLeft},
    {"RTRIM", 1, {T}, Gives::Text, Op::TrimRight},
    {"UCASE", 1, {T}, Gives::Text, Op::Upper},
    {"LCASE", 1, {T}, Gives::Text, Op::Lower},
    {"LEFT", 2, {T, N}, Gives::Text, Op::Left},
    {"RIGHT", 2, {T, N}, Gives::Text, Op::Right},
    {"MID", 2, {T, N}, Gives::Text, Op::MidToEnd},
    {"MID", 3, {T, N, N}, Gives::Text, Op::Mid},
    {"LEN", 1, {T}, Gives::Integer, Op::Length},
    {"INSTR", 2, {T, T}, Gives::Integer, Op::Find},
    {"INSTR", 3, {N, T, T}, Gives::Integer, Op::FindFrom},
    {"REPLACE", 3, {T, T, T}, Gives::Text, Op::Replace},
    {"FORMAT", 1, {T}, Gives::Text, Op::Same},
    {"FORMAT", 2, {A, T}, Gives::Text, Op::FormatText},
    {"VAL", 1, {T}, Gives::Number, Op::LeadingNumber},
    {"CSTR", 1, {T}, Gives::Text, Op::Same},
    {"STR", 1, {N}, Gives::Text, Op::SignedText},
    {"CLNG", 1, {N}, Gives::Integer, Op::ToLong},
    {"CINT", 1, {N}, Gives::Integer, Op::ToShort},
    {"CDBL", 1, {N}, Gives::Number, Op::Same},
    {"CSNG", 1, {N}, Gives::Number, Op::ToSingle},
    {"CBOOL", 1, {N}, Gives::YesNo, Op::YesNo},
    {"CDATE", 1, {D}, Gives::Date, Op::Same},
    {"DATEVALUE", 1, {D}, Gives::Date, Op::DatePart},
    {"TIMEVALUE", 1, {D}, Gives::Date, Op::TimePart},
    {"NOW", 0, {}, Gives::Date, Op::Now},
    {"DATE", 0, {}, Gives::Date, Op::Today},
    {"TIME", 0, {}, Gives::Date, Op::TimeOfDay},
    {"YEAR", 1, {D}, Gives::Integer, Op::Year},
    {"MONTH", 1, {D}, Gives::Integer, Op::Month},
    {"DAY", 1, {D}, Gives::Integer, Op::Day},
    {"HOUR", 1, {D}, Gives::Integer, Op::Hour},
    {"MINUTE", 1, {D}, Gives::Integer, Op::Minute},
    {"SECOND", 1, {D}, Gives::Integer, Op::Second},
    {"WEEKDAY", 1, {D}, Gives::Integer, Op::Weekday},
    {"DATEADD", 3, {T, N, D}, Gives::Date, Op::DateAdd},
    {"DATEDIFF", 3, {T, D, D}, Gives::Integer, Op::DateDiff},
    {"DATEPART", 2, {T, D}, Gives::Integer, Op::DateInterval},
    {"ABS", 1, {N}, Gives::First, Op::Abs},
    {"INT", 1, {N}, Gives::Number, Op::Floor},
    {"FIX", 1, {N}, Gives::Number, Op::Truncate},
    {"ROUND", 1, {N}, Gives::Number, Op::Round},
    {"ROUND", 2, {N, N}, Gives::Number, Op::RoundTo},
    {"SGN", 1, {N}, Gives::Integer, Op::Sign},
    {"COUNT", 0, {}, Gives::Integer, Op::CountRows, true},
    {"COUNT", 1, {A}, Gives::Integer, Op::Count, true},
    {"SUM", 1, {N}, Gives::Number, Op::Sum, true},
    {"AVG", 1, {N}, Gives::Number, Op::Average, true},
    {"MIN", 1, {O}, Gives::First, Op::Least, true},
    {"MAX", 1, {O}, Gives::First, Op::Greatest, true},
    {"FIRST", 1, {A}, Gives::First, Op::First, true},
    {"LAST", 1, {A}, Gives::First, Op::Last, true},
};

}  // namespace

const Builtin* findBuiltin(std::string_view name, std::size_t arguments, bool& known) {
    if (name.ends_with('$')) {
        name.remove_suffix(1);
    }
    known = false;
    for (const Builtin& function : Functions) {
        if (base::equalsNoCase(function.name, name)) {
            known = true;
            const bool inPairs = arguments > 0 && arguments % 2 == 0;
            if (function.arguments == Builtin::AnyPairs
                    ? inPairs
                    : static_cast<std::size_t>(function.arguments) == arguments) {
                return &function;
            }
        }
    }
    return nullptr;
}

}  // namespace jet
