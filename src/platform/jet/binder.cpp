#include "platform/jet/binder.h"

#include <algorithm>
#include <set>
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
    for (Source& source : select.sources) {
        findTable(source);
    }
    refuseTwins(select);
    findChanged(statement);
    Scope scope{select, nullptr};
    bindJoin(select.from.get(), scope);
    for (Assignment& assignment : statement.assignments) {
        bind(*assignment.value, scope);
        refuseAggregate(assignment.value.get(), "SET");
    }
    refuseSetTwice(statement);
    if (select.where) {
        bind(*select.where, scope);
        refuseAggregate(select.where.get(), "WHERE");
    }
}

/// The one table whose rows are changed.
void Binder::findChanged(Statement& statement) const {
    const Select& select = *statement.select;
    const bool isJoin = select.sources.size() > 1;
    if (statement.kind == StatementKind::Delete) {
        const auto& name = statement.deleted;
        const auto at = std::ranges::find_if(
            select.sources, [&](const Source& one) { return name.empty() || isCalled(one, name); });
        if (at == select.sources.end() || (isJoin && name.empty())) {
            fail(errors::NoSuchTable,
                 name.empty() ? std::string("Say whose rows are deleted: DELETE TABLE.* FROM")
                              : fmt::format("{} is not the table behind FROM", name),
                 sql_, name.empty() ? select.sources.front().offset : statement.deletedOffset);
        }
        statement.changed = static_cast<std::size_t>(at - select.sources.begin());
    } else if (!isJoin) {
        for (Assignment& assignment : statement.assignments) {
            findTarget(assignment, select.sources.front());
        }
    } else {
        std::size_t changed = select.sources.size();
        for (Assignment& assignment : statement.assignments) {
            findTarget(assignment, select, changed);
        }
        statement.changed = changed;
    }
    const Source& target = select.sources[statement.changed];
    if (isJoin || target.parts) {
        if (target.table->rowKey.empty()) {
            failSyntax(fmt::format("The rows of {} cannot be changed", target.called()), sql_,
                       target.offset);
        }
    }
}

/// Among the joined tables; the first assignment says which one is changed.
void Binder::findTarget(Assignment& assignment, const Select& select, std::size_t& changed) const {
    Expr named;
    named.qualifier = assignment.qualifier;
    named.name = assignment.name;
    named.offset = assignment.offset;
    if (!findInScope(named, select)) {
        fail(errors::NoSuchColumn,
             fmt::format("None of the tables used has a column {}", assignment.name), sql_,
             assignment.offset);
    }
    const auto at = static_cast<std::size_t>(named.source);
    if (changed != select.sources.size() && changed != at) {
        failSyntax(fmt::format("Rows of {} alone are changed here, not of {}",
                               select.sources[changed].called(), select.sources[at].called()),
                   sql_, assignment.offset);
    }
    changed = at;
    assignment.column = named.column;
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

void Binder::refuseSetTwice(const Statement& statement) const {
    std::set<const store::Column*> set;
    for (const Assignment& assignment : statement.assignments) {
        if (!set.insert(assignment.column).second) {
            failSyntax(fmt::format("{} is set twice", assignment.column->name), sql_,
                       assignment.offset);
        }
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
    refuseSetTwice(statement);
    bindSelect(*statement.select, nullptr);
    const std::size_t values = statement.select->outputs.size();
    if (values != statement.assignments.size()) {
        failSyntax(
            fmt::format("There are {} values for {} columns", values, statement.assignments.size()),
            sql_, statement.select->offset);
    }
}

void Binder::findTable(Source& source) {
    if (source.parts) {
        return makeTable(source);
    }
    source.table = catalog_.find(source.name);
    if (source.table == nullptr) {
        fail(errors::NoSuchTable, fmt::format("There is no table {}", source.name), sql_,
             source.offset);
    }
}

/// The table that SELECTs in FROM stand for: the names of the first, and kinds that fit all.
void Binder::makeTable(Source& source) {
    source.made = std::make_shared<store::Table>();
    for (const auto& part : *source.parts) {
        bindSelect(*part, nullptr);
        mergeColumns(*source.made, *part);
    }
    source.table = source.made.get();
}

void Binder::mergeColumns(store::Table& made, const Select& part) const {
    const bool isFirst = made.columns.empty();
    if (!isFirst && made.columns.size() != part.outputs.size()) {
        failSyntax(fmt::format("There are {} columns here and {} in the SELECT before",
                               part.outputs.size(), made.columns.size()),
                   sql_, part.offset);
    }
    for (std::size_t i = 0; i < part.outputs.size(); ++i) {
        const Output& output = part.outputs[i];
        const store::ColumnKind kind = ofColumn(outputKind(output));
        if (!isFirst) {
            joinKinds(made.columns[i].kind, kind, part, output);
            continue;
        }
        std::string name = nameOf(output, i);
        if (made.find(name) != nullptr) {
            failSyntax(fmt::format("Two columns of the SELECT are called {}: name one AS something "
                                   "else",
                                   name),
                       sql_, part.offset);
        }
        made.columns.push_back({std::move(name), kind});
    }
}

/// One kind for both; Null goes with any.
void Binder::joinKinds(store::ColumnKind& kind, store::ColumnKind other, const Select& part,
                       const Output& output) const {
    const bool isNull = output.expr != nullptr && output.expr->kind == ExprKind::Null;
    if (isNull || kind == other) {
        return;
    }
    if (categoryOf(kind) != categoryOf(other)) {
        fail(errors::TypeMismatch,
             fmt::format("I cannot put {} into a column with {}", described(categoryOf(other)),
                         described(categoryOf(kind))),
             sql_, output.expr != nullptr ? output.expr->offset : part.offset);
    }
    kind = categoryOf(kind) == Category::Number ? store::ColumnKind::Number : kind;
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
