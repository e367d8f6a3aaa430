#include <QAccessible>
#include <QRegularExpression>
#include <filesystem>
#include <set>

#include "help/about/AboutBox.h"
#include "help/viewer/guidedesk.h"
#include "platform/forms/look.h"
#include "platform/forms/messagebox.h"
#include "platform/forms/waitbox.h"
#include "support/access.h"
#include "walk.h"

namespace {

using forms::Scheme;
using testing::HasSubstr;

/// Every form as those know it who do not see it, have no mouse or need strong colours.
class AccessWalk : public walk::Walk {
protected:
    AccessWalk() { QApplication::setCursorFlashTime(0); }
    ~AccessWalk() override { forms::applyLook(*qApp, Scheme::Light); }

    void lookAt(QWidget& window) {
        settle();
        const auto found = support::accessFindings(window);
        all.insert(found.begin(), found.end());
        looked.insert(window.objectName().toStdString());
    }
    void lookAtPages(forms::Form& form) {
        onEachPage(form, [&](int) { lookAt(form); });
    }
    void lookAtAllForms() {
        for (const auto& station : walk::Stations) {
            auto& window = open(station);
            support::ControlsOf on(window);
            prepare(on, station);
            lookAtPages(window);
            closeOthers(stationOf("frmTarn"));
        }
        help::showAbout(form());
        lookAt(*opened("AboutBox"));
        opened("AboutBox")->unload();
        help::showGuide({});
        lookAtPages(*opened("GuideWindow"));
    }
    /// The forms of all programs, as their .ui files say.
    static std::set<std::string> formsOfTheHouse() {
        const QRegularExpression heading("<widget class=\"QDialog\" name=\"(\\w+)\"");
        std::set<std::string> forms;
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(VIREO_SOURCE_DIR "/src")) {
            if (entry.path().extension() == ".ui") {
                const auto text = QString::fromStdString(support::contentsOf(entry.path()));
                forms.insert(heading.match(text).captured(1).toStdString());
            }
        }
        return forms;
    }

    std::set<std::string> all;
    std::set<std::string> looked;
};

TEST_F(AccessWalk, EveryFormTellsItselfAndIsUsedByKeysInTheOrderOfItsLayout) {
    lookAtAllForms();
    EXPECT_EQ(support::joined({all.begin(), all.end()}, "\n"), "");
    // Those of other programs are looked at in their own tests.
    looked.merge(
        std::set<std::string>{"", "DelWrkFiles", "Districts", "Logon", "MapWindow", "NewDistrict"});
    EXPECT_THAT(formsOfTheHouse(), testing::IsSubsetOf(looked));
}

TEST_F(AccessWalk, EveryFormCanBeReadInTheDark) {
    forms::applyLook(*qApp, Scheme::Dark);
    lookAtAllForms();
    EXPECT_EQ(support::joined({all.begin(), all.end()}, "\n"), "");
}

TEST_F(AccessWalk, WhatIsPaintedIsReadOut) {
    const auto read = [this](const char* form, const char* part) {
        return support::spoken(*open(stationOf(form)).findChild<QWidget*>(part));
    };
    open(stationOf("frmTarn"));
    byOthers("UPDATE RUN SET REGENERATE=1 WHERE RUN='WALK'");
    click("cmdSearch");
    EXPECT_THAT(read("frmTarn", "RunList"), HasSubstr("WALK, warning"));
    EXPECT_THAT(read("frmRunSchdl", "TimeLine"), HasSubstr("Run WALK"));
    EXPECT_THAT(read("frmRunSchdl", "ZoneLegend"), HasSubstr("Legend: "));
    support::ControlsOf(open(stationOf("MergeRun"))).type("cmbRUN", "103-PM");
    EXPECT_THAT(read("MergeRun", "SideBySide"), HasSubstr("not the same"));
    EXPECT_THAT(read("ReportPreview", "Pages"), HasSubstr("Page 1 of 1"));
    auto* pages = QAccessible::queryAccessibleInterface(
        open(stationOf("ReportPreview")).findChild<QWidget*>("Pages"));
    EXPECT_THAT(pages->textInterface()->text(0, -1).toStdString(), HasSubstr("on the walk"));
}

TEST_F(AccessWalk, BoxesTellThemselves) {
    forms::MessageBox box({.text = "First.\nSecond.",
                           .title = "Title",
                           .buttons = base::MsgButtons::YesNoCancel,
                           .concerns = "Run 101-AM\nOak morning",
                           .details = "Details of it"});
    box.show();
    box.findChild<QAbstractButton*>("Details")->click();
    lookAt(box);
    forms::WaitBox wait("Waiting for another program.");
    lookAt(wait);
    EXPECT_EQ(support::joined({all.begin(), all.end()}, "\n"), "");
}

}  // namespace
