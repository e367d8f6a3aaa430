#include "tools/district/import/map/mapfile.h"

#include <sstream>

#include <gmock/gmock.h>

#include "support/faultof.h"
#include "tools/district/import/map/binding.h"

namespace tools::district {

namespace {

std::string refusalOf(const std::string& map) {
    return support::faultOf([&] { return readMap(map); });
}

/// What the fields get of the second line of a file, by the map and its first line.
std::string cells(const std::string& file, const std::string& map,
                  const std::vector<std::string>& fields) {
    const auto sections = readMap(map);
    std::istringstream stream(file);
    CsvReader reader(stream, {});
    reader.next();
    Binding binding(*sections.front().kind, &reader.record(), &sections.front());
    reader.next();
    std::string all;
    for (const std::string& field : fields) {
        const BoundCell cell = binding.cell(binding.placeOf(field), reader.record());
        all += (all.empty() ? "" : "|") + (cell.isNull ? "Null" : std::string(cell.text));
    }
    return all;
}

}  // namespace

TEST(MapFile, BringsEachColumnToItsField) {
    constexpr auto Map = R"(# what our student system sends
[Export.csv as students]
student = #2
last_name = Who before ", "
first_name = Who after ", "
school: Oak = OAK
school: * = OTHER
state = "KS"
city: "none = nowhere" =
)";
    EXPECT_EQ(cells("Who,n,Enrolled School,CITY\n\"Ng, Ann\",17, oak ,none = nowhere\n", Map,
                    {"student", "last_name", "first_name", "school", "state", "city"}),
              "17|Ng|Ann|OAK|KS|Null");
    EXPECT_EQ(cells("Who,n,Enrolled School\nNg,17,Elm\n", Map, {"first_name", "school"}),
              "Null|OTHER");
    EXPECT_EQ(cells("stop,Easting,y\nS1,100,x\n",
                    "[a.csv as stops]\nx = Easting\nx in metres\ny in km", {"x", "y"}),
              "328.0839895|x");
}

TEST(MapFile, SaysWhichLineIsWrong) {
    using testing::HasSubstr;
    EXPECT_THAT(refusalOf("student = x"), HasSubstr("Line 1 of the map file: a section"));
    EXPECT_THAT(refusalOf("\n[x.csv as pupils]"), HasSubstr("Line 2 of the map file: \"pupils\""));
    EXPECT_THAT(refusalOf("[students.csv"), HasSubstr("not closed"));
    for (const char* line : {"name = x", "student =", "student = #0", "student in stones", "what",
                             "student: A", "separator = ab", "charset = latin", "\xFF"}) {
        EXPECT_THAT(refusalOf(std::string("[students.csv]\n") + line), testing::StartsWith("Line "))
            << line;
    }
}

TEST(Binding, FindsColumnsByTheNamesThatOtherSystemsUse) {
    std::istringstream file("sourcedId,Given Name,familyName,School_id,HOME-PHONE,Grade,Adress\n");
    CsvReader reader(file, {});
    reader.next();
    const FileKind& kind = *kindNamed("Students");
    const Binding binding(kind, &reader.record(), nullptr);
    EXPECT_THAT(binding.missing(), testing::IsEmpty());
    EXPECT_THAT(binding.unused(), testing::ElementsAre("Grade", "Adress"));
    EXPECT_EQ(binding.sourceName("first_name"), "Given Name");
    EXPECT_EQ(binding.sourceName("phone"), "HOME-PHONE");
    EXPECT_EQ(&likeliestKind(reader.record()), &kind);
    // A sketch is a map, and says the same.
    const auto sketch = sketchMap("x.csv", kind, reader.record());
    EXPECT_EQ(readMap(sketch).front().fields.at("last_name").column, "familyName");
    EXPECT_THAT(sketch, testing::AllOf(testing::HasSubstr("\naddress = Adress\n"),
                                       testing::HasSubstr("\n# left out: Grade\n")));
}

}  // namespace tools::district
