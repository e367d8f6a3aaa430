#include "platform/table/texttable.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <numeric>
#include <optional>
#include <stdexcept>

#include <fmt/format.h>

#include "platform/base/fold.h"
#include "platform/base/text.h"

namespace table {

using base::Date;
using base::Value;

namespace {

constexpr std::uint64_t LengthBits = 32;

std::uint64_t bitsOf(std::int64_t number) { return std::bit_cast<std::uint64_t>(number); }
std::int64_t integerOf(std::uint64_t bits) { return std::bit_cast<std::int64_t>(bits); }

bool isPlain(char c) { return static_cast<unsigned char>(c) < 0x80U; }

int compareNoCase(std::string_view a, std::string_view b) {
    const auto end = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return base::lowered(x) == base::lowered(y);
    });
    if (end.first == a.end() || end.second == b.end()) {
        return static_cast<int>(end.first != a.end()) - static_cast<int>(end.second != b.end());
    }
    if (!isPlain(*end.first) || !isPlain(*end.second)) {
        return base::compareFolded(a, b);
    }
    return static_cast<unsigned char>(base::lowered(*end.first)) <
                   static_cast<unsigned char>(base::lowered(*end.second))
               ? -1
               : 1;
}

std::string_view nullText(CellKind kind) {
    return kind == CellKind::Text      ? " "
           : kind == CellKind::Number  ? "0"
           : kind == CellKind::Decimal ? "0.00"
                                       : "";
}

/// A number that was set as a text, for its decimals.
std::optional<double> numberIn(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number)
                                                                    : std::nullopt;
}

std::string twoDecimals(double number) {
    const auto text = fmt::format("{:.2f}", number);
    return text == "-0.00" ? "0.00" : text;
}

}  // namespace

bool isNumber(CellKind kind) { return kind == CellKind::Number || kind == CellKind::Decimal; }

/// A text's first characters stand in the key itself: they decide most comparisons without a look
/// at the texts, which lie far apart.
struct TextTable::SortKey {
    enum Rank : std::uint8_t { Nothing, Number, Words } rank = Nothing;
    double number = 0;
    std::uint64_t start = 0;
    std::string_view words;

    static SortKey of(std::string_view text) {
        const auto first = text.substr(0, sizeof(std::uint64_t));
        SortKey key{Words, 0, startOf(first), text};
        if (!base::isAscii(first)) {
            key.start = startOf(base::folded(text.substr(0, 2 * sizeof key.start)));
        }
        return key;
    }

    static std::uint64_t startOf(std::string_view text) {
        std::uint64_t start = 0;
        for (std::size_t i = 0; i < sizeof start; ++i) {
            const char c = i < text.size() ? base::lowered(text[i]) : '\0';
            start = (start << 8U) | static_cast<unsigned char>(c);
        }
        return start;
    }

    bool operator<(const SortKey& other) const {
        if (rank != other.rank) {
            return rank < other.rank;
        }
        if (rank != Words) {
            return number < other.number;
        }
        return start != other.start ? start < other.start : compareNoCase(words, other.words) < 0;
    }
};

void TextTable::clearRows() {
    held_.clear();
    bits_.clear();
    pool_.clear();
    red_.clear();
}

std::size_t TextTable::addRow() {
    held_.resize(held_.size() + width(), Held::Null);
    bits_.resize(bits_.size() + width(), 0);
    red_.emplace_back();
    return red_.size() - 1;
}

void TextTable::set(std::size_t row, std::size_t column, const Value& value) {
    if (value.isText()) {
        setText(row, column, value.heldText());
        return;
    }
    const std::size_t at = cell(row, column);
    if (value.isNull()) {
        held_.at(at) = Held::Null;
    } else if (value.isDate()) {
        held_.at(at) = Held::Date;
        bits_[at] = bitsOf(value.asDate().seconds);
    } else if (value.isDouble()) {
        held_.at(at) = Held::Number;
        bits_[at] = std::bit_cast<std::uint64_t>(value.asNumber());
    } else if (value.isYesNo()) {
        held_.at(at) = Held::YesNo;
        bits_[at] = value.asBoolean() ? 1 : 0;
    } else {
        held_.at(at) = Held::Integer;
        bits_[at] = bitsOf(value.asInteger());
    }
}

void TextTable::setText(std::size_t row, std::size_t column, std::string_view text) {
    const std::size_t at = cell(row, column);
    held_.at(at) = Held::Text;
    bits_[at] = (static_cast<std::uint64_t>(pool_.size()) << LengthBits) | text.size();
    pool_.insert(pool_.end(), text.begin(), text.end());
}

void TextTable::append(const TextTable& more) {
    const std::size_t first = held_.size();
    const std::uint64_t places = static_cast<std::uint64_t>(pool_.size()) << LengthBits;
    held_.insert(held_.end(), more.held_.begin(), more.held_.end());
    bits_.insert(bits_.end(), more.bits_.begin(), more.bits_.end());
    pool_.insert(pool_.end(), more.pool_.begin(), more.pool_.end());
    red_.insert(red_.end(), more.red_.begin(), more.red_.end());
    for (std::size_t at = first; at < held_.size(); ++at) {
        if (held_[at] == Held::Text) {
            bits_[at] += places;
        }
    }
}

void TextTable::colourRed(std::size_t row, std::size_t from, std::size_t to) {
    red_.at(row) = {static_cast<std::uint16_t>(from), static_cast<std::uint16_t>(to)};
}

std::string_view TextTable::pooled(std::size_t cell) const {
    const std::uint64_t bits = bits_[cell];
    return {pool_.data() + (bits >> LengthBits), bits & 0xFFFFFFFFU};
}

Value TextTable::value(std::size_t row, std::size_t column) const {
    const std::size_t at = cell(row, column);
    switch (held_.at(at)) {
        case Held::YesNo:
            return bits_[at] != 0;
        case Held::Integer:
            return integerOf(bits_[at]);
        case Held::Number:
            return std::bit_cast<double>(bits_[at]);
        case Held::Date:
            return Date{integerOf(bits_[at])};
        case Held::Text:
            return pooled(at);
        case Held::Null:
            break;
    }
    return {};
}

std::string TextTable::text(std::size_t row, std::size_t column) const {
    const std::size_t at = cell(row, column);
    const CellKind kind = kindOf(column);
    switch (held_.at(at)) {
        case Held::Null:
            return std::string(nullText(kind));
        case Held::Text:
            return std::string(pooled(at));
        case Held::Date:
            return kind == CellKind::Time ? Date{integerOf(bits_[at])}.hhmm()
                                          : Date{integerOf(bits_[at])}.text();
        default:
            return kind == CellKind::Decimal ? twoDecimals(value(row, column).asNumber())
                                             : value(row, column).asText();
    }
}

std::size_t TextTable::columnOf(std::string_view name) const {
    const auto is = [&](std::string_view other) { return base::equalsNoCase(other, name); };
    const auto shown = std::ranges::find_if(columns, is, &TableColumn::name);
    if (shown != columns.end()) {
        return static_cast<std::size_t>(shown - columns.begin());
    }
    const auto kept = std::ranges::find_if(hiddenFields, is);
    if (kept == hiddenFields.end()) {
        throw std::out_of_range("the list has no column " + std::string(name));
    }
    return columns.size() + static_cast<std::size_t>(kept - hiddenFields.begin());
}

bool TextTable::isRed(std::size_t row, std::size_t column) const {
    const Red& red = red_.at(row);
    return column >= red.from && column <= red.to;
}

TextTable::SortKey TextTable::sortKey(std::size_t row, std::size_t column) const {
    const std::size_t at = cell(row, column);
    const CellKind kind = kindOf(column);
    switch (held_[at]) {
        case Held::Null:
            return {isNumber(kind) ? SortKey::Number : SortKey::Nothing, 0, 0, {}};
        case Held::Text: {
            const auto number = isNumber(kind) ? numberIn(pooled(at)) : std::nullopt;
            return number ? SortKey{SortKey::Number, *number, 0, {}} : SortKey::of(pooled(at));
        }
        case Held::Number:
            return {SortKey::Number, std::bit_cast<double>(bits_[at]), 0, {}};
        case Held::Date: {
            const Date date{integerOf(bits_[at])};
            const Date counted = kind == CellKind::Time ? date.timeValue() : date;
            return {SortKey::Number, static_cast<double>(counted.seconds), 0, {}};
        }
        case Held::YesNo:
        case Held::Integer:
            break;
    }
    return {SortKey::Number, static_cast<double>(integerOf(bits_[at])), 0, {}};
}

/// Keeps the order of rows that are equal.
void TextTable::sort(std::vector<std::size_t>& order, const SortBy& by) const {
    std::vector<SortKey> keys;
    keys.reserve(rowCount());
    for (std::size_t row = 0; row < rowCount(); ++row) {
        keys.push_back(sortKey(row, by.column));
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return by.descending ? keys[b] < keys[a] : keys[a] < keys[b];
    });
}

std::vector<std::size_t> TextTable::sortedBy(std::size_t column, bool descending) const {
    const SortBy by{column, descending};
    return sortedBy({&by, 1});
}

std::vector<std::size_t> TextTable::sortedBy(std::span<const SortBy> sorting) const {
    std::vector<std::size_t> order(rowCount());
    std::iota(order.begin(), order.end(), std::size_t{0});
    for (std::size_t last = sorting.size(); last-- > 0;) {
        sort(order, sorting[last]);
    }
    return order;
}

void TextTable::reserve(std::size_t rows) {
    held_.reserve(rows * width());
    bits_.reserve(rows * width());
    red_.reserve(rows);
    if (rowCount() > 0) {
        const std::size_t textOfRow = pool_.size() / rowCount() + 1;
        pool_.reserve((textOfRow + textOfRow / 8) * rows);
    }
}

std::size_t TextTable::bytes() const {
    return held_.capacity() * sizeof(Held) + bits_.capacity() * sizeof(std::uint64_t) +
           pool_.capacity() + red_.capacity() * sizeof(Red);
}

}  // namespace table
