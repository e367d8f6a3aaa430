#include <algorithm>
#include <string>

#include "platform/base/lookup.h"
#include "platform/jet/builtins.h"
#include "platform/jet/emitter.h"
#include "platform/jet/kinds.h"
#include "platform/jet/report.h"

namespace jet {

namespace {

using store::ColumnKind;

std::string_view arithmeticSign(Operator op) {
    return op == Operator::Add ? " + " : op == Operator::Subtract ? " - " : " * ";
}

Op templateOf(Operator op) {
    static constexpr std::pair<Operator, Op> Templates[] = {
        {Operator::Divide, Op::Divide},
        {Operator::IntegerDivide, Op::IntegerDivide},
        {Operator::Modulo, Op::Modulo},
        {Operator::Power, Op::Power}};
    return base::lookUp(Templates, op, Op::Same);
}

bool isWhole(ColumnKind kind) { return kind == ColumnKind::Integer || kind == ColumnKind::Counter; }

/// Whether there is never a second row.
bool givesOneRow(const Select& select) {
    const bool isOneGroup = select.aggregated && select.groupBy.empty();
    return isOneGroup || select.sources.empty() ||
           (select.top && *select.top <= 1 && select.orderBy.empty());
}

/// Yes is -1 in the dialect and the greater one in the store.
Op ofYesNo(Op op) { return op == Op::Least ? Op::Any : op == Op::Greatest ? Op::All : op; }

/// Whether all rows of a group have the very same value there; texts that compare equal may differ.
bool isGroupedBy(const Select& select, int source, const store::Column& column) {
    const auto isIt = [&](const Expr& expr) {
        return isColumn(expr) && expr.scope == 0 && expr.source == source &&
               expr.column == &column && categoryOf(expr) != Category::Text;
    };
    if (select.grouped()) {
        return std::ranges::any_of(select.groupBy,
                                   [&](const ExprPtr& expr) { return isIt(*expr); });
    }
    return std::ranges::any_of(select.outputs, [&](const Output& output) {
        return output.expr != nullptr ? isIt(*output.expr)
                                      : output.source == source && output.column == &column &&
                                            categoryOf(column.kind) != Category::Text;
    });
}

}  // namespace

void Emitter::name(std::string_view text) {
    out_ += '"';
    if (text.find('"') == std::string_view::npos) {
        out_ += text;
    } else {
        for (const char c : text) {
            out_ += c;
            if (c == '"') {
                out_ += c;
            }
        }
    }
    out_ += '"';
}

void Emitter::parameter(const Expr& literal, Binding binding) {
    parameters_.push_back({literal.literal, binding});
    out_ += '?';
}

/// A number with or without a minus as a parameter; false for any other expression.
bool Emitter::signedParameter(const Expr& expr, Binding binding) {
    const bool negative = expr.kind == ExprKind::Negate;
    const Expr& literal = negative ? *expr.children[0] : expr;
    if (!isLiteral(literal) || (negative && literal.facts.kind != LiteralKind::Number)) {
        return false;
    }
    out_ += negative && binding != Binding::YesNo ? "-" : "";
    parameter(literal, binding);
    return true;
}

/// Writes a template with its arguments in their places.
void Emitter::expand(Op op, Argument first, Argument second, Argument third) {
    const Argument arguments[] = {first, second, third};
    std::string_view rest = dialect_[op];
    for (auto open = rest.find('{'); open != rest.npos; open = rest.find('{')) {
        out_ += rest.substr(0, open);
        const auto place = rest.substr(open + 1, rest.find('}', open) - open - 1);
        if (place == "now") {
            parameters_.push_back({0, Binding::Now});
            out_ += '?';
        } else if (place == "rows") {
            const Select& select = scopes_.back().select;
            sortRows(select, joinOrder(select.from.get()).steps, " ORDER BY ");
        } else {
            const Argument& argument = arguments[place.front() - '0'];
            (this->*argument.form)(*argument.expr);
        }
        rest.remove_prefix(open + place.size() + 2);
    }
    out_ += rest;
}

/// The name alone where that is enough. Names of a SELECT further out always get their table, since
/// one nearer by could have the same.
void Emitter::column(int scope, int source, const store::Column& column) {
    const Scope& at = scopes_[scopes_.size() - 1 - static_cast<std::size_t>(scope)];
    if (!at.takesAnyRow || isGroupedBy(at.select, source, column)) {
        return bareColumn(at, scope, source, column);
    }
    const std::string_view any = dialect_[Op::AnyOf];
    const auto open = any.find('{');
    out_ += any.substr(0, open);
    bareColumn(at, scope, source, column);
    out_ += any.substr(open + 3);
}

void Emitter::bareColumn(const Scope& at, int scope, int source, const store::Column& column) {
    // An order by a bare name could mean a result of that name in a strict store.
    if (scope > 0 || dialect_.isStrict || !at.names.unique(column.name)) {
        name(at.select.sources[static_cast<std::size_t>(source)].writtenName());
        out_ += '.';
    }
    name(column.name);
}

void Emitter::column(const Expr& expr) { column(expr.scope, expr.source, *expr.column); }

Emitter::Rank Emitter::rankOf(const Expr& expr) const {
    switch (expr.kind) {
        case ExprKind::Or:
            return Disjunction;
        case ExprKind::And:
            return Conjunction;
        case ExprKind::Not:
            return Negation;
        case ExprKind::Concat:
            return Joined;
        case ExprKind::Negate:
            return Product;
        case ExprKind::Arithmetic:
            if (expr.valueKind == ColumnKind::Date || templateOf(expr.op) != Op::Same) {
                return Atom;
            }
            return expr.valueKind == ColumnKind::Text ? Joined
                   : expr.op == Operator::Multiply    ? Product
                                                      : Sum;
        case ExprKind::True:
        case ExprKind::False:
        case ExprKind::Null:
        case ExprKind::Literal:
        case ExprKind::Column:
        case ExprKind::Call:
        case ExprKind::Exists:
        case ExprKind::ScalarSelect:
            return Atom;
        default:
            return Comparison;
    }
}

/// In parentheses where it binds more loosely than its place needs. Comparisons may turn into
/// several joined by AND or OR, so they always get them below another operator.
void Emitter::ranked(const Expr& expr, Rank least) {
    const Rank rank = rankOf(expr);
    if (rank >= least) {
        plain(expr);
        return;
    }
    out_ += '(';
    plain(expr);
    out_ += ')';
}

void Emitter::plain(const Expr& expr) {
    switch (expr.kind) {
        case ExprKind::Literal:
            return parameter(expr, Binding::AsIs);
        case ExprKind::Null:
            out_ += "NULL";
            return;
        case ExprKind::True:
            out_ += dialect_.yes;
            return;
        case ExprKind::False:
            out_ += dialect_.no;
            return;
        case ExprKind::Column:
            return column(expr);
        case ExprKind::Negate:
        case ExprKind::Arithmetic:
            return arithmetic(expr);
        case ExprKind::Concat:
            return concatenation(expr);
        case ExprKind::Call:
            return call(expr);
        case ExprKind::Exists:
        case ExprKind::ScalarSelect:
            return subSelect(expr);
        default:
            return condition(expr);
    }
}

void Emitter::arithmetic(const Expr& expr) {
    if (expr.kind == ExprKind::Negate) {
        out_ += '-';
        const Expr& operand = *expr.children[0];
        const bool signedAgain =
            operand.kind == ExprKind::Negate || categoryOf(operand) == Category::YesNo;
        out_ += signedAgain ? "(" : "";
        numeric(operand);
        out_ += signedAgain ? ")" : "";
        return;
    }
    const Expr& left = *expr.children[0];
    const Expr& right = *expr.children[1];
    if (templateOf(expr.op) != Op::Same) {
        return expand(templateOf(expr.op), {&left, &Emitter::numeric}, {&right, &Emitter::numeric});
    }
    if (expr.valueKind == ColumnKind::Text) {
        textual(left);
        out_ += " || ";
        return textual(right);
    }
    const bool isDate = expr.valueKind == ColumnKind::Date;
    const auto days = dialect_[Op::ToDate];
    out_ += isDate ? days.substr(0, days.find('{')) : "";
    const bool continues =
        left.kind == ExprKind::Arithmetic && rankOf(left) != Atom && rankOf(left) >= rankOf(expr);
    continues ? plain(left) : numeric(left);
    out_ += arithmeticSign(expr.op);
    numeric(right);
    out_ += isDate ? days.substr(days.find('}') + 1) : "";
}

void Emitter::concatenation(const Expr& expr) {
    bool first = true;
    for (const ExprPtr& part : expr.children) {
        out_ += first ? "" : " || ";
        textOrEmpty(*part);
        first = false;
    }
}

void Emitter::textOrEmpty(const Expr& expr) {
    const bool neverNull = isLiteral(expr) || expr.kind == ExprKind::Concat;
    if (neverNull) {
        return textual(expr);
    }
    expand(Op::EmptyForNull, {&expr, &Emitter::textual});
}

/// As a text, ready to stand beside `||`.
void Emitter::textual(const Expr& expr) {
    if (isLiteral(expr)) {
        return parameter(expr,
                         expr.facts.kind == LiteralKind::Text ? Binding::AsIs : Binding::Text);
    }
    switch (categoryOf(expr)) {
        case Category::Null:
        case Category::Text:
            return ranked(expr, Joined);
        case Category::Number:
            return expand(Op::NumberText, {&expr, &Emitter::plain});
        case Category::Date:
            return expand(Op::DateText, {&expr, &Emitter::plain});
        case Category::YesNo:
            return expand(Op::YesNoText, {&expr, &Emitter::plain});
    }
}

/// As a number, ready to stand beside an arithmetic operator: yes is -1, a date its days.
void Emitter::numeric(const Expr& expr) {
    switch (categoryOf(expr)) {
        case Category::Null:
            out_ += "NULL";
            return;
        case Category::Number: {
            const bool loose = expr.kind == ExprKind::Negate || rankOf(expr) < Atom;
            out_ += loose ? "(" : "";
            plain(expr);
            out_ += loose ? ")" : "";
            return;
        }
        case Category::Text:
            return isLiteral(expr) ? parameter(expr, Binding::Number)
                                   : expand(Op::ToNumber, {&expr, &Emitter::plain});
        case Category::Date:
            return expand(Op::ToDays, {&expr, &Emitter::plain});
        case Category::YesNo:
            return expand(Op::YesNumber, {&expr, &Emitter::asYesNo});
    }
}

void Emitter::asYesNo(const Expr& expr) {
    isColumn(expr) && !dialect_.isStrict ? expand(Op::YesNo, {&expr, &Emitter::atom}) : atom(expr);
}

void Emitter::dated(const Expr& expr) {
    if (categoryOf(expr) == Category::Date || categoryOf(expr) == Category::Null) {
        return plain(expr);
    }
    isLiteral(expr) ? parameter(expr, Binding::Date) : expand(Op::ToDate, {&expr, &Emitter::plain});
}

void Emitter::ordered(const Expr& expr) {
    const bool folds = categoryOf(expr) == Category::Text && expr.valueKind != ColumnKind::Code;
    folds ? expand(Op::NoCase, {&expr, &Emitter::atom}) : plain(expr);
}

void Emitter::call(const Expr& expr) {
    const Builtin& builtin = *expr.builtin;
    if (builtin.gives == Gives::Branch) {
        return builtin.op == Op::Coalesce ? nz(expr) : conditional(expr);
    }
    const auto formOf = [&](int place) -> Argument {
        if (place >= builtin.arguments) {
            return {};
        }
        const Expr* argument = expr.children[static_cast<std::size_t>(place)].get();
        switch (builtin.takes[place]) {
            case Takes::Text:
                return {argument, &Emitter::textual};
            case Takes::Number:
                return {argument, &Emitter::numeric};
            case Takes::Date:
                return {argument, &Emitter::dated};
            case Takes::Ordered:
                return {argument, &Emitter::ordered};
            default:
                return {argument, builtin.op == Op::IsNull ? &Emitter::atom : &Emitter::plain};
        }
    };
    if (builtin.op == Op::FormatText) {
        return format(expr);
    }
    const Op op = expr.valueKind == ColumnKind::YesNo ? ofYesNo(builtin.op) : builtin.op;
    if (builtin.aggregate) {
        const Rows each(*this, Rows::Of::Each);
        return expand(op, formOf(0));
    }
    expand(op, formOf(0), formOf(1), formOf(2));
}

/// All branches are written as the kind of the first one that has a kind.
void Emitter::branch(const Expr& value, const Expr& call) {
    if (call.valueKind == ColumnKind::Text) {
        return textual(value);
    }
    if (!dialect_.isStrict || categoryOf(value) == Category::Null) {
        return plain(value);
    }
    switch (categoryOf(call.valueKind)) {
        case Category::Date:
            return dated(value);
        case Category::YesNo:
            return condition(value);
        default:
            return numeric(value);
    }
}

/// IIF, which has an ELSE, and Switch, which has none.
void Emitter::conditional(const Expr& expr) {
    const bool isSwitch = expr.builtin->arguments == Builtin::AnyPairs;
    const std::size_t conditions = isSwitch ? expr.children.size() / 2 : 1;
    out_ += "CASE";
    for (std::size_t i = 0; i < conditions; ++i) {
        out_ += " WHEN ";
        condition(*expr.children[2 * i]);
        out_ += " THEN ";
        branch(*expr.children[2 * i + 1], expr);
    }
    if (!isSwitch) {
        out_ += " ELSE ";
        branch(*expr.children[2], expr);
    }
    out_ += " END";
}

/// Without a second argument Null becomes "" or 0.
void Emitter::nz(const Expr& expr) {
    const Category category = categoryOf(expr.valueKind);
    if (expr.children.size() == 1 && category == Category::Date) {
        failSyntax("Nz of a date needs a second argument", sql_, expr.offset);
    }
    out_ += "COALESCE(";
    branch(*expr.children[0], expr);
    out_ += ", ";
    if (expr.children.size() > 1) {
        branch(*expr.children[1], expr);
    } else {
        out_ += category == Category::Text ? "''" : category == Category::YesNo ? dialect_.no : "0";
    }
    out_ += ')';
}

void Emitter::format(const Expr& expr) {
    const Expr& value = *expr.children[0];
    const Argument pattern{expr.children[1].get(), &Emitter::textual};
    switch (categoryOf(value)) {
        case Category::Number:
        case Category::YesNo:
            return expand(Op::FormatNumber, {&value, &Emitter::numeric}, pattern);
        case Category::Date:
            return expand(Op::FormatDate, {&value, &Emitter::plain}, pattern);
        default:
            return expand(Op::FormatText, {&value, &Emitter::textual}, pattern);
    }
}

void Emitter::subSelect(const Expr& expr) {
    const bool exists = expr.kind == ExprKind::Exists;
    const bool counts = !exists && !dialect_.isStrict && !givesOneRow(*expr.select);
    out_ += exists ? "EXISTS (" : counts ? "(SELECT jet_only(COUNT(*), \"1\") FROM (" : "(";
    emitSelect(*expr.select, exists   ? Results::Presence
                             : counts ? Results::Numbered
                                      : Results::AsTheyAre);
    out_ += counts ? "))" : ")";
}

/// A value on its way into a column.
void Emitter::assigned(const Expr& expr, const store::Column& target) {
    if (expr.kind == ExprKind::Null) {
        out_ += target.kind == ColumnKind::YesNo ? dialect_.no : "NULL";
        return;
    }
    switch (target.kind) {
        case ColumnKind::Code:
            return isLiteral(expr) ? parameter(expr, Binding::Code)
                   : expr.valueKind == ColumnKind::Code
                       ? plain(expr)
                       : expand(Op::CodeText, {&expr, &Emitter::textual});
        case ColumnKind::Text:
            return textual(expr);
        case ColumnKind::Integer:
        case ColumnKind::Counter:
            return assigned(expr, Binding::Integer, isWhole(expr.valueKind), Op::ToWhole);
        case ColumnKind::Number:
            return assigned(expr, Binding::Number, true, Op::Same);
        case ColumnKind::Single:
            return assigned(expr, Binding::Single, expr.valueKind == ColumnKind::Single,
                            Op::ToSingle);
        case ColumnKind::YesNo:
            if (expr.valueKind == ColumnKind::YesNo) {
                return plain(expr);
            }
            return assigned(expr, Binding::YesNo, false, Op::YesNo);
        case ColumnKind::Date:
            return isLiteral(expr) ? parameter(expr, Binding::Date) : dated(expr);
    }
}

/// A number on its way: a literal as a parameter, what is of the kind as it is, the rest converted.
void Emitter::assigned(const Expr& expr, Binding binding, bool fits, Op conversion) {
    if (signedParameter(expr, binding)) {
        return;
    }
    fits ? numeric(expr) : expand(conversion, {&expr, &Emitter::numeric});
}

}  // namespace jet
