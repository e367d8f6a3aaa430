#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "runedit/map/Set_StartorEnd.h"
#include "runedit/map/maprequest.h"
#include "runedit/map/requestline.h"

namespace {

using base::Date;
using namespace runedit;

MapRun morningRun() {
    return {.run = "R 7",
            .capacity = "High",
            .overfill = 2,
            .timeToUse = "End Time",
            .vehType = "LARGE",
            .startTime = Date::of(2026, 1, 31, 7, 5, 0),
            .endTime = Date::timeOfDay(7, 45, 9),
            .bellTime = std::nullopt,
            .pickup = true};
}

TEST(MapTexts, TheRecordStatementIsWrittenToTheLetter) {
    EXPECT_EQ(startEndSql(morningRun(), 74, "YES"),
              "UPDATE StartEnd SET StartEnd.StartorEnd = 'End', StartEnd.[CalcTime] = #7:45:09 "
              "AM#, StartEnd.Run='R 7', StartEnd.VehType='LARGE', StartEnd.BellTime=#12:00:00 AM#, "
              "StartEnd.Pickup=True, StartEnd.VehCapacity=74,StartEnd.UpdateMap=YES");
}

TEST(MapTexts, ARequestLineHasEightTrimmedFields) {
    const auto request = requestFor(morningRun(), "AddRun", 74);
    const std::string line = "R 7|AddRun|End|7:05:00 AM|7:45:09 AM|12:00:00 AM|LARGE|74";
    EXPECT_EQ(lineText(request), line);
    EXPECT_EQ(requestIn(line), request);
    EXPECT_EQ(lineText({.run = "  R 7 ", .capacity = " 1 "}), "R 7|||||||1");
    EXPECT_EQ(requestIn("R1|Run"), (RequestLine{.run = "R1", .screen = "Run"}));
    EXPECT_EQ(requestIn("1|2|3|4|5|6|7|8|9").capacity, "8");
}

TEST(MapTexts, RequestsNameScriptFilesAndRun) {
    const WorkFiles files(" /opt/vireo/ ");
    EXPECT_EQ(commandText(closeStreetsRequest(files, "works.avl")),
              R"(av.Run("CloseStreets", {True, "/opt/vireo/closedstreets.avl", "works.avl"}))");
    EXPECT_EQ(commandText(showMapRequest(files, "R1")),
              R"(av.Run("ShowMap", {"/opt/vireo/runstop.avl", "/opt/vireo/arun.avl", "R1"}))");
    EXPECT_EQ(commandText(startRunRequest(files, "R1")),
              R"(av.Run("StartRun", {"/opt/vireo/runstop.avl", "/opt/vireo/arun.avl", )"
              R"("/opt/vireo/R1.dbf", "R1"}))");
    EXPECT_EQ(commandText(solveRunRequest(files, "R\"1")),
              R"(av.Run("SolveRun", {"/opt/vireo/runstop.avl", "R""1"}))");
    EXPECT_TRUE(canNameFiles("R 7") && !canNameFiles("../a") && !canNameFiles("a|b\n"));
}

TEST(MapTexts, RequestsAreReadAgainAndNothingElseIs) {
    const MapRequest request{"SolveRun", {"a \"quoted\" }, {", true, false, ""}};
    EXPECT_EQ(requestInCommand(commandText(request)), request);
    EXPECT_EQ(requestInCommand(R"( av.Run( "A",{} ) )"), (MapRequest{"A", {}}));
    for (const auto* other :
         {"", "av.Run(\"A\")", "av.Run(\"A\", {", "av.Run(\"A\", {1})", "av.Run(\"A\", {\"x}) ",
          "av.Run(\"A\", {True,})", "av.Run(\"A\", {}) and more", "AV.RUN(\"A\", {})"}) {
        EXPECT_EQ(requestInCommand(other), std::nullopt) << other;
    }
}

}  // namespace
