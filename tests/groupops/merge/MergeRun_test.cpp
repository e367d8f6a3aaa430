#include "groupops/merge/MergeRun.h"

#include "mergedistrict.h"
#include "startup/base/session.h"
#include "support/formtest.h"

namespace groupops {
namespace {

using testing::ElementsAre;

class MergeRunForm : public support::FormTest<> {
protected:
    MergeRunForm() : FormTest(fillMerge) {
        form().receive("TO");
        form().showForm();
    }
    MergeRun& form() override { return made<MergeRun>(); }
    std::vector<std::string> mergeWith(const std::string& source) {
        type("cmbRUN", source);
        click("Merge");
        return titles();
    }
};

TEST_F(MergeRunForm, MergesTheRun) {
    EXPECT_EQ(text("OrigRun"), "TO");
    EXPECT_EQ(text("OrigRunInfo"), "AM, 2 stops");
    EXPECT_THAT(mergeWith("FROM"), ElementsAre());
    EXPECT_EQ(text("StatusMsg"), "All stops of run: FROM merged to run: TO.");
    EXPECT_EQ(text("OrigRunInfo"), "AM, 5 stops");
    EXPECT_EQ(text("SourceInfo"), "Oak morning, OAK, AM, 0 stops");
    EXPECT_TRUE(startup::RefreshRunList);
}

TEST_F(MergeRunForm, SaysWhyNothingIsMerged) {
    EXPECT_THAT(mergeWith("to"), ElementsAre());
    EXPECT_THAT(mergeWith(""), ElementsAre("No Run Selected"));
    EXPECT_THAT(mergeWith("NONE"), ElementsAre("Run Not Found"));
    EXPECT_THAT(mergeWith("EMPTY"), ElementsAre("No Stops"));
    EXPECT_EQ(text("StatusMsg"), "");
    EXPECT_FALSE(startup::RefreshRunList);
    form().receive("EMPTY");
    EXPECT_EQ(text("OrigRunInfo"), "0 stops");
    EXPECT_EQ(text("cmbRUN"), "");
    EXPECT_THAT(mergeWith("OLD"), ElementsAre()) << "a run that is not active can be typed";
    EXPECT_EQ(text("OrigRunInfo"), "1 stop");
}

}  // namespace
}  // namespace groupops
