#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/base/lookup.h"
#include "platform/base/text.h"
#include "platform/jet/nested.h"
#include "platform/jet/parser.h"
#include "platform/jet/report.h"

namespace jet {

namespace {

// What the store's own parser takes, whatever the levels consist of.
constexpr std::uint16_t DeepestExpression = 22;

struct Binary {
    Operator op = Operator::None;
    int rank = -1;  ///< how tightly it binds; 0 is &
};

Binary binary(const Token& token) {
    if (token.word == word("MOD")) {
        return {Operator::Modulo, 2};
    }
    static constexpr std::pair<char, Binary> Signs[] = {
        {'&', {Operator::None, 0}},     {'+', {Operator::Add, 1}},
        {'-', {Operator::Subtract, 1}}, {'\\', {Operator::IntegerDivide, 3}},
        {'*', {Operator::Multiply, 4}}, {'/', {Operator::Divide, 4}}};
    return token.kind == TokenKind::Symbol
               ? base::lookUp(Signs, static_cast<char>(token.symbol), Binary())
               : Binary();
}

Operator comparisonOf(const Token& token) {
    static constexpr std::pair<Symbol, Operator> Known[] = {
        {Symbol::Equal, Operator::Equal},
        {Symbol::Less, Operator::Less},
        {Symbol::Greater, Operator::Greater},
        {Symbol::LessOrEqual, Operator::LessOrEqual},
        {Symbol::GreaterOrEqual, Operator::GreaterOrEqual},
        {Symbol::NotEqual, Operator::NotEqual}};
    return token.kind == TokenKind::Symbol ? base::lookUp(Known, token.symbol, Operator::None)
                                           : Operator::None;
}

}  // namespace

Expr::Expr() = default;
Expr::~Expr() = default;
Expr::Expr(Expr&&) noexcept = default;
Expr& Expr::operator=(Expr&&) noexcept = default;

ExprPtr Parser::make(ExprKind kind, std::uint32_t offset) const {
    auto expr = std::make_unique<Expr>();
    expr->kind = kind;
    expr->offset = offset;
    return expr;
}

std::uint16_t Parser::depthOf(const Select& select) {
    std::uint16_t deepest = 0;
    const auto take = [&](const ExprPtr& expr) {
        deepest = std::max(deepest, expr ? expr->depth : deepest);
    };
    for (const OutputItem& item : select.items) {
        take(item.expr);
    }
    std::for_each(select.groupBy.begin(), select.groupBy.end(), take);
    for (const OrderItem& item : select.orderBy) {
        take(item.expr);
    }
    take(select.where);
    take(select.having);
    for (const Source& source : select.sources) {
        for (std::size_t i = 0; source.parts && i < source.parts->size(); ++i) {
            const int inside = depthOf(*(*source.parts)[i]) + 3;
            deepest = std::max(deepest, static_cast<std::uint16_t>(inside));
        }
    }
    return deepest;
}

void Parser::requireShallow(std::uint16_t depth, std::uint32_t offset) const {
    if (depth >= DeepestExpression) {
        failSyntax("The expression is nested too deep", lexer_.sql(), offset);
    }
}

ExprPtr Parser::measured(ExprPtr expr) const {
    std::uint16_t deepest =
        expr->select ? static_cast<std::uint16_t>(depthOf(*expr->select) + 1) : std::uint16_t{0};
    for (const ExprPtr& child : expr->children) {
        deepest = std::max(deepest, child->depth);
    }
    requireShallow(deepest, expr->offset);
    expr->depth = static_cast<std::uint16_t>(deepest + 1);
    return expr;
}

/// `left` and `right` under one node of `kind`, together with what already stands under such a
/// node.
ExprPtr Parser::chain(ExprKind kind, ExprPtr left, ExprPtr right) {
    if (left->kind != kind) {
        auto node = make(kind, left->offset);
        node->children.push_back(std::move(left));
        left = std::move(node);
    }
    if (right->kind == kind) {
        left->depth = std::max(left->depth, right->depth);
        std::move(right->children.begin(), right->children.end(),
                  std::back_inserter(left->children));
    } else {
        const auto depth = std::max(left->children.front()->depth, right->depth);
        left->depth = std::max(left->depth, static_cast<std::uint16_t>(depth + 1));
        left->children.push_back(std::move(right));
    }
    if (left->depth > DeepestExpression) {
        failSyntax("The expression is nested too deep", lexer_.sql(), left->offset);
    }
    return left;
}

ExprPtr Parser::expression() {
    ExprPtr left = conjunction();
    while (take(word("OR"))) {
        left = chain(ExprKind::Or, std::move(left), conjunction());
    }
    return left;
}

ExprPtr Parser::conjunction() {
    ExprPtr left = negation();
    while (take(word("AND"))) {
        left = chain(ExprKind::And, std::move(left), negation());
    }
    return left;
}

ExprPtr Parser::negation() {
    const auto offset = token_.offset;
    bool odd = false;
    while (take(word("NOT"))) {
        odd = !odd;
    }
    ExprPtr operand = comparison();
    if (!odd) {
        return operand;
    }
    auto node = make(ExprKind::Not, offset);
    node->children.push_back(std::move(operand));
    return measured(std::move(node));
}

ExprPtr Parser::comparison() {
    ExprPtr left = arithmetic(0);
    for (;;) {
        if (comparisonOf(token_) != Operator::None) {
            left = compared(std::move(left));
        } else if (at(word("IS")) || at(word("NOT")) || at(word("IN")) || at(word("LIKE")) ||
                   at(word("BETWEEN"))) {
            left = predicate(std::move(left));
        } else {
            return left;
        }
    }
}

ExprPtr Parser::compared(ExprPtr left) {
    auto node = make(ExprKind::Compare, token_.offset);
    node->op = comparisonOf(token_);
    advance();
    node->children.push_back(std::move(left));
    node->children.push_back(arithmetic(0));
    return measured(std::move(node));
}

ExprPtr Parser::predicate(ExprPtr left) {
    const auto offset = token_.offset;
    if (take(word("IS"))) {
        return isNull(std::move(left), offset);
    }
    const bool negated = take(word("NOT"));
    if (take(word("IN"))) {
        return in(std::move(left), negated, offset);
    }
    auto node = make(at(word("LIKE")) ? ExprKind::Like : ExprKind::Between, offset);
    node->negated = negated;
    node->children.push_back(std::move(left));
    if (!take(word("LIKE"))) {
        expect(word("BETWEEN"), "IN, LIKE or BETWEEN");
        node->children.push_back(arithmetic(0));
        expect(word("AND"), "AND");
    }
    node->children.push_back(arithmetic(0));
    return measured(std::move(node));
}

ExprPtr Parser::isNull(ExprPtr value, std::uint32_t offset) {
    auto node = make(ExprKind::IsNull, offset);
    node->negated = take(word("NOT"));
    expect(word("NULL"), "NULL");
    node->children.push_back(std::move(value));
    return measured(std::move(node));
}

ExprPtr Parser::in(ExprPtr value, bool negated, std::uint32_t offset) {
    expect('(', "(");
    const bool fromSelect = at(word("SELECT"));
    auto node = make(fromSelect ? ExprKind::InSelect : ExprKind::In, offset);
    node->negated = negated;
    node->children.push_back(std::move(value));
    if (fromSelect) {
        node->select = select();
    } else {
        const Nested nested(nesting_, lexer_.sql(), offset);
        do {
            node->children.push_back(expression());
        } while (take(','));
    }
    expect(')', ") behind the list");
    return measured(std::move(node));
}

ExprPtr Parser::arithmetic(int least) {
    ExprPtr left = unary();
    for (Binary next = binary(token_); next.rank >= least; next = binary(token_)) {
        const auto offset = token_.offset;
        advance();
        ExprPtr right = arithmetic(next.rank + 1);
        if (next.op == Operator::None) {
            left = chain(ExprKind::Concat, std::move(left), std::move(right));
            continue;
        }
        auto node = make(ExprKind::Arithmetic, offset);
        node->op = next.op;
        node->children.push_back(std::move(left));
        node->children.push_back(std::move(right));
        left = measured(std::move(node));
    }
    return left;
}

ExprPtr Parser::unary() {
    const auto offset = token_.offset;
    if (!at('-') && !at('+')) {
        return power();
    }
    const Nested nested(nesting_, lexer_.sql(), offset);
    const bool negative = at('-');
    advance();
    ExprPtr operand = unary();
    if (!negative) {
        return operand;
    }
    auto node = make(ExprKind::Negate, offset);
    node->children.push_back(std::move(operand));
    return measured(std::move(node));
}

ExprPtr Parser::power() {
    ExprPtr left = primary();
    while (at('^')) {
        auto node = make(ExprKind::Arithmetic, token_.offset);
        node->op = Operator::Power;
        advance();
        node->children.push_back(std::move(left));
        node->children.push_back(at('-') ? unary() : primary());
        left = measured(std::move(node));
    }
    return left;
}

ExprPtr Parser::primary() {
    if (at('(')) {
        return parenthesised();
    }
    if (token_.kind == TokenKind::Literal) {
        return literal();
    }
    if (token_.kind == TokenKind::Position) {
        failSyntax("Only the number of rows can stand in TOP", lexer_.sql(), token_.offset);
    }
    if (token_.kind != TokenKind::Name) {
        unexpected("a value");
    }
    return nameOrCall();
}

ExprPtr Parser::parenthesised() {
    const Nested nested(nesting_, lexer_.sql(), token_.offset);
    const auto offset = token_.offset;
    advance();
    ExprPtr inside;
    if (at(word("SELECT"))) {
        inside = make(ExprKind::ScalarSelect, offset);
        inside->select = select();
        inside = measured(std::move(inside));
    } else {
        inside = expression();
    }
    expect(')', ")");
    return inside;
}

ExprPtr Parser::literal() {
    auto node = make(ExprKind::Literal, token_.offset);
    node->literal = token_.literal;
    node->facts = token_.facts;
    const auto same = node->facts.sameAgo == 0 ? node->literal
                                               : sameLiterals_[node->literal - node->facts.sameAgo];
    sameLiterals_.resize(std::max<std::size_t>(sameLiterals_.size(), node->literal + 1U));
    sameLiterals_[node->literal] = same;
    node->sameLiteral = same;
    advance();
    return node;
}

ExprPtr Parser::nameOrCall() {
    const Token first = token_;
    advance();
    if (at('(') && !first.bracketed) {
        if (first.word == word("EXISTS")) {
            return exists(first.offset);
        }
        return call(first.text, first.offset);
    }
    if (at('.') || first.bracketed) {
        return column(first.text, first.offset);
    }
    if (ExprPtr known = constant(first.word, first.offset)) {
        return known;
    }
    if (isReserved(first)) {
        token_ = first;
        unexpected("a value");
    }
    return column(first.text, first.offset);
}

ExprPtr Parser::exists(std::uint32_t offset) {
    auto node = make(ExprKind::Exists, offset);
    expect('(', "(");
    node->select = select();
    expect(')', ")");
    return measured(std::move(node));
}

ExprPtr Parser::constant(Word which, std::uint32_t offset) const {
    switch (which) {
        case word("NULL"):
            return make(ExprKind::Null, offset);
        case word("TRUE"):
        case word("YES"):
            return make(ExprKind::True, offset);
        case word("FALSE"):
        case word("NO"):
            return make(ExprKind::False, offset);
        default:
            return nullptr;
    }
}

ExprPtr Parser::column(std::string_view first, std::uint32_t offset) {
    auto node = make(ExprKind::Column, offset);
    if (!take('.')) {
        node->name = first;
        return node;
    }
    node->qualifier = first;
    if (!take('*')) {
        node->name = name("the name of a column");
    }
    return node;
}

ExprPtr Parser::call(std::string_view called, std::uint32_t offset) {
    const Nested nested(nesting_, lexer_.sql(), offset);
    auto node = make(ExprKind::Call, offset);
    node->name = called;
    advance();
    if (take(')')) {
        return node;
    }
    if (!take('*')) {
        do {
            node->children.push_back(expression());
        } while (take(','));
    } else if (!base::equalsNoCase(called, "COUNT")) {
        failSyntax("Only Count takes *", lexer_.sql(), offset);
    }
    expect(')', ") behind the arguments");
    return measured(std::move(node));
}

}  // namespace jet
