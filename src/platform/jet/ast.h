#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/jet/lexer.h"
#include "platform/jet/translate.h"
#include "platform/store/base/schema.h"

namespace jet {

struct Builtin;
struct Select;
struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

enum class ExprKind : std::uint8_t {
    Literal,
    Null,
    True,
    False,
    Column,
    Negate,      ///< -a
    Arithmetic,  ///< a op b
    Concat,      ///< a & b & c: any number of children
    Compare,     ///< a op b
    And,         ///< any number of children
    Or,          ///< any number of children
    Not,
    Like,        ///< text, pattern
    Between,     ///< value, least, greatest
    In,          ///< value, items...
    InSelect,    ///< value; the SELECT in `select`
    IsNull,      ///< a Is Null, IsNull(a)
    Call,        ///< a function with its arguments; Count(*) has none
    DayCompare,  ///< the day of a date column op a date literal
    Exists,
    ScalarSelect,
};

enum class Operator : std::uint8_t {
    None,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
};

/// One node of an expression. The parser fills the first part, the binder the second.
struct Expr {
    ExprKind kind = ExprKind::Null;
    Operator op = Operator::None;
    bool negated = false;      ///< NOT LIKE, NOT IN, NOT BETWEEN, IS NOT NULL
    std::uint16_t depth = 1;   ///< of the tree below and with this node
    std::uint32_t offset = 0;  ///< in the statement
    std::uint32_t literal = 0;
    std::uint32_t sameLiteral = 0;  ///< the first literal known to hold the same text
    LiteralFacts facts;
    std::string_view qualifier;  ///< of a column, empty where there is none
    std::string_view name;       ///< of a column or function
    std::vector<ExprPtr> children;
    std::unique_ptr<Select> select;

    int scope = 0;    ///< of a column: how many SELECTs outwards its table stands
    int source = -1;  ///< of a column: index of its table there
    const store::Column* column = nullptr;
    const Builtin* builtin = nullptr;
    store::ColumnKind valueKind = store::ColumnKind::Text;
    bool aggregated = false;  ///< an aggregate stands in it

    Expr();
    ~Expr();
    Expr(const Expr&) = delete;
    Expr& operator=(const Expr&) = delete;
    Expr(Expr&&) noexcept;
    Expr& operator=(Expr&&) noexcept;
};

/// SELECTs one below the other; they give columns of the same kinds.
using Parts = std::vector<std::unique_ptr<Select>>;

/// A table as FROM names it, or SELECTs that stand for one.
struct Source {
    std::string_view name;
    std::string_view alias;  ///< empty where the statement gives none
    std::uint32_t offset = 0;
    const store::Table* table = nullptr;
    std::shared_ptr<Parts> parts = {};        ///< null for a table
    std::shared_ptr<store::Table> made = {};  ///< what the parts give, once it is bound

    [[nodiscard]] std::string_view called() const { return alias.empty() ? name : alias; }
    /// The alias, otherwise the name as the table's owner writes it; once it is bound.
    [[nodiscard]] std::string_view writtenName() const {
        return alias.empty() ? std::string_view(table->name) : alias;
    }
};

enum class JoinKind : std::uint8_t { Table, Inner, Left, Right };

/// The tree that FROM spells out; a comma is an inner join without condition.
struct Join {
    JoinKind kind = JoinKind::Table;
    int source = -1;  ///< of a Table: index among the sources
    std::unique_ptr<Join> left;
    std::unique_ptr<Join> right;
    ExprPtr on;
};

struct OutputItem {
    ExprPtr expr;                    ///< null for a star
    std::string_view alias;          ///< empty where there is none
    std::string_view starQualifier;  ///< of `T.*`
    std::uint32_t offset = 0;
};

struct OrderItem {
    ExprPtr expr;                ///< null for a position or an alias
    std::uint32_t position = 0;  ///< 1-based output; 0 where an expression stands
    std::uint32_t offset = 0;
    bool descending = false;
};

/// A result column: an expression, or a column that a star stands for.
struct Output {
    const Expr* expr = nullptr;
    int source = -1;
    const store::Column* column = nullptr;
    std::string_view alias;
};

struct Select {
    bool isUnion = false;  ///< everything from the parts of its only source
    bool distinct = false;
    std::optional<std::uint32_t> top;
    std::vector<OutputItem> items;
    std::vector<Source> sources;
    std::unique_ptr<Join> from;
    ExprPtr where;
    std::vector<ExprPtr> groupBy;
    ExprPtr having;
    std::vector<OrderItem> orderBy;
    std::uint32_t offset = 0;

    std::vector<Output> outputs;  ///< filled by the binder
    bool aggregated = false;      ///< an aggregate stands in it

    [[nodiscard]] bool grouped() const { return aggregated || !groupBy.empty(); }
};

struct Assignment {
    std::string_view qualifier;
    std::string_view name;
    std::uint32_t offset = 0;
    ExprPtr value;
    const store::Column* column = nullptr;
};

/// One statement. A change keeps its target among the sources of `select`, whose FROM and WHERE it
/// uses; INSERT … SELECT has its target in `target`.
struct Statement {
    StatementKind kind = StatementKind::Select;
    std::unique_ptr<Select> select;
    std::size_t changed = 0;  ///< index of the source that an UPDATE or DELETE changes
    Source target;
    std::vector<Assignment> assignments;  ///< of an UPDATE, and the columns of an INSERT
    std::string_view deleted;             ///< the table named between DELETE and FROM
    std::uint32_t deletedOffset = 0;
};

}  // namespace jet
