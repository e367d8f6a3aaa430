#include "groupops/deadhead/frmCalcDeadHead.h"

#include "startup/base/session.h"
#include "support/formtest.h"

namespace groupops {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class CalcDeadHeadForm : public support::FormTest<> {
protected:
    frmCalcDeadHead& form() override { return loaded<frmCalcDeadHead>(); }
};

TEST_F(CalcDeadHeadForm, CalculatesAndShowsWhatIsMissing) {
    EXPECT_EQ(text("LastBuild"), "Not calculated yet.");
    EXPECT_TRUE(isChecked("ResetDeadHead"));
    click("Calculate");
    EXPECT_THAT(text("StatusMsg"), HasSubstr("Dead Head Time calculated for 2.  2 Routes had 1"));
    EXPECT_EQ(text("LastBuild"), "Last calculated 1/31/2026 8:05:09 AM.");
    EXPECT_EQ(row("OpenLegs", 0), "R1|101-AM|before|The stop it starts from is not set");
    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_THAT(titles(), ElementsAre());

    byOthers("UPDATE RUN SET INT_ROUTEID = NULL");
    click("Calculate");
    EXPECT_EQ(list("OpenLegs").rows(), 0);
}

}  // namespace
}  // namespace groupops
