#include "platform/jet/dialect.h"

namespace jet {

namespace {

struct Row {
    Op op;
    std::string_view text;
};

constexpr Row Sqlite[] = {
    {Op::NoCase, "{0} COLLATE NOCASE"},
    {Op::TrimRight, "RTRIM({0})"},
    {Op::Like, "{0} LIKE {1}"},
    {Op::LikeAny, "jet_like({0}, {1})"},
    {Op::Divide, "jet_divide({0}, {1})"},
    {Op::IntegerDivide, "jet_quotient({0}, {1})"},
    {Op::Modulo, "jet_remainder({0}, {1})"},
    {Op::Power, "jet_power({0}, {1})"},
    {Op::Trim, "TRIM({0})"},
    {Op::TrimLeft, "LTRIM({0})"},
    {Op::Upper, "jet_upper({0})"},
    {Op::Lower, "jet_lower({0})"},
    {Op::Length, "LENGTH({0})"},
    {Op::Left, "jet_left({0}, {1})"},
    {Op::Right, "jet_right({0}, {1})"},
    {Op::Mid, "jet_mid({0}, {1}, {2})"},
    {Op::MidToEnd, "jet_mid_to_end({0}, {1})"},
    {Op::Find, "jet_instr(1, {0}, {1})"},
    {Op::FindFrom, "jet_instr({0}, {1}, {2})"},
    {Op::Replace, "REPLACE({0}, {1}, {2})"},
    {Op::FormatText, "jet_format_text({0}, {1})"},
    {Op::FormatNumber, "jet_format_number({0}, {1})"},
    {Op::FormatDate, "jet_format_date({0}, {1})"},
    {Op::EmptyForNull, "COALESCE({0}, '')"},
    {Op::NumberText, "jet_number_text({0})"},
    {Op::SignedText, "jet_str({0})"},
    {Op::DateText, "jet_date_text({0})"},
    {Op::YesNoText, "jet_yesno_text({0})"},
    {Op::CodeText, "jet_code({0})"},
    {Op::LeadingNumber, "jet_val({0})"},
    {Op::ToNumber, "jet_number({0})"},
    {Op::ToWhole, "jet_whole({0})"},
    {Op::ToLong, "jet_long({0})"},
    {Op::ToShort, "jet_short({0})"},
    {Op::ToSingle, "jet_single({0})"},
    {Op::ToDate, "jet_date({0})"},
    {Op::ToDays, "jet_days({0})"},
    {Op::YesNo, "({0} <> 0)"},
    {Op::IsYes, "{0} <> 0"},
    {Op::IsNo, "{0} = 0"},
    {Op::YesNumber, "(-{0})"},
    {Op::Coalesce, "COALESCE({0}, {1})"},
    {Op::Abs, "ABS({0})"},
    {Op::Floor, "jet_int({0})"},
    {Op::Truncate, "jet_fix({0})"},
    {Op::Round, "jet_round({0}, 0)"},
    {Op::RoundTo, "jet_round({0}, {1})"},
    {Op::Sign, "SIGN({0})"},
    {Op::Now, "jet_now()"},
    {Op::Today, "(SUBSTR(jet_now(), 1, 10) || ' 00:00:00')"},
    {Op::TimeOfDay, "('1899-12-30' || SUBSTR(jet_now(), 11))"},
    {Op::DatePart, "(SUBSTR({0}, 1, 10) || ' 00:00:00')"},
    {Op::TimePart, "('1899-12-30' || SUBSTR({0}, 11))"},
    {Op::Year, "CAST(SUBSTR({0}, 1, 4) AS INTEGER)"},
    {Op::Month, "CAST(SUBSTR({0}, 6, 2) AS INTEGER)"},
    {Op::Day, "CAST(SUBSTR({0}, 9, 2) AS INTEGER)"},
    {Op::Hour, "CAST(SUBSTR({0}, 12, 2) AS INTEGER)"},
    {Op::Minute, "CAST(SUBSTR({0}, 15, 2) AS INTEGER)"},
    {Op::Second, "CAST(SUBSTR({0}, 18, 2) AS INTEGER)"},
    {Op::Weekday, "(CAST(STRFTIME('%w', {0}) AS INTEGER) + 1)"},
    {Op::DateAdd, "jet_dateadd({0}, {1}, {2})"},
    {Op::DateDiff, "jet_datediff({0}, {1}, {2})"},
    {Op::DateInterval, "jet_datepart({0}, {1})"},
    {Op::CountRows, "COUNT(*)"},
    {Op::Count, "COUNT({0})"},
    {Op::Sum, "SUM({0})"},
    {Op::Average, "AVG({0})"},
    {Op::Least, "MIN({0})"},
    {Op::Greatest, "MAX({0})"},
    {Op::First, "JSON_EXTRACT(JSON_GROUP_ARRAY({0}), '$[0]')"},
    {Op::Last, "JSON_EXTRACT(JSON_GROUP_ARRAY({0}), '$[#-1]')"},
    {Op::Any, "MAX({0})"},
    {Op::All, "MIN({0})"},
    {Op::AnyOf, "{0}"},
    {Op::IsNull, "({0} IS NULL)"},
    {Op::Same, "{0}"},
};

/// What PostgreSQL writes differently.
constexpr Row Postgres[] = {
    {Op::NoCase, "{0} COLLATE vireo.nocase"},
    {Op::Like, "lower(({0}) COLLATE vireo.plain) LIKE lower(({1}) COLLATE vireo.plain) ESCAPE ''"},
    {Op::LikeAny, "(lower(({0}) COLLATE vireo.plain) ~ jet_pattern({1}))"},
    {Op::Divide, "({0}::float8 / {1}::float8)"},
    {Op::Replace, "jet_replace({0}, {1}, {2})"},
    {Op::IsYes, "{0}"},
    {Op::IsNo, "NOT {0}"},
    {Op::YesNumber, "(-({0})::int)"},
    {Op::Floor, "FLOOR(({0})::float8)"},
    {Op::Truncate, "TRUNC(({0})::float8)"},
    {Op::Sign, "SIGN({0})::bigint"},
    {Op::Now, "{now}"},
    {Op::Today, "DATE_TRUNC('day', {now})"},
    {Op::TimeOfDay, "jet_time_part({now})"},
    {Op::DatePart, "DATE_TRUNC('day', {0})"},
    {Op::TimePart, "jet_time_part({0})"},
    {Op::Year, "EXTRACT(YEAR FROM {0})::bigint"},
    {Op::Month, "EXTRACT(MONTH FROM {0})::bigint"},
    {Op::Day, "EXTRACT(DAY FROM {0})::bigint"},
    {Op::Hour, "EXTRACT(HOUR FROM {0})::bigint"},
    {Op::Minute, "EXTRACT(MINUTE FROM {0})::bigint"},
    {Op::Second, "EXTRACT(SECOND FROM {0})::bigint"},
    {Op::Weekday, "(EXTRACT(DOW FROM {0})::bigint + 1)"},
    {Op::Sum, "SUM(({0})::float8)"},
    {Op::Average, "AVG(({0})::float8)"},
    {Op::First, "(ARRAY_AGG({0}{rows}))[1]"},
    {Op::Last, "(ARRAY_AGG({0}{rows}))[COUNT(*)]"},
    {Op::Any, "BOOL_OR({0})"},
    {Op::All, "BOOL_AND({0})"},
    {Op::AnyOf, "(ARRAY_AGG({0}))[1]"},
};

template <std::size_t Count>
constexpr Dialect with(Dialect dialect, const Row (&rows)[Count]) {
    for (const Row& row : rows) {
        dialect.templates[static_cast<int>(row.op)] = row.text;
    }
    return dialect;
}

constexpr Dialect SqliteDialect = with(
    // The plus keeps SQLite from looking up and copying where each result column comes from, which
    // takes a fifth of preparing a wide statement.
    {.isStrict = false,
     .resultMark = "+",
     .yes = "1",
     .no = "0",
     .ascending = "",
     .descending = " DESC",
     .likeTo = Binding::LikeTo,
     .templates = {}},
    Sqlite);

constexpr Dialect PostgresDialect = with(with({.isStrict = true,
                                               .resultMark = "",
                                               .yes = "TRUE",
                                               .no = "FALSE",
                                               .ascending = " NULLS FIRST",
                                               .descending = " DESC NULLS LAST",
                                               .likeTo = Binding::LikeToGreatest,
                                               .templates = {}},
                                              Sqlite),
                                         Postgres);

constexpr bool complete() {
    for (const std::string_view text : SqliteDialect.templates) {
        if (text.empty()) {
            return false;
        }
    }
    return true;
}
static_assert(complete(), "an operation has no text");

}  // namespace

const Dialect& dialectOf(store::Engine engine) {
    return engine == store::Engine::Postgres ? PostgresDialect : SqliteDialect;
}

}  // namespace jet
