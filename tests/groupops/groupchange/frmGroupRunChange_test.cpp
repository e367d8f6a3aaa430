#include "groupops/groupchange/frmGroupRunChange.h"

#include "../groupsupport.h"
#include "support/formtest.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class GroupRunChangeForm : public support::FormTest<> {
protected:
    GroupRunChangeForm() {
        selection.selected = {"101-AM", "201-PM"};
        form();
    }
    groupops::frmGroupRunChange& form() override {
        return loaded<groupops::frmGroupRunChange>(selection);
    }
    static std::vector<std::string> locationsAndOverfills() {
        return rows("SELECT LOCCODE, OverFill FROM RUN ORDER BY RUN");
    }

    support::FakeSelection selection;
};

TEST_F(GroupRunChangeForm, EachBoxEnablesItsField) {
    const std::vector<std::pair<const char*, const char*>> lines{
        {"ChangeRunFamily", "cmbRunFamily"}, {"ChangeLocation", "cmbLOCCODE"},
        {"ChangeSchool", "cmbSchool"},       {"ChangeTripType", "cmbTripType"},
        {"ChangeVehType", "cmbVEHTYPE"},     {"ChangeCapacity", "cmbCapacity"},
        {"ChangeOverfill", "OverFill"}};
    for (const auto& [box, field] : lines) {
        check(box);
        EXPECT_TRUE(isEnabled(field)) << field;
        check(box, false);
        EXPECT_FALSE(isEnabled(field)) << field;
    }
}

TEST_F(GroupRunChangeForm, ChangesWhatIsTickedTellsItAndSearchesAgain) {
    check("ChangeLocation");
    type("cmbLOCCODE", "north");
    check("ChangeOverfill");
    type("OverFill", "12");
    type("cmbSchool", "PINE");  // not ticked
    click("ChangeIt");

    EXPECT_THAT(locationsAndOverfills(),
                ElementsAre("NORTH|12", "SOUTH|Null", " |Null", "NORTH|12"));
    EXPECT_EQ(storedRun("SCHOOL") + storedRun("ChangedBy"), "OAKNull");
    EXPECT_EQ(text("StatMsg"), "Changed selected information on 2 runs.");
    EXPECT_EQ(selection.searches, 1);
    EXPECT_THAT(titles(), ElementsAre());
    form().Timer1_Timer();
    EXPECT_EQ(text("StatMsg"), "Changing Run Information");
}

TEST_F(GroupRunChangeForm, ATickedEmptyListEmptiesTheColumnAndSaysSoBefore) {
    EXPECT_EQ(text("NowTripType") + ", " + text("NowSchool"), "AM (1), PM (1), all OAK");
    EXPECT_FALSE(isShown("WhatWillHappen"));
    check("ChangeLocation");
    EXPECT_EQ(combo("cmbLOCCODE").lineEdit()->placeholderText(), "(will be emptied)");
    byOthers("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 50");
    type("cmbVEHTYPE", "LARGE");
    check("ChangeVehType");
    EXPECT_EQ(text("WhatWillHappen"),
              "2 runs: Location is emptied, Vehicle Type becomes LARGE.\nThere is no undo.");
    type("cmbCapacity", "Low");
    check("ChangeCapacity");
    EXPECT_THAT(text("WhatWillHappen"),
                HasSubstr("2 of them will carry more passengers than they have seats then."));
    check("ChangeCapacity", false);
    check("ChangeVehType", false);
    click("ChangeIt");
    EXPECT_THAT(locationsAndOverfills(), ElementsAre(" |Null", "SOUTH|Null", " |Null", " |Null"));
}

TEST_F(GroupRunChangeForm, RefusesBadValuesBeforeAnythingIsWritten) {
    const auto before = locationsAndOverfills();
    check("ChangeLocation");
    check("ChangeOverfill");
    type("cmbLOCCODE", "NOWHERE");
    click("ChangeIt");
    type("cmbLOCCODE", "NORTH");
    for (const char* overfill : {"", "many", "2.5", "-1"}) {
        type("OverFill", overfill);
        click("ChangeIt");
    }
    const auto overfill = "Invalid Overfill";
    EXPECT_THAT(titles(), ElementsAre("Invalid Location", overfill, overfill, overfill, overfill));
    EXPECT_EQ(locationsAndOverfills(), before);
    EXPECT_EQ(selection.searches, 0);
}

TEST_F(GroupRunChangeForm, DoesNothingWithoutASelectedRunAndTellsOfDeletedOnes) {
    check("ChangeLocation");
    selection.selected.clear();
    click("ChangeIt");
    EXPECT_EQ(selection.searches, 0);
    EXPECT_FALSE(isEnabled("ChangeIt"));

    selection.selected = {"101-AM", "999-XX"};
    form().ChangeIt_Click();
    EXPECT_THAT(texts(), ElementsAre(HasSubstr("999-XX")));
    EXPECT_EQ(text("StatMsg"), "Changed selected information on 1 runs.");
}

}  // namespace
