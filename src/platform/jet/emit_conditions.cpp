#include <fmt/format.h>

#include "platform/base/lookup.h"
#include "platform/jet/emitter.h"
#include "platform/jet/kinds.h"
#include "platform/jet/report.h"

namespace jet {

namespace {

using store::ColumnKind;

// Beyond this the store would count a chain as too deep; it is cut into groups of that many.
constexpr std::size_t LongestChain = 200;

constexpr std::string_view BlankCodes = "('', ' ')";

std::string_view comparisonSign(Operator op) {
    static constexpr std::pair<Operator, std::string_view> Signs[] = {
        {Operator::NotEqual, " <> "},
        {Operator::Less, " < "},
        {Operator::LessOrEqual, " <= "},
        {Operator::Greater, " > "},
        {Operator::GreaterOrEqual, " >= "}};
    return base::lookUp(Signs, op, " = ");
}

bool isEquality(Operator op) { return op == Operator::Equal || op == Operator::NotEqual; }

bool isCodeColumn(const Expr& expr) { return isColumn(expr) && expr.valueKind == ColumnKind::Code; }

bool isTextLiteral(const Expr& expr) {
    return isLiteral(expr) && expr.facts.kind == LiteralKind::Text;
}

bool isBlankLiteral(const Expr& expr) { return isTextLiteral(expr) && expr.facts.blank; }

std::vector<const Expr*> pointers(const std::vector<ExprPtr>& children) {
    std::vector<const Expr*> result;
    result.reserve(children.size());
    for (const ExprPtr& child : children) {
        result.push_back(child.get());
    }
    return result;
}

}  // namespace

/// An expression where a condition stands.
void Emitter::condition(const Expr& expr) {
    switch (expr.kind) {
        case ExprKind::Or:
            return chain(pointers(expr.children), " OR ", Conjunction);
        case ExprKind::And:
            return chain(pointers(expr.children), " AND ", Negation);
        case ExprKind::Not:
            out_ += "NOT (";
            condition(*expr.children[0]);
            out_ += ')';
            return;
        case ExprKind::Compare:
            return compare(expr);
        case ExprKind::Like:
            return like(expr);
        case ExprKind::Between:
            return between(expr);
        case ExprKind::In:
            return in(expr);
        case ExprKind::InSelect:
            return inSelect(expr);
        case ExprKind::DayCompare:
            return compareDays(expr);
        case ExprKind::IsNull:
            atom(*expr.children[0]);
            out_ += expr.negated ? " IS NOT NULL" : " IS NULL";
            return;
        default:
            break;
    }
    if (categoryOf(expr) == Category::Text || categoryOf(expr) == Category::Date) {
        fail(errors::TypeMismatch,
             fmt::format("A condition should stand here, not {}", described(categoryOf(expr))),
             sql_, expr.offset);
    }
    if (dialect_.isStrict && categoryOf(expr) == Category::Number) {
        return expand(Op::YesNo, {&expr, &Emitter::atom});
    }
    plain(expr);
}

void Emitter::chain(const std::vector<const Expr*>& terms, std::string_view joint, Rank rank) {
    const bool cut = terms.size() > LongestChain;
    for (std::size_t i = 0; i < terms.size(); ++i) {
        const bool starts = cut && i % LongestChain == 0;
        out_ += i == 0 ? "" : starts ? ")" : "";
        out_ += i == 0 ? std::string_view{} : joint;
        out_ += starts ? "(" : "";
        const bool loose = rankOf(*terms[i]) < rank;
        out_ += loose ? "(" : "";
        condition(*terms[i]);
        out_ += loose ? ")" : "";
    }
    out_ += cut ? ")" : "";
}

/// Texts go with texts only; numbers also with dates and with yes/no values.
void Emitter::refuseMismatch(const Expr& left, const Expr& right) const {
    const Category a = categoryOf(left);
    const Category b = categoryOf(right);
    const auto mixes = [](Category one, Category other) {
        return one == Category::Number && (other == Category::Date || other == Category::YesNo);
    };
    if (a != b && a != Category::Null && b != Category::Null && !mixes(a, b) && !mixes(b, a)) {
        fail(errors::TypeMismatch,
             fmt::format("I cannot compare {} with {}", described(a), described(b)), sql_,
             right.offset);
    }
}

void Emitter::compare(const Expr& expr) {
    const auto isConstant = [](const Expr& side) {
        return side.kind == ExprKind::True || side.kind == ExprKind::False;
    };
    const bool exchange = isConstant(*expr.children[0]) ||
                          (!isColumn(*expr.children[0]) && isColumn(*expr.children[1]));
    const Expr& left = *expr.children[exchange ? 1 : 0];
    const Expr& right = *expr.children[exchange ? 0 : 1];
    const Operator op = exchange ? flipped(expr.op) : expr.op;
    compare(left, op, right);
}

void Emitter::compare(const Expr& left, Operator op, const Expr& right) {
    refuseMismatch(left, right);
    const Category a = categoryOf(left);
    const Category b = categoryOf(right);
    if (a == Category::YesNo || b == Category::YesNo) {
        return compareYesNo(left, op, right);
    }
    if (a == Category::Text && b == Category::Text) {
        return compareText(left, op, right);
    }
    operand(left, right);
    out_ += comparisonSign(op);
    operand(right, left);
}

/// One side of a comparison that is not of texts, as the kind of the other.
void Emitter::operand(const Expr& expr, const Expr& against) {
    const Category own = categoryOf(expr);
    const Category other = categoryOf(against);
    if (own == Category::Null || other == Category::Null) {
        return sum(expr);
    }
    if (own == other) {
        if (against.valueKind != ColumnKind::Single || !signedParameter(expr, Binding::Single)) {
            sum(expr);
        }
        return;
    }
    if (own == Category::Number && other == Category::Date) {
        return dated(expr);
    }
    if (own == Category::YesNo && dialect_.isStrict) {
        return numeric(expr);
    }
    sum(expr);
}

/// Any non-zero is yes, so with = and <> only zero or not counts. Ordered, yes is -1.
void Emitter::compareYesNo(const Expr& left, Operator op, const Expr& right) {
    if (!isEquality(op)) {
        numeric(left);
        out_ += comparisonSign(op);
        return numeric(right);
    }
    if (right.kind == ExprKind::True || right.kind == ExprKind::False) {
        const bool isYes = (right.kind == ExprKind::True) == (op == Operator::Equal);
        if (categoryOf(left) != Category::Number) {
            return expand(isYes ? Op::IsYes : Op::IsNo, {&left, &Emitter::sum});
        }
        ranked(left, Sum);
        out_ += isYes ? " <> 0" : " = 0";
        return;
    }
    yesNoSide(left);
    out_ += comparisonSign(op);
    yesNoSide(right);
}

void Emitter::yesNoSide(const Expr& expr) {
    if (signedParameter(expr, Binding::YesNo)) {
        return;
    }
    if (categoryOf(expr) == Category::Number || (isColumn(expr) && !dialect_.isStrict)) {
        expand(Op::YesNo, {&expr, &Emitter::atom});
    } else {
        ranked(expr, Sum);
    }
}

/// Without trailing blanks and, unless the column does so itself, without case.
void Emitter::trimmed(const Expr& expr) {
    if (isTextLiteral(expr)) {
        return parameter(expr, Binding::TrimmedRight);
    }
    expand(Op::TrimRight, {&expr, &Emitter::textual});
}

void Emitter::comparable(const Expr& expr) { expand(Op::NoCase, {&expr, &Emitter::trimmed}); }

void Emitter::compareText(const Expr& left, Operator op, const Expr& right) {
    const bool code = isCodeColumn(left);
    if (code && isBlankLiteral(right) && isEquality(op)) {
        column(left);
        out_ += op == Operator::Equal ? " IN " : " NOT IN ";
        out_ += BlankCodes;
        return;
    }
    const bool asStored =
        code && (isCodeColumn(right) || (isTextLiteral(right) && !right.facts.blank));
    asStored ? column(left) : comparable(left);
    out_ += comparisonSign(op);
    asStored&& isCodeColumn(right) ? column(right) : trimmed(right);
}

void Emitter::compareDays(const Expr& expr) {
    const Expr& day = *expr.children[1];
    const auto side = [&](std::string_view sign, Binding binding) {
        column(*expr.children[0]);
        out_ += sign;
        parameter(day, binding);
    };
    switch (expr.op) {
        case Operator::Less:
            return side(" < ", Binding::DayFrom);
        case Operator::LessOrEqual:
            return side(" < ", Binding::DayTo);
        case Operator::Greater:
            return side(" >= ", Binding::DayTo);
        case Operator::GreaterOrEqual:
            return side(" >= ", Binding::DayFrom);
        default:
            break;
    }
    const bool equal = expr.op == Operator::Equal;
    out_ += '(';
    side(equal ? " >= " : " < ", Binding::DayFrom);
    out_ += equal ? " AND " : " OR ";
    side(equal ? " < " : " >= ", Binding::DayTo);
    out_ += ')';
}

void Emitter::like(const Expr& expr) {
    const Expr& text = *expr.children[0];
    const Expr& pattern = *expr.children[1];
    const LikeForm form = isLiteral(pattern) ? pattern.facts.like : LikeForm::None;
    const bool code = isCodeColumn(text);
    const bool prefixed = form == LikeForm::Prefix || form == LikeForm::PrefixMore ||
                          form == LikeForm::PrefixBrackets;
    if (code && prefixed && !expr.negated) {
        return likeRange(text, pattern);
    }
    if (form == LikeForm::Anything && !expr.negated && isColumn(text)) {
        column(text);
        out_ += " IS NOT NULL";
        return;
    }
    if (form == LikeForm::Exact) {
        code ? column(text) : expand(Op::NoCase, {&text, &Emitter::textual});
        out_ += comparisonSign(expr.negated ? Operator::NotEqual : Operator::Equal);
        return parameter(pattern, Binding::AsIs);
    }
    out_ += expr.negated ? "NOT (" : "";
    matches(text, pattern);
    out_ += expr.negated ? ")" : "";
}

void Emitter::matches(const Expr& text, const Expr& pattern) {
    const LikeForm form = isLiteral(pattern) ? pattern.facts.like : LikeForm::None;
    const bool brackets =
        form == LikeForm::None || form == LikeForm::Brackets || form == LikeForm::PrefixBrackets;
    expand(brackets ? Op::LikeAny : Op::Like, {&text, &Emitter::textual},
           {&pattern, &Emitter::textual});
}

/// A range of the column's index, and the pattern itself where it says more than its beginning.
void Emitter::likeRange(const Expr& text, const Expr& pattern) {
    out_ += '(';
    column(text);
    out_ += " >= ";
    parameter(pattern, Binding::LikeFrom);
    out_ += " AND ";
    column(text);
    out_ += " < ";
    parameter(pattern, dialect_.likeTo);
    // The range of a store that sorts by the rules of languages holds other letters, too.
    if (pattern.facts.like != LikeForm::Prefix || dialect_.isStrict) {
        out_ += " AND ";
        matches(text, pattern);
    }
    out_ += ')';
}

void Emitter::between(const Expr& expr) {
    const Expr& value = *expr.children[0];
    out_ += expr.negated ? "NOT (" : "(";
    compare(value, Operator::GreaterOrEqual, *expr.children[1]);
    out_ += " AND ";
    compare(value, Operator::LessOrEqual, *expr.children[2]);
    out_ += ')';
}

void Emitter::in(const Expr& expr) {
    const Expr& value = *expr.children[0];
    const bool code = isCodeColumn(value);
    bool blank = false;
    bool asStored = code;
    for (std::size_t i = 1; i < expr.children.size(); ++i) {
        const Expr& item = *expr.children[i];
        refuseMismatch(value, item);
        blank |= isBlankLiteral(item);
        asStored &= isTextLiteral(item) || isCodeColumn(item) || item.kind == ExprKind::Null;
    }
    const bool text = categoryOf(value) == Category::Text;
    asStored ? column(value) : text ? comparable(value) : ranked(value, Sum);
    out_ += expr.negated ? " NOT IN (" : " IN (";
    out_ += asStored && blank ? "'', ' ', " : "";
    for (std::size_t i = 1; i < expr.children.size(); ++i) {
        out_ += i > 1 ? ", " : "";
        inItem(value, *expr.children[i], asStored);
    }
    out_ += ')';
}

void Emitter::inItem(const Expr& value, const Expr& item, bool asStored) {
    if (categoryOf(item) == Category::Null) {
        return plain(item);
    }
    if (categoryOf(value) == Category::Text) {
        return asStored && !isLiteral(item) ? column(item) : trimmed(item);
    }
    if (categoryOf(value) == Category::YesNo) {
        return isLiteral(item) ? parameter(item, Binding::YesNo) : plain(item);
    }
    operand(item, value);
}

void Emitter::inSelect(const Expr& expr) {
    const Expr& value = *expr.children[0];
    const Output& output = expr.select->outputs.front();
    const bool text = categoryOf(value) == Category::Text;
    if (text != (categoryOf(outputKind(output)) == Category::Text)) {
        fail(errors::TypeMismatch,
             fmt::format("I cannot compare {} with {}", described(categoryOf(value)),
                         described(categoryOf(outputKind(output)))),
             sql_, expr.select->offset);
    }
    const bool asStored = isCodeColumn(value) && outputKind(output) == ColumnKind::Code;
    text && !asStored ? comparable(value) : sum(value);
    out_ += expr.negated ? " NOT IN (" : " IN (";
    emitSelect(*expr.select, text && !asStored ? Results::Trimmed : Results::AsTheyAre);
    out_ += ')';
}

/// What rows are grouped by: texts that compare equal fall together.
void Emitter::groupKey(const Expr& expr) {
    categoryOf(expr) == Category::Text ? comparable(expr) : plain(expr);
}

}  // namespace jet
