#include "groupops/deadhead/frmCalcDeadHead.h"

#include <QCheckBox>
#include <QDeadlineTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>

#include "platform/controls/multicolumnlist.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/operation.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"
#include "support/testsession.h"
#include "tools/district/make/madedistrict.h"

namespace groupops {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

class CalcDeadHeadForm : public testing::Test {
protected:
    CalcDeadHeadForm() {
        forms::Application::instance().startAfresh();
        forms::WorkSlice::endAllAtOnce(true);
        session_.start(district_.folder() + "/vireo");
    }
    ~CalcDeadHeadForm() override {
        forms::WorkSlice::endAllAtOnce(false);
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
    }

    static frmCalcDeadHead& form() {
        return forms::FormRegistry::instance().load<frmCalcDeadHead>();
    }
    template <class Control>
    static Control& control(const char* name) {
        return *form().findChild<Control*>(name);
    }
    static std::string label(const char* name) {
        return control<QLabel>(name).text().toStdString();
    }

    /// Runs `turn` at every turn of the event loop that the calculation gives.
    void duringCalculation(const std::function<void()>& turn) {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, turn);
        timer.start(0);
        control<QPushButton>("Calculate").click();
    }

    tools::district::MadeDistrict district_{400};
    support::TestSession session_;
};

}  // namespace

TEST_F(CalcDeadHeadForm, CalculatesAndClearsTheMessageLater) {
    form().showForm();
    EXPECT_EQ(label("LastBuild"), "Not calculated yet.");
    forms::Timer::setSpeed(1e6);
    int turns = 0;
    bool closed = false;
    duringCalculation([&] {
        turns += form().isBusy() ? 1 : 0;
        closed = closed || form().closeForm();
        EXPECT_TRUE(!form().isBusy() || !control<QPushButton>("CloseIt").isEnabled());
    });
    EXPECT_GT(turns, 0);
    EXPECT_FALSE(closed);
    EXPECT_THAT(label("StatusMsg"), HasSubstr("Dead Head Time calculated for 80.  "));
    EXPECT_EQ(label("LastBuild"), "Last calculated 1/31/2026 8:05:09 AM.");
    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_THAT(session_.boxes.shown, SizeIs(0));
    const QDeadlineTimer patience(5000);
    while (!label("StatusMsg").empty() && !patience.hasExpired()) {
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(label("StatusMsg"), "");
    EXPECT_FALSE(control<QProgressBar>("ProgressBar1").isVisible());
    forms::Timer::setSpeed(1);
}

TEST_F(CalcDeadHeadForm, StopsBetweenTwoRoutesAndSaysSo) {
    form().showForm();
    form().ResetDeadHead().setChecked(false);
    duringCalculation([&] { control<QPushButton>("Stop").click(); });
    ASSERT_THAT(session_.boxes.shown, SizeIs(1));
    EXPECT_EQ(session_.boxes.shown[0].title, "Calculation Stopped");
    EXPECT_THAT(session_.boxes.shown[0].text, HasSubstr("are as they were before."));
    EXPECT_FALSE(control<QPushButton>("Stop").isEnabled());
    EXPECT_EQ(label("LastBuild"), "Not calculated yet.");
}

}  // namespace groupops
