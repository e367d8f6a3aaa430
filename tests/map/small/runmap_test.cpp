#include "map/small/runmap.h"

#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/runbuilder.h"
#include "support/temporaryfolder.h"

namespace {

using support::TestDistrict;

void fillRuns(const TestDistrict& district) {
    support::fillSmall(district);
    const auto at = [](int x, int y) { return TestDistrict::Row{{"XPOS", x}, {"YPOS", y}}; };
    support::RunBuilder("PLACED")
        .school("OAK")
        .with("PICKUP", true)
        .stop("P1", {.ofStop = at(100, 200)})
        .stop("P2", {.ofStop = at(5000, 900)})
        .stop("P3", {})
        .stop("P4", {.type = "SCHOOL", .ofStop = at(9000, 7000)})
        .into(district);
    support::RunBuilder("NOWHERE").school("OAK").stop("N1", {}).into(district);
}

class SmallRunMaps : public support::DistrictSession {
protected:
    SmallRunMaps() : DistrictSession(fillRuns) {}

    map::RunMap mapOf(const std::string& run, const std::string& streets = "grid 1320 29.3333") {
        const auto settings = folder_.write("route.ini", "[District]\nStreets=" + streets + "\n");
        return maps_.mapOf(*startup::gcnRouting, run, {settings, folder_.path()});
    }

private:
    support::TemporaryFolder folder_;
    map::RunMaps maps_;
};

TEST_F(SmallRunMaps, ShowWhatHasAPlaceAndSayWhatHasNone) {
    const auto shown = mapOf("placed");
    EXPECT_EQ(shown.reason, "");
    ASSERT_EQ(shown.scene.runs.size(), 1U);
    EXPECT_EQ(shown.scene.runs[0].stops.size(), 2U);
    EXPECT_THAT(shown.scene.places, testing::Contains(testing::Field(&map::DrawnPlace::name, "")));
    EXPECT_THAT(shown.told, testing::HasSubstr("1 without a place"));
    EXPECT_THAT(mapOf("NOWHERE").reason, testing::HasSubstr("place on the map"));
    EXPECT_THAT(mapOf("GONE").reason, testing::HasSubstr("not there"));
}

TEST_F(SmallRunMaps, SayWhyStreetsCannotBeReadAndReadThemWhenTheyCan) {
    EXPECT_THAT(mapOf("PLACED", "none.streets").reason, testing::HasSubstr("none.streets"));
    EXPECT_EQ(mapOf("PLACED").reason, "");
}

}  // namespace
