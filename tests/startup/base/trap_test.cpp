#include "startup/base/trap.h"

#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "platform/base/error.h"
#include "support/testsession.h"

namespace {

using startup::trapped;

class Trap : public testing::Test {
protected:
    void SetUp() override {
        startup::gErrorHandling = true;
        startup::gErrHandler = std::make_unique<startup::cErrorHandler>();
        startup::gErrHandler->Destination(folder_.path() + "Error.txt");
    }
    [[nodiscard]] std::string shownText() const { return session_.boxes.shown.at(0).text; }

    support::TestSession session_;
    support::TemporaryFolder folder_;
    const std::function<int()> fails_ = []() -> int { base::raise(base::errors::TypeMismatch); };
};

TEST_F(Trap, ReportsTheProcedureAndShutsDown) {
    EXPECT_THROW(trapped("SetPaths", "mdlDBConnection", fails_), base::EndProgram);
    EXPECT_EQ(shownText(),
              "The following error has occurred in procedure: \nSetPaths of Module: "
              "mdlDBConnection.\n\nError (13) Type mismatch");
    EXPECT_EQ(session_.boxes.shown.size(), 1U);
    EXPECT_EQ(session_.forms.unloads, 1);
}

TEST_F(Trap, GivesWhatTheProcedureReturns) {
    EXPECT_EQ(trapped("GetRun", "mdlGetItems", [] { return std::string("R1"); }), "R1");
}

TEST_F(Trap, ReportsErrorsOfTheLibraryUnderNumbersOfTheRunTime) {
    EXPECT_THROW(trapped("A", "B", [] { throw std::bad_alloc(); }), base::EndProgram);
    EXPECT_TRUE(shownText().ends_with("\n\nError (7) Out of memory"));
    EXPECT_THROW(trapped("A", "B", [] { throw std::logic_error("odd"); }), base::EndProgram);
    EXPECT_TRUE(session_.boxes.shown.at(1).text.ends_with("\n\nError (51) Internal error: odd"));
}

TEST_F(Trap, SwitchedOffItLetsErrorsPass) {
    startup::gErrorHandling = false;
    EXPECT_THROW(trapped("cmdSearch_Click", "frmTarn", fails_), base::RunTimeError);
    EXPECT_TRUE(session_.boxes.shown.empty());
}

TEST_F(Trap, TheEndOfTheProgramPassesUnreported) {
    const auto ends = [] { throw base::EndProgram{3}; };
    EXPECT_THROW(trapped("Exit_Click", "frmTarn", ends), base::EndProgram);
    EXPECT_TRUE(session_.boxes.shown.empty());
}

}  // namespace
