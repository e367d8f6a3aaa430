#include "platform/jet/kinds.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/base/lookup.h"
#include "platform/base/text.h"
#include "platform/jet/builtins.h"

namespace jet {

namespace {

using store::ColumnKind;

bool isWhole(const Expr& expr) {
    return expr.valueKind == ColumnKind::Integer || expr.valueKind == ColumnKind::Counter ||
           expr.valueKind == ColumnKind::YesNo;
}

ColumnKind arithmeticKind(const Expr& expr) {
    const Expr& left = *expr.children[0];
    const Expr& right = *expr.children[1];
    const Category a = categoryOf(left);
    const Category b = categoryOf(right);
    switch (expr.op) {
        case Operator::Add:
            if ((a == Category::Text && (b == Category::Text || b == Category::Null)) ||
                (a == Category::Null && b == Category::Text)) {
                return ColumnKind::Text;
            }
            if (a == Category::Date || b == Category::Date) {
                return ColumnKind::Date;
            }
            break;
        case Operator::Subtract:
            if (a == Category::Date && b != Category::Date) {
                return ColumnKind::Date;
            }
            break;
        case Operator::Multiply:
            break;
        case Operator::IntegerDivide:
        case Operator::Modulo:
            return ColumnKind::Integer;
        default:
            return ColumnKind::Number;
    }
    return isWhole(left) && isWhole(right) ? ColumnKind::Integer : ColumnKind::Number;
}

/// The first value that the call may give and that is not Null; the last where all are.
const Expr& firstBranch(const Expr& expr) {
    const auto& children = expr.children;
    const bool isNz = expr.builtin->op == Op::Coalesce;
    const std::size_t step = expr.builtin->arguments == Builtin::AnyPairs ? 2 : 1;
    for (std::size_t i = isNz ? 0 : 1; i < children.size(); i += step) {
        if (categoryOf(*children[i]) != Category::Null) {
            return *children[i];
        }
    }
    return *children.back();
}

ColumnKind callKind(const Expr& expr) {
    const auto& children = expr.children;
    switch (expr.builtin->gives) {
        case Gives::Text:
            return ColumnKind::Text;
        case Gives::Integer:
            return ColumnKind::Integer;
        case Gives::Number:
            return ColumnKind::Number;
        case Gives::Date:
            return ColumnKind::Date;
        case Gives::YesNo:
            return ColumnKind::YesNo;
        case Gives::First:
            return ofColumn(children[0]->valueKind);
        case Gives::Branch:
            return ofColumn(firstBranch(expr).valueKind);
    }
    return ColumnKind::Text;
}

ColumnKind literalKind(LiteralKind kind) {
    return kind == LiteralKind::Number ? ColumnKind::Number
           : kind == LiteralKind::Date ? ColumnKind::Date
                                       : ColumnKind::Text;
}

bool sameLiteral(const Expr& a, const Expr& b, bool anyLiteral) {
    return a.facts.kind == b.facts.kind && (anyLiteral || a.sameLiteral == b.sameLiteral);
}

}  // namespace

Category categoryOf(ColumnKind kind) {
    switch (kind) {
        case ColumnKind::Code:
        case ColumnKind::Text:
            return Category::Text;
        case ColumnKind::YesNo:
            return Category::YesNo;
        case ColumnKind::Date:
            return Category::Date;
        default:
            return Category::Number;
    }
}

ColumnKind ofColumn(ColumnKind kind) {
    return kind == ColumnKind::Code      ? ColumnKind::Text
           : kind == ColumnKind::Counter ? ColumnKind::Integer
                                         : kind;
}

std::string nameOf(const Output& output, std::size_t place) {
    if (!output.alias.empty()) {
        return std::string(output.alias);
    }
    return output.column != nullptr ? output.column->name : fmt::format("Expr{}", 1000 + place);
}

ColumnKind outputKind(const Output& output) {
    return output.column != nullptr ? output.column->kind : output.expr->valueKind;
}

Category categoryOf(const Expr& expr) {
    return expr.kind == ExprKind::Null ? Category::Null : categoryOf(expr.valueKind);
}

const char* described(Category category) {
    static constexpr std::pair<Category, const char*> Words[] = {
        {Category::Text, "a text"},
        {Category::Number, "a number"},
        {Category::Date, "a date"},
        {Category::YesNo, "a yes/no value"}};
    return base::lookUp(Words, category, "Null");
}

ColumnKind valueKindOf(const Expr& expr) {
    switch (expr.kind) {
        case ExprKind::Literal:
            return literalKind(expr.facts.kind);
        case ExprKind::Column:
            return expr.column->kind;
        case ExprKind::Negate:
            return isWhole(*expr.children[0]) ? ColumnKind::Integer : ColumnKind::Number;
        case ExprKind::Arithmetic:
            return arithmeticKind(expr);
        case ExprKind::Call:
            return callKind(expr);
        case ExprKind::Null:
        case ExprKind::Concat:
        case ExprKind::ScalarSelect:
            return ColumnKind::Text;
        default:
            return ColumnKind::YesNo;
    }
}

bool sameColumn(const Expr& a, const Expr& b) {
    return isColumn(a) && isColumn(b) && a.column == b.column && a.source == b.source &&
           a.scope == b.scope;
}

bool sameExpression(const Expr& a, const Expr& b, bool anyLiteral) {
    if (a.kind != b.kind || a.op != b.op || a.negated != b.negated || a.builtin != b.builtin ||
        a.select || b.select || a.children.size() != b.children.size()) {
        return false;
    }
    if (isLiteral(a)) {
        return sameLiteral(a, b, anyLiteral);
    }
    if (isColumn(a)) {
        return sameColumn(a, b);
    }
    return std::equal(
        a.children.begin(), a.children.end(), b.children.begin(),
        [&](const ExprPtr& x, const ExprPtr& y) { return sameExpression(*x, *y, anyLiteral); });
}

Operator flipped(Operator op) {
    static constexpr std::pair<Operator, Operator> Flipped[] = {
        {Operator::Less, Operator::Greater},
        {Operator::LessOrEqual, Operator::GreaterOrEqual},
        {Operator::Greater, Operator::Less},
        {Operator::GreaterOrEqual, Operator::LessOrEqual}};
    return base::lookUp(Flipped, op, op);
}

}  // namespace jet
