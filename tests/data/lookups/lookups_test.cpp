#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "data/lookups/mdlGetItems.h"
#include "data/lookups/readlist.h"
#include "startup/base/session.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace data {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class LookupTest : public testing::Test {
protected:
    LookupTest() {
        support::fillSmall(district_);
        session_.start(district_.configFolder());
    }

    /// Rows as texts, cells apart by "|".
    static std::vector<std::string> rowsOf(std::string_view procedure) {
        const auto& lookup = listLookup(procedure);
        const auto table = readList(lookup, connectionOf(lookup));
        std::vector<std::string> rows;
        for (std::size_t row = 0; row < table.rowCount(); ++row) {
            std::string line;
            for (std::size_t column = 0; column < table.columns.size(); ++column) {
                line += (column == 0 ? "" : "|") + table.text(row, column);
            }
            rows.push_back(line);
        }
        return rows;
    }

    static std::vector<std::string> itemsOf(std::string_view procedure) {
        const auto& lookup = listLookup(procedure);
        return readPlainList(lookup, connectionOf(lookup));
    }

    static ado::Connection& connectionOf(const ListLookup& lookup) {
        return lookup.source == Source::Trip ? *startup::gcnTrip : *startup::gcnRouting;
    }

    support::TestDistrict district_;
    support::TestSession session_;
};

TEST_F(LookupTest, ListsActiveRowsInTheirOrder) {
    EXPECT_THAT(rowsOf("Load_lstSchool_With_SchoolType"),
                ElementsAre("ASH|Ash School|ELEM", "OAK|Oak School|ELEM", "PINE|Pine School|HIGH"));
    EXPECT_THAT(rowsOf("Load_cmbSCHOOLTYPE"),
                ElementsAre("ADULT| ", "ELEM|Elementary", "HIGH|High"));
    EXPECT_THAT(rowsOf("Load_cmbLOCCODE"), ElementsAre("NORTH|North yard"));
    EXPECT_THAT(rowsOf("Load_cmbRUN"),
                ElementsAre("101-AM|Oak morning", "102-AM|Pine 100%", "201-PM|Oak [late]"));
    EXPECT_THAT(rowsOf("Load_cmbVehType"), ElementsAre("LARGE|Large bus|72|60|48|6|5|0"));
    EXPECT_THAT(rowsOf("Load_cmbGarage"), ElementsAre("G1|Yard"));
}

TEST_F(LookupTest, ListsAllRowsWhereNothingSaysActive) {
    EXPECT_THAT(rowsOf("Load_cmbRoute"), ElementsAre("R1|North loop", "R2| "));
    EXPECT_THAT(rowsOf("Load_cmbRunFamily"), ElementsAre("REG|Regular", "SPORT| "));
    EXPECT_THAT(rowsOf("Load_cmbVehicle"), ElementsAre("B7|Bus 7", "B8| "));
}

TEST_F(LookupTest, ShowsStaffAsTwoColumnsOrAsOneText) {
    EXPECT_THAT(rowsOf("Load_cmbEmployee"),
                ElementsAre("7|Adams, Bo", "9|Smith,", "12|Smith, Ann"));
    EXPECT_THAT(itemsOf("Load_cmbAid"), ElementsAre("7:Adams, Bo", "9:Smith,", "12:Smith, Ann"));
    EXPECT_THAT(itemsOf("Load_cmbVehicle"), ElementsAre("B7: Bus 7", "B8: "));
}

TEST_F(LookupTest, EveryLookUpIsUnderstoodByItsDatabase) {
    for (const auto& lookup : listLookups()) {
        EXPECT_NO_THROW((void)readList(lookup, connectionOf(lookup))) << lookup.procedure;
    }
}

TEST_F(LookupTest, AnswersByKey) {
    EXPECT_EQ(GetDeadHeadNeedRebuild(), "True");
    EXPECT_EQ(GetDistrictName(), "Small District");
    EXPECT_EQ(GetGGClosedStreet(), " ");
    EXPECT_EQ(GetLoadTime(), "0.5");
    EXPECT_EQ(GetEmployeeName(12), "Smith, Ann");
    EXPECT_EQ(GetStopId(3), "S3");
    EXPECT_EQ(GetStopId_WithName("3"), "S3: Elm and Main");
    EXPECT_EQ(GetLocCode("shut "), "Shut yard");
    EXPECT_EQ(GetRoute("R1"), "North loop");
    EXPECT_EQ(GetRouteIntNum("R2"), "2");
    EXPECT_EQ(GetRun(" 101-AM "), "Oak morning");
    EXPECT_EQ(GetRun("103-PM"), " ");
    EXPECT_EQ(GetRunFamily("REG"), "Regular");
    EXPECT_EQ(GetSchool("OLD"), "Old School");
    EXPECT_EQ(GetSchoolType("ELEM"), "Elementary");
    EXPECT_EQ(GetSpecialNeeds("WC"), "Wheelchair");
    EXPECT_EQ(GetStopIntId("S2"), "2");
    EXPECT_EQ(GetStuIntId("ST1"), "501");
    EXPECT_EQ(GetTripType("NOON"), "Noon");
    EXPECT_EQ(GetVehicle("B7"), "Bus 7");
    EXPECT_EQ(GetVehicle_VehType("B8"), "SMALL");
    EXPECT_EQ(GetVehType("LARGE"), "Large bus");
    EXPECT_EQ(GetVehType_SpecialNeeds("LARGE", "WC"), "2");
}

TEST_F(LookupTest, SaysNotFoundAndKeepsTheQuestion) {
    EXPECT_EQ(GetRun(" 999 "), "NOT FOUND");
    EXPECT_EQ(lookupSql, "Select Run.RUN, Run.Description FROM Run WHERE RUN.RUN='999'");
    EXPECT_EQ(GetStopId(77), "NOT FOUND");
    EXPECT_EQ(lookupSql,
              "Select STOP.STOPID, STOP.Int_StopID FROM STOP WHERE STOP.INT_STOPID = 77");
    EXPECT_EQ(GetVehType_SpecialNeeds("SMALL", "WC"), "NOT FOUND");
    EXPECT_EQ(GetVehType_Capacity("NONE", "High"), "NOT FOUND");
}

TEST_F(LookupTest, ReadsTheLowCapacityForAnyOtherLevel) {
    EXPECT_EQ(GetVehType_Capacity("LARGE", " High "), "72");
    EXPECT_EQ(GetVehType_Capacity("LARGE", "Medium"), "60");
    EXPECT_EQ(GetVehType_Capacity("LARGE", "Low"), "48");
    EXPECT_EQ(GetVehType_Capacity("LARGE", "high"), "48");
}

TEST_F(LookupTest, FillsARoutesTexts) {
    std::string id, name, driver, vehicle, aid;
    GetRouteInfo(1, id, name, driver, vehicle, aid);
    EXPECT_THAT((std::vector{id, name, driver, vehicle, aid}),
                ElementsAre("R1", "North loop", "12", "B7", "7"));
    GetRouteInfo(9, id, name, driver, vehicle, aid);
    EXPECT_EQ(id, "NOT FOUND");
    EXPECT_EQ(name, "North loop");
}

TEST_F(LookupTest, ReportsAKeyThatBreaksTheQuestionAndEndsTheProgram) {
    EXPECT_THROW((void)GetRun("O'Neil"), base::EndProgram);
    ASSERT_EQ(session_.boxes.shown.size(), 1U);
    EXPECT_THAT(session_.boxes.shown[0].text, HasSubstr("GetRun of Module: mdlGetItems."));
}

}  // namespace
}  // namespace data
