#include <atomic>
#include <thread>

#include <unistd.h>

#include "platform/store/open/open.h"
#include "stops/sequence/stopmessages.h"
#include "stopsdistrict.h"

namespace stops {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Ids = std::vector<std::int64_t>;

TEST_F(StopsDistrict, EveryActionIsWrittenAndLoggedToTheLetter) {
    run.isMapped = true;
    add({1, 6, 2});
    removeStops(connection, run, Ids{1});
    moveStops(connection, run, Ids{2}, Move::ToTop);
    moveStops(connection, run, Ids{2}, Move::ToBottom);
    moveStops(connection, run, Ids{2}, Move::Up);
    moveStops(connection, run, Ids{2}, Move::Down);
    EXPECT_THAT(add({9, 3}).takenFrom, ElementsAre("R2"));
    placeStops(connection, run, Ids{9, 3}, at(0));
    removeStops(connection, run, Ids{at(2)});

    const auto moved = [](const char* stop, const char* where, int before, int now) {
        return fmt::format(
            "R1|{0}|S{0}|3|Stop's sequence in the run: S{0} was changed - moved {1}.  The old "
            "sequence was: {2}.  The new sequence is: {3}.",
            stop, where, before, now);
    };
    const auto added = [](const char* keys, const char* stop, int sequence) {
        return fmt::format(
            "R1|{}|1|Stop added to run: {} with the sequence of: {}.  Stop Added in Add/Remove "
            "Stops Screen.",
            keys, stop, sequence);
    };
    const auto removed = [](const char* keys, const char* stop, int sequence) {
        return fmt::format(
            "{}|2|Stop removed from run: {} the sequence was: {}.  Stop removed in Stop Add/Remove "
            "Screen.",
            keys, stop, sequence);
    };
    EXPECT_THAT(
        rows("SELECT RUNID, Int_STOPID, StopID, ACTIVITYCODE, Description FROM RUNLOG ORDER BY ID"),
        ElementsAre(added("1|S1", "S1", 1), added("Null|S6", "S6", 2), added("2|S2", "S2", 3),
                    removed("R1|1|S1", "S1", 1), moved("2", "up to top", 1, 1),
                    moved("2", "up to top", 1, 1), moved("2", "up one", 2, 1),
                    moved("2", "down one", 1, 2), removed("R2|9|S9", "S9", 0),
                    added("9|S9", "S9", 3), added("3|S3", "S3", 4), moved("9", "up 2", 3, 1),
                    moved("3", "up 2", 4, 2), removed("R1|Null|S6", "S6", 3)));
    EXPECT_THAT(rows("SELECT DISTINCT TripType, LOGDATE, User FROM RUNLOG"),
                ElementsAre("AM|1/31/2026 8:05:09 AM|PAT"));
    EXPECT_EQ(shown(), "S9:0 S3:1 S2:2");
    EXPECT_THAT(rows("SELECT RUN, RUNSEQ FROM STOP_TRIPTYPE WHERE ID=1"), ElementsAre(" |0"));
    EXPECT_THAT(rows("SELECT RUN FROM RUN WHERE REGENERATE=True"), ElementsAre("R2"));
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
    const auto plain = [](int stop) {
        auto shown = chosen(stop);
        shown.stopTripId = 0;
        return shown;
    };
    const auto added =
        addStops(connection, run, std::vector{plain(8), chosen(1), plain(2), chosen(4), plain(1)});
    EXPECT_EQ(shown(), "S2:1") << "with the record that is free";
    EXPECT_EQ(shown("R2"), "S1:0 S9:0");

    tellOfSkipped(added);
    tellOfSkipped(removeStops(connection, run, Ids{1}));
    tellOfSkipped(moveStops(connection, run, Ids{1}, Move::ToTop));
    tellOfSkipped(placeStops(connection, run, Ids{2}, 1));
    const auto told = session.boxes.shown;
    EXPECT_THAT(titles(), ElementsAre("Stop does not have an Available Trip Type", ChangedTitle,
                                      ChangedTitle, ChangedTitle, ChangedTitle));
    EXPECT_EQ(told[0].icon, base::MsgIcon::Information);
    EXPECT_EQ(told[0].text,
              "Oops, you selected a stop that does not have a trip type.  Can't add to the run.  "
              "Before a stop can be assigned to a run it must have at least one trip type assigned "
              "to it.  When a stop is assigned to a run it is really a stop's trip type that is "
              "assigned to a run - so without an available trip type this stop cannot be assigned "
              "to this run.  Please either assign a trip type to this stop  or select a different "
              "stop.\n\nS8: no trip type AM\nS1: trip type AM is on run R2; to take it from "
              "there, find it by Search Trip Types");
    EXPECT_THAT(told[1].text, HasSubstr("S1, S4"));
    EXPECT_THAT(told[4].text, HasSubstr("Nothing was moved"));
    EXPECT_EQ(shown(), "S2:1") << "no renumbering where nothing was removed or moved";
    EXPECT_EQ(rows("SELECT ID FROM RUNLOG").size(), 1U);

    byOthers("DELETE FROM RUN WHERE RUN='R1'");
    tellOfSkipped(add({3}));
    EXPECT_THAT(titles(), ElementsAre(RunGoneTitle));
    EXPECT_EQ(shown(), "S2:1");
}

TEST_F(StopsDistrict, MovesNumberFromOneAndSeveralKeepTheirOrder) {
    add({1, 2, 3, 4, 5});
    const auto go = [&](Move move) {
        return [=, this](const Ids& ids) { return moveStops(connection, run, ids, move); };
    };
    const auto put = [&](std::int64_t before) {
        return [=, this](const Ids& ids) { return placeStops(connection, run, ids, before); };
    };
    const struct {
        Ids moved;
        std::function<ChangedStops(const Ids&)> move;
        const char* after;
        const char* logged;  ///< each stop's number before
    } cases[] = {
        {{3}, go(Move::ToTop), "S3:1 S1:2 S2:3 S4:4 S5:5", "S3:3"},
        {{3}, go(Move::Up), "S3:1 S1:2 S2:3 S4:4 S5:5", ""},
        {{2, 5}, go(Move::ToTop), "S2:1 S5:2 S3:3 S1:4 S4:5", "S2:3 S5:5"},
        {{2, 3}, go(Move::ToBottom), "S5:1 S1:2 S4:3 S2:4 S3:5", "S2:1 S3:3"},
        {{5, 4, 2}, go(Move::Up), "S5:1 S4:2 S2:3 S1:4 S3:5", "S4:3 S2:4"},
        {{5, 2, 3}, go(Move::Down), "S4:1 S5:2 S1:3 S2:4 S3:5", "S2:3 S5:1"},
        {{2, 3}, go(Move::Down), "S4:1 S5:2 S1:3 S2:4 S3:5", ""},
        {{3, 4}, put(1), "S5:1 S4:2 S3:3 S1:4 S2:5", "S4:1 S3:5"},
        {{5, 3}, put(3), "S4:1 S5:2 S3:3 S1:4 S2:5", "S5:1"},
        {{4}, put(0), "S5:1 S3:2 S1:3 S2:4 S4:5", "S4:1"},
        {{3, 1}, put(2), "S5:1 S3:2 S1:3 S2:4 S4:5", ""},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.after);
        connection.Execute("DELETE FROM RUNLOG");
        EXPECT_EQ(one.move(one.moved).changedByAnother, Ids{});
        EXPECT_EQ(shown(), one.after);
        EXPECT_EQ(movesLogged(), one.logged);
    }
    connection.Execute("UPDATE STOP_TRIPTYPE SET RUNSEQ=7 WHERE RUN='R1'");
    const auto before = shown();
    const Ids stuck{at(1), at(2)};
    EXPECT_EQ(moveStops(connection, run, stuck, Move::Up).equallyNumbered, Ids{at(1)});
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(movesLogged(), "");
}

/// Dies at the second step of an action.
struct Killer : base::ProgressPort {
    void progress(double) override {}
    void status(const std::string&) override {}
    bool yield() override { return --steps == 0 ? (_exit(9), false) : false; }
    int steps = 2;
};

TEST_F(StopsDistrict, AKilledActionLeavesNothingBehind) {
    add({1, 2, 3});
    const auto before = rows("SELECT ID, RUN, RUNSEQ FROM STOP_TRIPTYPE ORDER BY ID");
    const auto path = district.path(data::DatabaseFile::Routing);
    connection.Close();
    const auto die = [&](bool removing) {
        ado::Connection victim;
        victim.Open(path);
        Killer killer;
        if (removing) {
            removeStops(victim, run, Ids{1}, &killer);
        }
        addStops(victim, run, std::vector{chosen(6), chosen(4), chosen(5)}, &killer);
    };
    EXPECT_EXIT(die(true), testing::ExitedWithCode(9), "");
    EXPECT_EXIT(die(false), testing::ExitedWithCode(9), "");
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
    EXPECT_THAT(asked(std::vector(12, chosen(9))), HasSubstr("S9 on R2 and 2 more."));
    EXPECT_EQ(asked(std::vector(100, chosen(1))), "Do you wish to add all 100 stops to the run?");
}

TEST_F(StopsDistrict, TwoPlannersNoteAtTheSameMomentThatTheDeadHeadIsDue) {
    byOthers("INSERT INTO SYSTEM (NEEDDEADHEADBUILD, LASTDEADHEADBUILD) VALUES (0, Null)");
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        const auto file = store::open(district.path(data::DatabaseFile::Routing));
        file->setDurability(store::Durability::Crash);
        for (int i = 0; !isOver; ++i) {
            file->execute(fmt::format("UPDATE SYSTEM SET NEEDDEADHEADBUILD = {}", i % 2));
        }
    });
    for (int i = 0; i < 400; ++i) {
        EXPECT_NO_THROW(needDeadHeadBuild(connection));
    }
    isOver = true;
    other.join();
}

}  // namespace

}  // namespace stops
