#include "streets/base/streetnames.h"

#include <algorithm>
#include <cctype>
#include <span>
#include <vector>

#include "platform/base/text.h"

namespace streets {

namespace {

struct Short {
    std::string_view word;
    std::string_view whole;
};

constexpr Short Directions[] = {{"n", "North"},      {"s", "South"},      {"e", "East"},
                                {"w", "West"},       {"ne", "Northeast"}, {"nw", "Northwest"},
                                {"se", "Southeast"}, {"sw", "Southwest"}};

constexpr Short Kinds[] = {
    {"aly", "Alley"},      {"av", "Avenue"},   {"ave", "Avenue"},   {"bl", "Boulevard"},
    {"blvd", "Boulevard"}, {"br", "Branch"},   {"cir", "Circle"},   {"cr", "Crescent"},
    {"ct", "Court"},       {"cv", "Cove"},     {"dr", "Drive"},     {"expy", "Expressway"},
    {"fwy", "Freeway"},    {"hts", "Heights"}, {"hwy", "Highway"},  {"ln", "Lane"},
    {"lp", "Loop"},        {"pk", "Pike"},     {"pkwy", "Parkway"}, {"pkw", "Parkway"},
    {"pl", "Place"},       {"plz", "Plaza"},   {"pt", "Point"},     {"rd", "Road"},
    {"rdg", "Ridge"},      {"rte", "Route"},   {"sq", "Square"},    {"st", "Street"},
    {"str", "Street"},     {"ter", "Terrace"}, {"terr", "Terrace"}, {"trl", "Trail"},
    {"tpke", "Turnpike"},  {"vw", "View"},     {"wy", "Way"},       {"xing", "Crossing"}};

constexpr Short Beginnings[] = {{"st", "Saint"},  {"mt", "Mount"},  {"ft", "Fort"},
                                {"dr", "Doctor"}, {"co", "County"}, {"twp", "Township"}};

std::vector<std::string> wordsOf(std::string_view name) {
    std::vector<std::string> words;
    bool isNew = true;
    for (const char c : name) {
        const bool isBlank = c >= 0 && c <= ' ';
        if (!isBlank && isNew) {
            words.emplace_back();
        }
        if (!isBlank) {
            words.back() += c;
        }
        isNew = isBlank;
    }
    return words;
}

/// What a shortened word stands for; empty where it is none.
std::string_view wholeOf(std::string_view word, std::span<const Short> shorts) {
    if (word.ends_with('.')) {
        word.remove_suffix(1);
    }
    const auto found = std::ranges::find_if(
        shorts, [&](const Short& one) { return base::equalsNoCase(one.word, word); });
    return found == shorts.end() ? std::string_view() : found->whole;
}

/// Shortened or not.
bool isAny(std::string_view word, std::span<const Short> shorts) {
    return !wholeOf(word, shorts).empty() || std::ranges::any_of(shorts, [&](const Short& one) {
        return base::equalsNoCase(one.whole, word);
    });
}

bool isNumber(std::string_view word) {
    return !word.empty() && std::isdigit(static_cast<unsigned char>(word.front())) != 0;
}

void spell(std::string& word, std::span<const Short> shorts) {
    if (const auto whole = wholeOf(word, shorts); !whole.empty()) {
        word = whole;
    }
}

/// How many words behind the street's kind say a direction; the name itself is never one.
std::size_t trailing(const std::vector<std::string>& words) {
    return words.size() > 2 && isAny(words.back(), Directions) &&
                   isAny(words[words.size() - 2], Kinds)
               ? 1
               : 0;
}

bool beginsWithDirection(const std::vector<std::string>& words, std::size_t kindAt) {
    return kindAt > 0 && !wholeOf(words.front(), Directions).empty() &&
           !(kindAt == 1 && isAny(words[kindAt], Kinds));
}

}  // namespace

std::string spelledOut(std::string_view name) {
    std::vector<std::string> words = wordsOf(name);
    if (words.size() < 2) {
        return words.empty() ? std::string() : words.front();
    }
    const std::size_t last = words.size() - 1 - trailing(words);
    std::size_t first = 0;
    if (beginsWithDirection(words, last)) {
        spell(words.front(), Directions);
        first = 1;
    }
    if (last + 1 < words.size()) {
        spell(words.back(), Directions);
    }
    if (first < last) {
        spell(words[first], Beginnings);
    }
    for (std::size_t i = first + 1; i <= last; ++i) {
        if (i == last || isNumber(words[i + 1])) {
            spell(words[i], Kinds);
        }
    }
    return base::joined(words, " ");
}

}  // namespace streets
