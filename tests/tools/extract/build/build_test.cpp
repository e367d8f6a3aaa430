#include "tools/extract/build/build.h"

#include <map>
#include <queue>
#include <random>
#include <set>
#include <sstream>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "streets/file/streetfile.h"
#include "support/temporaryfolder.h"

namespace {

using namespace tools::extract;
using streets::Piece;
using streets::StreetMap;

const geo::Centre Middle{{40, -83}, {50'000, 20'000}};

std::string id(char node) { return fmt::format("n{}", static_cast<unsigned char>(node)); }

/// A plan drawn with letters: a letter is a point, 300 feet from the next column or line.
class Town {
public:
    explicit Town(std::vector<std::string> plan) {
        const geo::Projection projection(Middle);
        for (std::size_t line = 0; line < plan.size(); ++line) {
            for (std::size_t column = 0; column < plan[line].size(); ++column) {
                if (plan[line][column] != ' ') {
                    const geo::Feet at{Middle.feet.x + 300.0 * static_cast<double>(column),
                                       Middle.feet.y - 300.0 * static_cast<double>(line)};
                    const auto degrees = projection.toDegrees(at);
                    nodes_[plan[line][column]] =
                        fmt::format("x{:.7f} y{:.7f}", degrees.longitude, degrees.latitude);
                }
            }
        }
    }

    Town& mark(char node, const std::string& tags) {
        marks_[node] = " T" + tags;
        return *this;
    }
    /// Through these points; its id is returned in the order of calls, from 1.
    Town& way(const std::string& nodes, const std::string& tags = "highway=residential") {
        ways_ += fmt::format("w{} v1 T{} N", ++ways, tags);
        std::string_view comma;
        for (const char node : nodes) {
            ways_ += fmt::format("{}{}", comma, id(node));
            comma = ",";
        }
        ways_ += '\n';
        return *this;
    }
    Town& turn(const std::string& rule, int from, const std::string& via, int to) {
        relations_ +=
            fmt::format("r{} v1 Ttype=restriction,restriction={} Mw{}@from,{}@via,w{}@to\n",
                        ++relations, rule, from, via, to);
        return *this;
    }

    [[nodiscard]] BuiltStreets built() const {
        std::string text;
        for (const auto& [letter, at] : nodes_) {
            const auto mark = marks_.find(letter);
            text += fmt::format("{} v1{} {}\n", id(letter),
                                mark == marks_.end() ? "" : mark->second, at);
        }
        const support::TemporaryFolder folder;
        const std::vector<std::filesystem::path> files{
            folder.write("town.opl", text + ways_ + relations_)};
        BuiltStreets built = streetsOf(readExtracts(files, {}, [](auto, auto) {}), Middle, {});
        // Whatever was built holds together in a file.
        built.map = streets::streetMapIn(streets::bytesOf(built.map));
        return built;
    }

private:
    int ways = 0;
    int relations = 0;
    std::map<char, std::string> nodes_;
    std::map<char, std::string> marks_;
    std::string ways_;
    std::string relations_;
};

/// The pieces that a bus drives, as "name from-to", the ends by their column and line on the plan.
std::multiset<std::string> driven(const StreetMap& map) {
    const auto at = [&](std::uint32_t node) {
        return fmt::format("{:.0f},{:.0f}", (map.nodes[node].at.x - Middle.feet.x) / 300,
                           (Middle.feet.y - map.nodes[node].at.y) / 300);
    };
    std::multiset<std::string> all;
    for (const Piece& piece : map.pieces) {
        if (piece.reachable) {
            all.insert(fmt::format("{}{}{} {}", at(piece.from), piece.backward ? "<" : "",
                                   piece.forward ? ">" : "", at(piece.to)));
        }
    }
    return all;
}

using Pieces = std::multiset<std::string>;

TEST(BuildStreets, CutsWhereStreetsMeetAndNowhereElse) {
    const auto map = Town({"ABCD", "EFGH"})
                         .way("ABCD", "highway=residential,name=N%20%Oak%20%St")
                         .way("BF")
                         .way("CG", "highway=footway")
                         .built()
                         .map;
    EXPECT_EQ(driven(map), (Pieces{"0,0<> 1,0", "1,0<> 3,0", "1,0<> 1,1"}));
    EXPECT_EQ(map.nameOf(map.pieces.front()), "North Oak Street");
    EXPECT_EQ(map.points.size(), 2 * map.pieces.size());  // straight: no point between
    const auto longest = std::ranges::max_element(map.pieces, {}, &Piece::feet);
    EXPECT_NEAR(longest->feet, 600, 0.2);
    EXPECT_EQ(map.attribution, "© OpenStreetMap contributors");
}

TEST(BuildStreets, PutsSignalsLevelCrossingsAndBarriersWhereABusMeetsThem) {
    const auto lights = Town({"ABCDEF", "  G   "})
                            .mark('B', "highway=traffic_signals")
                            .mark('F', "railway=level_crossing")
                            .mark('E', "highway=traffic_signals")
                            .way("ABCDEF")
                            .way("CG")
                            .built()
                            .map;
    // Both lights are a block off the crossing, too far to be its own.
    EXPECT_EQ(driven(lights).count("1,0<> 2,0"), 1U);
    EXPECT_EQ(driven(lights).count("2,0<> 4,0"), 1U);
    const auto gated =
        Town({"ABCD", "   F"}).mark('B', "barrier=bollard").way("ABC").way("CDF").built();
    EXPECT_EQ(driven(gated.map), (Pieces{"1,0<> 2,0", "2,0<> 3,1"}));
    EXPECT_EQ(gated.unreachable, 1U);
}

TEST(BuildStreets, KeepOnlyWhatABusGetsToAndBackFrom) {
    // A ring road driven one way, a street that only leads out of it, and one that only leads in.
    const auto map = Town({"ABX", "DC ", "E Y"})
                         .way("ABCDA", "highway=primary,oneway=yes")
                         .way("BX", "highway=residential,oneway=yes")
                         .way("EDX", "highway=residential,access=no")
                         .way("YC", "highway=residential,oneway=yes")
                         .way("DE")
                         .built();
    EXPECT_EQ(map.unreachable, 2U);
    EXPECT_EQ(driven(map.map).count("0,1<> 0,2"), 1U);
    EXPECT_EQ(driven(map.map).size(), 5U);
}

TEST(BuildStreets, TurnALoopIntoTwoPieces) {
    const auto map = Town({"ABC", " D "}).way("ABCDB").built().map;
    for (const Piece& piece : map.pieces) {
        EXPECT_NE(piece.from, piece.to);
    }
    EXPECT_EQ(driven(map).size(), 3U);
}

TEST(BuildStreets, TakeTurnRulesAtCrossingsAndWhereTheyCanOverStreets) {
    Town town({" A  B ", "CDEFGH", " I  J "});
    town.way("ADI").way("BGJ").way("CD").way("DEFG").way("GH");
    town.turn("no_left_turn", 3, id('D'), 1);      // which half of Nr. 1 is open: not taken
    town.turn("no_straight_on", 3, id('D'), 4);    // taken
    town.turn("only_straight_on", 5, id('G'), 4);  // taken
    town.turn("no_u_turn", 4, id('G'), 4);         // taken
    town.turn("no_left_turn", 3, id('Z'), 4);      // no such point
    town.turn("no_left_turn", 77, id('D'), 4);     // no such street
    town.turn("no_u_turn", 3, "w4", 5);            // other streets lead there, too: not taken
    const auto built = town.built();
    EXPECT_EQ(built.turnRules, 5U);
    EXPECT_EQ(built.turnRulesTaken, 3U);
    EXPECT_EQ(built.map.turnRules.size(), 3U);

    Town median({" A  B ", " D  G ", " I  J "});
    median.way("ADI", "highway=primary,oneway=yes").way("JGB", "highway=primary,oneway=yes");
    median.way("DG").way("IJ").way("BA");
    median.turn("no_u_turn", 1, "w3", 2);
    const auto over = median.built();
    EXPECT_EQ(over.turnRulesTaken, 1U);
    ASSERT_EQ(over.map.turnRules.size(), 1U);
    const auto& rule = over.map.turnRules.front();
    EXPECT_NEAR(over.map.nodes[rule.node].at.x, Middle.feet.x + 1200, 1);
}

/// Whether a bus gets from one piece to another, asked of the map by a plain search.
bool leads(const StreetMap& map, std::pair<std::uint32_t, bool> from, std::uint32_t to) {
    std::set seen{from};
    std::queue<std::pair<std::uint32_t, bool>> todo;
    todo.push(from);
    for (; !todo.empty(); todo.pop()) {
        const auto [at, backward] = todo.front();
        if (at == to) {
            return true;
        }
        const std::uint32_t node = backward ? map.pieces[at].from : map.pieces[at].to;
        bool isDeadEnd = true;
        const auto visit = [&](std::uint32_t next, bool back) {
            if (seen.insert({next, back}).second) {
                todo.emplace(next, back);
            }
        };
        for (std::uint32_t next = 0; next < map.pieces.size(); ++next) {
            const Piece& piece = map.pieces[next];
            for (const bool back : {false, true}) {
                const bool begins = (back ? piece.to : piece.from) == node;
                if (piece.reachable && next != at && begins &&
                    (back ? piece.backward : piece.forward)) {
                    isDeadEnd = false;
                    visit(next, back);
                }
            }
        }
        const Piece& piece = map.pieces[at];
        if (isDeadEnd && (backward ? piece.forward : piece.backward)) {
            visit(at, !backward);
        }
    }
    return false;
}

TEST(BuildStreets, LeadEverywhereOnRandomPlans) {
    std::mt19937 random(11);
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXY";
    for (int round = 0; round < 30; ++round) {
        Town town({"ABCDE", "FGHIJ", "KLMNO", "PQRST", "UVWXY"});
        for (int street = 0; street < 22; ++street) {
            const std::size_t at = random() % 25;
            const std::size_t step = random() % 2 == 0 ? 1 : 5;
            if (at + step < 25 && (step == 5 || at % 5 != 4)) {
                town.way({letters[at], letters[at + step]}, random() % 2 == 0
                                                                ? "highway=residential"
                                                                : "highway=residential,oneway=yes");
            }
        }
        const auto map = town.built().map;
        for (std::uint32_t from = 0; from < map.pieces.size(); ++from) {
            for (std::uint32_t to = 0; to < map.pieces.size(); ++to) {
                if (map.pieces[from].reachable && map.pieces[to].reachable) {
                    EXPECT_TRUE(!map.pieces[from].forward || leads(map, {from, false}, to));
                    EXPECT_TRUE(!map.pieces[from].backward || leads(map, {from, true}, to));
                }
            }
        }
    }
}

}  // namespace
