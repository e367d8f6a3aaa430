#include "platform/jet/emitter.h"

#include <algorithm>

#include "platform/jet/kinds.h"
#include "platform/jet/report.h"

namespace jet {

namespace {

using store::ColumnKind;

bool namesOuter(const Expr& expr, int outwards);

bool namesOuter(const ExprPtr& expr, int outwards) { return expr && namesOuter(*expr, outwards); }

bool namesOuter(const Join* join, int outwards) {
    return join != nullptr &&
           (namesOuter(join->on, outwards) || namesOuter(join->left.get(), outwards) ||
            namesOuter(join->right.get(), outwards));
}

/// Whether a column of a SELECT that stands more than `outwards` around this one is named in it.
bool namesOuter(const Select& select, int outwards = 0) {
    const auto names = [outwards](const ExprPtr& expr) { return namesOuter(expr, outwards); };
    return std::ranges::any_of(select.items, names, &OutputItem::expr) ||
           std::ranges::any_of(select.orderBy, names, &OrderItem::expr) ||
           std::ranges::any_of(select.groupBy, names) || names(select.where) ||
           names(select.having) || namesOuter(select.from.get(), outwards);
}

bool namesOuter(const Expr& expr, int outwards) {
    return (isColumn(expr) && expr.scope > outwards) ||
           (expr.select && namesOuter(*expr.select, outwards + 1)) ||
           std::ranges::any_of(expr.children, [outwards](const ExprPtr& child) {
               return namesOuter(*child, outwards);
           });
}

/// A column that a star stands for, as an expression of its own.
void asExpr(const Output& output, Expr& expr) {
    expr.kind = ExprKind::Column;
    expr.source = output.source;
    expr.column = output.column;
    expr.valueKind = output.column->kind;
}

/// Whether a condition holds for one value of the column only. Texts that count as equal may differ
/// in the table, unless they are codes, and so may blank ones.
bool isGiven(const store::Column& column, const Expr& condition) {
    if (condition.kind == ExprKind::And) {
        return std::ranges::any_of(condition.children,
                                   [&](const ExprPtr& child) { return isGiven(column, *child); });
    }
    if (condition.kind != ExprKind::Compare || condition.op != Operator::Equal) {
        return false;
    }
    const Expr& left = *condition.children.front();
    const Expr& right = *condition.children.back();
    return isColumn(left) && left.scope == 0 && left.column == &column &&
           column.kind != ColumnKind::Text && isLiteral(right) && !right.facts.blank;
}

}  // namespace

void Emitter::emit(const Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Select:
            return emitSelect(*statement.select, Results::WithKeys);
        case StatementKind::Insert:
            return emitInsert(statement);
        case StatementKind::Update:
        case StatementKind::Delete:
            if (statement.select->sources.size() > 1) {
                return emitJoined(statement);
            }
            return statement.kind == StatementKind::Update ? emitUpdate(statement)
                                                           : emitDelete(statement);
    }
}

/// `targets` are the columns that an INSERT writes the results into.
void Emitter::emitSelect(const Select& select, Results results, const Targets* targets) {
    scopes_.push_back({select, ColumnNames(select.sources)});
    const JoinOrder order = joinOrder(select.from.get());
    const bool ranks = results == Results::Rank;
    out_ += "SELECT ";
    // Texts that compare equal are one row, which DISTINCT of the store would not see.
    const bool distinct = select.distinct && !select.grouped();
    out_ += select.distinct && !distinct ? "DISTINCT " : "";
    emitOutputs(select, results, targets);
    if (results == Results::WithKeys && !select.grouped() && !select.distinct) {
        emitKeys(select, order.steps);
    }
    if (!order.steps.empty()) {
        out_ += " FROM ";
        emitSteps(select, order.steps);
    }
    emitWhere(select, order);
    emitGrouping(select, distinct);
    if (!ranks) {
        emitOrder(select);
        const bool isSeen = results == Results::WithKeys || select.top;
        if (dialect_.isStrict && isSeen && !isOneRow(select) && !goesOnWithTies(select)) {
            emitOwnOrder(select, order.steps);
        }
        emitLimit(select);
    }
    scopes_.pop_back();
}

/// Whether the row is found by the whole key of the only table.
bool Emitter::isOneRow(const Select& select) {
    if (select.sources.size() != 1 || select.grouped() || !select.where) {
        return false;
    }
    const store::Table& table = *select.sources.front().table;
    return !table.key.empty() && std::ranges::all_of(table.key, [&](const std::string& name) {
        return isGiven(*table.find(name), *select.where);
    });
}

/// Whether no two rows stand at one place of the order.
bool Emitter::isOrderUnique(const Select& select) {
    if (select.sources.size() != 1 || select.grouped() || select.distinct) {
        return false;
    }
    const store::Table& table = *select.sources.front().table;
    return !table.key.empty() && std::ranges::all_of(table.key, [&](const std::string& name) {
        const store::Column* column = table.find(name);
        return std::ranges::any_of(select.orderBy, [&](const OrderItem& item) {
            return item.expr ? isColumn(*item.expr) && item.expr->column == column
                             : select.outputs[item.position - 1].column == column;
        });
    });
}

/// TOP with an order goes on as long as rows stand at the last one's place.
bool Emitter::goesOnWithTies(const Select& select) const {
    return select.top && *select.top > 0 && !select.orderBy.empty() && !isOrderUnique(select);
}

void Emitter::emitLimit(const Select& select) {
    if (!select.top) {
        return;
    }
    if (!goesOnWithTies(select)) {
        out_ += " LIMIT " + std::to_string(*select.top);
        return;
    }
    if (scopes_.size() > 1 && namesOuter(select)) {
        failSyntax("TOP in a SELECT that names columns from outside needs an order without ties",
                   sql_, select.offset);
    }
    if (dialect_.isStrict) {
        out_ += " FETCH FIRST " + std::to_string(*select.top) + " ROWS WITH TIES";
        return;
    }
    out_ += " LIMIT (SELECT COUNT(*) FROM (";
    emitSelect(select, Results::Rank);
    out_ += ") WHERE \"1\" <= " + std::to_string(*select.top) + ')';
}

Emitter::Rows::Rows(Emitter& emitter, Of which)
    : emitter_(emitter),
      scope_(emitter.scopes_.size() - 1),
      before_(emitter.scopes_[scope_].takesAnyRow) {
    Scope& scope = emitter_.scopes_[scope_];
    scope.takesAnyRow = which == Of::AnyOne && emitter_.dialect_.isStrict &&
                        (scope.select.grouped() || scope.select.distinct);
}

void Emitter::emitOutputs(const Select& select, Results results, const Targets* targets) {
    const Rows any(*this, Rows::Of::AnyOne);
    if (results == Results::Rank) {
        out_ += "RANK() OVER (";
        emitOrder(select);
        out_ += ") AS \"1\"";
        return;
    }
    if (results == Results::Presence && !select.grouped()) {
        out_ += '1';
        return;
    }
    for (std::size_t i = 0; i < select.outputs.size(); ++i) {
        const Output& output = select.outputs[i];
        out_ += i > 0 ? ", " : "";
        if (targets == nullptr && results != Results::Trimmed) {
            emitResult(output);
            if (results == Results::Numbered || results == Results::Named) {
                out_ += " AS ";
                name(results == Results::Named ? nameOf(output, i) : std::to_string(i + 1));
            }
            continue;
        }
        onOutput(output, [&](const Expr& expr) {
            targets != nullptr ? assigned(expr, *(*targets)[i].column) : trimmed(expr);
        });
    }
}

void Emitter::emitResult(const Output& output) {
    if (output.column == nullptr) {
        return plain(*output.expr);
    }
    out_ += scopes_.size() == 1 ? dialect_.resultMark : "";
    column(0, output.source, *output.column);
}

template <class F>
void Emitter::onOutput(const Output& output, F&& write) {
    if (output.expr != nullptr) {
        return write(*output.expr);
    }
    Expr expr;
    asExpr(output, expr);
    write(expr);
}

/// Tables inside parentheses have no row key that could be named.
void Emitter::emitKeys(const Select& select, const std::vector<JoinStep>& steps) {
    for (const JoinStep& step : steps) {
        if (step.source < 0) {
            continue;
        }
        const Source& source = select.sources[static_cast<std::size_t>(step.source)];
        if (!source.table->rowKey.empty()) {
            out_ += ", ";
            name(source.writtenName());
            out_ += '.';
            out_ += source.table->rowKey;
            keys_.push_back(step.source);
        }
    }
}

void Emitter::emitSteps(const Select& select, const std::vector<JoinStep>& steps) {
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const JoinStep& step = steps[i];
        const bool lacksCondition = dialect_.isStrict && step.on.empty();
        out_ += i == 0           ? ""
                : step.outer     ? " LEFT JOIN "
                : lacksCondition ? " CROSS JOIN "
                                 : " JOIN ";
        if (step.source >= 0) {
            emitTarget(select.sources[static_cast<std::size_t>(step.source)]);
        } else {
            out_ += '(';
            emitSteps(select, step.group);
            out_ += ')';
        }
        if (!step.on.empty()) {
            out_ += " ON ";
            chain(step.on, " AND ", Negation);
        } else if (lacksCondition && step.outer) {
            out_ += " ON TRUE";
        }
    }
}

/// The parts of a UNION, with whatever limits one of them inside parentheses.
void Emitter::emitParts(const Source& source) {
    out_ += '(';
    const bool isUnion = source.parts->size() > 1;
    for (std::size_t i = 0; i < source.parts->size(); ++i) {
        const Select& part = *(*source.parts)[i];
        const bool isLimited = isUnion && part.top;
        out_ += i > 0 ? " UNION ALL " : "";
        out_ += isLimited ? "SELECT * FROM (" : "";
        emitSelect(part, i == 0 ? Results::Named : Results::Numbered);
        out_ += isLimited ? ") AS \"part\"" : "";
    }
    out_ += ") AS ";
    name(source.alias);
}

void Emitter::emitTarget(const Source& source) {
    if (source.parts) {
        return emitParts(source);
    }
    name(source.table->name);
    if (!source.alias.empty()) {
        out_ += " AS ";
        name(source.alias);
    }
}

void Emitter::emitWhere(const Select& select, const JoinOrder& order) {
    std::vector<const Expr*> terms = order.where;
    if (select.where) {
        terms.push_back(select.where.get());
    }
    if (terms.empty()) {
        return;
    }
    out_ += " WHERE ";
    terms.size() == 1 ? condition(*terms.front()) : chain(terms, " AND ", Negation);
}

void Emitter::emitGrouping(const Select& select, bool distinct) {
    std::string_view joint = " GROUP BY ";
    const Rows each(*this, Rows::Of::Each);
    const auto group = [&](const Expr& expr) {
        out_ += joint;
        joint = ", ";
        groupKey(expr);
    };
    if (distinct) {
        for (const Output& output : select.outputs) {
            onOutput(output, group);
        }
        return;
    }
    for (const ExprPtr& expr : select.groupBy) {
        group(*expr);
    }
    if (select.having) {
        const Rows any(*this, Rows::Of::AnyOne);
        out_ += " HAVING ";
        condition(*select.having);
    }
}

void Emitter::emitOrder(const Select& select) {
    const Rows any(*this, Rows::Of::AnyOne);
    std::string_view joint = " ORDER BY ";
    for (const OrderItem& item : select.orderBy) {
        out_ += joint;
        joint = ", ";
        const auto key = [&](const Expr& expr) { sortKey(expr, item.descending); };
        if (item.expr) {
            key(*item.expr);
        } else {
            onOutput(select.outputs[item.position - 1], key);
        }
    }
}

/// What stands at one place of the order comes as it lies in the tables, groups by what they are
/// grouped by.
void Emitter::emitOwnOrder(const Select& select, const std::vector<JoinStep>& steps) {
    std::string_view joint = select.orderBy.empty() ? " ORDER BY " : ", ";
    if (!select.grouped() && !select.distinct) {
        return sortRows(select, steps, joint);
    }
    const Rows each(*this, Rows::Of::Each);
    const auto key = [&](const Expr& expr) {
        if (isColumn(expr)) {
            out_ += joint;
            joint = ", ";
            groupKey(expr);
            out_ += dialect_.ascending;
        }
    };
    if (!select.grouped()) {
        for (const Output& output : select.outputs) {
            onOutput(output, key);
        }
    }
    for (const ExprPtr& expr : select.groupBy) {
        key(*expr);
    }
}

void Emitter::sortRows(const Select& select, const std::vector<JoinStep>& steps,
                       std::string_view joint) {
    for (const JoinStep& step : steps) {
        const bool isTable = step.source >= 0;
        const Source* source =
            isTable ? &select.sources[static_cast<std::size_t>(step.source)] : nullptr;
        if (isTable && !source->table->rowKey.empty()) {
            out_ += joint;
            joint = ", ";
            name(source->writtenName());
            out_ += '.' + source->table->rowKey;
            out_ += dialect_.ascending;
        }
    }
}

/// Yes is the lesser one in the dialect. A code's column sorts by itself, so that its index serves.
void Emitter::sortKey(const Expr& expr, bool descending) {
    const bool code = isColumn(expr) && expr.valueKind == ColumnKind::Code;
    if (code || categoryOf(expr) != Category::Text) {
        plain(expr);
    } else {
        comparable(expr);
    }
    const bool isTurned = descending != (categoryOf(expr) == Category::YesNo);
    out_ += isTurned ? dialect_.descending : dialect_.ascending;
}

/// A change of a joined table goes by the keys of the rows that the join finds there.
void Emitter::emitJoined(const Statement& statement) {
    const Select& select = *statement.select;
    const Source& target = select.sources[statement.changed];
    const bool updates = statement.kind == StatementKind::Update;
    out_ += updates ? "UPDATE " : "DELETE FROM ";
    name(target.table->name);
    for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
        out_ += i > 0 ? ", " : " SET ";
        name(statement.assignments[i].column->name);
        out_ += " = \"found\".\"" + std::to_string(i + 1) + '"';
    }
    out_ += updates ? " FROM (SELECT " : " WHERE " + target.table->rowKey + " IN (SELECT ";
    scopes_.push_back({select, ColumnNames(select.sources)});
    name(target.writtenName());
    out_ += '.' + target.table->rowKey;
    out_ += updates ? " AS \"key\"" : "";
    for (std::size_t i = 0; i < statement.assignments.size(); ++i) {
        out_ += ", ";
        assigned(*statement.assignments[i].value, *statement.assignments[i].column);
        out_ += " AS \"" + std::to_string(i + 1) + '"';
    }
    const JoinOrder order = joinOrder(select.from.get());
    out_ += " FROM ";
    emitSteps(select, order.steps);
    emitWhere(select, order);
    out_ += ')';
    if (updates) {
        out_ += " AS \"found\" WHERE ";
        name(target.table->name);
        out_ += '.' + target.table->rowKey + " = \"found\".\"key\"";
    }
}

void Emitter::emitUpdate(const Statement& statement) {
    scopes_.push_back({*statement.select, ColumnNames(statement.select->sources)});
    out_ += "UPDATE ";
    emitTarget(statement.select->sources.front());
    std::string_view joint = " SET ";
    for (const Assignment& assignment : statement.assignments) {
        out_ += joint;
        joint = ", ";
        name(assignment.column->name);
        out_ += " = ";
        assigned(*assignment.value, *assignment.column);
    }
    emitWhere(*statement.select, {});
}

void Emitter::emitDelete(const Statement& statement) {
    scopes_.push_back({*statement.select, ColumnNames(statement.select->sources)});
    out_ += "DELETE FROM ";
    emitTarget(statement.select->sources.front());
    emitWhere(*statement.select, {});
}

void Emitter::emitInsert(const Statement& statement) {
    out_ += "INSERT INTO ";
    name(statement.target.table->name);
    std::string_view joint = " (";
    for (const Assignment& assignment : statement.assignments) {
        out_ += joint;
        joint = ", ";
        name(assignment.column->name);
    }
    out_ += ") ";
    emitSelect(*statement.select, Results::AsTheyAre, &statement.assignments);
}

}  // namespace jet
