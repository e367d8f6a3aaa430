#pragma once

#include <cmath>
#include <memory>
#include <random>
#include <string>

#include <fmt/format.h>

#include "streets/base/streetmap.h"

namespace support {

/// A city of `blocks` times `blocks` bent blocks around the plane's zero: streets from east to
/// west, avenues from south to north, each fourth one broader, each fifth driven one way, and a
/// park.
inline std::shared_ptr<const streets::StreetMap> inventedCity(int blocks, unsigned seed = 1) {
    auto city = std::make_shared<streets::StreetMap>();
    city->attribution = "© Somebody";
    city->names = {"", "Long Park"};
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> bend(-60, 60);
    const int side = blocks + 1;
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            city->nodes.push_back({{(column - blocks / 2.0) * 500 + bend(random),
                                    (row - blocks / 2.0) * 400 + bend(random)}});
        }
    }
    const auto connect = [&](int from, int to, int line) {
        const geo::Feet a = city->nodes[static_cast<std::size_t>(from)].at;
        const geo::Feet b = city->nodes[static_cast<std::size_t>(to)].at;
        const geo::Feet middle{(a.x + b.x) / 2 + bend(random) / 3,
                               (a.y + b.y) / 2 + bend(random) / 3};
        streets::Piece piece{.from = static_cast<std::uint32_t>(from),
                             .to = static_cast<std::uint32_t>(to),
                             .name = static_cast<std::uint32_t>(city->names.size() - 1),
                             .firstPoint = static_cast<std::uint32_t>(city->points.size()),
                             .points = 3,
                             .kind = line % 4 == 0 ? streets::StreetClass::Secondary
                                                   : streets::StreetClass::Residential,
                             .forward = line % 5 != 2};
        city->points.insert(city->points.end(), {a, middle, b});
        piece.feet = static_cast<float>(std::hypot(middle.x - a.x, middle.y - a.y) +
                                        std::hypot(b.x - middle.x, b.y - middle.y));
        city->pieces.push_back(piece);
    };
    for (int line = 0; line < side; ++line) {
        city->names.push_back(fmt::format(
            "East {} Street", std::string(1, static_cast<char>('A' + line % 26)) + "lder"));
        for (int i = 0; i < blocks; ++i) {
            connect(line * side + i, line * side + i + 1, line);
        }
        city->names.push_back(fmt::format("{}th Avenue", line + 4));
        for (int i = 0; i < blocks; ++i) {
            connect(i * side + line, (i + 1) * side + line, line);
        }
    }
    city->ground.push_back({.kind = streets::GroundKind::Park,
                            .name = 1,
                            .rings = {{{-900, -700}, {900, -700}, {900, -100}, {-900, -100}}}});
    return city;
}

}  // namespace support
