#include "streets/district/placesearch.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <tuple>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "streets/base/streetnames.h"
#include "streets/network/shapes.h"

namespace streets {

namespace {

using Words = std::vector<std::string>;

Words wordsOf(std::string_view text) {
    Words words;
    for (const char c : text) {
        const bool isBlank = c == ' ' || c == ',' || c == '\t';
        if (words.empty() || (isBlank && !words.back().empty())) {
            words.emplace_back();
        }
        if (!isBlank) {
            words.back() += base::lowered(c);
        }
    }
    if (!words.empty() && words.back().empty()) {
        words.pop_back();
    }
    return words;
}

/// How many words of a name were left out; nothing where the typed ones do not begin words of it,
/// in its order.
std::optional<std::size_t> leftOut(const Words& typed, const Words& name) {
    std::size_t next = 0;
    for (const std::string& word : name) {
        if (next < typed.size() && word.starts_with(typed[next])) {
            ++next;
        }
    }
    return next == typed.size() && !typed.empty() ? std::optional(name.size() - typed.size())
                                                  : std::nullopt;
}

/// What was typed, taken apart.
struct Question {
    std::string street;
    std::string crossing;  ///< of a corner
    std::string number;    ///< of an address
};

Question questionIn(std::string_view words) {
    for (const std::string_view between : {" at ", "&", " and ", "/", "@"}) {
        const std::string lower = base::lowered(words);
        const auto at = lower.find(between);
        if (at != std::string::npos && at > 0) {
            return {.street = std::string(base::trim(words.substr(0, at))),
                    .crossing = std::string(base::trim(words.substr(at + between.size()))),
                    .number = {}};
        }
    }
    const auto trimmed = base::trim(words);
    const auto end = std::min(trimmed.find(' '), trimmed.size());
    const std::string_view first = trimmed.substr(0, end);
    const bool isNumber = end < trimmed.size() && !first.empty() &&
                          first.find_first_not_of("0123456789") == std::string_view::npos;
    return {.street = std::string(isNumber ? base::trim(trimmed.substr(end)) : trimmed),
            .crossing = {},
            .number = std::string(isNumber ? first : std::string_view())};
}

class StreetSearch {
public:
    StreetSearch(const StreetMap& map, std::size_t most) : map_(map), most_(most) {}

    [[nodiscard]] std::vector<FoundPlace> find(const Question& question) const {
        const auto streets = namesLike(question.street);
        std::vector<FoundPlace> found;
        if (!question.crossing.empty()) {
            addCorners(streets, namesLike(question.crossing), found);
        } else if (!question.number.empty()) {
            addHouses(streets, question.number, found);
        }
        if (found.empty() && question.crossing.empty()) {
            addStreets(streets, found);
        }
        return found;
    }

private:
    static constexpr std::size_t Unranked = SIZE_MAX / 2;

    /// The best first: nothing left out, then the longest street.
    [[nodiscard]] std::vector<std::uint32_t> namesLike(const std::string& typed) const {
        const Words words = wordsOf(spelledOut(typed));
        std::vector<double> feet(map_.names.size(), 0);
        for (const Piece& piece : map_.pieces) {
            feet[piece.name] += piece.feet;
        }
        std::vector<bool> hasHouse(map_.names.size(), false);
        for (const HouseNumber& house : map_.houses) {
            hasHouse[house.name] = true;
        }
        std::vector<std::tuple<std::size_t, double, std::uint32_t>> fits;
        for (std::uint32_t i = 1; i < map_.names.size(); ++i) {
            if (const auto out = leftOut(words, wordsOf(map_.names[i]));
                out && (feet[i] > 0 || hasHouse[i])) {
                fits.emplace_back(*out, -feet[i], i);
            }
        }
        std::ranges::sort(fits);
        std::vector<std::uint32_t> names;
        names.reserve(fits.size());
        for (const auto& fit : fits) {
            names.push_back(std::get<2>(fit));
        }
        return names;
    }

    void addStreets(const std::vector<std::uint32_t>& names, std::vector<FoundPlace>& found) const {
        for (const std::uint32_t name : names) {
            const auto middle = middleOf(name);
            if (found.size() < most_ && middle) {
                found.push_back({map_.names[name], *middle, FoundPlace::Kind::Street});
            }
        }
    }

    /// On the piece that lies the most in the middle of all.
    [[nodiscard]] std::optional<geo::Feet> middleOf(std::uint32_t name) const {
        geo::Feet sum;
        std::vector<geo::Feet> middles;
        for (const Piece& piece : map_.pieces) {
            if (piece.name == name) {
                middles.push_back(
                    Shape(map_.pointsOf(piece), false, piece.feet).at(piece.feet / 2));
                sum = {sum.x + middles.back().x, sum.y + middles.back().y};
            }
        }
        if (middles.empty()) {
            return std::nullopt;
        }
        const auto many = static_cast<double>(middles.size());
        const geo::Feet mean{sum.x / many, sum.y / many};
        return *std::ranges::min_element(middles, {},
                                         [&](const geo::Feet& at) { return distance(at, mean); });
    }

    /// A node where a street that fits meets one that fits the crossing.
    struct Corner {
        std::size_t rank = 0;
        std::uint32_t node = 0;
        std::uint32_t street = 0;
        std::uint32_t crossing = 0;
    };

    [[nodiscard]] std::vector<Corner> cornersOf(const std::vector<std::uint32_t>& streets,
                                                const std::vector<std::uint32_t>& crossings) const {
        std::vector<std::vector<std::uint32_t>> namesAt(map_.nodes.size());
        for (const Piece& piece : map_.pieces) {
            namesAt[piece.from].push_back(piece.name);
            namesAt[piece.to].push_back(piece.name);
        }
        const auto streetRanks = ranksOf(streets);
        const auto crossingRanks = ranksOf(crossings);
        std::vector<Corner> corners;
        for (std::uint32_t node = 0; node < namesAt.size(); ++node) {
            for (const std::uint32_t street : namesAt[node]) {
                for (const std::uint32_t crossing : namesAt[node]) {
                    const std::size_t rank = streetRanks[street] + crossingRanks[crossing];
                    if (street != crossing && rank < Unranked) {
                        corners.push_back({rank, node, street, crossing});
                    }
                }
            }
        }
        std::ranges::sort(corners, {},
                          [](const Corner& corner) { return std::pair(corner.rank, corner.node); });
        return corners;
    }

    /// By name, its place among those that fit.
    [[nodiscard]] std::vector<std::size_t> ranksOf(const std::vector<std::uint32_t>& names) const {
        std::vector<std::size_t> ranks(map_.names.size(), Unranked);
        for (std::size_t i = 0; i < names.size(); ++i) {
            ranks[names[i]] = i;
        }
        return ranks;
    }

    /// Nodes of a divided street that lie together are one corner.
    void addCorners(const std::vector<std::uint32_t>& streets,
                    const std::vector<std::uint32_t>& crossings,
                    std::vector<FoundPlace>& found) const {
        constexpr double OneCornerFeet = 200;
        for (const Corner& corner : cornersOf(streets, crossings)) {
            const geo::Feet& at = map_.nodes[corner.node].at;
            const bool isKnown = std::ranges::any_of(found, [&](const FoundPlace& place) {
                return distance(place.at, at) < OneCornerFeet;
            });
            if (!isKnown && found.size() < most_) {
                found.push_back({fmt::format("{} at {}", map_.names[corner.street],
                                             map_.names[corner.crossing]),
                                 at, FoundPlace::Kind::Corner});
            }
        }
    }

    void addHouses(const std::vector<std::uint32_t>& names, const std::string& number,
                   std::vector<FoundPlace>& found) const {
        for (const std::uint32_t name : names) {
            const auto at = houseAt(name, base::leadingNumber(number));
            if (at && found.size() < most_) {
                found.push_back({fmt::format("{} {}", number, map_.names[name]), *at,
                                 FoundPlace::Kind::Address});
            }
        }
    }

    /// The house, or a place between its neighbours on its side of the street.
    [[nodiscard]] std::optional<geo::Feet> houseAt(std::uint32_t name, double number) const {
        constexpr double FarthestNeighbour = 200;
        const HouseNumber* below = nullptr;
        const HouseNumber* above = nullptr;
        const auto value = [](const HouseNumber* house) {
            return base::leadingNumber(house->number);
        };
        for (const HouseNumber& house : map_.houses) {
            const double other = value(&house);
            if (house.name != name || std::fmod(std::abs(other - number), 2) != 0) {
                continue;
            }
            if (other <= number && (below == nullptr || other > value(below))) {
                below = &house;
            }
            if (other >= number && (above == nullptr || other < value(above))) {
                above = &house;
            }
        }
        if (below == nullptr || above == nullptr ||
            value(above) - value(below) > FarthestNeighbour) {
            return std::nullopt;
        }
        const double span = value(above) - value(below);
        const double share = span > 0 ? (number - value(below)) / span : 0;
        return geo::Feet{std::lerp(below->at.x, above->at.x, share),
                         std::lerp(below->at.y, above->at.y, share)};
    }

    const StreetMap& map_;
    std::size_t most_;
};

/// "14th Street" or "9th Avenue" of a grid.
struct GridLine {
    int number = 0;
    bool isStreet = true;
};

std::optional<GridLine> gridLineIn(const std::string& typed) {
    const Words words = wordsOf(spelledOut(typed));
    if (words.empty() || words.size() > 2) {
        return std::nullopt;
    }
    int number = 0;
    const char* const end = words[0].data() + words[0].size();
    const auto [stopped, error] = std::from_chars(words[0].data(), end, number);
    const std::string_view ending(stopped, static_cast<std::size_t>(end - stopped));
    const bool isOrdinal =
        ending.empty() || ending == "st" || ending == "nd" || ending == "rd" || ending == "th";
    const std::string_view kind = words.size() > 1 ? std::string_view(words[1]) : "street";
    const bool isStreet = std::string_view("street").starts_with(kind);
    if (error != std::errc() || !isOrdinal ||
        (!isStreet && !std::string_view("avenue").starts_with(kind))) {
        return std::nullopt;
    }
    return GridLine{number, isStreet};
}

double middleOf(int block, const Grid& grid) { return (block - 0.5) * grid.blockFeet; }

/// A street's numbers count a hundred a block.
std::vector<FoundPlace> onGrid(const Grid& grid, const Question& question) {
    const auto street = gridLineIn(question.street);
    const auto crossing = gridLineIn(question.crossing);
    if (street && crossing && street->isStreet != crossing->isStreet) {
        const GridLine& across = street->isStreet ? *street : *crossing;
        const GridLine& along = street->isStreet ? *crossing : *street;
        const geo::Feet at{middleOf(along.number, grid), middleOf(across.number, grid)};
        return {{fmt::format("{} at {}", gridStreet(at.y, grid.blockFeet),
                             gridAvenue(at.x, grid.blockFeet)),
                 at, FoundPlace::Kind::Corner}};
    }
    if (street && street->isStreet && !question.number.empty()) {
        const double hundreds = base::leadingNumber(question.number) / 100 - 1;
        const geo::Feet at{hundreds * grid.blockFeet, middleOf(street->number, grid)};
        return {{fmt::format("{} {}", question.number, gridStreet(at.y, grid.blockFeet)), at,
                 FoundPlace::Kind::Address}};
    }
    return {};
}

}  // namespace

std::vector<FoundPlace> findPlaces(const DistrictStreets& streets, std::string_view words,
                                   std::size_t most) {
    const Question question = questionIn(words);
    if (streets.grid()) {
        return onGrid(*streets.grid(), question);
    }
    return StreetSearch(*streets.map(), most).find(question);
}

}  // namespace streets
