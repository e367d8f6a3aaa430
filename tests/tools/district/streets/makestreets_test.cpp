#include "tools/district/streets/makestreets.h"

#include <csignal>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "platform/geo/projection.h"
#include "streets/district/districtstreets.h"
#include "streets/district/homes.h"
#include "streets/file/streetfile.h"
#include "support/faultof.h"
#include "tools/district/check/checks.h"
#include "tools/district/make/madedistrict.h"
#include "tools/district/place/centre.h"
#include "tools/district/streets/keephomes.h"

namespace tools::district {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr geo::Degrees Somewhere{40, -83};

/// Two streets that cross at the middle of the district, a mile long each.
class MakeStreets : public testing::Test {
protected:
    MakeStreets() {
        made_.execute(data::DatabaseFile::Routing,
                      "UPDATE STOP SET XPOS = 50000 + INT_STOPID * 100, YPOS = 70000");
        made_.execute(data::DatabaseFile::Routing,
                      "UPDATE STOP SET YPOS = 70900 WHERE INT_STOPID = 1");
        middle_ = {
            static_cast<double>(made_.number("SELECT ROUND((MIN(XPOS)+MAX(XPOS))/2) FROM STOP")),
            70450};
        const geo::Projection projection({Somewhere, middle_});
        std::string text;
        int id = 0;
        for (const geo::Feet& off : {geo::Feet{0, -450},
                                     {-9000, -450},
                                     {9000, -450},
                                     {0, -9000},
                                     {0, 400},
                                     {500'000, 0}}) {
            const auto at = projection.toDegrees({middle_.x + off.x, middle_.y + off.y});
            text += fmt::format("n{} v1 x{:.7f} y{:.7f}\n", ++id, at.longitude, at.latitude);
        }
        extract_ = temporary_.write("town.opl",
                                    text +
                                        "w1 v1 Thighway=residential,name=Oak%20%St Nn2,n1,n3\n"
                                        "w2 v1 Thighway=primary,name=Elm%20%St Nn4,n1,n5,n6\n");
    }

    StreetsReport make(const std::optional<std::string>& addresses = {},
                       std::optional<geo::Degrees> centre = Somewhere) const {
        Progress progress;
        StreetsOptions options{
            .folders = made_.folders(), .extracts = {extract_}, .centre = centre};
        if (addresses) {
            options.addresses = *addresses;
        }
        return makeStreets(options, progress);
    }
    [[nodiscard]] std::string refusal(std::optional<geo::Degrees> centre = Somewhere) const {
        return support::faultOf([&] { return make({}, centre); });
    }
    [[nodiscard]] std::shared_ptr<const streets::DistrictStreets> open() const {
        return streets::openStreets({.settings = made_.folders().settings().string(),
                                     .folder = made_.folders().data().string()});
    }

    MadeDistrict made_{4};
    support::TemporaryFolder temporary_;
    geo::Feet middle_;
    std::string extract_;
};

}  // namespace

TEST_F(MakeStreets, WritesFileCentreAndSettingOnThePlaneOfTheStops) {
    EXPECT_TRUE(open()->grid());
    const StreetsReport report = make();
    const auto streets = open();
    ASSERT_NE(streets->map(), nullptr);
    EXPECT_EQ(streets->map()->pieces.size(), 4U);  // not to the point far away
    EXPECT_NEAR(report.miles, (9000 + 9000 + 8550 + 850) / 5280.0, 0.01);
    const auto halts =
        streets->network().haltsAt({middle_.x - 3000, 70030}, streets::DoorSide::Either);
    ASSERT_FALSE(halts.empty());
    EXPECT_NEAR(halts[0].offStreet, 30, 0.5);
    ASSERT_EQ(report.farStops.size(), 1U);
    EXPECT_NEAR(report.farStops[0].feet.value(), 900, 1);
    EXPECT_THAT(report.text(), HasSubstr("1 of 31 stops lie farther than 300 feet"));
    EXPECT_EQ(keptCentre(made_.folders())->feet.x, middle_.x);
    // Now that the district keeps it, nobody need say it again, nor may say another one.
    EXPECT_EQ(make({}, {}).pieces, 4U);
    EXPECT_THAT(refusal(geo::Degrees{41, -83}), HasSubstr("keeps the centre"));
}

TEST_F(MakeStreets, AreLookedOverWithTheirClosedStreetsAndTheCentre) {
    make();
    const auto findings = [&] {
        Progress progress;
        return checkDistrict(made_.folders(), progress).text();
    };
    EXPECT_THAT(findings(), HasSubstr(": no fault."));
    made_.execute(data::DatabaseFile::Routing,
                  "UPDATE District SET GIS_CLOSEDSTREETFILENAME = 'closed.txt'");
    EXPECT_THAT(findings(), HasSubstr("Closed streets that are driven nevertheless: 1"));
    writePrivateFile(made_.folders().data() / "closed.txt", "Oak Street\n");
    EXPECT_THAT(findings(), HasSubstr(": no fault."));
    keepSetting(made_.folders(), "Centre", "41,-83,50000,70450");
    EXPECT_THAT(findings(), HasSubstr("Streets that cannot be driven on: 1, such as The street"));
}

TEST_F(MakeStreets, KeepsTheAddressTableForTheNextTime) {
    const auto table = temporary_.write(
        "addresses.csv",
        fmt::format("Number;Street;Y;X\n12;OAK ST;70010;{0}\n14 A;Oak Street;70010;{0}\n"
                    ";Oak St;1;1\n16;Oak St;far;1\n",
                    middle_.x));
    const auto report = make(table);
    EXPECT_EQ(report.houses, 2U);
    EXPECT_THAT(report.addressFaults,
                ElementsAre("Line 4 names no house of a street.", "Line 5 names no place."));
    EXPECT_EQ(make().houses, 2U);
    const auto degrees =
        temporary_.write("places.csv", "number,street,latitude,longitude\n7,Elm St,40,-83\n");
    EXPECT_EQ(make(degrees).houses, 1U);
    EXPECT_NEAR(open()->map()->houses[0].at.y, middle_.y, 0.1);
    EXPECT_THROW(make(temporary_.write("wrong.csv", "a,b\n1,2\n")), base::RunTimeError);
    EXPECT_EQ(make().houses, 1U);
}

TEST_F(MakeStreets, PlacesHomesWhereTheirVeryHouseIsKnown) {
    make(temporary_.write("addresses.csv",
                          fmt::format("number,street,x,y\n12,Oak St,{0},70010\n", middle_.x)));
    const auto keep = [&](const std::string& rows) {
        Progress progress;
        return keepHomes(made_.folders(), temporary_.write("given.csv", rows), progress);
    };
    const auto report = keep(
        "student,address,x,y\n7,\"12 oak st, Town\",,\n8,12 Oakland St,,\n"
        ",\"1,5\",500,600\n9,,far,1\n");
    EXPECT_EQ(report.byAddress, 1U);
    EXPECT_THAT(report.unplaced, ElementsAre("Line 3: 12 Oakland St"));
    EXPECT_THAT(report.faults, ElementsAre("Line 5: It names no place."));
    const auto kept = [&] { return streets::readHomes(made_.folders().files().string()); };
    ASSERT_EQ(kept().size(), 2U);
    EXPECT_EQ(kept()[0].student, "7");
    EXPECT_NEAR(kept()[0].at.y, 70010, 0.1);
    EXPECT_EQ(kept()[1].address, "1,5");
    EXPECT_THROW(keep("student,address\n7,1 Nowhere St\n"), base::RunTimeError);
    EXPECT_THROW(keep("student\n7\n"), base::RunTimeError);
    EXPECT_EQ(kept().size(), 2U);
    writePrivateFile(made_.folders().homes(), "student,x,y,address\n1,here,2,\n");
    Progress progress;
    EXPECT_THAT(checkDistrict(made_.folders(), progress).text(),
                HasSubstr("Homes that no map can show: 1"));
}

TEST_F(MakeStreets, LeavesAllAsItWasWhenRefusedOrStopped) {
    make();
    const auto before = streets::bytesOf(*open()->map());
    const auto settings = support::contentsOf(made_.folders().settings().string());
    extract_ = temporary_.write("far.opl", "n1 v1 x10 y10\n");
    EXPECT_THAT(refusal(), HasSubstr("of another region: they hold 10.0000,10.0000"));
    extract_ = temporary_.write("bare.opl", "n1 v1 x-83 y40\n");
    EXPECT_THAT(refusal(), HasSubstr("no streets that buses drive"));
    extract_ = temporary_.write("none.opl", "\n");
    EXPECT_THAT(refusal(), HasSubstr("hold no places"));
    {
        Progress progress;
        std::raise(SIGINT);
        EXPECT_THROW(makeStreets({.folders = made_.folders(), .extracts = {extract_}}, progress),
                     Interrupted);
    }
    EXPECT_EQ(streets::bytesOf(*open()->map()), before);
    EXPECT_EQ(support::contentsOf(made_.folders().settings().string()), settings);
}

}  // namespace tools::district
