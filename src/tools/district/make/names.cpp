#include "tools/district/make/names.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace tools::district {

namespace {

constexpr std::array<std::string_view, 64> FirstNames = {
    "Ada",    "Aiden", "Alma",   "Amir",  "Anna",  "Arlo",  "Ava",   "Ben",   "Bianca", "Caleb",
    "Carmen", "Chloe", "Clara",  "Dario", "David", "Delia", "Diego", "Elena", "Eli",    "Emma",
    "Esther", "Ethan", "Farah",  "Felix", "Fiona", "Gavin", "Grace", "Hana",  "Hugo",   "Ian",
    "Imani",  "Ines",  "Isaac",  "Ivy",   "Jack",  "Jada",  "James", "Jonas", "Julia",  "Kai",
    "Kofi",   "Laila", "Leo",    "Lily",  "Lucas", "Luz",   "Malik", "Maria", "Mateo",  "Mia",
    "Milo",   "Nadia", "Noah",   "Nora",  "Omar",  "Owen",  "Priya", "Quinn", "Rosa",   "Samuel",
    "Sofia",  "Theo",  "Violet", "Zoe"};

constexpr std::array<std::string_view, 64> LastNames = {
    "Abbott",  "Alvarez", "Anders",   "Baker",    "Barnes", "Becker",  "Bennett",  "Boyd",
    "Brandt",  "Bristow", "Cole",     "Cortez",   "Dalton", "Diaz",    "Doyle",    "Ellis",
    "Farrell", "Fischer", "Fleming",  "Garza",    "Gibbs",  "Goodwin", "Grant",    "Hale",
    "Harper",  "Hayes",   "Holloway", "Ibarra",   "Ito",    "Jacobs",  "Jensen",   "Kaplan",
    "Keller",  "Kim",     "Lambert",  "Larsen",   "Lopez",  "Lowell",  "Maddox",   "Marsh",
    "Mercer",  "Morales", "Nash",     "Nguyen",   "Novak",  "O'Brien", "Okafor",   "Ortega",
    "Park",    "Patel",   "Pierce",   "Quintero", "Ramsey", "Reyes",   "Rowe",     "Sandoval",
    "Schmidt", "Shaw",    "Singh",    "Sutton",   "Tran",   "Vaughn",  "Whitaker", "Young"};

constexpr std::array<std::string_view, 20> Landmarks = {
    "West Ridge",    "East Valley",  "Clear Brook", "North Fork",   "Mill Lane",
    "Poplar Hill",   "Stone Bridge", "Fox Hollow",  "Prairie View", "Willow Bend",
    "Round Lake",    "Orchard Park", "Cedar Grove", "Quarry Road",  "Sunny Slope",
    "Harvest Field", "Twin Creeks",  "Maple Glen",  "Pine Bluff",   "Heron Marsh"};

struct Level {
    std::string_view type;
    std::string_view suffix;
    std::string_view name;
};
constexpr std::array<Level, 4> Levels = {{{"HS", "HS", "High School"},
                                          {"MS", "MS", "Middle School"},
                                          {"ELEM", "ES", "Elementary School"},
                                          {"PK", "EL", "Early Learning Center"}}};

constexpr std::array<Town, 4> Towns = {{{"Westbrook", "00101", "SW"},
                                        {"Oakhaven", "00102", "NW"},
                                        {"Eastmere", "00103", "SE"},
                                        {"Norwell", "00104", "NE"}}};

const Level& levelOf(std::string_view type) {
    for (const Level& level : Levels) {
        if (level.type == type) {
            return level;
        }
    }
    return Levels.front();
}

}  // namespace

std::string_view firstName(Random& random) { return random.pick(FirstNames); }

std::string_view lastName(Random& random) { return random.pick(LastNames); }

SchoolName schoolName(std::size_t number, std::string_view type) {
    const std::string_view landmark = Landmarks[number % Landmarks.size()];
    const std::size_t round = number / Landmarks.size();
    const Level& level = levelOf(type);
    const std::string digits = round == 0 ? std::string() : fmt::format("{}", round + 1);
    const char second = landmark[landmark.find(' ') + 1];
    return {fmt::format("{}{}{}{}", landmark[0], second, level.suffix, digits),
            fmt::format("{} {}{}{}", landmark, level.name, round == 0 ? "" : " No. ", digits)};
}

const Town& townOf(bool east, bool north) { return Towns[(east ? 2U : 0U) + (north ? 1U : 0U)]; }

const Town& townOf(std::string_view location) {
    const auto* found = std::ranges::find(Towns, location, &Town::location);
    return found == Towns.end() ? Towns.front() : *found;
}

}  // namespace tools::district
