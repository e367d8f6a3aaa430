#pragma once

#include <string>
#include <string_view>

#include "platform/jet/ast.h"

namespace jet {

/// Reads one statement. Depth is bounded: 200 parentheses inside each other, and expressions of 22
/// levels, of which a SELECT takes two; chains of AND, OR and & are one level however long. Raises
/// SqlError.
class Parser {
public:
    explicit Parser(std::string_view sql);

    Statement statement();

private:
    class Nested;

    // tokens
    void advance() { token_ = lexer_.next(); }
    [[nodiscard]] bool at(Word wanted) const { return token_.word == wanted; }
    [[nodiscard]] bool at(char mark) const;
    bool take(Word wanted);
    bool take(char mark);
    void expect(Word wanted, std::string_view what);
    void expect(char mark, std::string_view what);
    [[noreturn]] void unexpected(std::string_view wanted) const;
    static bool isReserved(const Token& token);
    [[nodiscard]] bool atPlainName() const;
    std::string_view name(std::string_view what);
    void end();

    // statements
    std::unique_ptr<Select> select();
    std::unique_ptr<Select> part();
    std::unique_ptr<Select> united(std::unique_ptr<Select> first);
    Source derived(std::uint32_t offset);
    void selectItems(Select& select);
    void selectItem(Select& select);
    void groupBy(Select& select);
    void orderBy(Select& select);
    OrderItem orderItem();
    void update(Statement& statement);
    void remove(Statement& statement);
    void insert(Statement& statement);
    void insertValues(Statement& statement);
    void assignment(Statement& statement);
    Source target();

    // joins
    std::unique_ptr<Join> from(Select& select);
    std::unique_ptr<Join> joinChain(Select& select);
    std::unique_ptr<Join> joinOperand(Select& select);
    bool takeJoin(JoinKind& kind);
    static std::unique_ptr<Join> joined(JoinKind kind, std::unique_ptr<Join> left,
                                        std::unique_ptr<Join> right);

    // expressions
    ExprPtr expression();
    ExprPtr conjunction();
    ExprPtr negation();
    ExprPtr comparison();
    ExprPtr compared(ExprPtr left);
    ExprPtr predicate(ExprPtr left);
    ExprPtr isNull(ExprPtr value, std::uint32_t offset);
    ExprPtr in(ExprPtr value, bool negated, std::uint32_t offset);
    ExprPtr arithmetic(int least);
    ExprPtr unary();
    ExprPtr power();
    ExprPtr primary();
    ExprPtr parenthesised();
    ExprPtr literal();
    ExprPtr nameOrCall();
    ExprPtr exists(std::uint32_t offset);
    ExprPtr constant(Word which, std::uint32_t offset) const;
    ExprPtr column(std::string_view first, std::uint32_t offset);
    ExprPtr call(std::string_view called, std::uint32_t offset);
    ExprPtr chain(ExprKind kind, ExprPtr left, ExprPtr right);
    ExprPtr make(ExprKind kind, std::uint32_t offset) const;
    ExprPtr measured(ExprPtr expr) const;
    void requireShallow(std::uint16_t depth, std::uint32_t offset) const;
    static std::uint16_t depthOf(const Select& select);

    Lexer lexer_;
    Token token_;
    int nesting_ = 0;
    std::vector<std::uint32_t> sameLiterals_;
};

}  // namespace jet
