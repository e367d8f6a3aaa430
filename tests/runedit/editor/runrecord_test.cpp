#include "runedit/editor/runrecord.h"

#include <gmock/gmock.h>

#include "platform/ado/recordset.h"
#include "startup/base/session.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace runedit {

namespace {

using testing::ElementsAre;

const Author Ann{"ANN", base::Date::of(2026, 3, 2, 9, 30)};

/// The small district, its run 101-AM open for editing, and another program on the same files.
class RunRecord : public testing::Test {
protected:
    RunRecord() {
        support::fillSmall(district_);
        byOthers(
            "UPDATE RUN SET CreatedBy='BO', CREATEDDT='2025-08-01 10:00:00', VEHTYPE=NULL, "
            "BELLTIME='1899-12-30 08:00:30' WHERE RUN='101-AM'");
        session_.start(district_.configFolder());
        open();
    }
    void open() {
        texts_ = readStoredRun(routing(), "101-AM")->texts;
        entries_.filled(texts_, texts_);
    }
    void byOthers(const std::string& statement) {
        district_.sql(data::DatabaseFile::Routing, statement);
    }
    [[nodiscard]] SaveResult save() { return changeRun(routing(), entries_, texts_, Ann); }
    [[nodiscard]] static ado::Connection& routing() { return *startup::gcnRouting; }
    [[nodiscard]] static base::Value stored(const std::string& column,
                                            const std::string& run = "101-AM") {
        ado::Recordset row;
        row.Open("Select RUN.* From RUN Where RUN.RUN='" + run + "'", routing());
        return row[column].Value();
    }

    support::TestDistrict district_;
    support::TestSession session_;
    RunTexts texts_;
    RunEntries entries_;
};

TEST_F(RunRecord, ShowsWhatIsStored) {
    EXPECT_EQ(texts_[RunField::Description], "Oak morning");
    EXPECT_EQ(texts_[RunField::BellTime], "08:00:30 AM");
    EXPECT_EQ(texts_[RunField::TotalMiles], "12.5");
    EXPECT_EQ(texts_[RunField::VehType], "");
    EXPECT_TRUE(texts_.isYes(RunField::Active));
    EXPECT_FALSE(texts_.isYes(RunField::Friday));
    EXPECT_EQ(readStoredRun(routing(), "101-am ")->audit.created, "8/1/2025 10:00:00 AM");
    EXPECT_FALSE(readStoredRun(routing(), "999"));
}

TEST_F(RunRecord, WritesWhatWasTouchedAndWhoDidIt) {
    texts_[RunField::Description] = "Oak's \"early\" morning; DROP";
    texts_[RunField::Comment] = "'' -- ";
    texts_[RunField::EndTime] = "0750";
    texts_[RunField::OverFill] = "4";
    const auto result = save();
    ASSERT_EQ(result.outcome, SaveOutcome::Saved);
    EXPECT_EQ(stored("Description").asText(), "Oak's \"early\" morning; DROP");
    EXPECT_EQ(stored("Comment").asText(), "'' -- ");
    EXPECT_EQ(stored("EndTime").asDate(), base::Date::timeOfDay(7, 50));
    EXPECT_EQ(stored("OverFill").asInteger(), 4);
    EXPECT_EQ(stored("ChangedBy").asText(), "ANN");
    EXPECT_EQ(stored("changeddt").asDate(), Ann.now);
    EXPECT_EQ(result.stored.audit.changed, "3/2/2026 9:30:00 AM");
    // What was not touched stays to the second, and Null.
    EXPECT_EQ(stored("BellTime").asDate(), base::Date::timeOfDay(8, 0, 30));
    EXPECT_TRUE(stored("VehType").isNull());
    EXPECT_EQ(stored("CreatedBy").asText(), "BO");
    EXPECT_EQ(stored("CREATEDDT").asDate(), base::Date::of(2025, 8, 1, 10));
    EXPECT_TRUE(stored("STATUSCHGDT").isNull());

    entries_.filled(result.stored.texts, result.stored.texts);
    texts_ = result.stored.texts;
    texts_[RunField::Active] = yesNoText(false);
    EXPECT_EQ(save().outcome, SaveOutcome::Saved);
    EXPECT_FALSE(stored("Active").asBoolean());
    EXPECT_EQ(stored("STATUSCHGDT").asDate(), Ann.now);
}

TEST_F(RunRecord, AddsANewRunOnce) {
    RunTexts texts = textsOfNewRun();
    texts[RunField::RunId] = " 104-AM ";
    texts[RunField::School] = "OAK";
    texts[RunField::StartTime] = "07:05 AM";
    texts[RunField::Regenerate] = yesNoText(true);
    ASSERT_EQ(createRun(routing(), texts, Ann).outcome, SaveOutcome::Saved);
    EXPECT_EQ(stored("Run", "104-AM").asText(), "104-AM");
    EXPECT_EQ(stored("CreatedBy", "104-AM").asText(), "ANN");
    EXPECT_EQ(stored("CREATEDDT", "104-AM").asDate(), Ann.now);
    EXPECT_EQ(stored("ChangedBy", "104-AM").asText(), "ANN");
    EXPECT_EQ(stored("STATUSCHGDT", "104-AM").asDate(), Ann.now);
    EXPECT_EQ(stored("TimeToUse", "104-AM").asText(), "Start Time");
    EXPECT_EQ(stored("total_stops", "104-AM").asInteger(), 0);
    EXPECT_TRUE(stored("Regenerate", "104-AM").asBoolean());
    EXPECT_TRUE(stored("Int_RouteID", "104-AM").isNull());
    EXPECT_TRUE(stored("BellTime", "104-AM").isNull());

    texts[RunField::RunId] = "101-am";
    const auto second = createRun(routing(), texts, Ann);
    EXPECT_EQ(second.outcome, SaveOutcome::IdTaken);
    EXPECT_EQ(second.stored.texts[RunField::Description], "Oak morning");
    EXPECT_EQ(stored("CreatedBy").asText(), "BO");
}

TEST_F(RunRecord, LosesNobodysChange) {
    byOthers(
        "UPDATE RUN SET BELLTIME='1899-12-30 08:15:00', COMMENT='theirs', TOTAL_MILES=13 "
        "WHERE RUN='101-AM'");
    texts_[RunField::Comment] = "mine";
    texts_[RunField::Description] = "also mine";
    const auto refused = save();
    ASSERT_EQ(refused.outcome, SaveOutcome::Changed);
    std::vector<std::string> told;
    for (const auto& change : refused.changes) {
        told.push_back(std::string(infoOf(change.field).caption) + ": " + change.shown + " > " +
                       change.stored + " < " + change.entered.value_or("untouched"));
    }
    EXPECT_THAT(told, ElementsAre("Bell Time: 08:00:30 AM > 08:15 AM < untouched",
                                  "Comment:  > theirs < mine"));
    EXPECT_EQ(stored("Comment").asText(), "theirs");
    EXPECT_TRUE(stored("ChangedBy").isNull());

    // Told of it, the planner saves over their comment and keeps their bell and their miles.
    texts_[RunField::BellTime] = refused.stored.texts[RunField::BellTime];
    entries_.filled(RunField::BellTime, texts_[RunField::BellTime], texts_[RunField::BellTime]);
    entries_.told(refused.stored.texts);
    ASSERT_EQ(save().outcome, SaveOutcome::Saved);
    EXPECT_EQ(stored("Comment").asText(), "mine");
    EXPECT_EQ(stored("Description").asText(), "also mine");
    EXPECT_EQ(stored("BellTime").asDate(), base::Date::timeOfDay(8, 15));
    EXPECT_EQ(stored("total_miles").asNumber(), 13);
}

TEST_F(RunRecord, NoticesADeletedRun) {
    byOthers("DELETE FROM RUN WHERE RUN='101-AM'");
    texts_[RunField::Comment] = "mine";
    EXPECT_EQ(save().outcome, SaveOutcome::Deleted);
    EXPECT_FALSE(readStoredRun(routing(), "101-AM"));
}

TEST_F(RunRecord, DoesNotMindWhatIsNotOnTheForm) {
    byOthers("UPDATE RUN SET DEADHEAD_BEFORE_TIME=7, INT_ROUTEID=2 WHERE RUN='101-AM'");
    texts_[RunField::Comment] = "mine";
    EXPECT_EQ(save().outcome, SaveOutcome::Saved);
    EXPECT_EQ(stored("DEADHEAD_BEFORE_TIME").asNumber(), 7);
    EXPECT_EQ(stored("INT_ROUTEID").asInteger(), 2);
}

}  // namespace

}  // namespace runedit
