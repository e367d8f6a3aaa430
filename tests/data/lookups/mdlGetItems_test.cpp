#include "data/lookups/mdlGetItems.h"

#include "platform/base/error.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace data {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class KeyLookups : public support::DistrictSession {};

TEST_F(KeyLookups, AnswerWithWhatTheKeyStandsFor) {
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

TEST_F(KeyLookups, SayNotFoundAndKeepTheQuestion) {
    EXPECT_EQ(GetRun(" 999 "), "NOT FOUND");
    EXPECT_EQ(lookupSql, "Select Run.RUN, Run.Description FROM Run WHERE RUN.RUN='999'");
    EXPECT_EQ(GetStopId(77), "NOT FOUND");
    EXPECT_EQ(lookupSql,
              "Select STOP.STOPID, STOP.Int_StopID FROM STOP WHERE STOP.INT_STOPID = 77");
    EXPECT_EQ(GetVehType_SpecialNeeds("SMALL", "WC"), "NOT FOUND");
    EXPECT_EQ(GetVehType_Capacity("NONE", "High"), "NOT FOUND");
}

TEST_F(KeyLookups, ReadTheLowCapacityForAnyOtherLevel) {
    EXPECT_EQ(GetVehType_Capacity("LARGE", " High "), "72");
    EXPECT_EQ(GetVehType_Capacity("LARGE", "Medium"), "60");
    EXPECT_EQ(GetVehType_Capacity("LARGE", "Low"), "48");
    EXPECT_EQ(GetVehType_Capacity("LARGE", "high"), "48");
}

TEST_F(KeyLookups, FillARoutesTexts) {
    std::string id, name, driver, vehicle, aid;
    GetRouteInfo(1, id, name, driver, vehicle, aid);
    EXPECT_THAT((std::vector{id, name, driver, vehicle, aid}),
                ElementsAre("R1", "North loop", "12", "B7", "7"));
    GetRouteInfo(9, id, name, driver, vehicle, aid);
    EXPECT_EQ(id, "NOT FOUND");
    EXPECT_EQ(name, "North loop");
}

TEST_F(KeyLookups, ReportAQuestionThatFailsAndEndTheProgram) {
    startup::gcnRouting->Close();
    EXPECT_THROW((void)GetRun("100"), base::EndProgram);
    EXPECT_THAT(lastText(), HasSubstr("GetRun of Module: mdlGetItems."));
}

}  // namespace
}  // namespace data
