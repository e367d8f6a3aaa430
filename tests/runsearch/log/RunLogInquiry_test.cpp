#include "runsearch/log/RunLogInquiry.h"

#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <filesystem>

#include "startup/base/session.h"
#include "support/formtest.h"

namespace runsearch {

namespace {

constexpr int Entries = 3000;

/// Run "A1" has the 10 oldest entries, "B" and a number the others.
void fillLog(const support::TestDistrict& district) {
    district.sql(
        data::DatabaseFile::Routing,
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
        "INSERT INTO RUNLOG(ID, RUNID, StopID, LOGDATE, ACTIVITYCODE, User) SELECT i, CASE WHEN "
        "i <= 10 THEN 'A1' ELSE 'B' || (i % 7) END, printf('S%04d', i * 17 % 3000), "
        "datetime('2026-01-01', i || ' minutes'), 1 + i % 2, 'PAT' FROM n");
    district.sql(data::DatabaseFile::RouteWrk,
                 "INSERT INTO RUNLOG_ACTIVITY_CODES(ACTIVITYCODE, ACTIVITYDESC) VALUES "
                 "(2, 'Removed'), (1, 'Added')");
}

class Inquiry : public support::FormTest<> {
protected:
    Inquiry() : FormTest(fillLog) {}
    RunLogInquiry& form() override { return loaded<RunLogInquiry>(); }
    controls::MultiColumnList& list() { return Controls::list("LogList"); }
    void show() {
        form().showForm();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form()));
    }
    bool waitFor(const std::string& count) {
        return QTest::qWaitFor([&] { return text("LogCount") == count; });
    }
};

TEST_F(Inquiry, AsksForOneRunWhateverWasTypedBefore) {
    type("BegDate", "1/1/2030");
    type("cmbActivityCode", "2");
    form().ask("a1 ");
    EXPECT_EQ(list().rows(), 10);
    EXPECT_EQ(text("LogCount"), "10 entries");
    EXPECT_EQ(row("LogList", 0), "A1|S0170|1/1/2026 12:10:00 AM| | |PAT");
    form().ask("nobody");
    EXPECT_EQ(list().rows(), 0);
    EXPECT_EQ(text("LogCount"), "");
}

TEST_F(Inquiry, ReadsAsFarAsThePlannerScrollsAndCountsTheRest) {
    show();
    form().Search_Click();
    EXPECT_EQ(list().rows(), 500);
    EXPECT_EQ(text("LogCount"), "500 entries so far");
    EXPECT_TRUE(waitFor("500 of 3,000 entries listed"));
    list().choose(3);
    list().verticalScrollBar()->setValue(list().verticalScrollBar()->maximum());
    EXPECT_TRUE(waitFor("1,000 of 3,000 entries listed"));
    EXPECT_EQ(list().chosenRow(), 3);
    EXPECT_EQ(list().cellText(999, 2), "1/2/2026 9:21:00 AM");
}

TEST_F(Inquiry, TheEndKeyAScrollBarHeldAtItsEndAndASortReadEverything) {
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

TEST_F(Inquiry, KeepsNothingOfTheLogOpenBetweenTwoScreens) {
    form().Search_Click();
    startup::gcnRouting->Execute("INSERT INTO RUNLOG (RUNID, LOGDATE) VALUES ('B', #1/1/2030#)");
    startup::gcnRouting->checkpoint();
    EXPECT_EQ(std::filesystem::file_size(startup::gDataPath + "routing.mdb-wal"), 0U);
    startup::gcnRouting->Execute("DELETE FROM RUNLOG WHERE RUNLOG.ID <= 1000");
    QTest::keyClick(&list(), Qt::Key_End);
    EXPECT_TRUE(waitFor("2,000 entries"));
}

TEST_F(Inquiry, RefusesWhatCannotBeSearchedForAndStaysOpen) {
    form().Search_Click();
    type("BegDate", "yesterday");
    form().Search_Click();
    EXPECT_EQ(lastTitle(), "Invalid Date");
    EXPECT_EQ(list().rows(), 500) << "what was listed stays";
    QTest::keyClicks(&control<QLineEdit>("BegDate"), "1/2/26\r");
    EXPECT_EQ(text("BegDate"), "1/2/2026");

    type("RunID", "O'Hara");
    form().Search_Click();
    EXPECT_THAT(lastText(), testing::HasSubstr("apostrophe"));
    EXPECT_TRUE(form().isLoaded());
    startup::gcnRouting->Execute("INSERT INTO RUNLOG (RUNID) VALUES ('O''Hara')");
    form().ask("O'Hara ");
    EXPECT_EQ(list().rows(), 1);
}

TEST_F(Inquiry, OffersTheActivityCodesInTheirOrder) {
    auto& codes = combo("cmbActivityCode");
    EXPECT_EQ(codes.table().text(0, 0) + codes.table().text(0, 1), "1Added");
    codes.setText("2");
    form().Search_Click();
    EXPECT_TRUE(waitFor("500 of 1,500 entries listed"));
}

}  // namespace

}  // namespace runsearch
