#include "platform/jet/parser.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/jet/nested.h"
#include "platform/jet/report.h"

namespace jet {

constexpr std::size_t MostSources = 60;

constexpr std::array Reserved = {
    word("SELECT"), word("FROM"),   word("WHERE"),  word("GROUP"), word("HAVING"), word("ORDER"),
    word("INNER"),  word("LEFT"),   word("RIGHT"),  word("JOIN"),  word("ON"),     word("AS"),
    word("AND"),    word("OR"),     word("NOT"),    word("IN"),    word("LIKE"),   word("BETWEEN"),
    word("IS"),     word("SET"),    word("VALUES"), word("UNION"), word("INTO"),   word("BY"),
    word("UPDATE"), word("DELETE"), word("INSERT"), word("MOD"),   word("OUTER"),  word("NULL")};

Parser::Parser(std::string_view sql) : lexer_(sql) { advance(); }

bool Parser::at(char mark) const {
    return token_.kind == TokenKind::Symbol && token_.symbol == symbol(mark);
}

bool Parser::take(Word wanted) {
    if (!at(wanted)) {
        return false;
    }
    advance();
    return true;
}

bool Parser::take(char mark) {
    if (!at(mark)) {
        return false;
    }
    advance();
    return true;
}

void Parser::expect(Word wanted, std::string_view what) {
    if (!take(wanted)) {
        unexpected(what);
    }
}

void Parser::expect(char mark, std::string_view what) {
    if (!take(mark)) {
        unexpected(what);
    }
}

void Parser::unexpected(std::string_view wanted) const {
    constexpr std::size_t Shown = 30;
    if (token_.kind == TokenKind::End) {
        failSyntax(fmt::format("The statement ends where I expect {}", wanted), lexer_.sql(),
                   token_.offset);
    }
    std::string_view shown = token_.text;
    if (shown.size() > Shown) {
        shown = "this";
    }
    failSyntax(fmt::format("I do not understand {} (I expect {})", shown, wanted), lexer_.sql(),
               token_.offset);
}

bool Parser::isReserved(const Token& token) {
    return token.word != 0 &&
           std::find(Reserved.begin(), Reserved.end(), token.word) != Reserved.end();
}

/// Whether the token can name a table, column or alias: bracketed, or no word of the grammar.
bool Parser::atPlainName() const { return token_.kind == TokenKind::Name && !isReserved(token_); }

std::string_view Parser::name(std::string_view what) {
    if (token_.kind != TokenKind::Name) {
        unexpected(what);
    }
    const std::string_view text = token_.text;
    advance();
    return text;
}

void Parser::end() {
    take(';');
    if (token_.kind != TokenKind::End) {
        unexpected("the end of the statement");
    }
}

Statement Parser::statement() {
    Statement statement;
    if (at(word("SELECT"))) {
        statement.select = select();
    } else if (take(word("UPDATE"))) {
        update(statement);
    } else if (take(word("DELETE"))) {
        remove(statement);
    } else if (take(word("INSERT"))) {
        insert(statement);
    } else {
        unexpected("SELECT, INSERT, UPDATE or DELETE");
    }
    end();
    return statement;
}

std::unique_ptr<Select> Parser::select() {
    const Nested nested(nesting_, lexer_.sql(), token_.offset);
    auto result = united(part());
    orderBy(*result);
    return result;
}

/// UNION as a SELECT of everything from its parts, DISTINCT unless ALL stands behind it.
std::unique_ptr<Select> Parser::united(std::unique_ptr<Select> first) {
    while (at(word("UNION"))) {
        const auto offset = token_.offset;
        advance();
        const bool all = take(word("ALL"));
        const bool goesOn = first->isUnion && first->distinct == !all;
        if (!goesOn) {
            Source source;
            source.alias = "union";
            source.offset = offset;
            source.parts = std::make_shared<Parts>();
            auto whole = std::make_unique<Select>();
            whole->offset = first->offset;
            whole->isUnion = true;
            whole->distinct = !all;
            source.parts->push_back(std::exchange(first, nullptr));
            whole->sources.push_back(std::move(source));
            whole->from = std::make_unique<Join>();
            whole->from->source = 0;
            whole->items.emplace_back();
            first = std::move(whole);
        }
        first->sources.front().parts->push_back(part());
    }
    return first;
}

/// A SELECT up to its ORDER BY.
std::unique_ptr<Select> Parser::part() {
    auto result = std::make_unique<Select>();
    result->offset = token_.offset;
    expect(word("SELECT"), "SELECT");
    result->distinct = take(word("DISTINCT"));
    if (token_.kind == TokenKind::Name && base::equalsNoCase(token_.text, "DISTINCTROW")) {
        advance();
    }
    if (take(word("TOP"))) {
        if (token_.kind != TokenKind::Position) {
            unexpected("the number of rows");
        }
        result->top = token_.literal;
        advance();
    }
    selectItems(*result);
    if (take(word("FROM"))) {
        result->from = from(*result);
    }
    if (take(word("WHERE"))) {
        result->where = expression();
    }
    groupBy(*result);
    if (take(word("HAVING"))) {
        result->having = expression();
    }
    return result;
}

void Parser::selectItems(Select& select) {
    do {
        selectItem(select);
    } while (take(','));
}

void Parser::selectItem(Select& select) {
    OutputItem item;
    item.offset = token_.offset;
    if (!take('*')) {
        item.expr = expression();
        // `T.*` comes back as a column without a name.
        if (item.expr->kind == ExprKind::Column && item.expr->name.empty()) {
            item.starQualifier = item.expr->qualifier;
            item.expr.reset();
        } else if (take(word("AS"))) {
            item.alias = name("the name of the column");
        }
    }
    select.items.push_back(std::move(item));
}

void Parser::groupBy(Select& select) {
    if (!take(word("GROUP"))) {
        return;
    }
    expect(word("BY"), "BY");
    do {
        select.groupBy.push_back(expression());
    } while (take(','));
}

void Parser::orderBy(Select& select) {
    if (!take(word("ORDER"))) {
        return;
    }
    expect(word("BY"), "BY");
    do {
        select.orderBy.push_back(orderItem());
    } while (take(','));
}

OrderItem Parser::orderItem() {
    OrderItem item;
    item.offset = token_.offset;
    if (token_.kind == TokenKind::Position) {
        item.position = token_.literal;
        advance();
        if (item.position == 0) {
            failSyntax("Columns count from 1", lexer_.sql(), item.offset);
        }
    } else {
        item.expr = expression();
    }
    item.descending = take(word("DESC"));
    if (!item.descending) {
        take(word("ASC"));
    }
    return item;
}

Source Parser::target() {
    Source source;
    source.offset = token_.offset;
    source.name = name("the name of a table");
    if (take(word("AS"))) {
        source.alias = name("the table's other name");
    } else if (atPlainName()) {
        source.alias = name("");
    }
    return source;
}

void Parser::update(Statement& statement) {
    statement.kind = StatementKind::Update;
    statement.select = std::make_unique<Select>();
    statement.select->from = from(*statement.select);
    expect(word("SET"), "SET");
    do {
        assignment(statement);
        expect('=', "=");
        statement.assignments.back().value = expression();
    } while (take(','));
    if (take(word("WHERE"))) {
        statement.select->where = expression();
    }
}

void Parser::assignment(Statement& statement) {
    Assignment assignment;
    assignment.offset = token_.offset;
    assignment.name = name("the name of a column");
    if (take('.')) {
        assignment.qualifier = assignment.name;
        assignment.name = name("the name of a column");
    }
    statement.assignments.push_back(std::move(assignment));
}

void Parser::remove(Statement& statement) {
    statement.kind = StatementKind::Delete;
    statement.select = std::make_unique<Select>();
    if (!at(word("FROM"))) {
        statement.deletedOffset = token_.offset;
        if (!take('*')) {
            statement.deleted = name("FROM");
            if (take('.')) {
                expect('*', "*");
            }
        }
    }
    expect(word("FROM"), "FROM");
    statement.select->from = from(*statement.select);
    if (take(word("WHERE"))) {
        statement.select->where = expression();
    }
}

void Parser::insert(Statement& statement) {
    statement.kind = StatementKind::Insert;
    expect(word("INTO"), "INTO");
    statement.target.offset = token_.offset;
    statement.target.name = name("the name of a table");
    if (take('(')) {
        do {
            assignment(statement);
        } while (take(','));
        expect(')', ") behind the columns");
    }
    if (take(word("VALUES"))) {
        insertValues(statement);
    } else if (at(word("SELECT"))) {
        statement.select = select();
    } else {
        unexpected("VALUES or SELECT");
    }
}

/// The values stand as the items of a SELECT without tables.
void Parser::insertValues(Statement& statement) {
    statement.select = std::make_unique<Select>();
    statement.select->offset = token_.offset;
    expect('(', "(");
    do {
        OutputItem item;
        item.offset = token_.offset;
        item.expr = expression();
        statement.select->items.push_back(std::move(item));
    } while (take(','));
    expect(')', ") behind the values");
}

std::unique_ptr<Join> Parser::from(Select& select) {
    auto result = joinChain(select);
    while (take(',')) {
        result = joined(JoinKind::Inner, std::move(result), joinChain(select));
    }
    return result;
}

std::unique_ptr<Join> Parser::joinChain(Select& select) {
    const Nested nested(nesting_, lexer_.sql(), token_.offset);
    auto result = joinOperand(select);
    JoinKind kind{};
    while (takeJoin(kind)) {
        result = joined(kind, std::move(result), joinOperand(select));
        expect(word("ON"), "ON");
        result->on = expression();
    }
    return result;
}

bool Parser::takeJoin(JoinKind& kind) {
    if (take(word("JOIN"))) {
        kind = JoinKind::Inner;
        return true;
    }
    const Word which = token_.word;
    if (which != word("INNER") && which != word("LEFT") && which != word("RIGHT")) {
        return false;
    }
    kind = which == word("INNER")  ? JoinKind::Inner
           : which == word("LEFT") ? JoinKind::Left
                                   : JoinKind::Right;
    advance();
    if (which != word("INNER")) {
        take(word("OUTER"));
    }
    expect(word("JOIN"), "JOIN");
    return true;
}

std::unique_ptr<Join> Parser::joined(JoinKind kind, std::unique_ptr<Join> left,
                                     std::unique_ptr<Join> right) {
    auto join = std::make_unique<Join>();
    join->kind = kind;
    join->left = std::move(left);
    join->right = std::move(right);
    return join;
}

std::unique_ptr<Join> Parser::joinOperand(Select& select) {
    const auto offset = token_.offset;
    const bool opens = take('(');
    const bool isSelect = opens && at(word("SELECT"));
    if (opens && !isSelect) {
        auto result = joinChain(select);
        expect(')', ") behind the joined tables");
        return result;
    }
    if (!isSelect && !atPlainName()) {
        unexpected("the name of a table");
    }
    if (select.sources.size() == MostSources) {
        failSyntax("Too many tables", lexer_.sql(), offset);
    }
    auto source = isSelect ? derived(offset) : target();
    auto join = std::make_unique<Join>();
    join->source = static_cast<int>(select.sources.size());
    select.sources.push_back(std::move(source));
    return join;
}

/// A SELECT in FROM, behind its opening parenthesis.
Source Parser::derived(std::uint32_t offset) {
    Source source;
    source.offset = offset;
    source.parts = std::make_shared<Parts>();
    source.parts->push_back(this->select());
    requireShallow(depthOf(*source.parts->front()), offset);
    expect(')', ") behind the SELECT");
    take(word("AS"));
    if (!atPlainName()) {
        unexpected("a name for the SELECT");
    }
    source.alias = name("");
    return source;
}

}  // namespace jet
