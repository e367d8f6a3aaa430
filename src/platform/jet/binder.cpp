#include "platform/jet/binder.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/jet/builtins.h"
#include "platform/jet/kinds.h"
#include "platform/jet/report.h"

namespace jet {

namespace {

bool isCalled(const Source& source, std::string_view name) {
    return base::equalsNoCase(source.called(), name);
}

}  // namespace

void Binder::bind(Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Select:
            bindSelect(*statement.select, nullptr);
            return;
        case StatementKind::Insert:
            bindInsert(statement);
            return;
        default:
            bindChange(statement);
    }
}

void Binder::bindChange(Statement& statement) {
    Select& select = *statement.select;
    Source& target = select.sources.front();
    findTable(target);
    if (!statement.deleted.empty() && !isCalled(target, statement.deleted)) {
        fail(errors::NoSuchTable, fmt::format("{} is not the table behind FROM", statement.deleted),
             sql_, statement.deletedOffset);
    }
    Scope scope{select, nullptr};
    for (Assignment& assignment : statement.assignments) {
        findTarget(assignment, target);
        bind(*assignment.value, scope);
        refuseAggregate(assignment.value.get(), "SET");
    }
    if (select.where) {
        bind(*select.where, scope);
        refuseAggregate(select.where.get(), "WHERE");
    }
}

void Binder::findTarget(Assignment& assignment, const Source& source) const {
    if (!assignment.qualifier.empty() && !isCalled(source, assignment.qualifier)) {
        fail(errors::NoSuchTable,
             fmt::format("{} is not the table that is changed", assignment.qualifier), sql_,
             assignment.offset);
    }
    assignment.column = source.table->find(assignment.name);
    if (assignment.column == nullptr) {
        fail(errors::NoSuchColumn,
             fmt::format("The table {} has no column {}", source.table->name, assignment.name),
             sql_, assignment.offset);
    }
}

void Binder::bindInsert(Statement& statement) {
    findTable(statement.target);
    if (statement.assignments.empty()) {
        for (const store::Column& column : statement.target.table->columns) {
            statement.assignments.emplace_back().column = &column;
        }
    }
    for (Assignment& assignment : statement.assignments) {
        if (assignment.column == nullptr) {
            findTarget(assignment, statement.target);
        }
    }
    bindSelect(*statement.select, nullptr);
    const std::size_t values = statement.select->outputs.size();
    if (values != statement.assignments.size()) {
        failSyntax(
            fmt::format("There are {} values for {} columns", values, statement.assignments.size()),
            sql_, statement.select->offset);
    }
}

void Binder::findTable(Source& source) const {
    source.table = catalog_.find(source.name);
    if (source.table == nullptr) {
        fail(errors::NoSuchTable, fmt::format("There is no table {}", source.name), sql_,
             source.offset);
    }
}

void Binder::refuseTwins(const Select& select) const {
    for (auto one = select.sources.begin(); one != select.sources.end(); ++one) {
        const auto twin = std::find_if(select.sources.begin(), one, [&](const Source& other) {
            return isCalled(other, one->called());
        });
        if (twin != one) {
            failSyntax(fmt::format("Two tables are called {}", one->called()), sql_, one->offset);
        }
    }
}

void Binder::bindSelect(Select& select, Scope* outer) {
    Scope scope{select, outer};
    for (Source& source : select.sources) {
        findTable(source);
    }
    refuseTwins(select);
    bindJoin(select.from.get(), scope);
    bindOutputs(scope);
    if (select.where) {
        bind(*select.where, scope);
        refuseAggregate(select.where.get(), "WHERE");
    }
    for (const ExprPtr& expr : select.groupBy) {
        bind(*expr, scope);
        refuseAggregate(expr.get(), "GROUP BY");
    }
    if (select.having) {
        bind(*select.having, scope);
    }
    bindOrder(scope);
    select.aggregated |= select.having && select.having->aggregated;
    for (const OutputItem& item : select.items) {
        select.aggregated |= item.expr && item.expr->aggregated;
    }
    checkGrouping(select);
}

void Binder::bindJoin(Join* join, Scope& scope) {
    if (join == nullptr || join->kind == JoinKind::Table) {
        return;
    }
    bindJoin(join->left.get(), scope);
    bindJoin(join->right.get(), scope);
    if (join->on) {
        bind(*join->on, scope);
        refuseAggregate(join->on.get(), "ON");
    }
}

void Binder::bindOutputs(Scope& scope) {
    Select& select = scope.select;
    for (OutputItem& item : select.items) {
        if (!item.expr) {
            spellOut(select, item);
            continue;
        }
        bind(*item.expr, scope);
        Output output;
        output.expr = item.expr.get();
        output.alias = item.alias;
        if (isColumn(*item.expr) && item.expr->scope == 0) {
            output.source = item.expr->source;
            output.column = item.expr->column;
        }
        select.outputs.push_back(output);
    }
}

/// `*` and `T.*`: the columns of all tables, or of one, in the tables' order.
void Binder::spellOut(Select& select, const OutputItem& star) const {
    const std::size_t before = select.outputs.size();
    for (std::size_t i = 0; i < select.sources.size(); ++i) {
        const Source& source = select.sources[i];
        if (!star.starQualifier.empty() && !isCalled(source, star.starQualifier)) {
            continue;
        }
        for (const store::Column& column : source.table->columns) {
            select.outputs.push_back({nullptr, static_cast<int>(i), &column, {}});
        }
    }
    if (select.outputs.size() == before) {
        fail(errors::NoSuchTable,
             star.starQualifier.empty()
                 ? std::string("There is no table for *")
                 : fmt::format("{} is none of the tables used", star.starQualifier),
             sql_, star.offset);
    }
}

void Binder::bindOrder(Scope& scope) {
    Select& select = scope.select;
    for (OrderItem& item : select.orderBy) {
        if (item.position > select.outputs.size()) {
            failSyntax(fmt::format("There is no column {} to order by", item.position), sql_,
                       item.offset);
        }
        if (item.expr && !orderByAlias(item, select)) {
            bind(*item.expr, scope);
            select.aggregated |= item.expr->aggregated;
        }
    }
}

/// An alias that the statement gives comes before a column of that name.
bool Binder::orderByAlias(OrderItem& item, const Select& select) const {
    if (!isColumn(*item.expr) || !item.expr->qualifier.empty()) {
        return false;
    }
    for (std::size_t i = 0; i < select.outputs.size(); ++i) {
        const std::string_view alias = select.outputs[i].alias;
        if (!alias.empty() && base::equalsNoCase(alias, item.expr->name)) {
            item.position = static_cast<std::uint32_t>(i + 1);
            item.expr.reset();
            return true;
        }
    }
    return false;
}

void Binder::checkGrouping(const Select& select) const {
    if (!select.grouped()) {
        if (select.having) {
            failSyntax("HAVING needs a GROUP BY or an aggregate such as Count", sql_,
                       select.having->offset);
        }
        return;
    }
    for (const Output& output : select.outputs) {
        if (output.expr == nullptr) {
            failSyntax("* cannot stand beside a grouping", sql_, select.offset);
        }
        refuseUngrouped(select, *output.expr);
    }
    if (select.having) {
        refuseUngrouped(select, *select.having);
    }
    for (const OrderItem& item : select.orderBy) {
        if (item.expr) {
            refuseUngrouped(select, *item.expr);
        }
    }
}

void Binder::refuseUngrouped(const Select& select, const Expr& expr) const {
    const bool isGroup =
        std::any_of(select.groupBy.begin(), select.groupBy.end(),
                    [&](const ExprPtr& group) { return sameExpression(*group, expr, true); });
    if (isGroup || (expr.kind == ExprKind::Call && expr.builtin->aggregate)) {
        return;
    }
    if (isColumn(expr) && expr.scope == 0) {
        failSyntax(fmt::format("{} is neither grouped nor inside an aggregate such as Count",
                               expr.column->name),
                   sql_, expr.offset);
    }
    for (const ExprPtr& child : expr.children) {
        refuseUngrouped(select, *child);
    }
}

void Binder::refuseAggregate(const Expr* expr, std::string_view where) const {
    if (expr != nullptr && expr->aggregated) {
        failSyntax(fmt::format("An aggregate such as Count cannot stand in {}", where), sql_,
                   expr->offset);
    }
}

void Binder::bind(Expr& expr, Scope& scope) {
    bindInside(expr, scope);
    switch (expr.kind) {
        case ExprKind::Column:
            bindColumn(expr, scope);
            break;
        case ExprKind::Call:
            bindCall(expr, scope);
            break;
        default:
            break;
    }
    expr.valueKind = expr.kind == ExprKind::ScalarSelect ? outputKind(expr.select->outputs.front())
                                                         : valueKindOf(expr);
}

void Binder::bindInside(Expr& expr, Scope& scope) {
    for (const ExprPtr& child : expr.children) {
        bind(*child, scope);
        expr.aggregated |= child->aggregated;
    }
    if (!expr.select) {
        return;
    }
    bindSelect(*expr.select, &scope);
    if (expr.kind != ExprKind::Exists && expr.select->outputs.size() != 1) {
        failSyntax("A SELECT in parentheses must give one column", sql_, expr.select->offset);
    }
}

void Binder::bindColumn(Expr& expr, Scope& scope) const {
    if (expr.name.empty()) {
        failSyntax("* cannot stand in an expression", sql_, expr.offset);
    }
    int outwards = 0;
    for (const Scope* at = &scope; at != nullptr; at = at->outer, ++outwards) {
        if (findInScope(expr, at->select)) {
            expr.scope = outwards;
            return;
        }
    }
    unknownColumn(expr, scope);
}

/// Looks in one SELECT's tables; a qualifier that is found there ends the search outwards.
bool Binder::findInScope(Expr& expr, const Select& select) const {
    for (std::size_t i = 0; i < select.sources.size(); ++i) {
        const Source& source = select.sources[i];
        if (!expr.qualifier.empty() && !isCalled(source, expr.qualifier)) {
            continue;
        }
        const store::Column* column = source.table->find(expr.name);
        if (column == nullptr && !expr.qualifier.empty()) {
            fail(errors::NoSuchColumn,
                 fmt::format("The table {} has no column {}", source.called(), expr.name), sql_,
                 expr.offset);
        }
        if (column != nullptr && expr.column != nullptr) {
            failSyntax(fmt::format("{} is a column of both {} and {}: say which", expr.name,
                                   select.sources[static_cast<std::size_t>(expr.source)].called(),
                                   source.called()),
                       sql_, expr.offset);
        }
        if (column != nullptr) {
            expr.column = column;
            expr.source = static_cast<int>(i);
        }
    }
    return expr.column != nullptr;
}

void Binder::unknownColumn(const Expr& expr, const Scope& scope) const {
    if (!expr.qualifier.empty()) {
        fail(errors::NoSuchTable, fmt::format("{} is none of the tables used", expr.qualifier),
             sql_, expr.offset);
    }
    if (scope.select.sources.empty()) {
        fail(errors::NoSuchColumn, fmt::format("{} is not a value", expr.name), sql_, expr.offset);
    }
    fail(errors::NoSuchColumn,
         scope.select.sources.size() == 1
             ? fmt::format("The table {} has no column {}", scope.select.sources[0].called(),
                           expr.name)
             : fmt::format("None of the tables used has a column {}", expr.name),
         sql_, expr.offset);
}

void Binder::bindCall(Expr& expr, Scope& scope) const {
    bool known = false;
    expr.builtin = findBuiltin(expr.name, expr.children.size(), known);
    if (expr.builtin == nullptr) {
        failSyntax(
            known ? fmt::format("{} does not take {} arguments", expr.name, expr.children.size())
                  : fmt::format("There is no function {}", expr.name),
            sql_, expr.offset);
    }
    if (expr.builtin->aggregate) {
        if (expr.aggregated) {
            failSyntax("An aggregate cannot stand in another", sql_, expr.offset);
        }
        expr.aggregated = true;
        scope.select.aggregated = true;
    }
}

}  // namespace jet
