// A district moved to a database server and back by the command.

#include <filesystem>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/store/open/open.h"
#include "support/privateserver.h"
#include "tools/district/command/commandline.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

struct Answer {
    ExitStatus status;
    std::string text;
};

Answer told(const std::vector<std::string>& words) {
    std::istringstream in;
    std::ostringstream out;
    const ExitStatus status = runCommand(words, in, out, out);
    return {status, out.str()};
}

/// Whether the server does not allow it, for no other reason.
bool isRefused(store::Database& database, const char* statement) {
    try {
        database.execute(statement);
    } catch (const store::StoreError& error) {
        return error.fault() == store::Fault::ReadOnly;
    }
    return false;
}

}  // namespace

TEST(Copy, MovesADistrictToAServerAndBack) {
    support::PrivateServer* const server = support::PrivateServer::find();
    if (server == nullptr) {
        GTEST_SKIP() << "PostgreSQL's server is not installed";
    }
    const MadeDistrict made(4);
    const std::string place = server->newPlace();
    const Answer copied = told({"copy", made.folder(), place});
    ASSERT_EQ(copied.status, ExitStatus::Done) << copied.text;
    EXPECT_THAT(copied.text, HasSubstr("every cell is the same"));
    EXPECT_EQ(told({"check", place}).text, told({"check", made.folder()}).text);
    EXPECT_EQ(told({"copy", made.folder(), place}).status, ExitStatus::Failed)
        << "there is one already";

    const std::string question =
        "SELECT RUN.*, SCHOOL.SCHOOLNAME, ROUTE.ROUTEID FROM (RUN LEFT JOIN SCHOOL ON RUN.SCHOOL ="
        " SCHOOL.SCHOOL) LEFT JOIN ROUTE ON RUN.INT_ROUTEID = ROUTE.INT_ROUTEID ORDER BY RUN.RUN";
    const std::string file = made.folders().database(data::DatabaseFile::Routing).string();
    EXPECT_EQ(told({"sql", place + "routing.mdb", question}).text,
              told({"sql", file, question}).text);

    const support::TemporaryFolder folder;
    const std::string back = folder.path() + "back";
    ASSERT_EQ(told({"copy", place, back}).status, ExitStatus::Done);
    EXPECT_EQ(told({"check", back}).text, told({"check", made.folder()}).text);

    const std::string desktop = folder.path() + "desktop";
    ASSERT_EQ(told({"connect", desktop, place}).status, ExitStatus::Done);
    EXPECT_FALSE(std::filesystem::exists(desktop + "/data"));
    const Answer rows = told({"sql", place + "routing.mdb", "UPDATE SCHOOL SET SCHOOLNAME = 'x'"});
    EXPECT_EQ(rows.status, ExitStatus::Done) << rows.text;
    EXPECT_EQ(told({"check", desktop}).status, ExitStatus::Done) << told({"check", desktop}).text;

    auto routing = store::open(place + "routing.mdb");
    routing->execute("DROP TRIGGER tell ON RUN");
    EXPECT_THAT(told({"upgrade", desktop}).text, HasSubstr("routing.mdb: what a planner changes"));
    EXPECT_THAT(told({"upgrade", desktop}).text, HasSubstr("nothing was changed"));
    routing->execute("ALTER TABLE RUN DROP COLUMN COMMENT");
    EXPECT_EQ(told({"upgrade", desktop}).status, ExitStatus::Failed) << "somebody has it open";
    routing.reset();
    const Answer upgraded = told({"upgrade", desktop});
    EXPECT_EQ(upgraded.status, ExitStatus::Done) << upgraded.text;
    EXPECT_THAT(upgraded.text, HasSubstr("added RUN.COMMENT"));
    EXPECT_EQ(told({"check", desktop}).status, ExitStatus::Done) << told({"check", desktop}).text;
    EXPECT_THAT(told({"connect", desktop + "2", server->newPlace()}).text,
                HasSubstr("was not found"));
    // A date that no program of ours has written.
    made.execute(data::DatabaseFile::Routing, "UPDATE RUN SET ENDTIME = '1899-12-30 07:00:00.4'");
    EXPECT_THAT(told({"copy", made.folder(), server->newPlace()}).text,
                HasSubstr("The copy of routing.mdb is not like the original: "));
}

// As the page for administrators says: the owner makes the district, a planner's role works in it.
TEST(Roles, APlannerChangesRowsAndNothingElse) {
    support::PrivateServer* const server = support::PrivateServer::find();
    if (server == nullptr) {
        GTEST_SKIP() << "PostgreSQL's server is not installed";
    }
    const auto as = [place = server->newPlace()](const std::string& role) {
        return "postgresql://" + role + place.substr(place.find('@'));
    };
    const std::string master = as("vireo");
    const std::string name = master.substr(master.rfind('/', master.size() - 2) + 1);
    static_cast<void>(
        server->tell(name.substr(0, name.size() - 1),
                     support::contentsOf(VIREO_SOURCE_DIR "/packaging/server/roles.sql")));
    ASSERT_EQ(told({"create", as("vireo_owner")}).status, ExitStatus::Done);
    EXPECT_THAT(told({"users", as("vireo_owner"), "role", "PLANNER"}).text,
                HasSubstr("administrator of the server"));
    ASSERT_EQ(told({"users", master, "role", "PLANNER"}).status, ExitStatus::Done);
    EXPECT_THAT(told({"users", as("planner")}).text,
                AllOf(ContainsRegex("CLERK .* -\n"), ContainsRegex("PLANNER .* planner\n")));
    EXPECT_EQ(told({"check", as("planner")}).status, ExitStatus::Done);

    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        const auto database = store::open(foldersOf(as("planner")).database(file).string());
        database->requireWritable();
        for (const store::Table& table : database->catalog().tables()) {
            database->begin();
            database->execute("DELETE FROM " + table.name);
            database->rollback();
        }
    }
    const auto database = store::open(as("planner") + "routing.mdb");
    for (const char* forbidden :
         {"DROP SCHEMA \"trip.mdb\" CASCADE", "CREATE SCHEMA mine", "CREATE TABLE mine (n int)",
          "CREATE TEMPORARY TABLE mine (n int)", "TRUNCATE \"routing.mdb\".\"RUN\"",
          "ALTER TABLE \"routing.mdb\".\"RUN\" DROP COLUMN \"SCHOOL\"",
          "DROP TABLE \"routing.mdb\".\"RUN\"", "SET ROLE vireo_owner", "SET ROLE vireo",
          "CREATE ROLE another", "COPY pg_class TO '/dev/null'",
          "CREATE FUNCTION public.mine() RETURNS int LANGUAGE sql AS 'SELECT 1'",
          "DROP SCHEMA vireo CASCADE", "SELECT * FROM pg_authid"}) {
        EXPECT_TRUE(isRefused(*database, forbidden)) << forbidden;
    }
}

}  // namespace tools::district
