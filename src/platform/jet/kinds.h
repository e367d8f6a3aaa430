#pragma once

#include <cstddef>
#include <string>

#include "platform/jet/ast.h"

namespace jet {

/// What a value is compared and converted as.
enum class Category : std::uint8_t { Null, Text, Number, Date, YesNo };

[[nodiscard]] Category categoryOf(store::ColumnKind kind);
/// Of a result column.
[[nodiscard]] store::ColumnKind outputKind(const Output& output);
/// What a column's value is once it is no column any more: a code is a text.
[[nodiscard]] store::ColumnKind ofColumn(store::ColumnKind kind);
/// A result column's alias, its own name, or "Expr1000" with its place (from 0) among the results.
[[nodiscard]] std::string nameOf(const Output& output, std::size_t place);
/// Of a bound expression.
[[nodiscard]] Category categoryOf(const Expr& expr);
/// "a text", "a number": for messages.
[[nodiscard]] const char* described(Category category);

/// The kind of an expression's value, from the kinds of its bound children.
[[nodiscard]] store::ColumnKind valueKindOf(const Expr& expr);

/// Whether both say the same. Literals count as the same where the statement's shape tells that
/// they are, or wherever they are of one kind with `anyLiteral`.
[[nodiscard]] bool sameExpression(const Expr& a, const Expr& b, bool anyLiteral = false);

/// Whether it is a column of this very SELECT.
[[nodiscard]] inline bool isColumn(const Expr& expr) { return expr.kind == ExprKind::Column; }
[[nodiscard]] inline bool isLiteral(const Expr& expr) { return expr.kind == ExprKind::Literal; }

[[nodiscard]] bool sameColumn(const Expr& a, const Expr& b);

/// `<` for `>` and so on: the comparison with its sides exchanged.
[[nodiscard]] Operator flipped(Operator op);

}  // namespace jet
