#include "runsearch/log/RunLogInquiry.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/forms/formregistry.h"
#include "startup/base/session.h"
#include "support/testdistrict.h"
#include "support/testsession.h"

namespace runsearch {

namespace {

using data::DatabaseFile;

/// The form on a log of 3,000 entries: run "A1" has the 10 oldest, "B" and a number the others.
class InquiryTest : public testing::Test {
protected:
    static constexpr int Entries = 3000;

    InquiryTest() {
        forms::Application::instance().startAfresh();
        district.sql(DatabaseFile::Routing,
                     fmt::format("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                                 "WHERE i < {}) INSERT INTO RUNLOG(ID, RUNID, StopID, LOGDATE, "
                                 "ACTIVITYCODE) SELECT i, CASE WHEN i <= 10 THEN 'A1' ELSE 'B' || "
                                 "(i % 7) END, printf('S%04d', i * 17 % 3000), datetime("
                                 "'2026-01-01', i || ' minutes'), 1 + i % 2 FROM n",
                                 Entries));
        district.sql(DatabaseFile::RouteWrk,
                     "INSERT INTO RUNLOG_ACTIVITY_CODES(ACTIVITYCODE, ACTIVITYDESC) VALUES "
                     "(2, 'Removed'), (1, 'Added')");
        session.start(district.configFolder());
    }
    ~InquiryTest() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    RunLogInquiry& form() { return forms::FormRegistry::instance().load<RunLogInquiry>(); }
    template <class Control>
    Control& control(const char* name) {
        return *form().findChild<Control*>(name);
    }
    controls::MultiColumnList& list() { return control<controls::MultiColumnList>("LogList"); }
    std::string count() { return control<QLabel>("LogCount").text().toStdString(); }
    void show() {
        form().showForm();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form()));
    }
    bool waitFor(const std::string& text) {
        return QTest::qWaitFor([&] { return count() == text; });
    }

    support::TestDistrict district;
    support::TestSession session;
};

TEST_F(InquiryTest, AsksForOneRunWhateverWasTypedBefore) {
    control<QLineEdit>("BegDate").setText("1/1/2030");
    control<controls::MultiColumnCombo>("cmbActivityCode").setText("2");
    form().ask("a1 ");
    EXPECT_EQ(list().rows(), 10);
    EXPECT_EQ(count(), "10 entries");
    EXPECT_EQ(list().cellText(0, 2), "1/1/2026 12:10:00 AM");
    form().ask("nobody");
    EXPECT_EQ(list().rows(), 0);
    EXPECT_EQ(count(), "");
}

TEST_F(InquiryTest, ReadsAsFarAsThePlannerScrollsAndCountsTheRest) {
    show();
    form().Search_Click();
    EXPECT_EQ(list().rows(), 500);
    EXPECT_EQ(count(), "500 entries so far");
    EXPECT_TRUE(waitFor("500 of 3,000 entries listed"));
    list().choose(3);
    list().verticalScrollBar()->setValue(list().verticalScrollBar()->maximum());
    EXPECT_TRUE(waitFor("1,000 of 3,000 entries listed"));
    EXPECT_EQ(list().chosenRow(), 3);
    EXPECT_EQ(list().cellText(999, 2), "1/2/2026 9:21:00 AM");
}

TEST_F(InquiryTest, TheEndKeyAScrollBarHeldAtItsEndAndASortReadEverything) {
    show();
    const auto searchAgain = [&] {
        form().Search_Click();
        EXPECT_TRUE(waitFor("500 of 3,000 entries listed"));
    };
    searchAgain();
    QTest::keyClick(&list(), Qt::Key_End);
    EXPECT_TRUE(waitFor("3,000 entries"));
    EXPECT_EQ(list().chosenRow(), Entries - 1);
    EXPECT_EQ(list().rows(), Entries);

    searchAgain();
    QScrollBar& bar = *list().verticalScrollBar();
    bar.setSliderDown(true);
    bar.setValue(bar.maximum());
    EXPECT_TRUE(waitFor("3,000 entries"));
    bar.setSliderDown(false);

    searchAgain();
    form().LogList_ClickColumn(1);
    EXPECT_EQ(list().sortColumn(), -1) << "only the whole is sorted";
    EXPECT_TRUE(waitFor("3,000 entries"));
    EXPECT_EQ(list().sortColumn(), 1);
    EXPECT_EQ(list().cellText(0, 1), "S0000");
    EXPECT_EQ(list().cellText(Entries - 1, 1), "S2999");
}

TEST_F(InquiryTest, ListsTheLogAsItWasWhenItWasSearched) {
    form().Search_Click();
    startup::gcnRouting->Execute("DELETE FROM RUNLOG");
    QTest::keyClick(&list(), Qt::Key_End);
    EXPECT_TRUE(waitFor("3,000 entries"));
    form().Search_Click();
    EXPECT_EQ(list().rows(), 0);
}

TEST_F(InquiryTest, RefusesWhatCannotBeSearchedForAndStaysOpen) {
    form().Search_Click();
    auto& begDate = control<QLineEdit>("BegDate");
    begDate.setText("yesterday");
    form().Search_Click();
    ASSERT_EQ(session.boxes.shown.size(), 1U);
    EXPECT_EQ(session.boxes.shown[0].title, "Invalid Date");
    EXPECT_EQ(list().rows(), 500) << "what was listed stays";
    QTest::keyClicks(&begDate, "1/2/26\r");
    EXPECT_EQ(begDate.text(), "1/2/2026");

    control<QLineEdit>("RunID").setText("O'Hara");
    form().Search_Click();
    ASSERT_EQ(session.boxes.shown.size(), 2U);
    EXPECT_NE(session.boxes.shown[1].text.find("apostrophe"), std::string::npos);
    EXPECT_TRUE(form().isLoaded());
    form().ask("A1");
    EXPECT_EQ(list().rows(), 10);
}

TEST_F(InquiryTest, OffersTheActivityCodesInTheirOrder) {
    auto& codes = control<controls::MultiColumnCombo>("cmbActivityCode");
    EXPECT_EQ(codes.table().text(0, 0) + codes.table().text(0, 1), "1Added");
    codes.setText("2");
    form().Search_Click();
    EXPECT_TRUE(waitFor("500 of 1,500 entries listed"));
}

}  // namespace

}  // namespace runsearch
