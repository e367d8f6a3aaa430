#include "help/viewer/GuideWindow.h"

#include <QClipboard>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "help/about/AboutBox.h"
#include "help/viewer/guidedesk.h"
#include "help/viewer/guidepage.h"
#include "help/viewer/pageprinting.h"
#include "platform/forms/helpport.h"
#include "runsearch/search/frmTarn.h"
#include "support/formtest.h"

namespace help {

namespace {

/// A planner at the main form who asks.
class GuideWindowForm : public support::FormTest<> {
protected:
    GuideWindowForm() {
        offerGuide();
        tarn().showForm();
    }
    ~GuideWindowForm() override { forms::helpPort() = {}; }
    static runsearch::frmTarn& tarn() { return loaded<runsearch::frmTarn>(); }
    GuideWindow& form() override { return *qobject_cast<GuideWindow*>(opened("GuideWindow")); }
    static void pressF1In(QWidget& control) {
        QTest::keyClick(&control, Qt::Key_F1);
        forms::Application::instance().yield();
    }
    static void read(const Place& place) {
        showGuide(place);
        forms::Application::instance().yield();
    }
    GuidePage& page() { return control<GuidePage>("PageText"); }
    std::string pageAnchor() {
        return (form().place().page + '#' + form().place().anchor).toStdString();
    }
};

TEST_F(GuideWindowForm, F1OpensThePageOfWhatHasTheFocus) {
    pressF1In(*tarn().findChild<QWidget*>("RunId"));
    EXPECT_EQ(pageAnchor(), "finding-runs#run-and-times");
    pressF1In(tarn());
    EXPECT_EQ(pageAnchor(), "finding-runs#");
    showAbout(tarn());
    pressF1In(*opened("AboutBox"));
    EXPECT_EQ(pageAnchor(), "README#when-you-need-help");
    EXPECT_FALSE(text("Status").find("not") != std::string::npos);
}

TEST_F(GuideWindowForm, CanBeReadBesideAMessageBox) {
    QMessageBox box(&tarn());
    bool wentHome = false;
    QTimer::singleShot(0, &box, [&] {
        pressF1In(box);
        auto& home = control<QPushButton>("Home");
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&form()));
        QTest::mouseClick(form().windowHandle(), Qt::LeftButton, {},
                          home.mapTo(&form(), home.rect().center()));
        wentHome = form().place().page == Guide::Contents;
        box.reject();
    });
    box.exec();
    EXPECT_TRUE(wentHome);
    EXPECT_TRUE(form().isVisible());
}

TEST_F(GuideWindowForm, GoesBackToWhereItWasRead) {
    read({"bell-times", {}});
    page().verticalScrollBar()->setValue(300);
    form().PageText_FollowLink(QUrl("reports.md#making-a-report"));
    EXPECT_EQ(pageAnchor(), "reports#making-a-report");
    EXPECT_GT(page().verticalScrollBar()->value(), 0);
    press("PageText", Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(pageAnchor(), "bell-times#");
    EXPECT_EQ(page().verticalScrollBar()->value(), 300);
    click("Forward");
    EXPECT_EQ(form().place().page, "reports");
    EXPECT_FALSE(isEnabled("Forward"));
    form().PageText_FollowLink(QUrl("../nowhere.md"));
    EXPECT_EQ(form().place().page, "reports");
    EXPECT_NE(text("Status"), "");
}

TEST_F(GuideWindowForm, SearchesFindsAndLeavesBothWithEscape) {
    read({});
    type("Search", "idle time garage");
    auto& hits = control<QListWidget>("Hits");
    ASSERT_GT(hits.count(), 1);
    control("Search").setFocus();
    press("Search", Qt::Key_Return);
    EXPECT_FALSE(page().extraSelections().isEmpty());
    type("Find", "garage");
    EXPECT_EQ(text("FindCount").find("none"), std::string::npos);
    click("FindNext");
    const int first = page().currentMark();
    click("FindPrevious");
    EXPECT_NE(page().currentMark(), first);
    type("Search", "zzz");
    EXPECT_EQ(hits.count(), 0);
    press("Search", Qt::Key_Escape);
    EXPECT_EQ(text("Find"), "");
    press("PageText", Qt::Key_Escape);
    EXPECT_EQ(text("Search"), "");
    press("PageText", Qt::Key_Escape);
    EXPECT_EQ(opened("GuideWindow"), nullptr);
}

TEST_F(GuideWindowForm, IsNoFormInFrontAndKeepsNoProgramAlive) {
    tarn().activateWindow();
    forms::Application::instance().yield();
    read({"bell-times", {}});
    EXPECT_NE(forms::FormRegistry::instance().lastActive(), &form());
    tarn().unload();
    EXPECT_TRUE(ending());
}

TEST_F(GuideWindowForm, SetsEveryPageWithinItsWidth) {
    read({});
    form().resize(700, 700);
    for (const Page& one : theGuide().pages()) {
        read({one.name, {}});
        EXPECT_EQ(page().horizontalScrollBar()->maximum(), 0) << one.name.toStdString();
    }
    const QTemporaryDir folder;
    const QString file = folder.filePath("page.pdf");
    EXPECT_TRUE(
        writePdf(file, "Bells", theGuide().markdown("bell-times"), theGuide().folder(), false));
    EXPECT_FALSE(writePdf(folder.filePath("none/page.pdf"), "Bells", "# Bells", {}, false));
}

TEST_F(GuideWindowForm, AboutTellsSupportWhatMattersAndNoSecrets) {
    showAbout(tarn());
    support::ControlsOf about(*opened("AboutBox"));
    about.click("CopyForSupport");
    const auto told = QGuiApplication::clipboard()->text();
    for (const char* part : {"Tarn 1.", "SQLite 3.", "Qt 6.", "District's version: "}) {
        EXPECT_TRUE(told.contains(part)) << part << " is missing in\n" << told.toStdString();
    }
    EXPECT_TRUE(told.contains(QString::fromStdString(startup::gDataPath)));
}

}  // namespace

}  // namespace help
