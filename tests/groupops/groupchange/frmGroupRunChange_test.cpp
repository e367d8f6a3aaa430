#include "groupops/groupchange/frmGroupRunChange.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

#include <gmock/gmock.h>

#include "../groupsupport.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/forms/formregistry.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace {

using testing::ElementsAre;

class GroupRunChangeForm : public testing::Test {
protected:
    GroupRunChangeForm() {
        forms::Application::instance().startAfresh();
        fillSmall(district);
        session.start(district.configFolder());
        selection.selected = {"101-AM", "201-PM"};
        form = &forms::FormRegistry::instance().load<groupops::frmGroupRunChange>(selection);
    }
    ~GroupRunChangeForm() override {
        forms::FormRegistry::instance().destroyAll();
        controls::LayoutMemory::instance().forget();
    }

    template <class Control>
    Control& control(const char* name) {
        return *form->findChild<Control*>(name);
    }
    void tick(const char* name) { control<QAbstractButton>(name).setChecked(true); }
    void choose(const char* name, const std::string& text) {
        control<controls::MultiColumnCombo>(name).setText(text);
    }
    void type(const char* name, const char* text) { control<QLineEdit>(name).setText(text); }
    std::vector<std::string> locationsAndOverfills() {
        return support::rowsOf("SELECT LOCCODE, OverFill FROM RUN ORDER BY RUN",
                               *startup::gcnRouting);
    }

    support::TestDistrict district;
    support::TestSession session;
    support::FakeSelection selection;
    groupops::frmGroupRunChange* form = nullptr;
};

TEST_F(GroupRunChangeForm, EachBoxEnablesItsField) {
    const std::vector<std::pair<const char*, const char*>> pairs = {
        {"ChangeRunFamily", "cmbRunFamily"}, {"ChangeLocation", "cmbLOCCODE"},
        {"ChangeSchool", "cmbSchool"},       {"ChangeTripType", "cmbTripType"},
        {"ChangeVehType", "cmbVEHTYPE"},     {"ChangeCapacity", "cmbCapacity"},
        {"ChangeOverfill", "OverFill"}};
    for (const auto& [box, field] : pairs) {
        EXPECT_FALSE(control<QWidget>(field).isEnabled()) << field;
        tick(box);
        EXPECT_TRUE(control<QWidget>(field).isEnabled()) << field;
        control<QAbstractButton>(box).setChecked(false);
        EXPECT_FALSE(control<QWidget>(field).isEnabled()) << field;
    }
}

TEST_F(GroupRunChangeForm, ChangesWhatIsTickedTellsItAndSearchesAgain) {
    tick("ChangeLocation");
    choose("cmbLOCCODE", "north");
    tick("ChangeOverfill");
    type("OverFill", "12");
    choose("cmbSchool", "PINE");  // not ticked
    form->ChangeIt_Click();

    EXPECT_THAT(locationsAndOverfills(), ElementsAre("NORTH|12", "SOUTH|-", " |-", "NORTH|12"));
    EXPECT_THAT(support::rowsOf("SELECT SCHOOL, ChangedBy FROM RUN WHERE RUN='101-AM'",
                                *startup::gcnRouting),
                ElementsAre("OAK|-"));
    EXPECT_EQ(control<QLabel>("StatMsg").text(), "Changed selected information on 2 runs.");
    EXPECT_EQ(selection.searches, 1);
    EXPECT_TRUE(session.boxes.shown.empty());
    EXPECT_FALSE(control<QWidget>("StatMsg").isHidden());
    form->Timer1_Timer();
    EXPECT_EQ(control<QLabel>("StatMsg").text(), "Changing Run Information");
    EXPECT_TRUE(control<QWidget>("StatMsg").isHidden());
}

TEST_F(GroupRunChangeForm, ATickedEmptyListEmptiesTheColumn) {
    tick("ChangeLocation");
    form->ChangeIt_Click();
    EXPECT_THAT(locationsAndOverfills(), ElementsAre("|-", "SOUTH|-", " |-", "|-"));
}

TEST_F(GroupRunChangeForm, RefusesBadValuesBeforeAnythingIsWritten) {
    const auto before = locationsAndOverfills();
    tick("ChangeLocation");
    tick("ChangeOverfill");
    choose("cmbLOCCODE", "NOWHERE");
    form->ChangeIt_Click();
    choose("cmbLOCCODE", "NORTH");
    for (const char* overfill : {"", "many", "2.5", "-1"}) {
        type("OverFill", overfill);
        form->ChangeIt_Click();
    }
    ASSERT_EQ(session.boxes.shown.size(), 5U);
    EXPECT_EQ(session.boxes.shown[0].title, "Invalid Location");
    EXPECT_EQ(session.boxes.shown[4].title, "Invalid Overfill");
    EXPECT_EQ(locationsAndOverfills(), before);
    EXPECT_EQ(selection.searches, 0);
}

TEST_F(GroupRunChangeForm, DoesNothingWithoutASelectedRunAndTellsOfDeletedOnes) {
    tick("ChangeLocation");
    selection.selected.clear();
    form->ChangeIt_Click();
    EXPECT_EQ(selection.searches, 0);
    EXPECT_FALSE(control<QWidget>("ChangeIt").isEnabled());

    selection.selected = {"101-AM", "999-XX"};
    form->ChangeIt_Click();
    ASSERT_EQ(session.boxes.shown.size(), 1U);
    EXPECT_THAT(session.boxes.shown[0].text, testing::HasSubstr("999-XX"));
    EXPECT_EQ(control<QLabel>("StatMsg").text(), "Changed selected information on 1 runs.");
}

}  // namespace
