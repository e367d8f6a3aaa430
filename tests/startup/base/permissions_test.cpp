#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace {

using data::DatabaseFile;
using startup::HasAuthority;
using startup::LoadUserPermissions;

void fillUsers(const support::TestDistrict& district) {
    district.addUser("ANN", "secret", {"RTG210", "RTG230"});
    district.addUser("BEN", "", {});
}

class Permissions : public support::DistrictSession {
protected:
    Permissions() : DistrictSession(fillUsers) {}

    void grant(const std::string& user, const std::string& code, bool authority) const {
        district.insert(
            DatabaseFile::QDSC, "QDSCU_PP",
            {{"PRODUCT", "ROUTING"}, {"QDSC1", user}, {"PERM", code}, {"Authority", authority}});
    }
};

TEST_F(Permissions, AKnownUserMayDoWhatWasGrantedByExactCode) {
    grant("BEN", "RTG210", false);
    EXPECT_FALSE(LoadUserPermissions("ANN"));
    EXPECT_TRUE(startup::gSecurityOn);
    EXPECT_EQ(startup::gPermCount, 2);
    EXPECT_TRUE(HasAuthority("RTG210", false));
    EXPECT_FALSE(HasAuthority("rtg210", false));
    EXPECT_FALSE(HasAuthority("RTG270", false));
    EXPECT_FALSE(LoadUserPermissions("BEN"));
    EXPECT_FALSE(HasAuthority("RTG210", false));
    EXPECT_TRUE(session.boxes.shown.empty());
    EXPECT_TRUE(LoadUserPermissions("NOBODY"));
    EXPECT_TRUE(LoadUserPermissions("R.T.E."));

    startup::gPermCode = {"", "RTG210", "RTG210"};
    startup::gPermAuthority = {false, true, false};
    EXPECT_FALSE(HasAuthority("RTG210", false)) << "the last row of a code counts";
    district.sql(DatabaseFile::QDSC, "DELETE FROM QDSCPP");
    EXPECT_THROW(LoadUserPermissions("BEN"), base::EndProgram) << "more rows than points";
    EXPECT_THAT(lastText(), testing::EndsWith("Error (9) Subscript out of range"));
}

TEST_F(Permissions, RefusalIsToldOnlyWhenAsked) {
    EXPECT_FALSE(LoadUserPermissions("BEN"));
    EXPECT_FALSE(HasAuthority("RTG230", true));
    EXPECT_EQ(lastTitle(), "Do Not Have Authority");
    EXPECT_EQ(lastText(),
              "Oops, you do not have authority to perform this task with the Vireo GIS Routing "
              "Software.  Please check with your Vireo GIS Routing Security Administrator if you "
              "feel this is a mistake.");
}

TEST_F(Permissions, OnlyTheBuiltInAccountWithoutAPasswordIsAllowedEverything) {
    district.addUser("R.T.E.", "  ", {});
    EXPECT_FALSE(LoadUserPermissions("r.t.e."));
    EXPECT_TRUE(startup::gSecurityOn);
    EXPECT_FALSE(HasAuthority("RTG210", false));
    EXPECT_FALSE(LoadUserPermissions("R.T.E."));
    EXPECT_FALSE(startup::gSecurityOn);
    EXPECT_TRUE(HasAuthority("RTG210", true));
    district.sql(DatabaseFile::QDSC, "UPDATE QDSCU SET QDSC2 = 'x' WHERE QDSC1 = 'R.T.E.'");
    EXPECT_FALSE(LoadUserPermissions("R.T.E."));
    EXPECT_TRUE(startup::gSecurityOn);
    EXPECT_FALSE(HasAuthority("RTG210", false));
}

TEST_F(Permissions, AnApostropheInTheUserIsReportedNotObeyed) {
    EXPECT_THROW(LoadUserPermissions("X' OR '1'='1' --"), base::EndProgram);
    EXPECT_EQ(session.boxes.shown.size(), 1U);
}

}  // namespace
