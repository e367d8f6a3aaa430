#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/value.h"
#include "platform/jet/error.h"
#include "platform/store/base/schema.h"

namespace jet {

/// A statement reduced to what decides its translation: two statements with the same key differ
/// only in their literals, and one translation and one prepared statement serve both. The key keeps
/// what a literal's content decides (a blank text, a LIKE pattern's form).
struct Shape {
    std::string key;
    /// Text, number and date literals in the order in which they stand.
    std::vector<base::Value> literals;
};

/// One pass of the lexer. Raises SqlError for a character or literal that cannot stand.
[[nodiscard]] Shape shapeOf(std::string_view sql);

/// How a literal becomes a parameter of the translated statement.
enum class Binding {
    AsIs,
    TrimmedRight,    ///< a text compared with text
    Code,            ///< written into a code column: as text, trimmed right, only blanks become one
    Text,            ///< written into a text column: as text
    LikeFrom,        ///< the least text that begins with the pattern's fixed part
    LikeTo,          ///< a text beyond all that begin with it
    LikeToGreatest,  ///< the same for a store that sorts by the rules of languages
    LikePattern,     ///< the whole pattern in the store's own form
    Number,          ///< as a number; raises "Type mismatch" (13) for a text that is none
    Integer,         ///< as a whole number, halves to even
    Single,          ///< rounded to single precision
    YesNo,           ///< any non-zero is 1
    Date,            ///< as a date-time: a number counts days, a text is read
    DayFrom,         ///< the first midnight at or after the date
    DayTo,           ///< the first midnight after the date
    Now,             ///< no literal: the present time
};

/// A parameter of the translated statement, in its order.
struct Parameter {
    std::size_t literal = 0;  ///< index into Shape::literals
    Binding binding = Binding::AsIs;
};

/// The value to bind for a parameter. Raises RunTimeError where the literal is not of its kind.
[[nodiscard]] base::Value boundValue(const Parameter& parameter,
                                     const std::vector<base::Value>& literals);

enum class StatementKind { Select, Insert, Update, Delete };

/// A column of a result.
struct OutputColumn {
    std::string name;  ///< its alias as the statement writes it, its own name as the table does, or
                       ///< "Expr1000" with its place for an expression without alias
    std::string source;  ///< the table's alias or name; empty for an expression
    std::string column;  ///< the base column; empty for an expression
    store::ColumnKind kind = store::ColumnKind::Text;
    int table = -1;  ///< index into Translation::tables; -1 for an expression
};

/// A base table of a SELECT whose rows can be written through the result.
struct BaseTable {
    std::string name;    ///< the table
    std::string alias;   ///< as the statement calls it
    int keyColumn = -1;  ///< the hidden column that holds the row's key, counted with the visible
                         ///< ones; -1 where rows cannot be written
};

/// A statement in the store's dialect and what is known about it.
struct Translation {
    StatementKind kind = StatementKind::Select;
    std::string text;
    std::vector<Parameter> parameters;
    /// SELECT: the visible columns, in order. Hidden row-key columns follow them in the result.
    std::vector<OutputColumn> columns;
    std::vector<BaseTable> tables;
    /// Whether rows may be changed, added and deleted through the result (no grouping, no
    /// DISTINCT).
    bool updatable = false;
};

/// Translates one statement of the Jet dialect for the tables of `catalog` and whoever keeps them.
/// A semicolon may end it; anything behind that is a syntax error. Raises SqlError.
[[nodiscard]] Translation translate(std::string_view sql, const store::Catalog& catalog);

}  // namespace jet
