// A run whose stored id holds an apostrophe is a run like any other to whatever splices the id.

#include "data/lookups/mdlGetItems.h"
#include "data/records/records.h"
#include "data/runs/runrow.h"
#include "groupops/deadhead/routedeadhead.h"
#include "groupops/groupchange/runchange.h"
#include "groupops/groupsupport.h"
#include "groupops/merge/runmerge.h"
#include "platform/ado/sqltext.h"
#include "runedit/editor/bellcheck.h"
#include "runedit/editor/runfields.h"
#include "runedit/editor/runlists.h"
#include "runedit/map/Set_StartorEnd.h"
#include "runedit/map/stopexport.h"
#include "runedit/times/storedstoptimes.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "runsearch/search/rundeletion.h"
#include "runsearch/search/runsearchquery.h"
#include "startup/base/session.h"
#include "stops/sequence/runstops.h"
#include "stops/triprecord/triprecord.h"
#include "support/districtsession.h"
#include "support/runbuilder.h"

namespace {

using base::Date;
using testing::ElementsAre;
using testing::SizeIs;

class Apostrophe : public support::DistrictSession {
protected:
    Apostrophe() {
        support::RunBuilder(Id)
            .with("INT_ROUTEID", 77)
            .with("SCHOOL", "MARY'S")
            .with("VEHTYPE", "D'OR")
            .bell("7:00")
            .starts("8:00")
            .stop("A'1", {.students = 90, .at = "8:00"})
            .stop("A'2", {.drive = 10, .at = "8:00"})
            .into(district);
        byOthers("UPDATE District SET CHECKRUNNUMPASS = 1, CHECKRUNLATEBELL = 1");
        byOthers("INSERT INTO StartEnd (StartorEnd) VALUES ('')");
    }

    static constexpr auto Id = "O'NEIL'S";
    ado::Connection& routing = *startup::gcnRouting;
    support::FakeProgress progress;
};

TEST_F(Apostrophe, TheRunIsReadListedAndSaved) {
    EXPECT_TRUE(data::runExists(routing, Id));
    EXPECT_FALSE(data::runExists(routing, "O'NEIL"));
    const auto run = data::readRecord(routing, runedit::runFields(), data::runSql(Id));
    ASSERT_TRUE(run);
    EXPECT_THAT(runedit::readStopList(routing, Id).table.text(1, 0), "A'2");
    EXPECT_EQ(runedit::readDirections(routing, Id, runedit::DirectionStyle::Brief).rowCount(), 0U);
    EXPECT_EQ(runedit::readSpecialNeeds(routing, Id).rowCount(), 0U);

    data::Entries entries{*run, *run};
    entries.entered.enter("Description", "Neil's");
    EXPECT_EQ(data::saveRecord(routing, data::runSql(Id), entries, {"ANN", Date()}).outcome,
              data::SaveOutcome::Saved);
    EXPECT_EQ(data::GetRun(Id), "Neil's");

    runsearch::RunSearchCriteria chosen;
    chosen.schools = {{"MARY'S", "", true}};
    EXPECT_THAT(rows(runsearch::runSearchQuery(chosen)->runs), SizeIs(1));
}

TEST_F(Apostrophe, TheRunIsTimedValidatedAndHandedToTheMap) {
    std::string mode = "Start";
    Date anchor = Date::timeOfDay(8, 0);
    EXPECT_EQ(
        runedit::timeStoredStops({routing, runedit::StopTable::Routing, Id}, mode, anchor, {}),
        Date::timeOfDay(8, 10));
    EXPECT_FALSE(
        runedit::recordBellCheck(routing, Id, runedit::BellRule::NotLater, Date::timeOfDay(7, 0)));
    EXPECT_EQ(runedit::CheckRun(Id, 0, false, "Y").substr(0, 1), "Y");
    EXPECT_GT(runedit::readWarnings(routing, Id).rowCount(), 0U);
    runedit::CheckRun(Id, 77, false, "Y");
    const auto mapRun = runedit::readMapRun(routing, Id);
    runedit::Set_StartorEnd(routing, mapRun, 40, "YES");
    EXPECT_EQ(stored("SELECT Run, VehType FROM StartEnd"), "O'NEIL'S|D'OR");
    EXPECT_THAT(runedit::readStopExport(routing, Id).rows, SizeIs(2));
}

TEST_F(Apostrophe, TheRunIsChangedWithOthersMergedAndDeleted) {
    const std::vector<std::string> runs{Id};
    EXPECT_EQ(groupops::changeRuns(routing, runs, {{{"LOCCODE", "L'1"}}}, progress).done, 1);
    EXPECT_EQ(storedRun("LOCCODE", "O''NEIL''S"), "L'1");
    groupops::calculateRoute({routing, routing}, 77, 0);
    EXPECT_EQ(storedRun("DEADHEAD_BEFORE_TIME", "O''NEIL''S"), "-3");

    const auto before = stops::readRunStops(routing, Id);
    ASSERT_THAT(before, SizeIs(2));
    stops::moveStops(routing, {Id, "AM", "ANN"}, {{before[1].stopTripId}}, stops::Move::ToTop);
    EXPECT_THAT(stops::tripRecordsOf(routing, Id),
                ElementsAre(before[1].stopTripId, before[0].stopTripId));

    EXPECT_EQ(runsearch::deleteRun(routing, Id), runsearch::Deletion::HasStops);
    const groupops::RunMerge merge{"101-AM", Id, "ANN"};
    EXPECT_EQ(groupops::mergeObstacle(routing, merge), groupops::MergeObstacle::None);
    EXPECT_EQ(groupops::mergeRuns(routing, merge, progress).done, 2);
    EXPECT_EQ(runsearch::deleteRun(routing, Id), runsearch::Deletion::Done);
}

}  // namespace
