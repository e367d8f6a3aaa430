#include "groupops/merge/MergeRun.h"

#include <QDeadlineTimer>
#include <QLabel>
#include <QPushButton>

#include <gmock/gmock.h>

#include "mergedistrict.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/timer.h"
#include "startup/base/session.h"
#include "support/testsession.h"

namespace groupops {
namespace {

using testing::ElementsAre;

class MergeRunForm : public testing::Test {
protected:
    MergeRunForm() {
        forms::Application::instance().startAfresh();
        fillMerge(district_);
        session_.start(district_.configFolder());
        form().receive("TO");
        form().showForm();
    }
    ~MergeRunForm() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
    }

    static MergeRun& form() { return forms::FormRegistry::instance().make<MergeRun>(); }
    static std::string label(const char* name) {
        return form().findChild<QLabel*>(name)->text().toStdString();
    }
    std::vector<std::string> mergeWith(const std::string& source) {
        form().findChild<controls::MultiColumnCombo*>("cmbRUN")->setText(source);
        form().findChild<QPushButton*>("Merge")->click();
        std::vector<std::string> titles;
        for (const auto& box : std::exchange(session_.boxes.shown, {})) {
            titles.push_back(box.title);
        }
        return titles;
    }

    support::TestDistrict district_;
    support::TestSession session_;
};

}  // namespace

TEST_F(MergeRunForm, MergesTheRunAndClearsTheMessageLater) {
    EXPECT_EQ(label("OrigRun"), "TO");
    EXPECT_EQ(label("OrigRunInfo"), "AM, 2 stops");
    forms::Timer::setSpeed(1e6);
    EXPECT_THAT(mergeWith("FROM"), ElementsAre());
    EXPECT_EQ(label("StatusMsg"), "All stops of run: FROM merged to run: TO.");
    EXPECT_EQ(label("OrigRunInfo"), "AM, 5 stops");
    EXPECT_EQ(label("SourceInfo"), "Oak morning, OAK, AM, 0 stops");
    EXPECT_TRUE(startup::RefreshRunList);
    const QDeadlineTimer patience(5000);
    while (!label("StatusMsg").empty() && !patience.hasExpired()) {
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(label("StatusMsg"), "");
    forms::Timer::setSpeed(1);
}

TEST_F(MergeRunForm, SaysWhyNothingIsMerged) {
    EXPECT_THAT(mergeWith("to"), ElementsAre());
    EXPECT_THAT(mergeWith(""), ElementsAre("No Run Selected"));
    EXPECT_THAT(mergeWith("NONE"), ElementsAre("Run Not Found"));
    EXPECT_THAT(mergeWith("EMPTY"), ElementsAre("No Stops"));
    EXPECT_EQ(label("StatusMsg"), "");
    EXPECT_FALSE(startup::RefreshRunList);
    form().receive("EMPTY");
    EXPECT_EQ(label("OrigRunInfo"), "0 stops");
    EXPECT_EQ(form().findChild<controls::MultiColumnCombo*>("cmbRUN")->text(), "");
    EXPECT_THAT(mergeWith("OLD"), ElementsAre()) << "a run that is not active can be typed";
    EXPECT_EQ(label("OrigRunInfo"), "1 stop");
}

}  // namespace groupops
