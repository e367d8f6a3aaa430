#include "groupops/base/grouploop.h"

#include "../groupsupport.h"
#include "platform/ado/session.h"
#include "platform/store/open/open.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace {

using groupops::GroupLoop;
using groupops::LeftOut;
using groupops::Outcome;
using support::FakeProgress;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::vector<std::string> Runs{"101-AM", "102-AM", "201-PM"};
constexpr auto Written = "SELECT COUNT(*) FROM RUN WHERE COMMENT = 'done'";

class GroupLoopTest : public support::DistrictSession {
protected:
    GroupLoopTest() { GroupLoop::setPatience(std::chrono::milliseconds(0)); }
    ~GroupLoopTest() override { GroupLoop::setPatience(std::chrono::minutes(1)); }

    static std::optional<LeftOut> mark(const std::string& run) {
        const auto sql = "UPDATE RUN SET COMMENT = 'done' WHERE RUN.RUN = '" + run + "'";
        return startup::gcnRouting->Execute(sql) == 1 ? std::nullopt
                                                      : std::optional<LeftOut>({"Deleted", run});
    }
    Outcome change(FakeProgress& progress, const std::vector<std::string>& runs = Runs,
                   std::function<std::optional<LeftOut>(const std::string&)> unit = mark) {
        Outcome outcome{.asked = static_cast<int>(runs.size())};
        GroupLoop(*startup::gcnRouting, progress, groupops::runChangeWording(), outcome)
            .forEach(runs, std::move(unit), [](const std::string& run) { return run; });
        return outcome;
    }
    static std::string left(const Outcome& outcome) {
        return whatWasLeft(outcome, groupops::runChangeWording());
    }
};

TEST_F(GroupLoopTest, TellsHowFarItIsStopsBetweenTwoAndSaysWhatWasLeft) {
    FakeProgress progress;
    EXPECT_EQ(left(change(progress)), "");
    EXPECT_THAT(progress.texts, testing::ElementsAreArray(Runs));
    EXPECT_THAT(progress.percents,
                ElementsAre(testing::DoubleNear(33.3, 0.1), testing::DoubleNear(66.7, 0.1), 100));
    FakeProgress stopping([](int turn) { return turn == 4; });
    EXPECT_EQ(left(change(stopping, {"GONE", "101-AM", "AWAY", "102-AM", "201-PM"})),
              "1 of 5 runs changed and saved.\n\nYou stopped the change.  The runs not yet reached "
              "are as they were before.\n\nDeleted: GONE, AWAY.");
    EXPECT_THAT(stopping.texts, ElementsAre("101-AM")) << "nothing is told of what is left out";
    std::vector<std::string> many(13, "X");
    EXPECT_EQ(left(change(progress, many)),
              "0 of 13 runs changed and saved.\n\nDeleted: X, X, X, X, X, X, X, X, X, X and 3 "
              "more.");
}

TEST_F(GroupLoopTest, WaitsForAnotherProgramAndSaysSo) {
    GroupLoop::setPatience(std::chrono::hours(1));
    std::shared_ptr<void> held;
    FakeProgress progress([&](int turn) {
        if (turn == 2) {
            held = heldByOthers();
        } else if (turn == 9) {
            EXPECT_EQ(stored(Written), "1");
            held.reset();
        }
        return false;
    });
    EXPECT_EQ(left(change(progress)), "");
    EXPECT_THAT(progress.texts, ElementsAre("101-AM", StartsWith("Waiting for another program"),
                                            "101-AM", "102-AM", "201-PM"));
    EXPECT_EQ(stored(Written), "3");
    EXPECT_THAT(titles(), ElementsAre());

    FakeProgress brief([&](int turn) {
        if (turn == 1) {
            held = heldByOthers();
        } else if (turn == 3) {
            held.reset();
        }
        return false;
    });
    change(brief);
    EXPECT_THAT(brief.texts, Not(Contains(StartsWith("Waiting")))) << "a moment is not told";

    held = heldByOthers();
    FakeProgress stopping([](int turn) { return turn == 3; });
    EXPECT_THAT(left(change(stopping)), HasSubstr("You stopped the change."));
}

TEST_F(GroupLoopTest, AsksWhetherToGoOnWhenAnotherProgramKeepsTheFile) {
    std::shared_ptr<void> held;
    FakeProgress progress([&](int turn) {
        if (turn == 2) {
            held = heldByOthers();
        } else if (session.boxes.shown.size() == 1) {
            held.reset();
        }
        return false;
    });
    EXPECT_TRUE(change(progress).complete()) << "it goes on until it is told otherwise";
    EXPECT_EQ(stored(Written), "3");
    EXPECT_THAT(titles(), ElementsAre("Database in Use", "Database in Use"));

    held = heldByOthers();
    answer(base::MsgAnswer::No);
    FakeProgress waiting;
    const auto outcome = change(waiting);
    EXPECT_TRUE(outcome.stopped);
    EXPECT_THAT(lastText(), HasSubstr("0 of 3 runs changed and saved.  The runs not yet reached "
                                      "are as they were before."));
}

TEST_F(GroupLoopTest, AUnitIsWrittenAsOneAndDoneAnewAsAWholeAfterALock) {
    int tries = 0;
    FakeProgress progress;
    const auto unit = [&](const std::string& run) {
        const auto other = store::open(district.path(data::DatabaseFile::Routing));
        other->setLockTimeout(1);
        EXPECT_THROW(other->begin(), store::StoreError) << "others are kept out of a unit";
        startup::gcnRouting->Execute(
            "UPDATE RUN SET OverFill = RUN.OverFill + 1 WHERE RUN.RUN = '" + run + "'");
        if (++tries == 2) {
            throw store::StoreError(store::Fault::Locked, "another file is locked");
        }
        return std::optional<LeftOut>();
    };
    byOthers("UPDATE RUN SET OverFill = 0");
    EXPECT_TRUE(change(progress, Runs, unit).complete());
    EXPECT_EQ(tries, 4);
    EXPECT_THAT(rows("SELECT RUN, OverFill FROM RUN WHERE OverFill = 1 ORDER BY RUN"),
                ElementsAre("101-AM|1", "102-AM|1", "201-PM|1"));
}

TEST_F(GroupLoopTest, BeforeAFaultGoesOnThePlannerIsToldWhatIsWritten) {
    const auto toldOf = [&](store::Fault fault) {
        FakeProgress progress;
        Outcome outcome{.asked = 3};
        GroupLoop loop(*startup::gcnRouting, progress, groupops::runChangeWording(), outcome);
        const auto fails = [&](const std::string& run) {
            loop.worksOn(run);
            return run == "102-AM" ? throw store::StoreError(fault, "fault") : mark(run);
        };
        EXPECT_THROW(loop.forEach(Runs, fails, [](const std::string& run) { return run; }),
                     store::StoreError);
        return lastText();
    };
    EXPECT_THAT(toldOf(store::Fault::Damaged),
                AllOf(HasSubstr("the change could not go on at run: 102-AM."),
                      HasSubstr("1 of 3 runs changed and saved.  The runs not yet reached are as"),
                      HasSubstr("may be written in part")));
    EXPECT_THAT(toldOf(store::Fault::Lost), HasSubstr("is written as a whole or not at all."));
    EXPECT_EQ(stored(Written), "1");
}

}  // namespace
