#include <utility>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/jet/functions.h"
#include "platform/jet/lexer.h"
#include "platform/jet/like.h"
#include "platform/jet/translate.h"

namespace jet {

namespace {

// Control characters cannot stand in a statement outside its literals, so these are unmistakable.
constexpr char TextMark = '\x01';
constexpr char NumberMark = '\x02';
constexpr char DateMark = '\x03';

// U+FFFF, which stands behind every character where texts are sorted by the rules of languages.
constexpr const char* GreatestCharacter = "\xEF\xBF\xBF";

void appendLiteral(std::string& key, const LiteralFacts& facts) {
    switch (facts.kind) {
        case LiteralKind::Number:
            key += NumberMark;
            return;
        case LiteralKind::Date:
            key += DateMark;
            return;
        case LiteralKind::Text:
            key += TextMark;
            key +=
                static_cast<char>('a' + static_cast<int>(facts.like) * 2 + (facts.blank ? 1 : 0));
            key += static_cast<char>('0' + facts.sameAgo);
    }
}

void append(std::string& key, const Token& token) {
    if (token.kind == TokenKind::Literal) {
        appendLiteral(key, token.facts);
        return;
    }
    if (token.bracketed) {
        key += '[';
    }
    key += token.text;
    key += token.bracketed ? ']' : ' ';
}

base::Date nextMidnight(base::Date date) {
    return date.dateValue().plusSeconds(base::Date::SecondsPerDay);
}

}  // namespace

Shape shapeOf(std::string_view sql) {
    Lexer lexer(sql);
    Shape shape;
    shape.key.reserve(sql.size() + 16);
    for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
        append(shape.key, token);
    }
    shape.literals = std::move(lexer.literals());
    return shape;
}

base::Value boundValue(const Parameter& parameter, const std::vector<base::Value>& literals) {
    if (parameter.binding == Binding::Now) {
        return {base::Now()};
    }
    const base::Value& value = literals.at(parameter.literal);
    switch (parameter.binding) {
        case Binding::AsIs:
        case Binding::LikePattern:
        case Binding::Now:
            break;
        case Binding::TrimmedRight:
            return {base::trimRight(value.heldText())};
        case Binding::Code:
            return {base::codeOf(value.asText())};
        case Binding::Text:
            return {value.asText()};
        case Binding::LikeFrom:
            return {fixedPrefix(value.heldText())};
        case Binding::LikeTo:
            return {beyondPrefix(fixedPrefix(value.heldText()))};
        case Binding::LikeToGreatest:
            return {std::string(fixedPrefix(value.heldText())) + GreatestCharacter};
        case Binding::Number:
            return value.isInteger() ? value : base::Value(value.asNumber());
        case Binding::Integer:
            return {value.asInteger()};
        case Binding::Single:
            return {base::singleOf(value.asNumber())};
        case Binding::YesNo:
            return {value.asNumber() != 0};
        case Binding::Date:
            return {withinCalendar(value.asDate())};
        case Binding::DayFrom: {
            const base::Date date = value.asDate();
            return {date == date.dateValue() ? date : nextMidnight(date)};
        }
        case Binding::DayTo:
            return {nextMidnight(value.asDate())};
    }
    return value;
}

}  // namespace jet
