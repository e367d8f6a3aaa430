#include "map/shown/mappedrun.h"

#include <algorithm>

#include <fmt/format.h>

#include "map/run/mapsearch.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/runbuilder.h"

namespace map {

namespace {

using testing::ElementsAre;

void fillMapped(const support::TestDistrict& district) {
    support::fillSmall(district);
    const auto at = [](int x, const char* address) {
        return support::TestDistrict::Row{{"XPOS", x}, {"YPOS", 5}, {"ADDR1", address}};
    };
    support::RunBuilder("MAP-AM")
        .school("OAK")
        .bell("8:00")
        .with("PICKUP", true)
        .with("INT_ROUTEID", 1)
        .with("Capacity", "High")
        .with("DESCRIPTION", "Oak from Elm")
        .stop("M1", {.students = 4, .at = "7:10", .ofStop = at(10, "1st at Elm")})
        .stop("M2", {.students = 9, .type = "DIRECTIONAL", .ofStop = at(20, "")})
        .stop("M3", {.drive = 2.5, .students = 1, .ofStop = {{"DESCRIPTION", "100%_Sure"}}})
        .stop("M4", {.type = "SCHOOL", .ofStop = {{"DESCRIPTION", "Oak"}, {"XPOS", 30}}})
        .into(district);
    support::RunBuilder("O'MAP").school("OAK").stop("M5").into(district);
    district.sql(data::DatabaseFile::Routing, "UPDATE STOP SET XPOS=7, YPOS=8 WHERE INT_STOPID=4;");
    district.sql(data::DatabaseFile::Routing, "UPDATE ROUTE SET GARAGE_STOPID=4;");
    district.sql(data::DatabaseFile::Routing,
                 "INSERT INTO RUNWARNING(RUN, WARNINGTYPE, WARNINGTEXT) VALUES ('MAP-AM', 'Seats', "
                 "'Too many')");
}

class MappedRuns : public support::DistrictSession {
protected:
    MappedRuns() : DistrictSession(fillMapped) {}
    ado::Connection& routing = *startup::gcnRouting;
};

TEST_F(MappedRuns, AreReadWithAllThatTheMapSays) {
    const auto run = readMappedRun(routing, "map-am");
    ASSERT_TRUE(run);
    EXPECT_EQ(headingOf(*run), "Run MAP-AM: Oak from Elm");
    EXPECT_EQ(subjectOf(*run), "Oak School · AM · Bus B7 · bell 08:00 AM");
    EXPECT_EQ(run->seats, 72);
    EXPECT_EQ(run->garage.value().name, "Yard");
    EXPECT_EQ(run->garage.value().at.x, 7);
    EXPECT_EQ(run->findings.at(0).text, "Too many");
    ASSERT_EQ(run->stops.size(), 4);
    EXPECT_EQ(spokenStop(*run, 0), "Stop 1 of 2, 1st at Elm, 07:10 AM, 4 board");
    EXPECT_EQ(spokenStop(*run, 2), "Stop 2 of 2, 100%_Sure, 1 boards, not on the map");
    EXPECT_EQ(spokenStop(*run, 3), "Oak");
    // Who stands at a turn point is not on the bus.
    EXPECT_EQ(run->stops.back().onTheBus, 5);
    EXPECT_EQ(run->passengers(), 5);

    byOthers("UPDATE RUN SET PICKUP=0");
    EXPECT_EQ(readMappedRun(routing, "MAP-AM")->stops.front().onTheBus, 1);
    EXPECT_FALSE(readMappedRun(routing, "NONE"));
}

TEST_F(MappedRuns, OfASchoolAndOfARouteStandTogether) {
    const auto ids = [](const std::vector<MappedRun>& runs) {
        std::vector<std::string> all(runs.size());
        std::ranges::transform(runs, all.begin(), [](const MappedRun& run) {
            return fmt::format("{}:{}", run.id, run.stops.size());
        });
        return all;
    };
    byOthers("UPDATE RUN SET TRIPTYPE='AM'");
    EXPECT_THAT(ids(readRunsOfSchool(routing, readMappedRun(routing, "O'MAP").value())),
                ElementsAre("101-AM:2", "201-PM:2", "MAP-AM:4", "O'MAP:1"));
    EXPECT_THAT(ids(readRunsOfRoute(routing, 1)), ElementsAre("MAP-AM:4", "101-AM:2"));
    EXPECT_TRUE(readRunsOfRoute(routing, 0).empty());
}

TEST_F(MappedRuns, AreFoundByWhatIsTyped) {
    const auto found = [&](const char* text) {
        std::vector<std::string> keys;
        for (const auto& hit : searchMap(routing, text)) {
            keys.push_back(hit.key);
        }
        return keys;
    };
    EXPECT_THAT(found(" elm "), ElementsAre("MAP-AM", "M1"));
    EXPECT_THAT(found("o'"), ElementsAre("O'MAP"));
    EXPECT_THAT(found("100%"), ElementsAre("102-AM"));
    EXPECT_THAT(found("%"), ElementsAre("102-AM"));
    EXPECT_TRUE(found(" ").empty());
    EXPECT_EQ(readAllStops(routing).size(), 4);
}

}  // namespace

}  // namespace map
