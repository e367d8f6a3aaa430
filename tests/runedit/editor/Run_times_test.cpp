#include <filesystem>
#include <fstream>

#include "platform/dde/transport.h"
#include "platform/forms/filedialog.h"
#include "runfixture.h"
#include "startup/base/mdlGetMapSoftware.h"

namespace {

using base::MsgAnswer;
using support::joined;
using testing::ElementsAre;
using testing::IsEmpty;

class RunTimesTest : public RunTest {
protected:
    std::vector<std::string> stopTimes() { return column("StopList", 2); }
    static std::string warningTypes() {
        return joined(rows("SELECT WARNINGTYPE FROM RUNWARNING WHERE RUN='101-AM'"));
    }
};

TEST_F(RunTimesTest, ComputesFromTheStartAndFromTheEnd) {
    open();
    type("StartTime", "7:10");
    click("CalcTimes");
    EXPECT_THAT(stopTimes(), ElementsAre("07:10 AM", "07:22 AM"));
    EXPECT_EQ(text("EndTime"), "07:22 AM");
    type("TimeToUse", "End Time");
    type("EndTime", "12:05 AM");
    click("CalcTimes");
    EXPECT_THAT(stopTimes(), ElementsAre("11:53 PM", "12:05 AM"));
    EXPECT_EQ(text("StartTime"), "11:53 PM");
    EXPECT_THAT(titles(), IsEmpty());
    // The row itself is saved by OK alone.
    EXPECT_EQ(storedRun("ENDTIME"), "7:45:00 AM");
}

TEST_F(RunTimesTest, TellsOfStopsOnTheWrongSideOfTheBell) {
    const std::string oops = "Oops, one or more stops have times that are ";
    const std::string honor = " than the bell time you indicated that this run is to honor.  This ";
    const std::string more =
        " the bell time. For more information look at the Warnings sections of this screen.";
    open();
    type("BellTime", "7:20");
    click("CalcTimes");
    EXPECT_THAT(titles(), IsEmpty());
    type("StartTime", "7:10");
    click("CalcTimes");
    EXPECT_EQ(lastTitle(), "Stop Times Later than Bell Time.");
    EXPECT_THAT(texts(), ElementsAre(oops + "later" + honor +
                                     "run is marked as a pickup run. So in effect you have this "
                                     "run arriving after" +
                                     more));
    EXPECT_EQ(warningTypes(), "LATE BELL");

    check("DropOff");
    click("CalcTimes");
    EXPECT_EQ(lastTitle(), "Stop Times Earlier than Bell Time.");
    EXPECT_THAT(texts(), ElementsAre(oops + "earlier" + honor +
                                     "run is marked as a drop off run. So in effect you have this "
                                     "run leaving before" +
                                     more));
    EXPECT_EQ(warningTypes(), "EARLY BELL");

    // Without a bell nothing is checked; with one that all stops honor the warnings go.
    type("BellTime", "");
    click("CalcTimes");
    EXPECT_EQ(warningTypes(), "EARLY BELL");
    type("BellTime", "7:10");
    click("CalcTimes");
    EXPECT_EQ(warningTypes(), "");
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(RunTimesTest, ComputesNothingFromWhatIsNoTime) {
    open();
    type("EndTime", "");
    click("CalcTimes");
    EXPECT_EQ(text("EndTime"), "07:17 AM");
    for (const auto& [name, entered, title] :
         {std::tuple{"StartTime", "", "Invalid Start Time"},
          std::tuple{"StartTime", "soon", "Invalid Start Time"},
          std::tuple{"BellTime", "noon", "Invalid Bell Time"}}) {
        const auto before = text(name);
        type(name, entered);
        click("CalcTimes");
        EXPECT_THAT(titles(), ElementsAre(title));
        EXPECT_TRUE(isRed(name)) << name;
        type(name, before);
    }
    byOthers("UPDATE STOP_TRIPTYPE SET TIME_TOSTOP=Null WHERE RUN='101-AM' AND RUNSEQ=2");
    click("CalcTimes");
    EXPECT_THAT(lastText(), testing::HasSubstr("stop S1 has no load time or no driving time"));
    EXPECT_EQ(list("StopList").chosenRow(), 1);
    EXPECT_THAT(stopTimes(), ElementsAre("07:05 AM", "07:17 AM"));
}

TEST_F(RunTimesTest, SendsOnlyPlacedRunsToTheMap) {
    byOthers("UPDATE STOP SET XPOS=0, YPOS=0 WHERE STOPID='S3'");
    open();
    EXPECT_FALSE(isEnabled("MapIt"));
    EXPECT_TRUE(list("StopList").isRed(0, 0));
    click("OK");
    EXPECT_FALSE(isEnabled("MapIt"));
    byOthers("UPDATE STOP SET XPOS=3 WHERE STOPID='S3'");
    click("Command1");
    EXPECT_TRUE(isEnabled("MapIt"));
}

TEST_F(RunTimesTest, SaysWhyARunDoesNotGoToTheMap) {
    open();
    click("MapIt");
    EXPECT_EQ(text("Status"),
              "The exchange with the mapping software is turned off (MAPSoftware in route.ini).");
    EXPECT_FALSE(std::filesystem::exists(district.progPath() + "Runs.txt"));

    // Nobody is at the other end: told, and the form goes on.
    startup::gMapSoftware = startup::ArcView;
    type("RunDesc", "not saved");
    session.boxes.answers = {MsgAnswer::Cancel};
    click("MapIt");
    EXPECT_THAT(titles(), ElementsAre("Run Not Saved"));
    session.boxes.answers = {MsgAnswer::No};
    click("MapIt");
    EXPECT_THAT(titles(), ElementsAre("Run Not Saved", "Can't Go to Map"));
    EXPECT_TRUE(form().isLoaded() && isEnabled("OK"));
    EXPECT_TRUE(isChecked("Regenerate")) << "it is to be sent later";

    std::ofstream(district.progPath() + "101-AM.dbf") << "left";
    session.boxes.answers = {MsgAnswer::No, MsgAnswer::Yes};
    click("MapIt");
    EXPECT_TRUE(std::filesystem::exists(district.progPath() + "101-AM.dbf"));
    click("MapIt");
    EXPECT_FALSE(std::filesystem::exists(district.progPath() + "101-AM.dbf"));
    EXPECT_THAT(titles(), ElementsAre("Can't Go to Map - Still Processing Last Map Session",
                                      "Can't Go to Map - Still Processing Last Map Session"));
}

TEST_F(RunTimesTest, ShowsDirectionsInTheChosenStyleAndPicksTheClosedStreetsFile) {
    byOthers("INSERT INTO RUNDIR(RUN, LINETYPE, SHORTTEXT) VALUES ('101-AM', 'Start', 'Yard')");
    open();
    type("cmbDirType", "Very Brief");
    EXPECT_EQ(row("DirList", 0), "Yard| ");
    forms::setFileChooser([](const forms::FileQuestion&) { return "/maps/ice.avl"; });
    click("Closed_Browse");
    EXPECT_EQ(text("GIS_CLOSEDSTREETFILENAME"), "/maps/ice.avl");
    forms::setFileChooser([](const forms::FileQuestion&) { return QString(); });
    click("Closed_Browse");
    EXPECT_EQ(text("GIS_CLOSEDSTREETFILENAME"), "/maps/ice.avl");
    click("Clear_Closed");
    EXPECT_EQ(text("GIS_CLOSEDSTREETFILENAME"), "");
    forms::setFileChooser({});
}

}  // namespace
