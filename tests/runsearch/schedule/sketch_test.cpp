#include "runsearch/schedule/sketch.h"

#include "groupops/groupsupport.h"
#include "runedit/validation/mdlValidate_Runs.h"
#include "runsearch/schedule/sketchchecks.h"
#include "runsearch/schedule/sketchsaving.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/runbuilder.h"

namespace schedule {

namespace {

using support::RunBuilder;

constexpr auto SketchedRuns =
    "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM, 'Smith, Ann' AS EMPNAME FROM ROUTE "
    "RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID WHERE RUN.RUN LIKE 'S%'";

void fillSketch(const support::TestDistrict& district) {
    fillSmall(district);
    const auto run = [](const char* id, int route, const char* start, const char* end, int stop) {
        return std::move(RunBuilder(id)
                             .starts(start)
                             .ends(end)
                             .with("INT_ROUTEID", route)
                             .with("FirstStop", stop)
                             .with("LastStop", stop + 1)
                             .with("DEADHEAD_BEFORE_TIME", 10)
                             .with("DEADHEAD_AFTER_TIME", 10));
    };
    run("S1", 1, "7:00", "7:30", 10)
        .bell("7:30")
        .with("PICKUP", true)
        .stop("S1a", {.students = 10, .at = "7:02", .stop = 91})
        .stop("S1b", {.students = 9, .at = "7:29", .more = {{"CUM_TIME", 40}}})
        .into(district);
    const auto sql = [&](const char* text) { district.sql(data::DatabaseFile::Routing, text); };
    sql("UPDATE ROUTE SET VEHICLE = 'B8' WHERE INT_ROUTEID = 2");
    sql("UPDATE District SET CHECKRUNNUMPASS = 1, CHECKRUNRIGHT = 1, CHECKRUNEARLYBELL = 1,"
        " CHECKRUNLATEBELL = 1, CHECKRUNRIDETIME = 1, CHECKRUNSPECIAL = 1, CHECKSTOPOVERLAP = 1,"
        " MaxRideTime = 30, Back_To_Garage_Gap = 240");
    sql("INSERT INTO STU_ADDR_TRIPTYPE(INT_STUID, INT_STOPID, TRIPTYPE) VALUES (501, 91, 'AM')");
    sql("INSERT INTO STU_SPECIALNEEDS(INT_STUID, SPECIALNEEDS_CODE) VALUES (501, 'WC')");
    run("S2", 2, "8:00", "8:30", 20).into(district);
    run("S3", 2, "9:00", "9:30", 30).into(district);
}

class SketchedPlan : public support::DistrictSession {
protected:
    SketchedPlan()
        : DistrictSession(fillSketch), stored(readPlan(*startup::gcnRouting, SketchedRuns)) {}
    std::optional<Change> fit(const char* run, const char* route, Seconds start) {
        return fitOn(stored, layOut(stored, {}), drag(run, route, start), travel).worse();
    }
    Drag drag(const char* run, std::string_view route, Seconds start) {
        const auto onRoute = std::ranges::find(stored.routes, route, &Route::id);
        return {placeOf(run),
                route.empty() ? None : static_cast<int>(onRoute - stored.routes.begin()), start};
    }
    int placeOf(const char* run) {
        return static_cast<int>(std::ranges::find(stored.runs, run, &ScheduledRun::id) -
                                stored.runs.begin());
    }
    groupops::Outcome save() {
        support::FakeProgress progress;
        const auto moves = sketch.moves(stored);
        return saveMoves(*startup::gcnRouting, stored, moves, "PAT", progress);
    }

    Plan stored;
    Sketch sketch;
    /// A minute a stop number apart.
    TravelTime travel = [](std::int32_t from, std::int32_t to) {
        return from < 1 || to < 1 ? std::nullopt : std::optional(std::abs(from - to) * Minute);
    };
};

TEST_F(SketchedPlan, TellsWhereARunFitsByTheWayToItAndFromIt) {
    // Between S2 (ends 8:30 at stop 21) and S3 (starts 9:00 at stop 30): 11 minutes there.
    EXPECT_EQ(fit("S1", "R2", 8 * Hour + 10 * Minute)->trouble, Trouble::Overlap);
    EXPECT_EQ(fit("S1", "R2", 8 * Hour + 10 * Minute)->slack, -20 * Minute);
    EXPECT_EQ(fit("S1", "R2", 8 * Hour + 30 * Minute)->trouble, Trouble::Short);
    EXPECT_EQ(fit("S1", "R2", 10 * Hour)->slack, 9 * Minute);
    EXPECT_EQ(fit("S1", "R2", 10 * Hour)->trouble, Trouble::Tight);
    EXPECT_EQ(fit("S1", "R1", 10 * Hour), std::nullopt);
}

TEST_F(SketchedPlan, KeepsTheLastWordOnARunAndTakesItBack) {
    sketch.keep({"S1", 2, 10 * Hour});
    sketch.keep({"S1", 2, 11 * Hour});
    sketch.keep({"GONE", 2, 11 * Hour});
    ASSERT_EQ(sketch.moves(stored).size(), 1);
    const auto plan = sketch.applied(stored, travel);
    EXPECT_EQ(plan.run(placeOf("S1")).end, 11 * Hour + 30 * Minute);
    EXPECT_EQ(plan.run(placeOf("S1")).before.time, 21 * Minute);
    EXPECT_EQ(plan.run(placeOf("S3")).after.time, 21 * Minute);
    EXPECT_EQ(sketchText(stored, sketch.moves(stored)),
              "1 change kept: S1 to route R2 at 11:00 AM.  Nothing is saved before Apply.");
    sketch.keep({"S1", 1, 7 * Hour});
    EXPECT_TRUE(sketch.moves(stored).empty());
    sketch.undo();
    EXPECT_EQ(sketch.moves(stored).front().start, 11 * Hour);
}

TEST_F(SketchedPlan, SavesARunWithItsStopsAndSaysSoInTheLog) {
    sketch.keep({"S1", 2, 6 * Hour + 30 * Minute});
    EXPECT_TRUE(save().complete());
    EXPECT_EQ(DistrictSession::stored(
                  "SELECT INT_ROUTEID, STARTTIME, ENDTIME, ChangedBy, DEADHEAD_BEFORE_TIME "
                  "FROM RUN WHERE RUN='S1'"),
              "2|6:30:00 AM|7:00:00 AM|PAT|-2");
    EXPECT_EQ(DistrictSession::stored("SELECT TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUN='S1'"),
              "6:32:00 AM");
    EXPECT_EQ(DistrictSession::stored("SELECT User, Description FROM RUNLOG WHERE RUNID='S1'"),
              "PAT|Run changed in the run schedule from route R1 at 7:00 AM to route R2 at 6:30 "
              "AM.");
    EXPECT_EQ(DistrictSession::stored("SELECT NEEDDEADHEADBUILD FROM SYSTEM"), "True");
}

/// How many findings each check has.
std::vector<std::string> countsOf(const MoveChecks& checks) {
    std::vector<std::string> counts;
    for (const auto& line : checks.lines) {
        counts.push_back(line.text.substr(0, line.text.find(' ')));
    }
    return counts;
}

TEST_F(SketchedPlan, SaysBeforehandWhatTheValidationFindsAfterwards) {
    const runedit::ValidationDatabases databases{*startup::gcnRouting, *startup::gcnTrip};
    // Another run keeps the route in the plan.
    byOthers("INSERT INTO RUN(RUN, INT_ROUTEID) VALUES ('S9', 1)");
    stored = readPlan(*startup::gcnRouting, SketchedRuns);
    std::set<std::string> seen;
    for (const auto& [route, start] : {std::pair{"R1", 7 * Hour},
                                       {"R2", 7 * Hour},
                                       {"", 6 * Hour},
                                       {"R1", 7 * Hour + 90},
                                       {"R2", 9 * Hour},
                                       {"R1", 5 * Hour}}) {
        const auto held = drag("S1", route, start);
        const auto beforehand = SketchChecks(databases).of(stored, held);
        EXPECT_EQ(beforehand.riders, 19);
        sketch.keep({"S1", held.route == None ? 0 : stored.route(held.route).key, start});
        EXPECT_TRUE(save().complete());
        runedit::CheckRun("S1", 0, false, "Y");
        EXPECT_THAT(countsOf(beforehand),
                    testing::UnorderedElementsAreArray(DistrictSession::rows(
                        "SELECT Count(*) FROM RUNWARNING WHERE RUN='S1' GROUP BY WARNINGTYPE")))
            << route << " at " << start;
        for (const auto& type : DistrictSession::rows("SELECT WARNINGTYPE FROM RUNWARNING")) {
            seen.insert(type);
        }
        sketch.clear();
        stored = readPlan(*startup::gcnRouting, SketchedRuns);
    }
    EXPECT_EQ(seen, (std::set<std::string>{"LATE BELL", "PASSENGERS", "RIDETIME", "SPECIAL"}));
}

TEST_F(SketchedPlan, SavesARunThatHasOnlyOneOfItsTimes) {
    byOthers("UPDATE RUN SET ENDTIME = NULL, INT_ROUTEID = NULL WHERE RUN = 'S2'");
    stored = readPlan(*startup::gcnRouting, SketchedRuns);
    sketch.keep({"S2", 1, 8 * Hour + Minute});
    EXPECT_TRUE(save().complete());
    EXPECT_EQ(DistrictSession::stored("SELECT STARTTIME, ENDTIME FROM RUN WHERE RUN='S2'"),
              "8:01:00 AM|Null");
}

TEST_F(SketchedPlan, RefusesARunThatOthersChangedOrDeleted) {
    byOthers("UPDATE RUN SET INT_ROUTEID = NULL WHERE RUN = 'S2'");
    stored = readPlan(*startup::gcnRouting, SketchedRuns);
    byOthers("UPDATE RUN SET INT_ROUTEID = 1 WHERE RUN = 'S2'");
    sketch.keep({"S2", 2, 8 * Hour});
    EXPECT_EQ(save().leftOut.size(), 1);
    sketch.clear();
    byOthers("UPDATE RUN SET ENDTIME = '1899-12-30 08:31:00' WHERE RUN = 'S2'");
    byOthers("UPDATE RUN SET changeddt = '2026-01-01 08:31:00' WHERE RUN = 'S1'");
    byOthers("DELETE FROM RUN WHERE RUN = 'S3'");
    for (const auto* run : {"S1", "S2", "S3"}) {
        sketch.keep({run, 0, 12 * Hour});
    }
    const auto outcome = save();
    EXPECT_EQ(outcome.done, 0);
    EXPECT_EQ(outcome.leftOut.size(), 3);
    EXPECT_EQ(storedRun("STARTTIME", "S2"), "8:00:00 AM");
    EXPECT_EQ(DistrictSession::stored("SELECT Count(*) FROM RUNLOG"), "0");
}

}  // namespace

}  // namespace schedule
