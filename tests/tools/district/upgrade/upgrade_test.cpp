#include "tools/district/upgrade/upgrade.h"

#include <csignal>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "data/schema/version.h"
#include "platform/base/error.h"
#include "platform/store/open/open.h"
#include "support/faultof.h"
#include "tools/district/check/checks.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using data::Age;
using data::DatabaseFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

Lines upgraded(const Folders& folders) {
    Progress progress;
    Lines told;
    upgradeDistrict(folders, progress, [&](const std::string& line) { told.push_back(line); });
    return told;
}

std::string refusal(const Folders& folders) {
    return support::faultOf([&] { return upgraded(folders); });
}

data::FoundFile found(const Folders& folders, DatabaseFile file) {
    const std::string path = folders.database(file).string();
    const auto database = store::open(path);
    return data::lookAt(file, path, database->mark(), database->catalog());
}

void change(const Folders& folders, DatabaseFile file, const Lines& statements) {
    const auto database = store::open(folders.database(file).string());
    for (const std::string& statement : statements) {
        database->execute(statement);
    }
}

void mark(const Folders& folders, DatabaseFile file, store::FileMark mark) {
    store::open(folders.database(file).string())->setMark(mark);
}

void copyTo(const Folders& folders, const fs::path& from) {
    fs::copy(from, folders.root, fs::copy_options::recursive);
    writeSettings(folders, folders);
}

Lines backups(const Folders& folders) {
    Lines names;
    for (const auto& entry : fs::directory_iterator(folders.root)) {
        if (entry.path().filename().string().starts_with("backup-")) {
            names.push_back(entry.path());
        }
    }
    return names;
}

std::string bytes(const Folders& folders) {
    std::string all;
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        all += support::contentsOf(folders.database(file).string());
    }
    return all;
}

bool isSound(const Folders& folders) {
    Progress progress;
    return checkDistrict(folders, progress).isSound();
}

/// Runs it in a process of its own that is killed when it tells the line of that number, or after
/// so many microseconds; whether it was.
bool killedUpgrade(const Folders& folders, int atLine, unsigned microseconds) {
    const pid_t child = ::fork();
    if (child == 0) {
        Progress progress;
        int line = 0;
        upgradeDistrict(folders, progress, [&](const std::string&) {
            if (++line == atLine) {
                ::raise(SIGKILL);
            }
        });
        ::_exit(0);
    }
    if (atLine == 0) {
        ::usleep(microseconds);
        ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

/// How many files are as after; every other one must be as before.
int filesDone(const Folders& folders) {
    int done = 0;
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        const auto now = found(folders, file);
        const bool isRouting = file == DatabaseFile::Routing;
        const bool isAsBefore = now.mark == store::FileMark{} &&
                                now.missing == (isRouting ? "STOP_TRIPTYPE.UPDATE_TIME" : "");
        EXPECT_TRUE(isAsBefore || now.age == Age::Current) << data::fileName(file);
        done += now.age == Age::Current ? 1 : 0;
    }
    return done;
}

/// "version N", as files are brought to it.
std::string toVersion(int beyond = 0) {
    return "version " + std::to_string(data::currentVersion() + beyond);
}

/// A district as they were before there were versions: no file is marked, and the routing file
/// lacks columns, an index, a table and a row.
class Upgrade : public testing::Test {
protected:
    Upgrade() {
        copyTo(folders_, sample().folder());
        for (const DatabaseFile file : data::AllDatabaseFiles) {
            mark(folders_, file, {});
        }
        change(folders_, DatabaseFile::Routing,
               {"ALTER TABLE District DROP COLUMN CHECKSTOPOVERLAP",
                "ALTER TABLE STOP_TRIPTYPE DROP COLUMN UPDATE_TIME",
                "DROP INDEX index_RUN_SCHOOL_BELLTIME", "DROP TABLE RUNWARNING",
                "DELETE FROM SYSTEM", "UPDATE RUN SET LOCCODE = ''"});
    }
    static const MadeDistrict& sample() {
        static const MadeDistrict made(4);
        return made;
    }
    [[nodiscard]] std::int64_t number(const std::string& sql) const {
        const auto database = store::open(folders_.database(DatabaseFile::Routing).string());
        const auto row = database->prepare(sql);
        return row->step() ? row->integer(0) : -1;
    }

    support::TemporaryFolder place_{support::TemporaryFolder::Place::Memory};
    fs::path root_ = place_.path() + "district";
    Folders folders_{root_};
};

}  // namespace

TEST_F(Upgrade, GivesFilesWhatTheyLackAndKeepsWhatTheyWere) {
    const std::int64_t stopTrips = number("SELECT COUNT(*) FROM STOP_TRIPTYPE");
    const Lines told = upgraded(folders_);
    ASSERT_EQ(told.size(), 7U);
    EXPECT_EQ(told[1],
              "routing.mdb: " + toVersion() +
                  "; added an index of RUN, added STOP_TRIPTYPE.UPDATE_TIME, added "
                  "District.CHECKSTOPOVERLAP, added RUNWARNING, step 1 gives SYSTEM and StartEnd "
                  "the one row that they must hold, step 2 makes empty codes blank.");
    EXPECT_EQ(told[3], "trip.mdb: " + toVersion() + ".");
    EXPECT_EQ(number("SELECT COUNT(*) FROM RUN WHERE LOCCODE = ''"), 0);
    EXPECT_EQ(number("SELECT COUNT(*) FROM STOP_TRIPTYPE WHERE UPDATE_TIME = 1"), stopTrips);
    EXPECT_EQ(number("SELECT CHECKSTOPOVERLAP FROM District"), 0);
    EXPECT_EQ(number("SELECT COUNT(*) FROM SYSTEM"), 1);
    EXPECT_EQ(number("SELECT COUNT(*) FROM StartEnd"), 1);

    ASSERT_EQ(backups(folders_).size(), 1U);
    const Folders backup{backups(folders_)[0]};
    EXPECT_EQ(told[0], "The files as they were are in " + backup.root.string() + ".");
    EXPECT_EQ(fs::status(backup.root).permissions(), fs::perms::owner_all);
    EXPECT_EQ(found(backup, DatabaseFile::Routing).missing, "STOP_TRIPTYPE.UPDATE_TIME");
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        EXPECT_EQ(found(backup, file).mark, store::FileMark{}) << data::fileName(file);
        EXPECT_EQ(found(folders_, file).age, Age::Current) << data::fileName(file);
    }
    EXPECT_TRUE(isSound(folders_));
    EXPECT_THAT(upgraded(folders_), IsEmpty());
    EXPECT_EQ(backups(folders_).size(), 1U);
}

// As after a new column in the schema whose maker forgot the step, or a tool that dropped one.
TEST_F(Upgrade, GivesAMissingColumnToADistrictOfThisVersion) {
    upgraded(folders_);
    change(folders_, DatabaseFile::Trip, {"ALTER TABLE VEHTYPE DROP COLUMN LOWOVERFILL"});
    EXPECT_EQ(found(folders_, DatabaseFile::Trip).age, Age::Older);
    EXPECT_EQ(upgraded(folders_)[1], "trip.mdb: " + toVersion() + "; added VEHTYPE.LOWOVERFILL.");
    EXPECT_EQ(backups(folders_).size(), 2U);
}

TEST_F(Upgrade, RefusesWhatIsNoOlderDistrictAndChangesNothing) {
    const store::FileMark newer{data::markOf(DatabaseFile::Trip).kind, data::currentVersion() + 1};
    const auto replace = [](const Folders& folders, DatabaseFile by) {
        fs::copy(folders.database(by), folders.database(DatabaseFile::DeadCross),
                 fs::copy_options::overwrite_existing);
    };
    const std::vector<std::pair<std::string, std::function<void(const Folders&)>>> cases = {
        {"newer than the program, which works with " + toVersion() + ": trip.mdb (" + toVersion(1) +
             ")",
         [&](const Folders& one) { mark(one, DatabaseFile::Trip, newer); }},
        {"no files of a district under such a name: ",
         [&](const Folders& one) { replace(one, DatabaseFile::Trip); }},
        {"no files of a district under such a name: ",
         [&](const Folders& one) {
             mark(one, DatabaseFile::Trip, data::markOf(DatabaseFile::Trip));
             replace(one, DatabaseFile::Trip);
         }},
        {"is damaged",
         [](const Folders& one) { fs::resize_file(one.database(DatabaseFile::QDSC), 5000); }},
        {"DEADCROSS.mdb\" was not found",
         [](const Folders& one) { fs::remove(one.database(DatabaseFile::DeadCross)); }}};
    int copy = 0;
    for (const auto& [said, spoil] : cases) {
        const Folders folders{place_.path() + std::to_string(++copy)};
        copyTo(folders, root_);
        spoil(folders);
        const std::string before = bytes(folders);
        EXPECT_THAT(refusal(folders), HasSubstr(said));
        EXPECT_EQ(bytes(folders), before) << said;
        EXPECT_THAT(backups(folders), IsEmpty()) << said;
    }
}

TEST_F(Upgrade, RefusesWhileSomebodyWorksInTheDistrict) {
    const std::string before = bytes(folders_);
    auto working = store::open(folders_.database(DatabaseFile::QDSC).string());
    EXPECT_THAT(refusal(folders_), HasSubstr("Somebody works in this district: "));
    EXPECT_THAT(refusal(folders_), HasSubstr("ZBQDSC1.mdb is open in another program"));
    EXPECT_EQ(bytes(folders_), before);
    working.reset();
    EXPECT_EQ(upgraded(folders_).size(), 7U);
    working = store::open(folders_.database(DatabaseFile::QDSC).string());
    EXPECT_THAT(upgraded(folders_), IsEmpty());  // nothing to do keeps nobody out
}

TEST_F(Upgrade, NobodyComesInMeanwhile) {
    const auto alone = store::openAlone(folders_.database(DatabaseFile::Trip).string());
    EXPECT_THROW(store::open(folders_.database(DatabaseFile::Trip).string(), 1), store::StoreError);
}

// What was added before the fault is taken back with it.
TEST_F(Upgrade, AFileThatCannotBeBroughtUpStaysAsItWas) {
    change(folders_, DatabaseFile::Routing,
           {"DROP TABLE SCHOOL", "CREATE TABLE SCHOOL (SCHOOLNAME TEXT)"});
    EXPECT_EQ(refusal(folders_), "Table SCHOOL lacks its column SCHOOL, which cannot be made up.");
    EXPECT_EQ(found(folders_, DatabaseFile::Routing).mark, store::FileMark{});
    EXPECT_EQ(found(folders_, DatabaseFile::Routing).missing, "STOP_TRIPTYPE.UPDATE_TIME");
    EXPECT_EQ(backups(folders_).size(), 1U);
}

TEST_F(Upgrade, FollowsTheSettingsToFilesThatLieElsewhere) {
    const support::TemporaryFolder config{support::TemporaryFolder::Place::Memory};
    fs::rename(root_ / "data" / "routing.mdb", root_ / "data" / "ROUTING.MDB");
    const std::string root = root_.string();
    config.write("vireo/route.ini", "[AppPaths]\ndatapath=" + root + "/data/\nprogpath=" + root +
                                        "/prog/\nVIREOpath=" + root + "/common/\n");
    EXPECT_EQ(upgraded(foldersOf(config.path())).size(), 7U);
    EXPECT_EQ(backups(folders_).size(), 1U);
    config.write("vireo/route.ini", "[AppPaths]\ndatapath=" + root + "/data/\n");
    EXPECT_THROW(static_cast<void>(foldersOf(config.path())), base::RunTimeError);
}

TEST_F(Upgrade, AKillLeavesEveryFileAsBeforeOrAsAfterAndASecondRunEndsTheWork) {
    const Folders folders{place_.path() + "killed"};
    const auto kill = [&](int atLine, unsigned microseconds) {
        fs::remove_all(folders.root);
        copyTo(folders, root_);
        fs::create_directory(folders.root / "backups.making-1");  // somebody else's
        const bool wasKilled = killedUpgrade(folders, atLine, microseconds);
        if (atLine > 0) {
            EXPECT_TRUE(wasKilled);
            EXPECT_EQ(filesDone(folders), atLine - 1);
        } else {
            filesDone(folders);
        }
        upgraded(folders);
        EXPECT_TRUE(isSound(folders)) << atLine << ' ' << microseconds;
        EXPECT_THAT(backups(folders), testing::Each(testing::Not(HasSubstr(".making-"))));
        EXPECT_TRUE(fs::exists(folders.root / "backups.making-1"));
        return wasKilled;
    };
    for (int line = 1; line <= 7; ++line) {
        kill(line, 0);
    }
    for (unsigned microseconds = 500; kill(0, microseconds); microseconds += microseconds / 2) {
    }
}

}  // namespace tools::district
