#include "platform/jet/emitter.h"

#include <string>

#include "platform/jet/kinds.h"

namespace jet {

namespace {

using store::ColumnKind;

/// A column that a star stands for, as an expression of its own.
void asExpr(const Output& output, Expr& expr) {
    expr.kind = ExprKind::Column;
    expr.source = output.source;
    expr.column = output.column;
    expr.valueKind = output.column->kind;
}

}  // namespace

void Emitter::emit(const Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Select:
            return emitSelect(*statement.select, Results::WithKeys);
        case StatementKind::Insert:
            return emitInsert(statement);
        case StatementKind::Update:
            return emitUpdate(statement);
        case StatementKind::Delete:
            return emitDelete(statement);
    }
}

/// `targets` are the columns that an INSERT writes the results into.
void Emitter::emitSelect(const Select& select, Results results, const Targets* targets) {
    scopes_.push_back({select, ColumnNames(select.sources)});
    const JoinOrder order = joinOrder(select.from.get());
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
    emitOrder(select);
    if (select.top) {
        out_ += " LIMIT " + std::to_string(*select.top);
    }
    scopes_.pop_back();
}

void Emitter::emitOutputs(const Select& select, Results results, const Targets* targets) {
    if (results == Results::Presence && !select.grouped()) {
        out_ += '1';
        return;
    }
    for (std::size_t i = 0; i < select.outputs.size(); ++i) {
        const Output& output = select.outputs[i];
        out_ += i > 0 ? ", " : "";
        if (targets == nullptr && results != Results::Trimmed) {
            emitResult(output);
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
        out_ += i == 0 ? "" : step.outer ? " LEFT JOIN " : " JOIN ";
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
        }
    }
}

void Emitter::emitTarget(const Source& source) {
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
        out_ += " HAVING ";
        condition(*select.having);
    }
}

void Emitter::emitOrder(const Select& select) {
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

/// Yes is the lesser one in the dialect. A code's column sorts by itself, so that its index serves.
void Emitter::sortKey(const Expr& expr, bool descending) {
    const bool code = isColumn(expr) && expr.valueKind == ColumnKind::Code;
    if (code || categoryOf(expr) != Category::Text) {
        plain(expr);
    } else {
        comparable(expr);
    }
    out_ += descending != (categoryOf(expr) == Category::YesNo) ? " DESC" : "";
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
