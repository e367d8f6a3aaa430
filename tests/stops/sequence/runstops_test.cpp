#include <sys/wait.h>
#include <unistd.h>

#include "stops/sequence/stopmessages.h"
#include "stopsdistrict.h"

namespace stops {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Ids = std::vector<std::int64_t>;

TEST_F(StopsDistrict, EveryActionIsWrittenAndLoggedToTheLetter) {
    add({1, 6, 2});
    removeStops(connection, run, Ids{1});
    moveStops(connection, run, Ids{2}, Move::ToTop);
    moveStops(connection, run, Ids{2}, Move::ToBottom);
    moveStops(connection, run, Ids{2}, Move::Up);
    moveStops(connection, run, Ids{2}, Move::Down);
    removeStops(connection, run, Ids{at(0)});

    const auto logged = [](const char* stop, int code, const std::string& what) {
        return fmt::format("R1|{}|AM|1/31/2026 8:05:09 AM|PAT|{}|{}", stop, code, what);
    };
    const auto added = [&](const char* keys, const char* stop, int sequence) {
        return logged(keys, 1,
                      fmt::format("Stop added to run: {} with the sequence of: {}.  Stop Added in "
                                  "Add/Remove Stops Screen.",
                                  stop, sequence));
    };
    const auto removed = [&](const char* keys, const char* stop) {
        return logged(keys, 2,
                      fmt::format("Stop removed from run: {} the sequence was: 1.  Stop removed in "
                                  "Stop Add/Remove Screen.",
                                  stop));
    };
    const auto moved = [&](const char* where, int before, int now) {
        return logged("2|S2", 3,
                      fmt::format("Stop's sequence in the run: S2 was changed - moved {}.  The old "
                                  "sequence was: {}.  The new sequence is: {}.",
                                  where, before, now));
    };
    EXPECT_THAT(
        rows("SELECT RUNID, Int_STOPID, StopID, TripType, LOGDATE, User, ACTIVITYCODE, Description "
             "FROM RUNLOG ORDER BY ID"),
        ElementsAre(added("1|S1", "S1", 1), added("Null|S6", "S6", 2), added("2|S2", "S2", 3),
                    removed("1|S1", "S1"), moved("up to top", 1, 1), moved("up to top", 1, 1),
                    moved("up one", 2, 1), moved("down one", 1, 2), removed("Null|S6", "S6")));
    EXPECT_EQ(shown(), "S2:0");
    EXPECT_THAT(rows("SELECT RUN, RUNSEQ FROM STOP_TRIPTYPE WHERE ID=1"), ElementsAre(" |0"));
}

TEST_F(StopsDistrict, RemovingNumbersTheRestFromZeroAndAddingNeverReusesASequence) {
    add({1, 2, 3});
    removeStops(connection, run, Ids{at(0)});
    EXPECT_EQ(shown(), "S2:0 S3:1");
    add({4});
    EXPECT_EQ(shown(), "S2:0 S3:1 S4:3") << "one more than the stops listed";
    connection.Execute("UPDATE STOP_TRIPTYPE SET RUNSEQ=40 WHERE ID=4");
    add({5, 1});
    EXPECT_EQ(shown(), "S2:0 S3:1 S4:40 S5:41 S1:42");
}

TEST_F(StopsDistrict, ASharedPlaceGetsARecordOfItsOwnEachTime) {
    const auto added = add({6, 7, 6});
    EXPECT_EQ(shown(), "S6:1 S7:2 S6:3");
    EXPECT_THAT(rows("SELECT INT_STOPID, TRIPTYPE, RUN, NUM_STUDENTS, LOAD_TIME, DIST_TOSTOP, "
                     "CUM_TIME, CUM_MILES, ACTIVE, STATUSCHGDT, CreatedBy, ChangedBy, CREATEDDT, "
                     "changeddt FROM STOP_TRIPTYPE WHERE RUNSEQ=3"),
                ElementsAre("6|AM|R1|0|0|0|0|0|True|1/31/2026 8:05:09 AM|PAT|PAT|1/31/2026 8:05:09 "
                            "AM|1/31/2026 8:05:09 AM"));
    removeStops(connection, run, Ids{added.stopTripIds[0], added.stopTripIds[2]});
    EXPECT_EQ(shown(), "S7:0");
    EXPECT_THAT(rows("SELECT ID FROM STOP_TRIPTYPE WHERE INT_STOPID=6"), IsEmpty());
}

TEST_F(StopsDistrict, WhatCannotBeAddedIsSkippedAndTold) {
    byOthers("UPDATE STOP_TRIPTYPE SET RUN='R2' WHERE ID=1");
    byOthers("DELETE FROM STOP_TRIPTYPE WHERE ID=4");

    const auto added = add({8, 1, 2, 4, 9});
    EXPECT_EQ(shown(), "S2:1 S9:2") << "S9 was shown on R2 and comes from there";
    EXPECT_EQ(shown("R2"), "S1:0");
    EXPECT_EQ(rows("SELECT ID FROM RUNLOG").size(), 2U);

    tellOfSkipped(added);
    tellOfSkipped(removeStops(connection, run, Ids{1}));
    tellOfSkipped(moveStops(connection, run, Ids{1}, Move::ToTop));
    ASSERT_EQ(session.boxes.shown.size(), 4U);
    EXPECT_EQ(session.boxes.shown[0].title, "Stop does not have an Available Trip Type");
    EXPECT_EQ(session.boxes.shown[0].icon, base::MsgIcon::Information);
    EXPECT_EQ(session.boxes.shown[0].text,
              "Oops, you selected a stop that does not have a trip type.  Can't add to the run.  "
              "Before a stop can be assigned to a run it must have at least one trip type assigned "
              "to it.  When a stop is assigned to a run it is really a stop's trip type that is "
              "assigned to a run - so without an available trip type this stop cannot be assigned "
              "to this run.  Please either assign a trip type to this stop  or select a different "
              "stop.");
    EXPECT_THAT(session.boxes.shown[1].text, testing::HasSubstr("S1, S4"));
    EXPECT_EQ(shown(), "S2:1 S9:2") << "no renumbering where nothing was removed";
}

TEST_F(StopsDistrict, MovesNumberFromOneAndSeveralKeepTheirOrder) {
    add({1, 2, 3, 4, 5});
    const struct {
        Ids moved;
        Move move;
        const char* after;
        std::size_t logged;
    } cases[] = {
        {{3}, Move::ToTop, "S3:1 S1:2 S2:3 S4:4 S5:5", 1},
        {{3}, Move::Up, "S3:1 S1:2 S2:3 S4:4 S5:5", 0},
        {{2, 5}, Move::ToTop, "S2:1 S5:2 S3:3 S1:4 S4:5", 2},
        {{2, 3}, Move::ToBottom, "S5:1 S1:2 S4:3 S2:4 S3:5", 2},
        {{5, 4, 2}, Move::Up, "S5:1 S4:2 S2:3 S1:4 S3:5", 2},
        {{5, 2, 3}, Move::Down, "S4:1 S5:2 S1:3 S2:4 S3:5", 2},
        {{2, 3}, Move::Down, "S4:1 S5:2 S1:3 S2:4 S3:5", 0},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.after);
        const auto logged = rows("SELECT ID FROM RUNLOG").size();
        EXPECT_EQ(moveStops(connection, run, one.moved, one.move).changedByAnother, Ids{});
        EXPECT_EQ(shown(), one.after);
        EXPECT_EQ(rows("SELECT ID FROM RUNLOG").size() - logged, one.logged);
    }
    connection.Execute("UPDATE STOP_TRIPTYPE SET RUNSEQ=7 WHERE RUN='R1'");
    moveStops(connection, run, Ids{at(1)}, Move::Up);
    EXPECT_THAT(shown(), testing::Not(testing::HasSubstr(":8"))) << "equal numbers are exchanged";
}

/// Dies after some steps of an action.
class Killer : public base::ProgressPort {
public:
    explicit Killer(int steps) : steps_(steps) {}
    void progress(double) override {}
    void status(const std::string&) override {}
    bool yield() override {
        if (--steps_ == 0) {
            _exit(9);
        }
        return false;
    }

private:
    int steps_;
};

TEST_F(StopsDistrict, AKilledActionLeavesNothingBehind) {
    add({1, 2, 3});
    const auto before = rows("SELECT ID, RUN, RUNSEQ FROM STOP_TRIPTYPE ORDER BY ID");
    const auto path = district.path(data::DatabaseFile::Routing);
    connection.Close();
    for (const bool removing : {true, false}) {
        const pid_t child = fork();
        if (child == 0) {
            ado::Connection victim;
            victim.Open(path);
            Killer killer(2);
            const std::vector places{chosen(6), chosen(4), chosen(5)};
            if (removing) {
                removeStops(victim, run, Ids{1}, &killer);
            } else {
                addStops(victim, run, places, &killer);
            }
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_EQ(WEXITSTATUS(status), 9);
    }
    connection.Open(path);
    EXPECT_EQ(rows("SELECT ID, RUN, RUNSEQ FROM STOP_TRIPTYPE ORDER BY ID"), before);
    EXPECT_EQ(rows("SELECT ID FROM RUNLOG").size(), 3U);
}

TEST_F(StopsDistrict, AsksBeforeStopsAreTakenFromARun) {
    const auto asked = [&](std::vector<ChosenStop> stops) {
        return questionBeforeAdding(run, stops);
    };
    auto school = chosen(6);
    school.run = "R2";
    auto here = chosen(1);
    here.run = "r1 ";
    EXPECT_EQ(asked({chosen(1), school}), "");
    EXPECT_EQ(asked({chosen(9), here}),
              "1 of the selected stops on another run: S9 on R2.  Adding takes them off that "
              "run.\n\n1 of the selected stops on this run already: S1.  Adding moves them to its "
              "end.\n\nDo you wish to add all 2 stops to the run?");
    EXPECT_THAT(asked(std::vector(12, chosen(9))), testing::HasSubstr("S9 on R2 and 2 more."));
    EXPECT_EQ(asked(std::vector(100, chosen(1))), "Do you wish to add all 100 stops to the run?");
}

}  // namespace

}  // namespace stops
