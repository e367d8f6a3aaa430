#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/base/value.h"
#include "platform/jet/like.h"

namespace jet {

/// An unquoted word of at most eight characters, folded to upper case and packed, so that the
/// parser compares words as numbers. 0 for any other.
using Word = std::uint64_t;

[[nodiscard]] constexpr Word word(std::string_view text) {
    Word packed = 0;
    for (const char c : text) {
        packed = packed << 8U | static_cast<unsigned char>(c);
    }
    return packed;
}

enum class TokenKind : std::uint8_t {
    End,
    Name,      ///< a word or a bracketed name
    Symbol,    ///< an operator or a mark
    Literal,   ///< a text, number or date: a literal of the shape
    Position,  ///< a number that must stay in the statement (TOP, ORDER BY)
};

enum class LiteralKind : std::uint8_t { Text, Number, Date };

/// Marks of one character are that character.
enum class Symbol : char {
    None = 0,
    Equal = '=',
    Less = '<',
    Greater = '>',
    LessOrEqual = 'l',
    GreaterOrEqual = 'g',
    NotEqual = 'n',
};

[[nodiscard]] constexpr Symbol symbol(char c) { return static_cast<Symbol>(c); }

/// What a literal's content decides of the translation.
struct LiteralFacts {
    LiteralKind kind = LiteralKind::Text;
    LikeForm like = LikeForm::None;  ///< set for a text right behind LIKE
    bool blank = false;              ///< a text without anything but blanks
    /// How many literals ago the same text stood last, up to four; 0 where it did not.
    std::uint8_t sameAgo = 0;
};

struct Token {
    TokenKind kind = TokenKind::End;
    Symbol symbol = Symbol::None;
    bool bracketed = false;
    LiteralFacts facts;
    std::uint32_t offset = 0;   ///< where it begins in the statement
    std::uint32_t literal = 0;  ///< index among the literals, or the number itself of a Position
    Word word = 0;              ///< of a Name that is not bracketed
    std::string_view text;      ///< a name without its brackets, otherwise as written
};

/// Cuts a statement into tokens, one at a call, and collects its literals. Raises SqlError for what
/// cannot stand.
class Lexer {
public:
    explicit Lexer(std::string_view sql);

    Token next();

    [[nodiscard]] std::string_view sql() const { return sql_; }
    [[nodiscard]] std::vector<base::Value>& literals() { return literals_; }

private:
    [[nodiscard]] char at(std::size_t offset) const {
        return offset < sql_.size() ? sql_[offset] : '\0';
    }
    void name(Token& token);
    void bracketedName(Token& token);
    void text(Token& token, char quote);
    void number(Token& token);
    [[nodiscard]] bool endsItem() const;
    void date(Token& token);
    void mark(Token& token);
    void literal(Token& token, LiteralKind kind, base::Value value);
    [[nodiscard]] std::uint8_t sameAgo(const std::string& text) const;
    void follow(const Token& token);

    std::string_view sql_;
    std::size_t at_ = 0;
    std::vector<base::Value> literals_;
    Word before_ = 0;          // the word before, 0 for any other token
    bool afterName_ = false;   // a dot here belongs to a name
    bool inOrder_ = false;     // inside an ORDER BY
    bool startsItem_ = false;  // behind BY, or a comma of an ORDER BY
    int depth_ = 0;            // open parentheses
    int orderDepth_ = 0;
};

}  // namespace jet
