#include "streets/base/streetnames.h"

#include <algorithm>
#include <array>
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

constexpr std::array Directions{Short{"n", "North"},      Short{"s", "South"},
                                Short{"e", "East"},       Short{"w", "West"},
                                Short{"ne", "Northeast"}, Short{"nw", "Northwest"},
                                Short{"se", "Southeast"}, Short{"sw", "Southwest"}};

constexpr std::array Kinds{
    Short{"aly", "Alley"},    Short{"av", "Avenue"},      Short{"ave", "Avenue"},
    Short{"bl", "Boulevard"}, Short{"blvd", "Boulevard"}, Short{"br", "Branch"},
    Short{"cir", "Circle"},   Short{"cr", "Crescent"},    Short{"ct", "Court"},
    Short{"cv", "Cove"},      Short{"dr", "Drive"},       Short{"expy", "Expressway"},
    Short{"fwy", "Freeway"},  Short{"hts", "Heights"},    Short{"hwy", "Highway"},
    Short{"ln", "Lane"},      Short{"lp", "Loop"},        Short{"pk", "Pike"},
    Short{"pkwy", "Parkway"}, Short{"pkw", "Parkway"},    Short{"pl", "Place"},
    Short{"plz", "Plaza"},    Short{"pt", "Point"},       Short{"rd", "Road"},
    Short{"rdg", "Ridge"},    Short{"rte", "Route"},      Short{"sq", "Square"},
    Short{"st", "Street"},    Short{"str", "Street"},     Short{"ter", "Terrace"},
    Short{"terr", "Terrace"}, Short{"trl", "Trail"},      Short{"tpke", "Turnpike"},
    Short{"vw", "View"},      Short{"wy", "Way"},         Short{"xing", "Crossing"}};

constexpr std::array Beginnings{Short{"st", "Saint"},  Short{"mt", "Mount"},
                                Short{"ft", "Fort"},   Short{"dr", "Doctor"},
                                Short{"co", "County"}, Short{"twp", "Township"}};

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
    std::string all;
    for (const std::string& word : words) {
        all += (all.empty() ? "" : " ") + word;
    }
    return all;
}

}  // namespace streets
