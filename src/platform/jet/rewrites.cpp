#include "platform/jet/rewrites.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/jet/builtins.h"
#include "platform/jet/factoring.h"
#include "platform/jet/kinds.h"

namespace jet {

namespace {

void rewriteSelect(Select& select);

bool isDayOf(const Expr& expr) {
    return expr.kind == ExprKind::Call && expr.builtin->op == Op::DatePart;
}

/// The date column whose day `DateValue(c)` and `DateValue(CStr(c))` are; null for anything else.
ExprPtr* dayColumn(Expr& expr) {
    if (!isDayOf(expr)) {
        return nullptr;
    }
    ExprPtr* inside = &expr.children[0];
    if ((*inside)->kind == ExprKind::Call && (*inside)->builtin->op == Op::Same &&
        (*inside)->children.size() == 1) {
        inside = &(*inside)->children[0];
    }
    const bool isDate = isColumn(**inside) && categoryOf(**inside) == Category::Date;
    return isDate ? inside : nullptr;
}

bool isDateLiteral(const Expr& expr) {
    return isLiteral(expr) && expr.facts.kind == LiteralKind::Date;
}

void compareDays(Expr& compare) {
    if (isDateLiteral(*compare.children[0])) {
        std::swap(compare.children[0], compare.children[1]);
        compare.op = flipped(compare.op);
    }
    ExprPtr* column = dayColumn(*compare.children[0]);
    if (column != nullptr && isDateLiteral(*compare.children[1])) {
        ExprPtr taken = std::move(*column);
        compare.children[0] = std::move(taken);
        compare.kind = ExprKind::DayCompare;
    }
}

/// A SELECT of which only the presence of values counts needs no grouping and no order.
void dropGrouping(Select& select) {
    if (select.aggregated || select.having || select.top) {
        return;
    }
    select.groupBy.clear();
    select.orderBy.clear();
    select.distinct = false;
}

void rewriteExpr(ExprPtr& expr) {
    if (!expr) {
        return;
    }
    for (ExprPtr& child : expr->children) {
        rewriteExpr(child);
    }
    if (expr->select) {
        rewriteSelect(*expr->select);
    }
    if (expr->kind == ExprKind::Or) {
        factorOr(*expr);
    } else if (expr->kind == ExprKind::Compare) {
        compareDays(*expr);
    }
    if (expr->kind == ExprKind::InSelect || expr->kind == ExprKind::Exists) {
        dropGrouping(*expr->select);
    }
}

void addWhere(Select& select, ExprPtr condition) {
    if (!select.where) {
        select.where = std::move(condition);
        return;
    }
    auto both = std::make_unique<Expr>();
    both->kind = ExprKind::And;
    both->valueKind = store::ColumnKind::YesNo;
    both->offset = select.where->offset;
    both->children.push_back(std::move(select.where));
    both->children.push_back(std::move(condition));
    select.where = std::move(both);
}

/// Rows that HAVING would drop with their whole group need not be grouped. Without GROUP BY there
/// is one group even of no rows, which must stay.
void havingToWhere(Select& select) {
    if (!select.having || select.groupBy.empty()) {
        return;
    }
    if (select.having->kind != ExprKind::And) {
        if (!select.having->aggregated) {
            addWhere(select, std::move(select.having));
        }
        return;
    }
    auto& terms = select.having->children;
    const auto moved = std::stable_partition(terms.begin(), terms.end(),
                                             [](const ExprPtr& term) { return term->aggregated; });
    for (auto term = moved; term != terms.end(); ++term) {
        addWhere(select, std::move(*term));
    }
    terms.erase(moved, terms.end());
    if (terms.empty()) {
        select.having.reset();
    }
}

void rewriteJoin(Join* join) {
    if (join == nullptr) {
        return;
    }
    rewriteJoin(join->left.get());
    rewriteJoin(join->right.get());
    rewriteExpr(join->on);
}

void rewriteSelect(Select& select) {
    for (const Source& source : select.sources) {
        for (std::size_t i = 0; source.parts && i < source.parts->size(); ++i) {
            rewriteSelect(*(*source.parts)[i]);
        }
    }
    for (OutputItem& item : select.items) {
        rewriteExpr(item.expr);
    }
    rewriteJoin(select.from.get());
    rewriteExpr(select.where);
    rewriteExpr(select.having);
    havingToWhere(select);
    for (OrderItem& item : select.orderBy) {
        rewriteExpr(item.expr);
    }
}

}  // namespace

void rewrite(Statement& statement) {
    rewriteSelect(*statement.select);
    for (Assignment& assignment : statement.assignments) {
        rewriteExpr(assignment.value);
    }
}

}  // namespace jet
