// What the forms of all group operations have in common: how they run, stop, wait and are guarded.

#include <QProgressBar>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include "../groupsupport.h"
#include "groupops/belltime/BellTimeChange.h"
#include "groupops/deadhead/frmCalcDeadHead.h"
#include "groupops/groupchange/frmGroupRunChange.h"
#include "groupops/merge/MergeRun.h"
#include "platform/controls/grid.h"
#include "platform/forms/operation.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"
#include "support/formtest.h"

namespace {

using groupops::BellTimeChange;
using groupops::frmCalcDeadHead;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto BellsWritten = "SELECT COUNT(*) FROM RUN WHERE ChangedBy = 'BELL TIME CHANGE'";

class OperationForms : public support::FormTest<> {
protected:
    OperationForms() {
        forms::WorkSlice::endAllAtOnce(true);
        byOthers("UPDATE RUN SET SCHOOL = 'OAK'");
        startup::RunSearchSchoolSQL = "SELECT RUN.* FROM RUN";
        selection.selected = {"101-AM", "102-AM", "201-PM"};
    }
    ~OperationForms() override { forms::WorkSlice::endAllAtOnce(false); }

    forms::Form& form() override { return *form_; }
    void escape() { QTest::keyClick(&form(), Qt::Key_Escape); }
    /// Presses a button; at every turn of the event loop that the work gives, something happens.
    void click(const char* button, const std::function<void()>& turn) {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, turn);
        timer.start(0);
        Controls::click(button);
    }
    using Controls::click;

    BellTimeChange& openBellForm() {
        auto& bells = loaded<BellTimeChange>(selection);
        form_ = &bells;
        bells.showForm();
        control<controls::Grid>("BellTimeGrid").selectAllRows();
        type("SetTime", "9:10 am");
        click("SetTimes");
        return bells;
    }

    support::FakeSelection selection;
    forms::Form* form_ = nullptr;
};

struct Operation {
    const char* name;
    forms::Form& (*open)(support::FakeSelection& selection);
    void (*enter)(support::Controls& form);
    const char* start;
    const char* stop;
    const char* status;
    std::pair<const char*, const char*> typed;  ///< a control and what is entered there
    const char* written;                        ///< a query for the number of units
    int units;

    friend void PrintTo(const Operation& one, std::ostream* out) { *out << one.name; }
};

template <class Form>
forms::Form& open(support::FakeSelection& selection) {
    auto& registry = forms::FormRegistry::instance();
    if constexpr (std::is_constructible_v<Form, groupops::RunSelection&>) {
        return registry.load<Form>(selection);
    } else {
        return registry.load<Form>();
    }
}

const Operation All[] = {
    {"BellChange",
     open<BellTimeChange>,
     [](support::Controls& form) {
         form.control<controls::Grid>("BellTimeGrid").selectAllRows();
         form.click("SetTimes");
         form.check("Change_Run_Time", false);
     },
     "ChangeBell",
     "StopChange",
     "StatMsg",
     {"SetTime", "09:10 AM"},
     BellsWritten,
     4},
    {"GroupChange",
     open<groupops::frmGroupRunChange>,
     [](support::Controls& form) { form.check("ChangeOverfill"); },
     "ChangeIt",
     "StopIt",
     "StatMsg",
     {"OverFill", "9"},
     "SELECT COUNT(*) FROM RUN WHERE OverFill = 9",
     3},
    {"Merge",
     open<groupops::MergeRun>,
     [](support::Controls& form) {
         dynamic_cast<groupops::MergeRun&>(form.form()).receive("102-AM");
         form.type("cmbRUN", "101-AM");
     },
     "Merge",
     "Stop",
     "StatusMsg",
     {"cmbRUN", "101-AM"},
     "SELECT COUNT(*) FROM RUNLOG WHERE ActivityCode = 5",
     2},
    {"DeadHead",
     open<frmCalcDeadHead>,
     [](support::Controls&) {},
     "Calculate",
     "Stop",
     "StatusMsg",
     {nullptr, nullptr},
     "SELECT COUNT(*) FROM RUN WHERE DEADHEAD_BEFORE_TIME = -3",
     2},
};

class EachOperation : public OperationForms, public testing::WithParamInterface<Operation> {
protected:
    EachOperation() {
        form_ = &GetParam().open(selection);
        form_->showForm();
        if (GetParam().typed.first != nullptr) {
            type(GetParam().typed.first, GetParam().typed.second);
        }
        GetParam().enter(*this);
    }
    forms::Timer& timer() { return *form().findChild<forms::Timer*>(); }
    static int written() { return std::stoi(stored(GetParam().written)); }
    void expectIdle() {
        EXPECT_FALSE(form().isBusy());
        EXPECT_TRUE(isEnabled(GetParam().start));
        EXPECT_FALSE(isShown(GetParam().stop) && isEnabled(GetParam().stop));
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
};

TEST_P(EachOperation, EscapeStopsItBetweenTwoUnitsAndNothingElseIsTakenMeanwhile) {
    bool ran = false;
    click(GetParam().start, [&] {
        ran = ran || form().isBusy();
        EXPECT_TRUE(!form().isBusy() || !isEnabled(GetParam().start));
        EXPECT_TRUE(!form().isBusy() || !form().closeForm());
        if (form().isBusy() && written() == 1) {
            escape();
        }
    });
    ASSERT_TRUE(ran);
    EXPECT_EQ(written(), 1);
    EXPECT_THAT(lastText(), HasSubstr("You stopped the "));
    expectIdle();
    EXPECT_TRUE(isShown(GetParam().status)) << "until the timer clears it";
    EXPECT_TRUE(timer().isEnabled());

    titles();
    click(GetParam().start, [&] {
        EXPECT_TRUE(!form().isBusy() || !timer().isEnabled()) << "it would clear the bar";
    });
    EXPECT_EQ(written(), GetParam().units);
    EXPECT_THAT(titles(), ElementsAre());
    EXPECT_EQ(control<QProgressBar>("ProgressBar1").value(), 100);
    expectIdle();

    emit timer().tick();
    EXPECT_FALSE(isShown("ProgressBar1") || isShown(GetParam().status));
    EXPECT_FALSE(timer().isEnabled());
    escape();
    EXPECT_FALSE(form().isLoaded()) << "idle, Escape leaves the form";
}

INSTANTIATE_TEST_SUITE_P(GroupOperations, EachOperation, testing::ValuesIn(All),
                         [](const auto& one) { return one.param.name; });

TEST_F(OperationForms, AStoppedBellChangeMarksWhatIsDoneAndMovesNoRunTwice) {
    auto& bells = loaded<BellTimeChange>(selection);
    form_ = &bells;
    bells.showForm();
    auto& grid = control<controls::Grid>("BellTimeGrid");
    const auto enter = [&](int row, const char* time) {
        auto* model = grid.view().model();
        model->setData(model->index(row, 3), time);
    };
    enter(1, "8:00");
    enter(2, "9:00");
    enter(3, "3:30 pm");
    click("ChangeBell", [&] {
        if (bells.isBusy() && stored(BellsWritten) == "1") {
            escape();
        }
    });
    const auto row = [&](int at) {
        return grid.cellText(at, 1) + "|" + grid.cellText(at, 3) + "|" + grid.cellText(at, 4);
    };
    EXPECT_EQ(row(1), "08:00 AM| |1 of 2 changed") << "12:15 AM is done and stands with 8:00 now";
    EXPECT_EQ(row(2), "03:00 PM|03:30 PM|none late");
    EXPECT_THAT(lastText(), HasSubstr("dead-head times of the changed runs were not calculated"));
    click("ChangeBell");
    EXPECT_EQ(stored(BellsWritten), "2");
}

// The dead-head that a bell change has opened, and the one that is started in the form it left
// open.
TEST_F(OperationForms, ABellChangeAndItsDeadHeadKeepEachOtherFromClosingAndStarting) {
    auto& bells = openBellForm();
    const auto deadHead = [] { return opened("frmCalcDeadHead"); };
    int calculating = 0;
    const auto whileCalculating = [&] {
        if (deadHead() == nullptr || !bells.isBusy() || bells.isEnabled()) {
            return;
        }
        ++calculating;
        const auto before = stored(BellsWritten);
        click("ChangeBell");
        click("Exit_Change");
        EXPECT_EQ(stored(BellsWritten), before);
        EXPECT_FALSE(bells.closeForm());
        EXPECT_FALSE(deadHead()->closeForm());
        EXPECT_TRUE(deadHead()->isEnabled());
    };
    click("ChangeBell", whileCalculating);
    EXPECT_GT(calculating, 0);
    EXPECT_FALSE(ending());
    EXPECT_TRUE(bells.isLoaded() && deadHead()->isLoaded());
    EXPECT_TRUE(isEnabled("ChangeBell"));

    calculating = 0;
    support::ControlsOf left(*deadHead());
    {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, whileCalculating);
        timer.start(0);
        left.click("Calculate");
    }
    EXPECT_GT(calculating, 0);
    EXPECT_FALSE(ending());

    // And the other way round.
    bool changing = false;
    control<controls::Grid>("BellTimeGrid").selectAllRows();
    click("SetTimes");
    check("Change_Run_Time", false);
    click("ChangeBell", [&] {
        if (bells.isBusy()) {
            changing = true;
            EXPECT_FALSE(left.isEnabled("Calculate"));
            EXPECT_FALSE(deadHead()->closeForm());
        }
    });
    EXPECT_TRUE(changing);
    EXPECT_TRUE(left.isEnabled("Calculate"));
    EXPECT_TRUE(bells.closeForm());
}

}  // namespace
