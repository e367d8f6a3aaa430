#pragma once

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "streets/base/streetmap.h"

namespace streets {

/// A city of crossings 400 ft apart, every piece of which has its own number as its name. Streets
/// bend, some lead one way, some end nowhere, some turns are banned and some streets are missing.
class City {
public:
    City(std::uint32_t side, std::uint32_t seed) : side_(side), random_(seed) {
        map_->names = {""};
        for (std::uint32_t i = 0; i < side * side; ++i) {
            const std::uint32_t row = i / side;
            const geo::Feet corner{400.0 * (i - row * side), 400.0 * row};
            map_->nodes.push_back({.at = {corner.x + jitter(), corner.y + jitter()},
                                   .signal = chance(8),
                                   .turningCircle = chance(9),
                                   .levelCrossing = chance(30)});
        }
        for (std::uint32_t i = 0; i < side * side; ++i) {
            layFrom(i, i % side + 1 < side, i + 1, i / side % 5 == 0);
            layFrom(i, i / side + 1 < side, i + side, i % side % 7 == 0);
        }
        banTurns();
    }

    [[nodiscard]] std::shared_ptr<const StreetMap> map() const { return map_; }
    std::uint32_t number(std::uint32_t below) {
        return static_cast<std::uint32_t>(random_()) % below;
    }
    geo::Feet place() { return {number(400 * side_) + 0.25, number(400 * side_) + 0.75}; }

private:
    bool chance(std::uint32_t oneIn) { return number(oneIn) == 0; }
    double jitter() { return number(120) - 60.0; }

    void layFrom(std::uint32_t from, bool isInside, std::uint32_t to, bool isArterial) {
        if (!isInside || (!isArterial && chance(9))) {
            return;
        }
        const geo::Feet a = map_->nodes[from].at;
        const geo::Feet b = map_->nodes[to].at;
        const geo::Feet bend{(a.x + b.x) / 2 + jitter() / 2, (a.y + b.y) / 2 + jitter() / 2};
        const auto first = static_cast<std::uint32_t>(map_->points.size());
        map_->points.insert(map_->points.end(), {a, bend, b});
        map_->names.push_back(std::to_string(map_->pieces.size()));
        const std::uint32_t oneWay = isArterial ? 9 : number(8);
        map_->pieces.push_back(
            {.from = from,
             .to = to,
             .name = static_cast<std::uint32_t>(map_->names.size() - 1),
             .firstPoint = first,
             .points = 3,
             .feet = static_cast<float>(std::hypot(bend.x - a.x, bend.y - a.y) +
                                        std::hypot(b.x - bend.x, b.y - bend.y)),
             .kind = isArterial   ? StreetClass::Primary
                     : chance(12) ? StreetClass::Service
                                  : StreetClass::Residential,
             .milesPerHour = static_cast<std::uint8_t>(chance(5) ? 15 : 0),
             .forward = oneWay != 0,
             .backward = oneWay != 1,
             .clearanceInches = static_cast<std::uint16_t>(chance(60) ? 110 : 0)});
    }

    void banTurns() {
        for (std::uint32_t i = 0; i < map_->pieces.size(); ++i) {
            const std::uint32_t other = number(static_cast<std::uint32_t>(map_->pieces.size()));
            const std::uint32_t near = i + 1 < map_->pieces.size() ? i + 1 : 0;
            for (const std::uint32_t to : {other, near}) {
                const auto& a = map_->pieces[i];
                const auto& b = map_->pieces[to];
                if (a.to == b.from && chance(3)) {
                    map_->turnRules.push_back({i, a.to, to, chance(4)});
                }
            }
        }
    }

    std::uint32_t side_;
    std::mt19937 random_;
    std::shared_ptr<StreetMap> map_ = std::make_shared<StreetMap>();
};

}  // namespace streets
