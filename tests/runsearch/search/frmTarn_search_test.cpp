#include <functional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "support/runbuilder.h"
#include "tarnform.h"

namespace runsearch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto AllRuns = "101-AM 102-AM 103-PM 201-PM";

TEST_F(TarnForm, FillsTheCriteriaListsWhenLoaded) {
    EXPECT_EQ(list("lstSchool").cellText(1, 2), "ELEM");
    EXPECT_EQ(combo("cmbEmployee").table().text(0, 1), "Adams, Bo");
    EXPECT_EQ(startup::RunRefreshTime, 5);
    EXPECT_EQ(text("DistrictName"), "Small District");
    EXPECT_THAT(list("RunList").emptyText().toStdString(), HasSubstr("Find Now"));
}

TEST_F(TarnForm, SaysInANewDistrictHowRunsComeIntoIt) {
    startup::gcnRouting->Execute("DELETE FROM RUN");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(list("RunList").emptyText().toStdString(), HasSubstr("has no runs yet"));
    click("cmdReset");
    EXPECT_THAT(list("RunList").emptyText().toStdString(), HasSubstr("vireo-district import"));
}

TEST_F(TarnForm, ShowsRunsWithoutRouting) {
    EXPECT_EQ(support::joined(found()), AllRuns);
    EXPECT_EQ(text("TotSel"), "4");
    EXPECT_EQ(
        row("101-AM"),
        "101-AM|Oak morning|07:05 AM|07:45 AM|08:00 AM|OAK|AM|NORTH|REG|40.00|12.50|6|31|High|"
        "Start Time");
    EXPECT_EQ(row("102-AM"),
              "102-AM|Pine 100%|06:30 AM|12:00 PM|12:15 AM|PINE|AM|SOUTH|SPORT|90.00|9.00|2|4|Low|"
              "End Time");
    EXPECT_EQ(row("103-PM"), "103-PM| ||||ASH|PM| | |0.00|0.00|0|0| | ");
}

TEST_F(TarnForm, ShowsRunsWithRoutingOneColumnShifted) {
    check("UseRoute");
    EXPECT_EQ(support::joined(found()), AllRuns);
    EXPECT_EQ(row("101-AM"),
              "101-AM|Oak morning|07:05 AM|07:45 AM|08:00 AM|OAK|AM|NORTH|REG|R1|Smith, Ann|B7|"
              "Adams, Bo|40.00|12.50|6|High|Start Time|");
    EXPECT_EQ(
        row("102-AM"),
        "102-AM|Pine 100%|06:30 AM|12:00 PM|12:15 AM|PINE|AM|SOUTH|SPORT|R2| | | |90.00|9.00|2|"
        "Low|End Time|");
    EXPECT_EQ(row("103-PM"), "103-PM| ||||ASH|PM| | | | | | |0.00|0.00|0| | |");
    std::string captions;
    for (const auto& column : list("RunList").table().columns) {
        captions += column.caption + "|";
    }
    EXPECT_EQ(captions,
              "Run ID|Description|Start Time|End Time|Bell Time|School|Trip Type|Location|Family|"
              "Route|Driver|Vehicle|Aid|Total Time|Total Miles|Total Stops|Total Students|Capacity|"
              "Time To Use|");
}

TEST_F(TarnForm, PaintsRunsToRegenerateRedButForTheLastColumns) {
    check("NeedResolve");
    for (const auto& [withRouting, lastRed] : {std::pair{false, 12}, std::pair{true, 16}}) {
        check("UseRoute", withRouting);
        ASSERT_THAT(found(), ElementsAre("102-AM"));
        const auto& table = list("RunList").table();
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            EXPECT_EQ(table.isRed(0, column), static_cast<int>(column) <= lastRed) << column;
        }
        EXPECT_EQ(table.columns.at(withRouting ? 16 : 11).widthTwips, 1000);
    }
    check("NeedResolve", false);
    type("RunId", "101");
    found();
    EXPECT_FALSE(list("RunList").table().isRed(0, 0));
}

TEST_F(TarnForm, FindsRunsByEachCriterion) {
    struct Case {
        std::function<void()> fill;
        std::string runs;
    };
    const auto schools = [this](const std::vector<int>& rows) { select("lstSchool", rows); };
    const auto tripTypes = [this](const std::vector<int>& rows) { select("lstTripType", rows); };
    const auto onRoute = [this](const char* combo, const char* code) {
        return [=, this] { check("UseRoute"), type(combo, code); };
    };
    const std::vector<Case> cases{
        {[&] { type("RunId", " 10 "); }, "101-AM 102-AM 103-PM"},
        {[&] { type("RunDesc", "oak"); }, "101-AM 201-PM"},
        {[&] { type("Start_BegTime", "7:00 am"), type("Start_EndTime", "705"); }, "101-AM"},
        {[&] { type("End_BegTime", "12:00 PM"); }, "102-AM 201-PM"},
        {[&] { type("Bell_EndTime", "8:00 AM"); }, "101-AM 102-AM"},
        {[&] { type("cmbRunFamily", "sport"); }, "102-AM"},
        {[&] { type("cmbLOCCODE", "NORTH"); }, "101-AM 201-PM"},
        {[&] { check("NotOnRoute"); }, "103-PM 201-PM"},
        {[&] {
             schools({0, 2}), check("NotOnRoute", false);
         },
         "102-AM 103-PM"},
        {[&] { schools({1}), check("SearchStops"); }, "101-AM 102-AM 201-PM"},
        {[&] { tripTypes({1}); }, "103-PM 201-PM"},
        {[&] { tripTypes({0}), check("Search_Stops_TripType"); }, "101-AM 102-AM 201-PM"},
        {[&] { type("cmbSchoolType", "ELEM"); }, "101-AM 103-PM 201-PM"},
        {onRoute("cmbRoute", "R2"), "102-AM"},
        {onRoute("cmbEmployee", "12"), "101-AM"},
        {onRoute("cmbVehicle", "b7"), "101-AM"},
        {onRoute("cmbAid", "7"), "101-AM"},
        {[&] { type("RunId", "1"), tripTypes({0}), type("RunDesc", "P"); }, "102-AM"},
    };
    for (const auto& [fill, runs] : cases) {
        fill();
        EXPECT_EQ(support::joined(found()), runs) << startup::RunSearchSQL;
        EXPECT_EQ(text("TotSel"), std::to_string(found().size()));
        check("SearchStops", false);
        check("Search_Stops_TripType", false);
        click("cmdReset");
    }
    EXPECT_THAT(session.boxes.shown, IsEmpty());
}

TEST_F(TarnForm, SurvivesWhatIsTypedAndChangesNothing) {
    const std::string endless(10000, 'x');
    const std::vector<std::pair<const char*, std::vector<std::string>>> cases{
        {"RunId",
         {"O'Neil", "'", "x'; DELETE FROM RUN; --", "x' OR 'a'='a", "#", "[", "][", endless}},
        {"RunDesc", {"[a-", endless + "'"}},
        {"cmbRunFamily", {"a'b", endless}},
        {"cmbLOCCODE", {"#8:00#"}},
        {"cmbEmployee", {"12; DELETE FROM RUN", "Young", "12 OR 1=1"}},
        {"cmbVehicle", {"B'7"}},
        {"cmbAid", {"("}},
        {"cmbRoute", {"[R1]"}},
    };
    std::size_t told = 0;
    for (const auto& [box, texts] : cases) {
        for (const auto& typed : texts) {
            check("UseRoute");
            type(box, typed);
            found();
            const auto boxes = this->texts();
            EXPECT_TRUE(!boxes.empty() || !text("TotSel").empty()) << box << ": " << typed;
            EXPECT_THAT(boxes,
                        testing::Each(testing::ContainsRegex("cmdSearch_Click of Module: frmTarn|"
                                                             "is not in the list")));
            told += boxes.size();
            click("cmdReset");
            EXPECT_EQ(support::joined(found()), AllRuns) << box << ": " << typed;
            click("cmdReset");
        }
    }
    EXPECT_GE(told, 6U);
    EXPECT_FALSE(ending());
}

TEST_F(TarnForm, RefusesATextThatIsNoTime) {
    found();
    const auto before = startup::RunSearchSQL;
    control<QTabWidget>("RunTab").setCurrentIndex(2);
    type("Bell_EndTime", "25:99");
    click("cmdSearch");
    EXPECT_THAT(lastText(), HasSubstr("\"25:99\""));
    EXPECT_THAT(titles(), ElementsAre("Invalid Time"));
    EXPECT_EQ(control<QTabWidget>("RunTab").currentIndex(), 0);
    EXPECT_EQ(startup::RunSearchSQL, before);
    EXPECT_EQ(text("TotSel"), "4");
}

TEST_F(TarnForm, OffersToTakeInTheRestOfTheLastMinute) {
    support::RunBuilder("SECONDS").bell("11:05:30 AM").into(district);
    type("Bell_BegTime", "11:00 AM");
    EXPECT_FALSE(found().empty() || isShown("WholeMinutes"));
    type("Bell_EndTime", "11:05 AM");
    EXPECT_THAT(found(), ElementsAre());
    EXPECT_THAT(list("RunList").emptyText().toStdString(), HasSubstr("Whole Minutes"));
    click("WholeMinutes");
    EXPECT_EQ(text("Bell_EndTime"), "11:05:59 AM");
    EXPECT_EQ(column("RunList"), std::vector<std::string>{"SECONDS"});
    EXPECT_FALSE(isShown("WholeMinutes"));
}

TEST_F(TarnForm, KeepsTheQueriesOfTheLastSearchThatFoundRuns) {
    const auto expectKept = [] {
        EXPECT_THAT(startup::RunSearchSQL, testing::EndsWith(" FROM RUN"));
        EXPECT_THAT(startup::RunSearchSchoolSQL,
                    testing::EndsWith(" ON SCHOOL.SCHOOL = RUN.SCHOOL"));
    };
    found();
    expectKept();
    type("RunId", "none");
    EXPECT_THAT(found(), IsEmpty());
    expectKept();
    EXPECT_EQ(list("RunList").model()->columnCount(), 0);
    EXPECT_THAT(list("RunList").emptyText().toStdString(), HasSubstr("No run"));
    type("cmbSchoolType", "ADULT");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_EQ(text("TotSel"), "0");
    EXPECT_EQ(text("RunId") + combo("cmbSchoolType").text(), "") << "no school is of that type";
    expectKept();
}

}  // namespace
}  // namespace runsearch
