#include "streets/file/streetfile.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/files/draft.h"
#include "platform/files/files.h"
#include "streets/file/packing.h"

namespace streets {

namespace {

constexpr std::string_view Sign = "VIREO streets\n";
constexpr std::uint8_t Version = 1;

// The marks of a node and of a piece, a bit each.
constexpr unsigned Signal = 1;
constexpr unsigned TurningCircle = 2;
constexpr unsigned LevelCrossing = 4;
constexpr unsigned MarksOfNode = 8;

constexpr unsigned Forward = 1;
constexpr unsigned Backward = 2;
constexpr unsigned Roundabout = 4;
constexpr unsigned Reachable = 8;
constexpr unsigned KindAbove = 4;

constexpr std::size_t GroundKinds = static_cast<std::size_t>(GroundKind::Stream) + 1;

// What an item takes at least.
constexpr std::size_t BytesOfNode = 3;
constexpr std::size_t BytesOfPiece = 6;
constexpr std::size_t BytesOfPlace = 2;
constexpr std::size_t BytesOfRing = 3;
constexpr std::size_t BytesOfRule = 4;
constexpr std::size_t BytesOfShape = 3;
constexpr std::size_t BytesOfHouse = 4;

unsigned markIf(bool holds, unsigned mark) { return holds ? mark : 0U; }

/// Tells bytes that were changed on the disk; no protection against malice.
std::uint64_t sumOf(std::string_view bytes) {
    constexpr std::uint64_t Start = 14695981039346656037ULL;
    constexpr std::uint64_t Factor = 1099511628211ULL;
    std::uint64_t sum = Start;
    for (const char c : bytes) {
        sum = (sum ^ static_cast<unsigned char>(c)) * Factor;
    }
    return sum;
}

[[noreturn]] void raiseIncoherent() {
    throw base::RunTimeError(base::errors::InvalidProcedureCall,
                             "The street map does not hold together and was not written.");
}

void require(bool holds) {
    if (!holds) {
        raiseIncoherent();
    }
}

void packCentre(Packer& packer, const StreetMap& map) {
    packer.real(map.centre.degrees.latitude);
    packer.real(map.centre.degrees.longitude);
    packer.real(map.centre.feet.x);
    packer.real(map.centre.feet.y);
    packer.text(map.attribution);
}

void packNames(Packer& packer, const StreetMap& map) {
    require(!map.names.empty() && map.names.front().empty());
    packer.number(map.names.size());
    for (const std::string& name : map.names) {
        packer.text(name);
    }
}

void packNodes(Packer& packer, const StreetMap& map) {
    packer.number(map.nodes.size());
    packer.setPlace(map.centre.feet);
    for (const Node& node : map.nodes) {
        packer.place(node.at);
        packer.byte(static_cast<std::uint8_t>(markIf(node.signal, Signal) |
                                              markIf(node.turningCircle, TurningCircle) |
                                              markIf(node.levelCrossing, LevelCrossing)));
    }
}

unsigned marksOf(const Piece& piece) {
    return markIf(piece.forward, Forward) | markIf(piece.backward, Backward) |
           markIf(piece.roundabout, Roundabout) | markIf(piece.reachable, Reachable) |
           static_cast<unsigned>(piece.kind) << KindAbove;
}

void requireWhole(const Packer& packer, const StreetMap& map, const Piece& piece) {
    require(piece.from < map.nodes.size() && piece.to < map.nodes.size() &&
            piece.name < map.names.size() && piece.points >= 2 &&
            piece.firstPoint <= map.points.size() &&
            piece.points <= map.points.size() - piece.firstPoint);
    const auto points = map.pointsOf(piece);
    require(packer.gridPlace(points.front()) == packer.gridPlace(map.nodes[piece.from].at) &&
            packer.gridPlace(points.back()) == packer.gridPlace(map.nodes[piece.to].at));
}

void packPieces(Packer& packer, const StreetMap& map) {
    packer.number(map.pieces.size());
    std::uint32_t last = 0;
    for (const Piece& piece : map.pieces) {
        requireWhole(packer, map, piece);
        packer.near(piece.from, last);
        packer.near(piece.to, piece.from);
        last = piece.from;
        packer.number(piece.name);
        packer.byte(static_cast<std::uint8_t>(marksOf(piece)));
        packer.byte(piece.milesPerHour);
        const bool isLimited = piece.clearanceInches != 0 || piece.weightTenths != 0;
        packer.number(std::uint64_t{piece.points - 2} * 2 + (isLimited ? 1 : 0));
        if (isLimited) {
            packer.number(piece.clearanceInches);
            packer.number(piece.weightTenths);
        }
        packer.setPlace(map.nodes[piece.from].at);
        const auto points = map.pointsOf(piece);
        for (const geo::Feet& at : points.subspan(1, points.size() - 2)) {
            packer.place(at);
        }
    }
}

bool touches(const StreetMap& map, std::uint32_t piece, std::uint32_t node) {
    return map.pieces[piece].from == node || map.pieces[piece].to == node;
}

bool isCoherent(const StreetMap& map, const TurnRule& rule) {
    return rule.from < map.pieces.size() && rule.to < map.pieces.size() &&
           touches(map, rule.from, rule.node) && touches(map, rule.to, rule.node);
}

void packRules(Packer& packer, const StreetMap& map) {
    packer.number(map.turnRules.size());
    for (const TurnRule& rule : map.turnRules) {
        require(isCoherent(map, rule));
        packer.number(rule.from);
        packer.number(rule.node);
        packer.number(rule.to);
        packer.byte(rule.only ? 1 : 0);
    }
}

void packGround(Packer& packer, const StreetMap& map) {
    packer.number(map.ground.size());
    packer.setPlace(map.centre.feet);
    for (const GroundShape& shape : map.ground) {
        require(shape.name < map.names.size());
        packer.byte(static_cast<std::uint8_t>(shape.kind));
        packer.number(shape.name);
        packer.number(shape.rings.size());
        for (const auto& ring : shape.rings) {
            require(!ring.empty());
            packer.number(ring.size());
            for (const geo::Feet& at : ring) {
                packer.place(at);
            }
        }
    }
}

void packHouses(Packer& packer, const StreetMap& map) {
    packer.number(map.houses.size());
    packer.setPlace(map.centre.feet);
    for (const HouseNumber& house : map.houses) {
        require(house.name < map.names.size());
        packer.number(house.name);
        packer.text(house.number);
        packer.place(house.at);
    }
}

void unpackCentre(Unpacker& from, StreetMap& map) {
    constexpr double Pole = 90;
    constexpr double HalfWay = 180;
    map.centre.degrees.latitude = from.real();
    map.centre.degrees.longitude = from.real();
    map.centre.feet.x = from.real();
    map.centre.feet.y = from.real();
    if (std::abs(map.centre.degrees.latitude) >= Pole ||
        std::abs(map.centre.degrees.longitude) > HalfWay) {
        refuseFile("is damaged");
    }
    from.setCentre(map.centre.feet);
    map.attribution = from.text();
}

void unpackNames(Unpacker& from, StreetMap& map) {
    map.names.resize(from.count(1));
    for (std::string& name : map.names) {
        name = from.text();
    }
    if (map.names.empty() || !map.names.front().empty()) {
        refuseFile("is damaged");
    }
}

void unpackNodes(Unpacker& from, StreetMap& map) {
    map.nodes.resize(from.count(BytesOfNode));
    from.setPlace(map.centre.feet);
    for (Node& node : map.nodes) {
        node.at = from.place();
        const unsigned marks = from.byte();
        if (marks >= MarksOfNode) {
            refuseFile("is damaged");
        }
        node.signal = (marks & Signal) != 0;
        node.turningCircle = (marks & TurningCircle) != 0;
        node.levelCrossing = (marks & LevelCrossing) != 0;
    }
}

void setMarks(Piece& piece, unsigned marks) {
    if (marks >> KindAbove >= StreetClasses) {
        refuseFile("is damaged");
    }
    piece.kind = static_cast<StreetClass>(marks >> KindAbove);
    piece.forward = (marks & Forward) != 0;
    piece.backward = (marks & Backward) != 0;
    piece.roundabout = (marks & Roundabout) != 0;
    piece.reachable = (marks & Reachable) != 0;
}

void addPoint(StreetMap& map, Piece& piece, const geo::Feet& at) {
    if (piece.points > 0) {
        const geo::Feet& last = map.points.back();
        piece.feet += static_cast<float>(std::hypot(at.x - last.x, at.y - last.y));
    }
    map.points.push_back(at);
    ++piece.points;
}

void unpackPoints(Unpacker& from, StreetMap& map, Piece& piece, std::uint64_t bends) {
    if (map.points.size() + bends + 2 > std::numeric_limits<std::uint32_t>::max()) {
        refuseFile("is damaged");
    }
    piece.firstPoint = static_cast<std::uint32_t>(map.points.size());
    addPoint(map, piece, map.nodes[piece.from].at);
    from.setPlace(map.nodes[piece.from].at);
    for (; bends > 0; --bends) {
        addPoint(map, piece, from.place());
    }
    addPoint(map, piece, map.nodes[piece.to].at);
}

void unpackPieces(Unpacker& from, StreetMap& map) {
    constexpr std::size_t MostLimit = std::size_t{std::numeric_limits<std::uint16_t>::max()} + 1;
    map.pieces.resize(from.count(BytesOfPiece));
    map.points.reserve(map.pieces.size() * 4);
    std::uint32_t last = 0;
    for (Piece& piece : map.pieces) {
        piece.from = from.near(last, map.nodes.size());
        piece.to = from.near(piece.from, map.nodes.size());
        last = piece.from;
        piece.name = from.index(map.names.size());
        setMarks(piece, from.byte());
        piece.milesPerHour = from.byte();
        const std::uint64_t bends = from.number();
        if (bends % 2 != 0) {
            piece.clearanceInches = static_cast<std::uint16_t>(from.index(MostLimit));
            piece.weightTenths = static_cast<std::uint16_t>(from.index(MostLimit));
        }
        unpackPoints(from, map, piece, bends / 2);
    }
}

void unpackRules(Unpacker& from, StreetMap& map) {
    map.turnRules.resize(from.count(BytesOfRule));
    for (TurnRule& rule : map.turnRules) {
        rule.from = from.index(map.pieces.size());
        rule.node = from.index(map.nodes.size());
        rule.to = from.index(map.pieces.size());
        rule.only = from.byte() != 0;
        if (!isCoherent(map, rule)) {
            refuseFile("is damaged");
        }
    }
}

void unpackGround(Unpacker& from, StreetMap& map) {
    map.ground.resize(from.count(BytesOfShape));
    from.setPlace(map.centre.feet);
    for (GroundShape& shape : map.ground) {
        const unsigned kind = from.byte();
        if (kind >= GroundKinds) {
            refuseFile("is damaged");
        }
        shape.kind = static_cast<GroundKind>(kind);
        shape.name = from.index(map.names.size());
        shape.rings.resize(from.count(BytesOfRing));
        for (auto& ring : shape.rings) {
            ring.resize(from.count(BytesOfPlace));
            if (ring.empty()) {
                refuseFile("is damaged");
            }
            for (geo::Feet& at : ring) {
                at = from.place();
            }
        }
    }
}

void unpackHouses(Unpacker& from, StreetMap& map) {
    map.houses.resize(from.count(BytesOfHouse));
    from.setPlace(map.centre.feet);
    for (HouseNumber& house : map.houses) {
        house.name = from.index(map.names.size());
        house.number = from.text();
        house.at = from.place();
    }
}

std::string_view bodyIn(std::string_view bytes) {
    if (!bytes.starts_with(Sign.substr(0, bytes.size())) || bytes.empty()) {
        refuseFile("is no street file");
    }
    Unpacker heading(bytes.substr(std::min(Sign.size(), bytes.size())));
    const unsigned version = heading.byte();
    if (version != Version) {
        refuseFile(
            fmt::format("is of another version ({}; this program reads {}): make it anew "
                        "with vireo-district streets",
                        version, Version));
    }
    const std::uint64_t size = heading.number();
    const std::uint64_t sum = heading.number();
    const std::string_view body = heading.rest();
    if (body.size() < size) {
        refuseFile("is cut off");
    }
    if (body.size() > size || sumOf(body) != sum) {
        refuseFile("is damaged");
    }
    return body;
}

}  // namespace

std::string bytesOf(const StreetMap& map) {
    Packer packer(map.centre.feet);
    packCentre(packer, map);
    packNames(packer, map);
    packNodes(packer, map);
    packPieces(packer, map);
    packRules(packer, map);
    packGround(packer, map);
    packHouses(packer, map);
    return framed(packer.bytes());
}

StreetMap streetMapIn(std::string_view bytes) {
    Unpacker from(bodyIn(bytes));
    StreetMap map;
    unpackCentre(from, map);
    unpackNames(from, map);
    unpackNodes(from, map);
    unpackPieces(from, map);
    unpackRules(from, map);
    unpackGround(from, map);
    unpackHouses(from, map);
    if (!from.rest().empty()) {
        refuseFile("is damaged");
    }
    return map;
}

std::string framed(std::string_view body) {
    Packer heading({});
    heading.byte(Version);
    heading.number(body.size());
    heading.number(sumOf(body));
    return std::string(Sign) + heading.bytes() + std::string(body);
}

void writeStreetFile(const std::string& path, const StreetMap& map) {
    files::Draft draft(path);
    draft.write(bytesOf(map));
    draft.replace();
}

StreetMap readStreetFile(const std::string& path) {
    const std::string bytes = files::read(path);
    try {
        return streetMapIn(bytes);
    } catch (const base::RunTimeError& error) {
        throw base::RunTimeError(error.number(),
                                 fmt::format("The street file {} {}.", path, error.what()));
    }
}

}  // namespace streets
