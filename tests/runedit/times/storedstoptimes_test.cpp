#include "runedit/times/storedstoptimes.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "generatedrun.h"
#include "runedit/times/mdl_Time_Calc_Routines.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/runbuilder.h"

namespace runedit {

namespace {

using base::Date;
using Times = std::vector<Date>;

void fillNothing(const support::TestDistrict&) {}

/// Runs on stored rows and on the work table of an empty district.
class StoredTimes : public support::DistrictSession {
protected:
    StoredTimes() : DistrictSession(fillNothing) { startup::gErrorHandling = false; }

    /// Puts the stops on run "R1", or into the work table, a turn point before each and at the end.
    void put(const std::vector<TimedStop>& stops, bool inWorkTable = false) {
        inWorkTable_ = inWorkTable;
        connection().Execute(inWorkTable ? "DELETE FROM Temp_Stop_TripType"
                                         : "DELETE FROM STOP_TRIPTYPE");
        byOthers("DELETE FROM RUN");
        support::RunBuilder run("R1");
        for (std::size_t i = 0; i < stops.size(); ++i) {
            add(run, turnPoint_, "DIRECTIONAL");
            add(run, stops[i], i + 1 == stops.size() ? "SCHOOL" : "REGULAR");
        }
        add(run, turnPoint_, "DIRECTIONAL");
        run.into(district);
    }

    Date calculate(std::string& mode, Date& anchor, const std::string& run = " R1 ") {
        return Calc_Times(mode, anchor, inWorkTable_, run);
    }
    Date calculate(const char* mode, Date anchor) {
        std::string given = mode;
        return calculate(given, anchor);
    }

    /// What stands in the rows that are timed.
    std::vector<TimedStop> storedStops() {
        ado::Recordset rows;
        rows.Open(stopRowsSql(rows_(), TimeOrder::Forwards, "R1"), connection());
        return readStops(rows);
    }
    Times times() {
        Times result;
        for (const TimedStop& stop : storedStops()) {
            result.push_back(stop.time);
        }
        return result;
    }

    ado::Connection& connection() const {
        return inWorkTable_ ? *startup::gcnRouteWrk : *startup::gcnRouting;
    }
    std::string log() const { return support::contentsOf(district.progPath() + "log.txt"); }

private:
    [[nodiscard]] StopTable rows_() const {
        return inWorkTable_ ? StopTable::Working : StopTable::Routing;
    }

    void add(support::RunBuilder& run, const TimedStop& stop, const std::string& type) {
        if (!inWorkTable_) {
            run.stop(*stop.stopId, {.load = *stop.loadMinutes,
                                    .drive = *stop.driveMinutes,
                                    .type = type,
                                    .more = {{"UPDATE_TIME", stop.updatesTime}}});
            return;
        }
        connection().Execute(fmt::format(
            "INSERT INTO Temp_Stop_TripType (ID, RUNSEQ, StopType, StopID, Load_Time, time_tostop, "
            "UPDATE_TIME) VALUES ({0}, {0}, '{1}', '{2}', {3}, {4}, {5})",
            ++sequence_, type, *stop.stopId, *stop.loadMinutes, *stop.driveMinutes,
            stop.updatesTime ? "True" : "False"));
    }

    TimedStop turnPoint_{.stopId = "T", .loadMinutes = 50.0F, .driveMinutes = 60.0F};
    bool inWorkTable_ = false;
    int sequence_ = 0;
};

const std::vector<TimedStop> ThreeStops = {stop("A", 0.5F, 9), stop("B", 1, 10), stop("C", 2, 20)};
}  // namespace

TEST_F(StoredTimes, AreTheComputedOnesOnBothTables) {
    RunGenerator generator(4);
    for (const bool inWorkTable : {false, true}) {
        for (int run = 0; run < 15; ++run) {
            put(generator.stops(), inWorkTable);
            const Date first = generator.time();
            const Date last = calculate("START", first);
            const Times expected = times();
            EXPECT_EQ(expected.front(), first);
            EXPECT_EQ(expected.back(), last);
            connection().Execute(inWorkTable ? "UPDATE Temp_Stop_TripType SET TIME_AT_STOP = Null"
                                             : "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = Null");
            EXPECT_EQ(calculate("END", last), first);
            EXPECT_EQ(times(), expected);
            std::string mode = "Mid";
            Date anchor = expected[expected.size() / 2];
            EXPECT_EQ(calculate(mode, anchor), first);
            EXPECT_EQ(mode, "End");
            EXPECT_EQ(anchor, last);
            EXPECT_EQ(times(), expected);
        }
    }
}

TEST_F(StoredTimes, TheMiddleMovesBothSidesAndNullIsMidnight) {
    put(ThreeStops);
    connection().Execute("UPDATE STOP_TRIPTYPE SET UPDATE_TIME = False WHERE RUNSEQ = 4");
    connection().Execute("UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = #1:00:00 AM# WHERE RUNSEQ <> 4");
    std::string mode = "MID";
    Date anchor;
    EXPECT_EQ(calculate(mode, anchor), Date{-630}) << "the evening before";
    EXPECT_EQ(times(), (Times{Date{-630}, Date{}, Date{1260}}));
    EXPECT_EQ(stored("SELECT TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUNSEQ = 4"), "12:00:00 AM")
        << "the stop in the middle is written in any case";
}

TEST_F(StoredTimes, NothingToStartFromLeavesEverything) {
    put({});
    Date anchor = at(8, 0);
    for (std::string mode : {"Start", "End", "MID"}) {
        const std::string before = mode;
        EXPECT_EQ(calculate(mode, anchor), at(8, 0)) << "a run of turn points only";
        EXPECT_EQ(mode, before);
    }
    put(ThreeStops);
    std::string mode = "MID";
    EXPECT_EQ(calculate(mode, anchor), at(8, 0));
    EXPECT_EQ(mode, "MID");
    EXPECT_EQ(anchor, at(8, 0));
    EXPECT_EQ(times(), Times(3));
    mode = "MIDDLE";
    EXPECT_THROW(calculate(mode, anchor), base::RunTimeError);
    put({ThreeStops[0]});
    EXPECT_EQ(calculate("End", at(8, 0)), at(8, 0));
    EXPECT_EQ(times(), Times{at(8, 0)});
}

TEST_F(StoredTimes, ARepeatedStopLosesItsMinutesInTheTable) {
    put({stop("A", 1, 0), stop("B", 2, 3), stop("B", 4, 5), stop("C", 6, 7)});
    connection().Execute(
        "UPDATE STOP_TRIPTYPE SET UPDATE_TIME = False, LOAD_TIME = Null WHERE RUNSEQ = 6");
    EXPECT_EQ(calculate("Start", at(8, 0)), at(8, 11));
    EXPECT_EQ(times(), (Times{at(8, 0), at(8, 4), Date{}, at(8, 11)}));
    EXPECT_EQ(storedStops()[2].loadMinutes, 0);
    EXPECT_EQ(storedStops()[2].driveMinutes, 0);
    EXPECT_EQ(calculate("End", at(8, 11)), at(8, 3));
}

TEST_F(StoredTimes, EveryRowIsWrittenWhereTheColumnIsMissing) {
    put(ThreeStops);
    startup::gcnRouting->Close();
    byOthers("UPDATE STOP_TRIPTYPE SET UPDATE_TIME = 0");
    byOthers("ALTER TABLE STOP_TRIPTYPE DROP COLUMN UPDATE_TIME");
    startup::gcnRouting->Open(district.path(data::DatabaseFile::Routing));
    calculate("Start", at(8, 0));
    EXPECT_EQ(times(), (Times{at(8, 0), at(8, 10, 30), at(8, 31, 30)}));
}

TEST_F(StoredTimes, NullMinutesAreReportedAndNothingIsWritten) {
    put(ThreeStops);
    connection().Execute("UPDATE STOP_TRIPTYPE SET LOAD_TIME = Null WHERE RUNSEQ = 6");
    startup::gErrorHandling = true;
    EXPECT_THROW(calculate("Start", at(8, 0)), base::EndProgram);
    EXPECT_THAT(texts(),
                testing::ElementsAre(
                    "The following error has occurred in procedure: \nCalc_Times of Module: "
                    "mdl_Time_Calc_Routines.\n\nError (94) Invalid use of Null"));
    session.start(district.configFolder());
    EXPECT_EQ(times(), Times(3));
    EXPECT_EQ(log(), "");
}

TEST_F(StoredTimes, ARowThatVanishesIsTriedAgainLoggedAndReported) {
    put(ThreeStops);
    startup::gcnRouting->Close();
    byOthers(
        "CREATE TRIGGER t AFTER UPDATE OF TIME_AT_STOP ON STOP_TRIPTYPE BEGIN DELETE"
        " FROM STOP_TRIPTYPE WHERE RUNSEQ = NEW.RUNSEQ + 2; END");
    startup::gcnRouting->Open(district.path(data::DatabaseFile::Routing));
    startup::gErrorHandling = true;
    EXPECT_THROW(calculate("Start", at(8, 0)), base::EndProgram);
    for (const std::string attempt : {"1", "2", "3"}) {
        EXPECT_THAT(
            log(), testing::HasSubstr("In Tarn, in Calc_Times received the 'Record Already Deleted "
                                      "Error' trying again to update record this is the " +
                                      attempt + " attempt."));
    }
    EXPECT_EQ(session.boxes.shown.size(), 1U);
}

}  // namespace runedit
