// How often a group operation waits for a server, and what reads and writes that go together come
// to.

#include "../groupops/groupsupport.h"
#include "farsession.h"
#include "groupops/belltime/bellchange.h"
#include "groupops/deadhead/districtdeadhead.h"
#include "groupops/groupchange/runchange.h"
#include "platform/ado/recordset.h"
#include "platform/store/open/open.h"
#include "support/errors.h"
#include "support/impatience.h"
#include "support/rows.h"

namespace {

using startup::gcnRouting;

using GroupTrips = FarSession;

TEST_F(GroupTrips, OfAGroupDoNotGrowWithItsRuns) {
    support::FakeProgress silent;
    const auto ofEach = [&](auto action) {
        const auto one = tripsOf([&] { action(1); });
        return std::pair{one, (tripsOf([&] { action(3); }) - one) / 2};
    };
    int round = 0;
    const auto changed = ofEach([&](std::size_t count) {
        const std::vector<groupops::RunChange> changes{{"OverFill", ++round}};
        EXPECT_EQ(
            groupops::changeRuns(*gcnRouting, std::span(Runs).first(count), changes, silent).done,
            static_cast<int>(count));
    });
    EXPECT_EQ(changed.second, 2) << changed.first;
    EXPECT_EQ(storedRun("OverFill", "FAR-3"), std::to_string(round));
    const auto timed = ofEach([&](std::size_t count) {
        groupops::BellGroups groups;
        readBellGroups(*gcnRouting,
                       count == 1 ? "SELECT RUN.* FROM RUN WHERE RUN.RUN='FAR'"
                                  : "SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE 'FAR%'",
                       groups);
        const auto bell = base::Date::timeOfDay(8, ++round);
        const groupops::BellChange change{
            groups, {static_cast<std::size_t>(groups.count()), bell}, {.fromEnd = true}};
        EXPECT_EQ(changeBellTimes(*gcnRouting, change, {silent, [](double) {}}).done,
                  static_cast<int>(count));
    });
    EXPECT_EQ(timed.second, 2) << timed.first;
    EXPECT_EQ(storedRun("BellTime", "FAR-3"), base::Date::timeOfDay(8, round).text());
    EXPECT_EQ(stored("SELECT COUNT(*) FROM STOP_TRIPTYPE WHERE RUN='FAR-3' AND TIME_AT_STOP >= "
                     "#7:00 AM#"),
              std::to_string(Stops));
}

TEST_F(GroupTrips, OfARouteAreTwo) {
    support::FakeProgress silent;
    const auto all = tripsOf([&] {
        groupops::calculateAllRoutes({*gcnRouting, *startup::gcnDeadCross}, false, silent);
    });
    constexpr std::int64_t Once = 1 + 1 + 2 + 2;  // the routes, the gap, travel, the mark
    constexpr std::int64_t OfTwoRoutes = 2 + 2;
    EXPECT_EQ(all, Once + OfTwoRoutes);
    EXPECT_EQ(storedRun("DEADHEAD_BEFORE_TIME", "FAR"), "7");
}

TEST_F(GroupTrips, AreGivenUpOnce) {
    support::FakeProgress silent;
    const auto other = store::open(store::pathIn(startup::gDataPath, "DEADCROSS.mdb"));
    other->begin();
    other->execute("LOCK TABLE DEADHEAD_CROSS");
    const support::Impatience impatience;
    EXPECT_EQ(
        support::errorOf([&] {
            groupops::calculateAllRoutes({*gcnRouting, *startup::gcnDeadCross}, false, silent);
        }),
        store::numberOf(store::Fault::GivenUp));
    EXPECT_EQ(impatience.told, 1);
}

/// Writes to three runs one after the other, of which another planner changes the second meanwhile.
std::string writtenBeside(bool together, const std::string& other) {
    std::string raised = "nothing";
    try {
        ado::CommitOnExit unit(*gcnRouting, {.writesTogether = together});
        ado::Recordset rows;
        rows.Open("SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE 'FAR%' ORDER BY RUN.RUN", *gcnRouting,
                  ado::CursorType::Dynamic);
        FarSession::byServer(other);
        for (; !rows.Eof(); rows.MoveNext()) {
            rows["Description"].Value("written");
            rows.Update();
        }
        unit.commit();
    } catch (const base::RunTimeError& error) {
        raised = fmt::format("{} {}", error.number(), error.what());
    }
    return raised;
}

TEST_F(GroupTrips, WritesThatGoTogetherFailAsOneByOne) {
    const auto outcome = [&](bool together, const std::string& other) {
        byServer(
            R"(INSERT INTO "routing.mdb"."RUN" ("RUN") VALUES ('FAR-2') ON CONFLICT DO NOTHING)");
        byServer(R"(UPDATE "routing.mdb"."RUN" SET "DESCRIPTION" = NULL, "OverFill" = 0)");
        const std::string raised = writtenBeside(together, other);
        auto after =
            support::joined(rows("SELECT RUN.DESCRIPTION, RUN.OverFill FROM RUN WHERE "
                                 "RUN.RUN LIKE 'FAR%' ORDER BY RUN.RUN"));
        return raised + " " + after;
    };
    for (const char* other :
         {"SELECT 1", R"(UPDATE "routing.mdb"."RUN" SET "OverFill" = 9 WHERE "RUN" = 'FAR-2')",
          R"(DELETE FROM "routing.mdb"."RUN" WHERE "RUN" = 'FAR-2')"}) {
        EXPECT_EQ(outcome(true, other), outcome(false, other)) << other;
    }
    EXPECT_EQ(storedRun("Description", "FAR"), "written");
    EXPECT_EQ(storedRun("Description", "FAR-3"), "Null") << "it stands behind the one that failed";
}

TEST_F(GroupTrips, RowsWithAnyTextGoTogether) {
    constexpr auto Rows = "SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE 'FAR%' ORDER BY RUN.RUN";
    const auto give = [&](const std::string& text) {
        ado::CommitOnExit unit(*gcnRouting, {.reads = {Rows}, .writesTogether = true});
        ado::Recordset rows;
        rows.Open(Rows, *gcnRouting, ado::CursorType::Dynamic);
        for (; !rows.Eof(); rows.MoveNext()) {
            rows["Description"].Value(text);
            rows["TOTAL_MILES"].Value(text == "NULL" ? base::Value() : base::Value(0.1));
            rows.Update();
        }
        unit.commit();
    };
    for (const char* text :
         {R"("\\, {a} '$1' \")", "NULL", "", " x\ty\n", "École \xF0\x9F\x9A\x8C"}) {
        const auto before = trips();
        give(text);
        EXPECT_EQ(trips(), before + 2) << text;
        EXPECT_EQ(storedRun("Description", "FAR-3"), text);
    }
}

TEST_F(GroupTrips, ReadsAheadAreNotOlderThanTheLastWrite) {
    const std::string wanted = "SELECT RUN.OverFill FROM RUN WHERE RUN.RUN='FAR'";
    const std::string failing = "SELECT CLng(RUN.RUN) AS N FROM RUN";
    const auto set = [](int seats) {
        gcnRouting->Execute(fmt::format("UPDATE RUN SET OverFill={} WHERE RUN='FAR'", seats));
    };
    set(1);
    for (const auto until : {ado::ReadAhead::Until::Write, ado::ReadAhead::Until::End}) {
        const ado::ReadAhead ahead(*gcnRouting, {wanted, wanted}, until);
        const auto before = trips();
        EXPECT_EQ(stored(wanted), "1");
        EXPECT_EQ(trips(), before);
        set(2);
        EXPECT_EQ(stored(wanted), until == ado::ReadAhead::Until::Write ? "2" : "1");
        EXPECT_EQ(stored(wanted), "2") << "each is handed out once";
        set(1);
    }
    ado::CommitOnExit unit(*gcnRouting, {.reads = {wanted, failing}});
    EXPECT_EQ(stored(wanted), "1");
    EXPECT_EQ(support::errorOf([&] { return stored(failing); }), 13);
    set(3);
    unit.commit();
    EXPECT_EQ(stored(wanted), "3");
}

}  // namespace
