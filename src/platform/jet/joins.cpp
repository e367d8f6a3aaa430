#include "platform/jet/joins.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/jet/kinds.h"

namespace jet {

namespace {

using Conditions = std::vector<const Expr*>;

/// A FROM in the making: inner tables, what they are joined on, and the outer steps behind them.
struct Form {
    std::vector<JoinStep> inner;
    Conditions conditions;
    std::vector<JoinStep> outer;
};

template <class T>
void append(std::vector<T>& to, std::vector<T>&& from) {
    std::move(from.begin(), from.end(), std::back_inserter(to));
}

std::uint64_t bit(int source) { return std::uint64_t{1} << static_cast<unsigned>(source); }

std::uint64_t tablesOf(const std::vector<JoinStep>& steps) {
    std::uint64_t tables = 0;
    for (const JoinStep& step : steps) {
        tables |= step.source >= 0 ? bit(step.source) : tablesOf(step.group);
    }
    return tables;
}

std::uint64_t tablesOf(const Conditions& conditions) {
    std::uint64_t tables = 0;
    for (const Expr* condition : conditions) {
        tables |= jet::tablesOf(*condition);
    }
    return tables;
}

void split(const Expr* condition, Conditions& into) {
    if (condition == nullptr) {
        return;
    }
    if (condition->kind != ExprKind::And) {
        into.push_back(condition);
        return;
    }
    for (const ExprPtr& child : condition->children) {
        split(child.get(), into);
    }
}

/// Whether a condition cannot hold where one of its tables has no row: a comparison of bare
/// columns.
bool refusesNull(const Expr& condition) {
    return condition.kind == ExprKind::Compare &&
           std::all_of(condition.children.begin(), condition.children.end(),
                       [](const ExprPtr& side) { return isColumn(*side) || isLiteral(*side); });
}

bool refusesNullOf(const Conditions& conditions, std::uint64_t tables) {
    return std::any_of(conditions.begin(), conditions.end(), [&](const Expr* condition) {
        return (jet::tablesOf(*condition) & tables) != 0 && refusesNull(*condition);
    });
}

/// Gives every condition to the first step at which all its tables stand, beginning with the
/// second.
std::vector<JoinStep> placed(std::vector<JoinStep> steps, Conditions& conditions) {
    std::uint64_t standing = 0;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        standing |= steps[i].source >= 0 ? bit(steps[i].source) : tablesOf(steps[i].group);
        if (i == 0 || steps[i].outer) {
            continue;
        }
        const auto rest = std::stable_partition(
            conditions.begin(), conditions.end(),
            [&](const Expr* condition) { return (jet::tablesOf(*condition) & ~standing) == 0; });
        std::move(conditions.begin(), rest, std::back_inserter(steps[i].on));
        conditions.erase(conditions.begin(), rest);
    }
    return steps;
}

JoinOrder ordered(Form form) {
    JoinOrder order;
    order.steps = placed(std::move(form.inner), form.conditions);
    append(order.steps, std::move(form.outer));
    order.where = std::move(form.conditions);
    return order;
}

/// A form as one step in parentheses. Its conditions have found their steps unless it has a single
/// inner table, which then has none.
JoinStep grouped(Form form, Conditions& rest) {
    JoinOrder order = ordered(std::move(form));
    append(rest, std::move(order.where));
    if (order.steps.size() == 1) {
        return std::move(order.steps.front());
    }
    JoinStep step;
    step.group = std::move(order.steps);
    return step;
}

/// Makes outer steps inner whose row a condition of an inner join needs anyway.
void promote(Form& form, const Conditions& conditions) {
    Conditions grounds = conditions;
    for (bool found = true; found;) {
        found = false;
        for (auto step = form.outer.begin(); step != form.outer.end(); ++step) {
            if (step->source < 0 || !refusesNullOf(grounds, bit(step->source)) ||
                !std::all_of(step->on.begin(), step->on.end(),
                             [](const Expr* on) { return refusesNull(*on); })) {
                continue;
            }
            grounds.insert(grounds.end(), step->on.begin(), step->on.end());
            append(form.conditions, std::move(step->on));
            form.inner.push_back({false, step->source, {}, {}});
            form.outer.erase(step);
            found = true;
            break;
        }
    }
}

/// Keeps a side whole whose outer tables a condition still names.
void closeOuter(Form& form, const Conditions& conditions) {
    const std::uint64_t named = tablesOf(conditions) | tablesOf(form.conditions);
    if ((tablesOf(form.outer) & named) == 0) {
        return;
    }
    Form closed;
    Conditions rest;
    closed.inner.push_back(grouped(std::move(form), rest));
    closed.conditions = std::move(rest);
    form = std::move(closed);
}

Form innerJoin(Form left, Form right, const Expr* on) {
    Conditions conditions;
    split(on, conditions);
    promote(left, conditions);
    promote(right, conditions);
    closeOuter(left, conditions);
    closeOuter(right, conditions);
    append(left.inner, std::move(right.inner));
    append(left.conditions, std::move(right.conditions));
    append(left.conditions, std::move(conditions));
    append(left.outer, std::move(right.outer));
    return left;
}

/// Whether the right side's own outer joins can follow behind it: they find no row where it has
/// none.
bool canFollow(const Form& right, const Conditions& on) {
    if ((tablesOf(on) & tablesOf(right.outer)) != 0) {
        return false;
    }
    const std::uint64_t tables = tablesOf(right.inner) | tablesOf(right.outer);
    return std::all_of(right.outer.begin(), right.outer.end(), [&](const JoinStep& step) {
        return step.source >= 0 && refusesNullOf(step.on, tables & ~bit(step.source));
    });
}

Form outerJoin(Form left, Form right, const Expr* on) {
    Conditions conditions;
    split(on, conditions);
    std::vector<JoinStep> followers;
    JoinStep step;
    if (right.inner.size() == 1 && right.conditions.empty() && canFollow(right, conditions)) {
        step = std::move(right.inner.front());
        followers = std::move(right.outer);
    } else {
        step = grouped(std::move(right), conditions);
    }
    step.outer = true;
    append(step.on, std::move(conditions));
    left.outer.push_back(std::move(step));
    append(left.outer, std::move(followers));
    return left;
}

Form formOf(const Join& join) {
    switch (join.kind) {
        case JoinKind::Table: {
            Form form;
            form.inner.push_back({false, join.source, {}, {}});
            return form;
        }
        case JoinKind::Inner:
            return innerJoin(formOf(*join.left), formOf(*join.right), join.on.get());
        case JoinKind::Left:
            return outerJoin(formOf(*join.left), formOf(*join.right), join.on.get());
        case JoinKind::Right:
            return outerJoin(formOf(*join.right), formOf(*join.left), join.on.get());
    }
    return {};
}

}  // namespace

std::uint64_t tablesOf(const Expr& expr) {
    if (expr.select) {
        return ~std::uint64_t{0};
    }
    std::uint64_t tables = isColumn(expr) && expr.scope == 0 ? bit(expr.source) : 0;
    for (const ExprPtr& child : expr.children) {
        tables |= tablesOf(*child);
    }
    return tables;
}

JoinOrder joinOrder(const Join* from) {
    return from == nullptr ? JoinOrder{} : ordered(formOf(*from));
}

}  // namespace jet
