#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <osmium/io/opl_input.hpp>
#include <osmium/io/pbf_output.hpp>
#include <osmium/io/reader.hpp>
#include <osmium/io/writer.hpp>

#include "support/faultof.h"
#include "support/temporaryfolder.h"
#include "tools/extract/read/extract.h"

namespace {

namespace fs = std::filesystem;
using namespace tools::extract;
using testing::ElementsAre;
using testing::HasSubstr;

// A crossing, a light before it, a pond of two lines, a house, and somebody else's power line.
constexpr const char* Town = R"(n1 v1 x-83.000 y39.960
n2 v1 Thighway=traffic_signals x-83.001 y39.961
n3 v1 x-83.002 y39.962
n4 v1 x-83.003 y39.963
n5 v1 Taddr:housenumber=12,addr:street=N%20%High%20%St x-83.004 y39.964
w10 v1 Thighway=primary,name=N%20%High%20%St Nn1,n2,n3
w11 v1 Thighway=residential Nn3,n4,n99
w12 v1 Nn1,n4
w13 v1 Nn4,n3,n1
w14 v1 Tpower=line Nn97,n98
w15 v1 Tbuilding=yes,addr:housenumber=7,addr:street=Elm%20%St Nn1,n2,n3,n1
r1 v1 Ttype=restriction,restriction=no_left_turn Mw10@from,n3@via,w11@to
r2 v1 Ttype=multipolygon,natural=water,name=Pond Mw12@outer,w13@outer
r3 v1 Ttype=route,ref=2 Mw10@
)";

class ReadExtract : public testing::Test {
protected:
    [[nodiscard]] fs::path write(const std::string& name, const std::string& text) const {
        return folder_.write(name, text);
    }
    /// The same as the compact format in which extracts are passed on.
    [[nodiscard]] fs::path writePbf(const std::string& name, const std::string& text) const {
        fs::path path = folder_.path() + name;
        osmium::io::Reader reader{osmium::io::File{write(name + ".opl", text).string(), "opl"}};
        osmium::io::Writer writer{osmium::io::File{path.string(), "pbf"},
                                  osmium::io::overwrite::allow};
        while (auto buffer = reader.read()) {
            writer(std::move(buffer));
        }
        writer.close();
        return path;
    }
    [[nodiscard]] static Extract read(std::vector<fs::path> files,
                                      std::optional<DegreeBox> box = {}) {
        return readExtracts(files, box, [](auto, auto) {});
    }
    [[nodiscard]] static std::string refusal(const fs::path& file) {
        return support::faultOf([&] { return read({file}); });
    }

private:
    support::TemporaryFolder folder_;
};

TEST_F(ReadExtract, KeepsWhatStreetsAreMadeOf) {
    for (const fs::path& file : {write("town.opl", Town), writePbf("town.osm.pbf", Town)}) {
        const Extract town = read({file});
        EXPECT_EQ(town.nodes.size(), 5U);
        ASSERT_EQ(town.marks.size(), 1U);
        EXPECT_EQ(town.nodes[town.marks[0].first].id, 2);
        ASSERT_EQ(town.streets.size(), 2U);
        EXPECT_EQ(town.streets[0].name, "North High Street");
        ASSERT_EQ(town.ways.size(), 5U);  // not the power line, which has no point here
        EXPECT_THAT(town.ways[1].nodes, ElementsAre(2, 3, ExtractWay::Missing));
        EXPECT_FALSE(town.ways[1].isWhole);
        ASSERT_EQ(town.turns.size(), 1U);
        EXPECT_THAT(town.turns[0].from, ElementsAre(10));
        EXPECT_EQ(town.nodes.at(town.turns[0].viaNode).id, 3);
        ASSERT_EQ(town.areas.size(), 1U);
        EXPECT_EQ(town.areas[0].name, "Pond");
        EXPECT_THAT(town.areas[0].ways, ElementsAre(12, 13));
        ASSERT_EQ(town.houses.size(), 2U);
        EXPECT_EQ(town.houses[1].traits.street, "Elm Street");
        EXPECT_NEAR(town.covered->high.latitude, 39.964, 1e-7);
    }
}

TEST_F(ReadExtract, JoinsFilesThatOverlapAndLeavesOutWhatIsFarAway) {
    const auto part = write("part.opl", R"(n3 v1 x-83.002 y39.962
n4 v1 x-83.003 y39.963
n99 v1 x-83.1 y40.2
w11 v1 Thighway=residential Nn3,n4
w20 v1 Thighway=residential Nn4,n99
r2 v1 Ttype=multipolygon,natural=water Mw12@outer,w13@outer
)");
    for (const auto& files :
         {std::vector{write("town.opl", Town), part}, std::vector{part, write("town.opl", Town)}}) {
        const Extract both = read(files);
        EXPECT_EQ(both.nodes.size(), 6U);
        EXPECT_EQ(both.areas.size(), 1U);
        ASSERT_EQ(both.ways.size(), 6U);
        EXPECT_EQ(both.ways[1].nodes.size(), 3U);  // the longer one, whose missing point is here
        EXPECT_TRUE(both.ways[1].isWhole);
    }
    const Extract near =
        read({write("town.opl", Town), part}, DegreeBox{{39.9, -83.0015}, {40, -80}});
    EXPECT_EQ(near.nodes.size(), 2U);
    EXPECT_NEAR(near.covered->low.longitude, -83.1, 1e-7);
    EXPECT_EQ(read({part}, DegreeBox{{10, 10}, {20, 20}}).ways.size(), 0U);
}

TEST_F(ReadExtract, RefusesWithTheFileAndTheReason) {
    const fs::path whole = writePbf("town.osm.pbf", Town);
    std::ifstream file(whole, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    for (std::size_t size = 1; size < bytes.size(); size += 3) {
        const auto cut = write("cut.osm.pbf", bytes.substr(0, size));
        const std::string why = refusal(cut);
        // Between two blocks nothing tells that more was there.
        EXPECT_TRUE(why.empty() ? read({cut}).turns.empty()
                                : why.find("cut.osm.pbf is cut off or damaged") != why.npos)
            << size << why;
    }
    std::mt19937 random(3);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = bytes;
        damaged[random() % damaged.size()] = static_cast<char>(random());
        static_cast<void>(refusal(write("damaged.osm.pbf", damaged)));  // a message or streets
    }
    EXPECT_THAT(refusal(write("empty.osm.pbf", "")), HasSubstr("is empty"));
    EXPECT_THAT(refusal(write("page.osm.pbf", "<html>not found</html>")), HasSubstr("damaged"));
    EXPECT_THAT(refusal(write("town.zip", "PK")), HasSubstr("does not end in .osm.pbf"));
    EXPECT_THAT(refusal("/nowhere/town.osm.pbf"), HasSubstr("There is no file /nowhere"));
    EXPECT_THAT(refusal(write("unsorted.opl", "w1 v1 Nn1,n2\nn1 v1 x1 y1\n")),
                HasSubstr("is not sorted"));
    EXPECT_THAT(refusal(write("bad.opl", "n1 v1 x999\n")), HasSubstr("damaged"));
}

TEST_F(ReadExtract, IsGivenUpBetweenBlocks) {
    struct GivenUp {};
    const std::vector<fs::path> files{writePbf("town.osm.pbf", Town)};
    EXPECT_THROW(static_cast<void>(readExtracts(files, {}, [](auto, auto) { throw GivenUp{}; })),
                 GivenUp);
}

}  // namespace
