#include <filesystem>

#include <gtest/gtest.h>

#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"
#include "support/errors.h"
#include "support/rows.h"
#include "support/testdistrict.h"
#include "support/testsession.h"

namespace {

using data::DatabaseFile;
using support::contentsOf;

class Databases : public testing::Test {
protected:
    [[nodiscard]] std::string startError() const {
        EXPECT_THROW(session_.start(district_.configFolder()), base::EndProgram);
        EXPECT_EQ(session_.boxes.shown.size(), 1U);
        return session_.boxes.shown.empty() ? "" : session_.boxes.shown[0].text;
    }

    support::TestDistrict district_;
    support::TestSession session_;
};

TEST_F(Databases, OpenWhateverTheCaseOfTheirNamesAndSeeEachOthersTables) {
    std::filesystem::rename(district_.path(DatabaseFile::Routing),
                            district_.dataPath() + "ROUTING.MDB");
    district_.insert(DatabaseFile::Trip, "EMPLOYEE",
                     {{"EMPNUM", 12}, {"LASTNAME", "Smith"}, {"FIRSTNAME", "Ann"}});
    session_.start(district_.configFolder());
    const std::string sql = "SELECT EMPLOYEE.LASTNAME FROM EMPLOYEE";
    EXPECT_EQ(support::rowsOf(sql, *startup::gcnTrip).at(0), "Smith");
    EXPECT_EQ(support::rowsOf(sql, *startup::gcnRouting).at(0), "Smith");
    EXPECT_EQ(startup::gcnQDSC->Provider(), "Microsoft.Jet.OLEDB.4.0");
}

TEST_F(Databases, AMissingFileIsReportedLoggedAndEndsTheProgram) {
    std::filesystem::remove(district_.path(DatabaseFile::DeadCross));
    const std::string text = startError();
    EXPECT_NE(text.find("\nOpenRoutingDatabase of Module: mdlDBConnection.\n"), std::string::npos);
    EXPECT_NE(text.find("DEADCROSS.mdb"), std::string::npos) << text;
    EXPECT_NE(contentsOf(district_.progPath() + "Error.txt")
                  .find("Current Operation: OpenRoutingDatabase of Module: mdlDBConnection."),
              std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(district_.path(DatabaseFile::DeadCross)));
    EXPECT_FALSE(startup::gcnRouting);
    EXPECT_EQ(session_.forms.unloads, 1);
}

TEST_F(Databases, ADamagedFileAndOneOfAnotherKindAreReported) {
    support::TemporaryFolder folder;
    const std::string access("\0\1\0\0Standard Jet DB\0", 20);
    for (const std::string& bytes : {std::string("no database at all"), access}) {
        session_.boxes.shown.clear();
        std::filesystem::remove(district_.path(DatabaseFile::QDSC));
        folder.write("file", bytes);
        std::filesystem::copy(folder.path() + "file", district_.path(DatabaseFile::QDSC));
        EXPECT_NE(startError().find("ZBQDSC1.mdb"), std::string::npos);
        EXPECT_EQ(contentsOf(district_.path(DatabaseFile::QDSC)), bytes);
    }
}

TEST_F(Databases, ShutDownKeepsWhatAnOpenUnitOfWorkHadWritten) {
    session_.start(district_.configFolder());
    const auto faultInsideAUnit = [] {
        const ado::CommitOnExit unit(*startup::gcnRouting);
        startup::gcnRouting->Execute("INSERT INTO LOCCODE (LOCCODE) VALUES ('N')");
        startup::ShutDown();
    };
    EXPECT_THROW(faultInsideAUnit(), base::EndProgram);
    EXPECT_FALSE(startup::gcnRouting);
    session_.start(district_.configFolder());
    EXPECT_EQ(support::rowsOf("SELECT LOCCODE FROM LOCCODE", *startup::gcnRouting).at(0), "N");
}

TEST_F(Databases, ShutDownSkipsWhatIsNotOpenAndUsingAReleasedConnectionIsARunTimeError) {
    EXPECT_THROW(startup::ShutDown(), base::EndProgram);
    session_.start(district_.configFolder());
    startup::gcnTrip->Close();
    EXPECT_THROW(startup::ShutDown(), base::EndProgram);
    EXPECT_EQ(session_.forms.unloads, 2);
    EXPECT_TRUE(session_.boxes.shown.empty());
    EXPECT_EQ(support::errorOf([] { return startup::gcnTrip->Execute("DELETE FROM EMPLOYEE"); }),
              base::errors::ObjectNotSet);
}

}  // namespace
