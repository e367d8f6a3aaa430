#include "map/small/runmap.h"

#include <fstream>
#include <future>

#include <sys/stat.h>

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
        settings_ = folder_.write("route.ini", "[District]\nStreets=" + streets + "\n");
        return mapAgain(run);
    }
    map::RunMap mapAgain(const std::string& run) {
        return maps_.mapOf(*startup::gcnRouting, run, {settings_, folder_.path()});
    }

    support::TemporaryFolder folder_;
    std::promise<void> opened_;

private:
    std::string settings_;
    map::RunMaps maps_{[this] { opened_.set_value(); }};
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

TEST_F(SmallRunMaps, WaitForNoStreetsThatDoNotCome) {
    const auto hanging = folder_.path() + "/hanging.streets";
    ASSERT_EQ(mkfifo(hanging.c_str(), 0600), 0);
    EXPECT_TRUE(mapOf("PLACED", hanging).isOpening);
    EXPECT_TRUE(mapAgain("PLACED").isOpening);
    std::ofstream(hanging) << "nothing of a street";
    opened_.get_future().wait();
    EXPECT_THAT(mapAgain("PLACED").reason, testing::HasSubstr("hanging.streets"));
    EXPECT_EQ(mapOf("PLACED").reason, "");
}

}  // namespace
