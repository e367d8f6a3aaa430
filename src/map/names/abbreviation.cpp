#include "map/names/abbreviation.h"

#include <algorithm>
#include <array>
#include <utility>

namespace map {

namespace {

using Pair = std::pair<std::string_view, std::string_view>;

constexpr std::array<Pair, 8> Directions{{{"North", "N"},
                                          {"South", "S"},
                                          {"East", "E"},
                                          {"West", "W"},
                                          {"Northeast", "NE"},
                                          {"Northwest", "NW"},
                                          {"Southeast", "SE"},
                                          {"Southwest", "SW"}}};

constexpr std::array<Pair, 22> Kinds{
    {{"Street", "St"},       {"Avenue", "Ave"},    {"Road", "Rd"},     {"Drive", "Dr"},
     {"Lane", "Ln"},         {"Place", "Pl"},      {"Court", "Ct"},    {"Circle", "Cir"},
     {"Boulevard", "Blvd"},  {"Freeway", "Fwy"},   {"Highway", "Hwy"}, {"Parkway", "Pkwy"},
     {"Expressway", "Expy"}, {"Terrace", "Ter"},   {"Square", "Sq"},   {"Trail", "Trl"},
     {"Alley", "Aly"},       {"Crossing", "Xing"}, {"Heights", "Hts"}, {"Junction", "Jct"},
     {"Mount", "Mt"},        {"Crescent", "Cres"}}};

template <std::size_t Count>
std::string_view shortOf(std::string_view word, const std::array<Pair, Count>& among) {
    const auto* const found = std::ranges::find(among, word, &Pair::first);
    return found == among.end() ? word : found->second;
}

}  // namespace

std::string abbreviated(std::string_view name) {
    const auto first = name.find(' ');
    if (first == std::string_view::npos) {
        return std::string(name);
    }
    std::string text(shortOf(name.substr(0, first), Directions));
    auto last = name.rfind(' ');
    const std::string_view ending = name.substr(last + 1);
    const std::string_view direction = shortOf(ending, Directions);
    if (direction != ending && last > first) {
        const auto kind = name.rfind(' ', last - 1);
        text += name.substr(first, kind - first);
        text += ' ';
        text += shortOf(name.substr(kind + 1, last - kind - 1), Kinds);
        return (text += ' ') += direction;
    }
    text += name.substr(first, last - first);
    return (text += ' ') += shortOf(ending, Kinds);
}

}  // namespace map
