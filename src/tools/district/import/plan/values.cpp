#include "tools/district/import/plan/values.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace tools::district {

namespace {

using base::Value;
using store::ColumnKind;

constexpr std::size_t LongestCode = 255;
constexpr std::size_t LongestText = 65'535;
constexpr std::size_t LongestTold = 40;
constexpr double MostMinutes = 1440;
constexpr char Separator = '\x1F';

[[noreturn]] void refuse(std::string_view text, std::string_view why) {
    const std::string_view told = base::firstCharacters(text, LongestTold);
    throw Refusal{{}, fmt::format("\"{}{}\" {}", told, told.size() < text.size() ? "…" : "", why)};
}

template <class Number>
Number numberIn(std::string_view text, std::string_view why) {
    const std::string_view trimmed = base::trim(text);
    Number number{};
    const auto [end, error] =
        std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), number);
    if (trimmed.empty() || error != std::errc{} || end != trimmed.data() + trimmed.size()) {
        refuse(text, why);
    }
    return number;
}

double numberIn(std::string_view text) {
    const auto number = numberIn<double>(text, "is no number");
    if (!std::isfinite(number)) {
        refuse(text, "is no number");
    }
    return number;
}

/// Spreadsheets write whole numbers as "12.0", too.
std::int64_t wholeIn(std::string_view text) {
    const std::string_view trimmed = base::trim(text);
    const std::size_t point = trimmed.find('.');
    const bool isWhole = point == std::string_view::npos ||
                         (point > 0 && point + 1 < trimmed.size() &&
                          trimmed.find_first_not_of('0', point + 1) == std::string_view::npos);
    if (!isWhole) {
        refuse(text, "is no whole number");
    }
    return numberIn<std::int64_t>(trimmed.substr(0, point), "is no whole number");
}

bool yesNoIn(std::string_view text) {
    static constexpr std::array<std::string_view, 8> Yes = {"true", "yes", "y",      "t",
                                                            "1",    "-1",  "active", "x"};
    static constexpr std::array<std::string_view, 7> No = {"false", "no", "n",       "f",
                                                           "0",     "",   "inactive"};
    const std::string word = base::lowered(base::trim(text));
    if (std::ranges::find(Yes, word) != Yes.end()) {
        return true;
    }
    if (std::ranges::find(No, word) == No.end()) {
        refuse(text, "is neither yes nor no");
    }
    return false;
}

base::Date dateIn(std::string_view text) {
    const auto date = base::Date::parse(base::trim(text));
    if (!date) {
        refuse(text, "is neither a date nor a time");
    }
    return *date;
}

Value textIn(std::string_view text, std::size_t longest) {
    if (text.size() > longest) {
        refuse(text, fmt::format("is longer than {} bytes", longest));
    }
    return text;
}

Value codeIn(std::string_view text) {
    if (std::ranges::any_of(text, [](char c) { return c >= 0 && c < ' '; })) {
        refuse(text, "holds a line end or another control character");
    }
    return text.empty() ? Value("") : textIn(base::codeOf(text), LongestCode);
}

Value read(std::string_view text, ColumnKind kind) {
    switch (kind) {
        case ColumnKind::Code:
            return codeIn(text);
        case ColumnKind::Integer:
        case ColumnKind::Counter:
            return wholeIn(text);
        case ColumnKind::Number:
            return numberIn(text);
        case ColumnKind::Single:
            return base::singleOf(numberIn(text));
        case ColumnKind::YesNo:
            return yesNoIn(text);
        case ColumnKind::Date:
            return dateIn(text);
        case ColumnKind::Text:
            break;
    }
    return textIn(text, LongestText);
}

/// What the program's own editor refuses, too.
void checkRunId(std::string_view text) {
    if (const std::size_t at = text.find_first_of("#%*'/\\\""); at != std::string_view::npos) {
        refuse(text, fmt::format("holds {}, which a run id must not", text[at]));
    }
    if (base::trim(text).empty()) {
        throw Refusal{{}, "a run id must not be blank"};
    }
}

/// The level as it is written; student systems write it in any case.
Value capacityIn(std::string_view text) {
    for (const std::string_view level : {"High", "Medium", "Low"}) {
        if (base::equalsNoCase(base::trim(text), level)) {
            return level;
        }
    }
    refuse(text, "is none of High, Medium, Low");
}

void checkSize(const Value& value, std::string_view text, TextRule rule) {
    const double number = value.asNumber();
    if (number < 0) {
        refuse(text, "is below 0");
    }
    if (rule == TextRule::Minutes && number > MostMinutes) {
        refuse(text, "is more than a day of minutes");
    }
}

void appendBits(std::uint64_t bits, std::string& text) {
    for (int shift = 0; shift < 64; shift += 8) {
        text += static_cast<char>((bits >> static_cast<unsigned>(shift)) & 0xFFU);
    }
}

bool isFraction(ColumnKind kind) {
    return kind == ColumnKind::Number || kind == ColumnKind::Single;
}

}  // namespace

Value valueOf(const BoundCell& cell, const store::Column& column, TextRule rule) {
    if (cell.isNull) {
        return column.kind == ColumnKind::YesNo ? Value(false) : Value();
    }
    if (rule == TextRule::Capacity) {
        return capacityIn(cell.text);
    }
    if (rule == TextRule::RunId) {
        checkRunId(cell.text);
    }
    Value value = read(cell.text, column.kind);
    if (rule == TextRule::NotNegative || rule == TextRule::Minutes) {
        checkSize(value, cell.text, rule);
    }
    if (column.kind == ColumnKind::Counter && value.asInteger() == 0) {
        refuse(cell.text, "is no number that a row can have");
    }
    return value;
}

void appendDigestText(const Value& value, ColumnKind kind, std::string& text) {
    if (value.isNull()) {
        text += '\0';
    } else if (isFraction(kind)) {
        text += 'n';
        appendBits(std::bit_cast<std::uint64_t>(value.asNumber() + 0.0), text);
    } else if (value.isInteger() || value.isYesNo()) {
        text += 'i';
        appendBits(static_cast<std::uint64_t>(value.isYesNo() ? value.asBoolean() ? 1 : 0
                                                              : value.asInteger()),
                   text);
    } else {
        text += 't';
        text += value.isDate() ? value.asDate().iso() : value.asText();
    }
    text += Separator;
}

void appendDigestText(const store::Cell& cell, ColumnKind kind, std::string& text) {
    const double number =
        cell.type == store::CellType::Integer ? static_cast<double>(cell.integer) : cell.real;
    if (cell.type == store::CellType::Null) {
        text += '\0';
    } else if (cell.type == store::CellType::Text) {
        text += 't';
        text += cell.text;
    } else if (isFraction(kind) || cell.type == store::CellType::Real) {
        text += 'n';
        appendBits(std::bit_cast<std::uint64_t>(number + 0.0), text);
    } else {
        text += 'i';
        appendBits(static_cast<std::uint64_t>(cell.integer), text);
    }
    text += Separator;
}

void appendKeyText(const Value& value, std::string& text) {
    if (value.isText()) {
        text += base::lowered(base::trimRight(value.heldText()));
    } else if (!value.isNull()) {
        text += value.isDate() ? value.asDate().iso() : value.asText();
    }
    text += Separator;
}

std::uint64_t digestOf(std::string_view text) {
    std::uint64_t digest = 0xCBF29CE484222325ULL;
    for (const char c : text) {
        digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
    }
    return digest;
}

Value storedValue(const store::Cell& cell, ColumnKind kind) {
    switch (cell.type) {
        case store::CellType::Null:
            return {};
        case store::CellType::Integer:
            return kind == ColumnKind::YesNo ? Value(cell.integer != 0) : Value(cell.integer);
        case store::CellType::Real:
            return cell.real;
        case store::CellType::Text:
            break;
    }
    const auto date =
        kind == ColumnKind::Date ? base::Date::fromIso(cell.text) : std::optional<base::Date>();
    return date ? Value(*date) : Value(cell.text);
}

std::string shownValue(const Value& value) {
    if (value.isNull()) {
        return "nothing";
    }
    if (!value.isText()) {
        return value.asText();
    }
    const std::string_view told = base::firstCharacters(value.heldText(), LongestTold);
    return fmt::format("\"{}{}\"", told, told.size() < value.heldText().size() ? "…" : "");
}

}  // namespace tools::district
