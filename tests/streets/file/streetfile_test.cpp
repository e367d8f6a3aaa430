#include "streets/file/streetfile.h"

#include <array>
#include <bit>
#include <cmath>
#include <random>
#include <tuple>
#include <utility>

#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "platform/files/files.h"
#include "support/faultof.h"
#include "support/temporaryfolder.h"

namespace {

using namespace streets;
using support::faultOf;
using testing::HasSubstr;

/// Any map that holds together: random streets among random corners.
StreetMap anyMap(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&](int limit) {
        return std::uniform_int_distribution(0, limit - 1)(random);
    };
    const auto place = [&] {
        return geo::Feet{below(4'000'000) / 16.0 - 9e4, below(4'000'000) / 16.0 + 5e5};
    };
    StreetMap map;
    map.centre = {{39.96, -83.0}, {1000.25, 500'000.5}};
    map.attribution = "© Somebody";
    map.names = {"", "North Broadway", "Rue de l'Église"};
    const auto name = [&] { return static_cast<std::uint32_t>(below(3)); };
    for (int i = 0; i < 30; ++i) {
        map.nodes.push_back({place(), below(2) == 0, below(2) == 0, below(2) == 0});
    }
    for (int i = 0; i < 60; ++i) {
        Piece piece{.from = static_cast<std::uint32_t>(below(30)),
                    .to = static_cast<std::uint32_t>(below(30)),
                    .name = name(),
                    .firstPoint = static_cast<std::uint32_t>(map.points.size()),
                    .points = static_cast<std::uint32_t>(2 + below(5)),
                    .kind = static_cast<StreetClass>(below(StreetClasses)),
                    .milesPerHour = static_cast<std::uint8_t>(below(80)),
                    .forward = below(2) == 0,
                    .backward = below(2) == 0,
                    .roundabout = below(2) == 0,
                    .reachable = below(2) == 0,
                    .clearanceInches = static_cast<std::uint16_t>(below(2) * 150),
                    .weightTenths = static_cast<std::uint16_t>(below(2) * 65535)};
        map.points.push_back(map.nodes[piece.from].at);
        for (std::uint32_t bend = 2; bend < piece.points; ++bend) {
            map.points.push_back(place());
        }
        map.points.push_back(map.nodes[piece.to].at);
        map.turnRules.push_back({static_cast<std::uint32_t>(i), piece.to,
                                 static_cast<std::uint32_t>(i), below(2) == 0});
        map.pieces.push_back(piece);
        map.ground.push_back(
            {static_cast<GroundKind>(below(8)), name(), {{place()}, {place(), place()}}});
        map.houses.push_back({name(), std::to_string(below(3000)), place()});
    }
    return map;
}

std::string refusalOf(const std::string& bytes) {
    return faultOf([&] { return streetMapIn(bytes); });
}

TEST(StreetFile, HoldsAMapAsItWas) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const StreetMap map = anyMap(seed);
        const std::string bytes = bytesOf(map);
        const StreetMap read = streetMapIn(bytes);
        EXPECT_EQ(bytesOf(read), bytes);
        ASSERT_EQ(read.points.size(), map.points.size());
        for (std::size_t i = 0; i < map.pieces.size(); ++i) {
            const auto& [was, is] = std::pair{map.pieces[i], read.pieces[i]};
            EXPECT_EQ(std::tie(was.from, was.to, was.name, was.firstPoint, was.points, was.kind,
                               was.milesPerHour, was.clearanceInches, was.weightTenths),
                      std::tie(is.from, is.to, is.name, is.firstPoint, is.points, is.kind,
                               is.milesPerHour, is.clearanceInches, is.weightTenths));
            EXPECT_EQ(std::tie(was.forward, was.backward, was.roundabout, was.reachable),
                      std::tie(is.forward, is.backward, is.roundabout, is.reachable));
            double feet = 0;
            for (std::size_t at = 1; at < was.points; ++at) {
                const auto points = map.pointsOf(was).subspan(at - 1, 2);
                feet += std::hypot(points[1].x - points[0].x, points[1].y - points[0].y);
            }
            EXPECT_NEAR(is.feet, feet, feet * 1e-5);
        }
        for (std::size_t i = 0; i < map.points.size(); ++i) {
            EXPECT_NEAR(read.points[i].x, map.points[i].x, 1.0 / 32);
            EXPECT_NEAR(read.points[i].y, map.points[i].y, 1.0 / 32);
        }
        EXPECT_EQ(read.houses.back().number, map.houses.back().number);
        EXPECT_EQ(read.ground.back().rings[1].size(), 2U);
        EXPECT_EQ(read.names, map.names);
        EXPECT_EQ(read.attribution, map.attribution);
    }
}

TEST(StreetFile, IsRefusedWithAReasonWhenCutDamagedNewerOrForeign) {
    const std::string bytes = bytesOf(anyMap(1));
    for (std::size_t size = 0; size < bytes.size(); size += 7) {
        EXPECT_NE(refusalOf(bytes.substr(0, size)), "") << size;
    }
    EXPECT_THAT(refusalOf(bytes.substr(0, bytes.size() - 1)), HasSubstr("is cut off"));
    std::string flipped = bytes;
    flipped[flipped.size() / 2] ^= 1;
    EXPECT_THAT(refusalOf(flipped), HasSubstr("is damaged"));
    std::string newer = bytes;
    newer[bytes.find('\n') + 1] = 9;
    EXPECT_THAT(refusalOf(newer), HasSubstr("another version (9"));
    EXPECT_THAT(refusalOf("SQLite format 3"), HasSubstr("is no street file"));
}

TEST(StreetFile, WithARightSumAndWrongContentsHarmsNobody) {
    const std::string bytes = bytesOf(anyMap(2));
    const auto first = std::bit_cast<std::array<char, sizeof(double)>>(39.96);
    const std::string body = bytes.substr(bytes.find(std::string(first.data(), first.size())));
    ASSERT_EQ(framed(body), bytes);
    std::mt19937 random(7);
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string changed = body;
        for (int i = 0; i < 3; ++i) {
            changed[random() % changed.size()] = static_cast<char>(random());
        }
        try {
            const StreetMap map = streetMapIn(framed(changed));
            EXPECT_EQ(bytesOf(streetMapIn(bytesOf(map))), bytesOf(map));
        } catch (const base::RunTimeError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 100);
}

TEST(StreetFile, ReplacesTheOldOneWhenItIsWhole) {
    const support::TemporaryFolder folder;
    const std::string path = folder.path() + "town.streets";
    writeStreetFile(path, anyMap(1));
    StreetMap broken = anyMap(2);
    broken.pieces[5].to = 4711;
    EXPECT_THROW(writeStreetFile(path, broken), base::RunTimeError);
    EXPECT_EQ(bytesOf(readStreetFile(path)), bytesOf(anyMap(1)));
    writeStreetFile(path, anyMap(3));
    EXPECT_EQ(bytesOf(readStreetFile(path)), bytesOf(anyMap(3)));
    files::write(path, "");
    EXPECT_THAT(faultOf([&] { return readStreetFile(path); }),
                HasSubstr(path + " is no street file"));
}

}  // namespace
