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
    routing->execute("ALTER TABLE RUN DROP COLUMN COMMENT");
    EXPECT_EQ(told({"upgrade", desktop}).status, ExitStatus::Failed) << "somebody has it open";
    routing.reset();
    const Answer upgraded = told({"upgrade", desktop});
    EXPECT_EQ(upgraded.status, ExitStatus::Done) << upgraded.text;
    EXPECT_THAT(upgraded.text, HasSubstr("added RUN.COMMENT"));
    EXPECT_EQ(told({"check", desktop}).status, ExitStatus::Done) << told({"check", desktop}).text;
    EXPECT_THAT(told({"connect", desktop + "2", server->newPlace()}).text,
                HasSubstr("was not found"));
}

}  // namespace tools::district
