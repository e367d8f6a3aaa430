#include "streets/district/closedstreets.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <queue>
#include <sstream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "streets/base/streetnames.h"
#include "streets/network/shapes.h"

namespace streets {

namespace {

constexpr std::size_t Fields = 4;
constexpr double NearFeet = 200;

using Nodes = std::unordered_set<std::uint32_t>;
using Pieces = std::vector<std::uint32_t>;

bool isNamed(const std::string& name, const std::string& wanted) {
    return base::equalsNoCase(name, wanted);
}

Pieces piecesNamed(const StreetMap& map, const std::string& name) {
    const std::string whole = spelledOut(name);
    std::vector<bool> fits(map.names.size(), false);
    for (std::size_t i = 1; i < map.names.size(); ++i) {
        fits[i] = isNamed(map.names[i], whole);
    }
    Pieces pieces;
    for (std::uint32_t i = 0; i < map.pieces.size(); ++i) {
        if (fits[map.pieces[i].name]) {
            pieces.push_back(i);
        }
    }
    return pieces;
}

Pieces pieceAt(const StreetMap& map, const Pieces& pieces, const geo::Feet& place) {
    std::pair nearest{NearFeet, std::numeric_limits<std::uint32_t>::max()};
    for (const std::uint32_t piece : pieces) {
        const double feet = nearestFoot(map.pointsOf(map.pieces[piece]), place).distance;
        nearest = std::min(nearest, {feet, piece});
    }
    return nearest.first < NearFeet ? Pieces{nearest.second} : Pieces();
}

Pieces allPieces(const StreetMap& map) {
    Pieces pieces;
    for (std::uint32_t i = 0; i < map.pieces.size(); ++i) {
        if (map.pieces[i].kind != StreetClass::Footway) {
            pieces.push_back(i);
        }
    }
    return pieces;
}

/// A street by itself: which of its pieces lie between two of its crossings.
class StreetAlone {
public:
    StreetAlone(const StreetMap& map, const Pieces& pieces) : map_(map) {
        for (const std::uint32_t piece : pieces) {
            at_[map.pieces[piece].from].push_back(piece);
            at_[map.pieces[piece].to].push_back(piece);
        }
    }

    [[nodiscard]] Nodes crossings(const Pieces& other) const {
        Nodes nodes;
        for (const std::uint32_t piece : other) {
            for (const std::uint32_t node : {map_.pieces[piece].from, map_.pieces[piece].to}) {
                if (at_.contains(node)) {
                    nodes.insert(node);
                }
            }
        }
        return nodes;
    }

    /// The shortest way along the street to one of these; empty where it does not lead there.
    [[nodiscard]] Pieces between(std::uint32_t from, const Nodes& to) const {
        using Step = std::pair<double, std::uint32_t>;
        std::unordered_map<std::uint32_t, Step> best{{from, {0, None}}};
        std::priority_queue<Step, std::vector<Step>, std::greater<>> todo;
        todo.emplace(0, from);
        while (!todo.empty()) {
            const auto [feet, node] = todo.top();
            todo.pop();
            if (to.contains(node)) {
                return wayTo(node, best);
            }
            for (const std::uint32_t piece : at_.at(node)) {
                const std::uint32_t next = beyond(piece, node);
                const double far = feet + map_.pieces[piece].feet;
                const auto known = best.find(next);
                if (known == best.end() || far < known->second.first) {
                    best[next] = {far, piece};
                    todo.emplace(far, next);
                }
            }
        }
        return {};
    }

private:
    static constexpr std::uint32_t None = std::numeric_limits<std::uint32_t>::max();

    [[nodiscard]] std::uint32_t beyond(std::uint32_t piece, std::uint32_t node) const {
        const Piece& at = map_.pieces[piece];
        return at.from == node ? at.to : at.from;
    }

    [[nodiscard]] Pieces wayTo(
        std::uint32_t node,
        const std::unordered_map<std::uint32_t, std::pair<double, std::uint32_t>>& best) const {
        Pieces way;
        for (auto piece = best.at(node).second; piece != None; piece = best.at(node).second) {
            way.push_back(piece);
            node = beyond(piece, node);
        }
        return way;
    }

    const StreetMap& map_;
    std::unordered_map<std::uint32_t, Pieces> at_;
};

/// Where a street's directions lie apart, each meets the crossing streets by itself.
Pieces piecesBetween(const StreetMap& map, const Pieces& street, const ClosedStreet& closed) {
    const StreetAlone alone(map, street);
    const Nodes from = alone.crossings(piecesNamed(map, closed.from));
    const Nodes to = alone.crossings(piecesNamed(map, closed.to));
    Pieces all;
    for (const auto& [begin, end] : {std::pair(&from, &to), std::pair(&to, &from)}) {
        for (const std::uint32_t node : *begin) {
            const Pieces way = alone.between(node, *end);
            all.insert(all.end(), way.begin(), way.end());
        }
    }
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

std::optional<geo::Feet> placeIn(const std::string& text) {
    std::istringstream words(text);
    geo::Feet place;
    std::string more;
    const bool isPlace = static_cast<bool>(words >> place.x >> place.y) && !(words >> more);
    return isPlace ? std::optional(place) : std::nullopt;
}

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream text(line);
    for (std::string field; std::getline(text, field, ';');) {
        fields.emplace_back(base::trim(field));
    }
    return fields;
}

std::string whyNot(const ClosedStreet& closed, std::size_t fields) {
    if (fields > Fields) {
        return "has more than four fields";
    }
    if (closed.street.empty() && !closed.place) {
        return "names neither a street nor a place";
    }
    if (closed.from.empty() != closed.to.empty()) {
        return "needs both crossing streets, or none";
    }
    return "";
}

}  // namespace

std::string lineOf(const ClosedStreet& closed) {
    const std::string from =
        closed.place ? fmt::format("{:.1f} {:.1f}", closed.place->x, closed.place->y) : closed.from;
    std::string line = fmt::format("{}; {}; {}; {}", closed.street, from, closed.to, closed.note);
    line.erase(line.find_last_not_of("; ") + 1);
    return line;
}

ClosedStreetList closedStreetsIn(std::string_view text) {
    ClosedStreetList list;
    std::istringstream lines{std::string(text)};
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        std::erase(line, '\r');
        if (base::trim(line).empty() || base::trim(line).starts_with('#')) {
            continue;
        }
        auto fields = fieldsOf(line);
        const std::size_t many = fields.size();
        fields.resize(std::max(many, Fields));
        ClosedStreet closed{.street = fields[0], .place = placeIn(fields[1]), .note = fields[3]};
        closed.from = closed.place ? "" : fields[1];
        closed.to = fields[2];
        if (const std::string why = whyNot(closed, many); !why.empty()) {
            list.faults.push_back(
                fmt::format("Line {} of the list of closed streets {}.", number, why));
        } else {
            list.streets.push_back(std::move(closed));
        }
    }
    return list;
}

std::vector<std::uint32_t> closedPieces(const StreetMap& map, const ClosedStreet& closed) {
    const Pieces street = closed.street.empty() ? allPieces(map) : piecesNamed(map, closed.street);
    if (closed.place) {
        return pieceAt(map, street, *closed.place);
    }
    return closed.from.empty() ? street : piecesBetween(map, street, closed);
}

}  // namespace streets
