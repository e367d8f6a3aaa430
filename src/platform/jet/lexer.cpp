#include "platform/jet/lexer.h"

#include <array>
#include <charconv>
#include <limits>
#include <string>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/jet/report.h"

namespace jet {

namespace {

constexpr std::size_t LongestStatement = 4'000'000;
constexpr std::size_t SameWithin = 4;

enum CharClass : std::uint8_t { Other, Blank, Letter, Digit };

constexpr std::array<CharClass, 256> charClasses() {
    std::array<CharClass, 256> classes{};
    for (std::size_t c = 0; c < classes.size(); ++c) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c > 127;
        const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        classes[c] = letter ? Letter : c >= '0' && c <= '9' ? Digit : blank ? Blank : Other;
    }
    return classes;
}

constexpr auto Classes = charClasses();

CharClass classOf(char c) { return Classes[static_cast<unsigned char>(c)]; }

bool isBlank(std::string_view text) { return text.find_first_not_of(' ') == text.npos; }

/// The text between quotes, a doubled quote as one.
std::string unquoted(std::string_view inside, char quote) {
    std::string text;
    text.reserve(inside.size());
    for (std::size_t i = 0; i < inside.size(); ++i) {
        text += inside[i];
        if (inside[i] == quote) {
            ++i;
        }
    }
    return text;
}

}  // namespace

Lexer::Lexer(std::string_view sql) : sql_(sql) {
    if (sql.size() > LongestStatement) {
        failSyntax("The statement is too long", sql, LongestStatement);
    }
}

Token Lexer::next() {
    while (classOf(at(at_)) == Blank) {
        ++at_;
    }
    Token token;
    token.offset = static_cast<std::uint32_t>(at_);
    if (at_ == sql_.size()) {
        return token;
    }
    const char c = sql_[at_];
    if (classOf(c) == Letter) {
        name(token);
    } else if (classOf(c) == Digit || (c == '.' && !afterName_ && classOf(at(at_ + 1)) == Digit)) {
        number(token);
    } else if (c == '\'' || c == '"') {
        text(token, c);
    } else if (c == '[') {
        bracketedName(token);
    } else if (c == '#') {
        date(token);
    } else {
        mark(token);
    }
    if (token.kind != TokenKind::Literal) {
        token.text = token.bracketed ? token.text : sql_.substr(token.offset, at_ - token.offset);
    }
    follow(token);
    return token;
}

void Lexer::name(Token& token) {
    token.kind = TokenKind::Name;
    Word packed = 0;
    std::size_t length = 0;
    while (classOf(at(at_)) >= Letter) {
        packed = packed << 8U | static_cast<unsigned char>(base::uppered(sql_[at_]));
        ++length;
        ++at_;
    }
    if (at(at_) == '$') {
        ++at_;
    }
    token.word = length <= 8 ? packed : 0;
}

void Lexer::bracketedName(Token& token) {
    const auto close = sql_.find(']', at_);
    if (close == sql_.npos) {
        failSyntax("A name in brackets is not closed", sql_, at_);
    }
    token.kind = TokenKind::Name;
    token.bracketed = true;
    token.text = sql_.substr(at_ + 1, close - at_ - 1);
    for (const char c : token.text) {
        if (c >= 0 && c < ' ') {
            failSyntax("A name in brackets holds a character that cannot stand", sql_, at_);
        }
    }
    if (isBlank(token.text)) {
        failSyntax("There is no name in the brackets", sql_, at_);
    }
    at_ = close + 1;
}

void Lexer::text(Token& token, char quote) {
    const std::size_t from = at_ + 1;
    bool doubled = false;
    std::size_t to = sql_.find(quote, from);
    while (to != sql_.npos && at(to + 1) == quote) {
        doubled = true;
        to = sql_.find(quote, to + 2);
    }
    if (to == sql_.npos) {
        failSyntax("A text is not closed, or a quote inside a text is not doubled,", sql_, at_);
    }
    const std::string_view inside = sql_.substr(from, to - from);
    at_ = to + 1;
    std::string value = doubled ? unquoted(inside, quote) : std::string(inside);
    if (value.find('\0') != value.npos) {
        failSyntax("A text holds a character that cannot stand", sql_, token.offset);
    }
    token.facts.blank = isBlank(value);
    if (before_ == word("LIKE")) {
        token.facts.like = likeForm(value);
    }
    token.facts.sameAgo = sameAgo(value);
    literal(token, LiteralKind::Text, base::Value(std::move(value)));
}

std::uint8_t Lexer::sameAgo(const std::string& text) const {
    for (std::size_t ago = 1; ago <= SameWithin && ago <= literals_.size(); ++ago) {
        const base::Value& earlier = literals_[literals_.size() - ago];
        if (earlier.isText() && earlier.heldText() == text) {
            return static_cast<std::uint8_t>(ago);
        }
    }
    return 0;
}

void Lexer::number(Token& token) {
    const char* from = sql_.data() + at_;
    const char* last = sql_.data() + sql_.size();
    double real = 0;
    const auto [end, error] = std::from_chars(from, last, real);
    if (error == std::errc::result_out_of_range || (end != last && classOf(*end) >= Letter)) {
        failSyntax("This is not a number", sql_, at_);
    }
    std::int64_t whole = 0;
    const auto [wholeEnd, wholeError] = std::from_chars(from, last, whole);
    const bool isWhole = wholeError == std::errc{} && wholeEnd == end;
    at_ += static_cast<std::size_t>(end - from);
    const bool stays = before_ == word("TOP") || (startsItem_ && endsItem());
    if (!stays) {
        literal(token, LiteralKind::Number, isWhole ? base::Value(whole) : base::Value(real));
        return;
    }
    if (!isWhole || whole > std::numeric_limits<std::int32_t>::max()) {
        failSyntax("A whole number must stand here", sql_, token.offset);
    }
    token.kind = TokenKind::Position;
    token.literal = static_cast<std::uint32_t>(whole);
}

/// Whether a number that ends here is all of an item of ORDER BY, and so the place of a column.
bool Lexer::endsItem() const {
    std::size_t next = at_;
    while (classOf(at(next)) == Blank) {
        ++next;
    }
    const auto word = base::uppered(sql_.substr(next, 4));
    return next == sql_.size() ||
           std::string_view(",);").find(at(next)) != std::string_view::npos ||
           word.starts_with("DESC") || word.starts_with("ASC");
}

void Lexer::date(Token& token) {
    const auto close = sql_.find('#', at_ + 1);
    if (close == sql_.npos) {
        failSyntax("A date is not closed: a # is missing for the one that opens", sql_, at_);
    }
    const auto value = base::Date::parse(base::trim(sql_.substr(at_ + 1, close - at_ - 1)));
    if (!value) {
        failSyntax("The text between # is not a date or time", sql_, at_);
    }
    at_ = close + 1;
    literal(token, LiteralKind::Date, base::Value(*value));
}

void Lexer::literal(Token& token, LiteralKind kind, base::Value value) {
    token.kind = TokenKind::Literal;
    token.facts.kind = kind;
    token.literal = static_cast<std::uint32_t>(literals_.size());
    token.text = sql_.substr(token.offset, at_ - token.offset);
    literals_.push_back(std::move(value));
}

void Lexer::mark(Token& token) {
    const char c = sql_[at_];
    const char second = at(at_ + 1);
    token.kind = TokenKind::Symbol;
    token.symbol = symbol(c);
    if (c == '<' && second == '=') {
        token.symbol = Symbol::LessOrEqual;
    } else if (c == '>' && second == '=') {
        token.symbol = Symbol::GreaterOrEqual;
    } else if (c == '<' && second == '>') {
        token.symbol = Symbol::NotEqual;
    } else if (c == '!') {
        token.symbol = symbol('.');
    } else if (std::string_view("=<>+-*/\\^&(),.;").find(c) == std::string_view::npos) {
        failSyntax(c > ' ' ? fmt::format("I do not understand {}", c)
                           : std::string("A character that cannot stand"),
                   sql_, at_);
    }
    at_ += token.symbol == symbol(c) || c == '!' ? 1 : 2;
}

void Lexer::follow(const Token& token) {
    if (token.kind == TokenKind::Symbol) {
        if (token.symbol == symbol('(')) {
            ++depth_;
        } else if (token.symbol == symbol(')')) {
            --depth_;
            inOrder_ = inOrder_ && depth_ >= orderDepth_;
        }
    }
    if (token.word == word("BY") && before_ == word("ORDER")) {
        inOrder_ = true;
        orderDepth_ = depth_;
    }
    startsItem_ = (token.word == word("BY") && inOrder_) ||
                  (inOrder_ && depth_ == orderDepth_ && token.symbol == symbol(','));
    before_ = token.word;
    afterName_ = token.kind == TokenKind::Name;
}

}  // namespace jet
