#include "groupops/merge/MergeRun.h"

#include "mergedistrict.h"
#include "platform/controls/grid.h"
#include "startup/base/session.h"
#include "support/formtest.h"

namespace groupops {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class MergeRunForm : public support::FormTest<> {
protected:
    MergeRunForm() : FormTest(fillMerge) {
        form().receive("TO");
        form().showForm();
    }
    MergeRun& form() override { return made<MergeRun>(); }
    std::string line(int row) {
        auto& grid = control<controls::Grid>("SideBySide");
        return grid.cellText(row, 0) + "|" + grid.cellText(row, 1) + "|" + grid.cellText(row, 2);
    }
    std::vector<std::string> mergeWith(const std::string& source) {
        type("cmbRUN", source);
        click("Merge");
        return titles();
    }
};

TEST_F(MergeRunForm, ShowsUnlikeRunsAndAsksThenWithWhatItConcerns) {
    EXPECT_EQ(text("OrigRun"), "TO");
    type("cmbRUN", "FROM");
    EXPECT_EQ(line(1), "School|OAK| ");
    EXPECT_EQ(line(7), "Stops|3|2");
    EXPECT_EQ(text("Unlike"), "One thing is unlike: school.");
    EXPECT_EQ(text("AfterMerge"),
              "After the merge: 5 stops, 40 passengers of 12 seats, 28 too many.");
    EXPECT_FALSE(control<QPushButton>("Merge").isDefault());
    answer(base::MsgAnswer::No);
    click("Merge");
    EXPECT_THAT(lastText(),
                AllOf(HasSubstr("unlike: school."),
                      HasSubstr("3 stops of run FROM, Oak morning, school OAK\nonto run "
                                "TO, school none")));
    EXPECT_EQ(line(7), "Stops|3|2");
    titles();

    byOthers("UPDATE RUN SET SCHOOL = 'OAK' WHERE RUN = 'TO'");
    type("cmbRUN", "");
    EXPECT_EQ(line(7), "Stops| |2");
    EXPECT_THAT(mergeWith("FROM"), ElementsAre());
    EXPECT_TRUE(control<QPushButton>("Merge").isDefault());
    EXPECT_EQ(text("StatusMsg"), "All stops of run: FROM merged to run: TO.");
    EXPECT_EQ(line(7), "Stops|0|5");
    EXPECT_TRUE(startup::RefreshRunList);
}

TEST_F(MergeRunForm, SaysWhyNothingIsMerged) {
    EXPECT_THAT(mergeWith("to"), ElementsAre());
    EXPECT_THAT(mergeWith(""), ElementsAre("No Run Selected"));
    EXPECT_THAT(mergeWith("O'HARE"), ElementsAre("Run Not Found"));
    EXPECT_THAT(mergeWith("EMPTY"), ElementsAre("No Stops"));
    EXPECT_EQ(text("StatusMsg"), "");
    EXPECT_FALSE(startup::RefreshRunList);
    form().receive("EMPTY");
    EXPECT_EQ(line(7), "Stops| |0");
    EXPECT_EQ(text("cmbRUN"), "");
    EXPECT_THAT(mergeWith("OLD"), ElementsAre()) << "a run that is not active can be typed";
    EXPECT_EQ(line(7), "Stops|0|1");
}

}  // namespace
}  // namespace groupops
