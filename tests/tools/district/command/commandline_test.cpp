#include "tools/district/command/commandline.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/schema/version.h"
#include "platform/password/password.h"
#include "platform/store/open/open.h"
#include "tools/district/make/companions.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

using testing::HasSubstr;

struct Outcome {
    ExitStatus status;
    std::string out;
    std::string complaints;
};

Outcome run(const std::vector<std::string>& words, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream complaints;
    const ExitStatus status = runCommand(words, in, out, complaints);
    return {status, out.str(), complaints.str()};
}

/// The one object that --json leaves on standard output.
QJsonDocument answerIn(const Outcome& outcome) {
    EXPECT_EQ(outcome.complaints, "");
    return QJsonDocument::fromJson(QByteArray::fromStdString(outcome.out));
}

QJsonDocument answer(std::vector<std::string> words, const std::string& input = {}) {
    words.emplace_back("--json");
    return answerIn(run(words, input));
}

class Sql : public testing::Test {
protected:
    [[nodiscard]] Outcome sql(const std::string& statement) const {
        return run({"sql", routing_, statement});
    }

    MadeDistrict made_{4};
    std::string routing_ = made_.folders().database(data::DatabaseFile::Routing).string();
};

}  // namespace

TEST_F(Sql, PrintsRowsAsATable) {
    made_.execute(
        data::DatabaseFile::Routing,
        "UPDATE RUN SET INT_ROUTEID = NULL, COMMENT = 'a' || char(9) || 'b\\c' || char(10)"
        " WHERE RUN = 'A000001'");
    const Outcome rows =
        sql("SELECT RUN.RUN, RUN.PICKUP, RUN.INT_ROUTEID, RUN.COMMENT FROM RUN"
            " WHERE RUN.RUN = 'a000001 ';");
    EXPECT_EQ(rows.out, "RUN\tPICKUP\tINT_ROUTEID\tCOMMENT\nA000001\tTrue\t\ta\\tb\\\\c\\n\n");
    EXPECT_EQ(rows.status, ExitStatus::Done);
    EXPECT_EQ(sql("SELECT VehType.VTypDesc FROM VehType WHERE VehType.VEHTYPE='VAN8'").out,
              "VTYPDESC\nVan, 8 seats\n");
    EXPECT_THAT(run({"sql", made_.folder() + "/none.mdb", "SELECT 1"}).complaints,
                HasSubstr("none.mdb"));
}

TEST_F(Sql, RunsLinesUntilOneFails) {
    const Outcome outcome = run({"sql", routing_},
                                "-- two changes\n"
                                "\n"
                                "UPDATE RUN SET RUN.COMMENT='seen' WHERE RUN.RUN='A000001'\n"
                                "UPDATE RUN SET RUN.COMENT='seen'\n"
                                "DELETE FROM RUNLOG\n");
    EXPECT_EQ(outcome.out, "1 row changed\n");
    EXPECT_THAT(outcome.complaints, testing::StartsWith("line 4: "));
    EXPECT_THAT(outcome.complaints, HasSubstr("COMENT"));
    EXPECT_EQ(outcome.status, ExitStatus::Failed);
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM RUN WHERE COMMENT = 'seen'"), 1);
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM RUNLOG"), 200);
}

TEST_F(Sql, AnswersAScriptWithOneObjectWhateverComesOfIt) {
    const auto rows =
        answer({"sql", routing_},
               "SELECT RUN.RUN, RUN.PICKUP, RUN.BELLTIME, RUN.INT_ROUTEID, RUN.OVERFILL"
               " FROM RUN WHERE RUN.RUN='A000001'\n"
               "UPDATE RUN SET RUN.COMENT='seen'\n");
    EXPECT_EQ(rows["status"], "failed");
    EXPECT_EQ(rows["complaints"].toArray().size(), 1);
    const auto told = rows["result"]["statements"][0];
    EXPECT_EQ(told["columns"][2], "BELLTIME");
    EXPECT_EQ(told["rows"][0][0], "A000001");
    EXPECT_TRUE(told["rows"][0][1].isBool());
    EXPECT_THAT(told["rows"][0][2].toString().toStdString(), testing::StartsWith("1899-12-30 "));
    EXPECT_TRUE(told["rows"][0][4].isDouble());

    const auto checked = answer({"check", made_.folder()});
    EXPECT_EQ(checked["command"], "check");
    EXPECT_EQ(checked["status"], "done");
    EXPECT_TRUE(checked["result"]["findings"].isArray());
    EXPECT_FALSE(checked["says"].toArray().isEmpty());
    EXPECT_EQ(answer({"check", made_.folder() + "/none"})["status"], "failed");
    EXPECT_EQ(answer({"backup", made_.folder()})["status"], "misused");
    EXPECT_EQ(answer({"report", made_.folder(), "--list", "--wings"})["status"], "misused");
}

TEST_F(Sql, ChecksEveryLineWithoutRunningAny) {
    const Outcome outcome = run({"sql", "--check", routing_},
                                "DELETE FROM RUNLOG\n"
                                "SELECT * FROM RUN; DELETE FROM RUN\n"
                                "SELECT RUN.RUN FROM RUN\n");
    EXPECT_THAT(outcome.out, testing::StartsWith("line 1: understood\n"
                                                 "line 2: not understood at position 20: "));
    EXPECT_THAT(outcome.out, testing::EndsWith("line 3: understood\n"));
    EXPECT_EQ(outcome.status, ExitStatus::Failed);
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM RUNLOG"), 200);
    EXPECT_EQ(run({"sql", "--check", routing_}, "SELECT RUN.RUN FROM RUN\n").status,
              ExitStatus::Done);
}

TEST(CommandLine, MakesAndChecks) {
    const support::TemporaryFolder folder;
    const std::string district = folder.path() + "d";
    EXPECT_EQ(run({"create", "--runs", "3", district, "--seed", "9"}).status, ExitStatus::Done);
    const Outcome again = run({"create", district});
    EXPECT_EQ(again.status, ExitStatus::Failed);
    EXPECT_THAT(again.complaints, HasSubstr("There is a district in"));
    EXPECT_EQ(run({"check", district}).status, ExitStatus::Done);
    store::open(district + "/data/routing.mdb")->execute("DELETE FROM SYSTEM");
    EXPECT_EQ(run({"check", district}).status, ExitStatus::Failed);
    EXPECT_EQ(run({"check", folder.path() + "none"}).complaints,
              "There is no folder " + folder.path() + "none.\n");
}

TEST(CommandLine, MakesAnEmptyDistrictForOneAdministrator) {
    const support::TemporaryFolder folder;
    const std::string district = folder.path() + "own";
    EXPECT_EQ(run({"create", "--empty", district}, "\n").status, ExitStatus::Failed);
    EXPECT_EQ(run({"create", "--empty", "--runs", "3", district}).status, ExitStatus::Misused);
    EXPECT_EQ(run({"create", "--admin", "BOSS", district}).status, ExitStatus::Misused);
    EXPECT_FALSE(std::filesystem::exists(district));
    const std::vector<std::string> words = {"create",  "--empty", "--name", "Our towns",
                                            "--admin", "BOSS",    district};
    EXPECT_EQ(run(words, "secret one\n").status, ExitStatus::Done);
    const Outcome check = run({"check", district});
    EXPECT_EQ(check.status, ExitStatus::Done) << check.out;
    const auto table = [&](const std::string& file, const std::string& sql) {
        return run({"sql", district + file, sql}).out;
    };
    const auto routing = [&](const std::string& sql) { return table("/data/routing.mdb", sql); };
    EXPECT_EQ(routing("SELECT DistName FROM District"), "DistName\nOur towns\n");
    EXPECT_EQ(routing("SELECT TRIPTYPE FROM TRIPTYPE"), "TRIPTYPE\nAM\nPM\n");
    for (const char* empty : {"RUN", "STOP", "SCHOOL", "ROUTE", "STUDENT", "VEHTYPE", "LOCCODE"}) {
        EXPECT_EQ(routing("SELECT Count(*) AS N FROM " + std::string(empty)), "N\n0\n");
    }
    const std::string users = table("/common/ZBQDSC1.mdb", "SELECT QDSC1, QDSC2 FROM QDSCU");
    EXPECT_TRUE(password::matches("secret one", users.substr(17, users.size() - 18))) << users;
    EXPECT_EQ(table("/common/ZBQDSC1.mdb",
                    "SELECT Count(*) AS N FROM QDSCU_PP WHERE QDSC1='BOSS' AND Authority=True"),
              "N\n5\n");
}

TEST(CommandLine, RunsComeBackFromAFeedWithTheirTimes) {
    const MadeDistrict made(40);
    const support::TemporaryFolder folder;
    const std::string zip = folder.path() + "runs.zip";
    const std::string other = folder.path() + "other";
    ASSERT_EQ(run({"export", made.folder(), zip, "--gtfs", "--centre", "41,-87"}).status,
              ExitStatus::Done);
    const auto monday = [&](const char* until) {
        return run({"export", made.folder(), folder.path() + "day.zip", "--gtfs", "--centre",
                    "41,-87", "--from", "2026-08-24", "--until", until})
            .complaints;
    };
    EXPECT_EQ(monday("2026-08-24"), "");
    EXPECT_THAT(monday("2026-08-23"), testing::StartsWith("--until is a day before --from."));
    ASSERT_EQ(run({"create", "--empty", other}, "secret one\n").status, ExitStatus::Done);
    const Outcome undecided = run({"import", other, zip, "--apply"});
    EXPECT_EQ(undecided.status, ExitStatus::Failed);
    EXPECT_THAT(undecided.out, HasSubstr("no trips are chosen, of"));
    const std::vector<std::string> words = {"import", other, zip, "--trips", "route~.", "--apply"};
    const Outcome imported = run(words);
    EXPECT_EQ(imported.status, ExitStatus::Done) << imported.out;
    const auto times = [](const std::string& file, const std::string& runs,
                          const std::string& more) {
        return run({"sql", file,
                    "SELECT " + runs +
                        ", T.TIME_AT_STOP FROM (RUN INNER JOIN STOP_TRIPTYPE AS T "
                        "ON RUN.RUN=T.RUN) INNER JOIN STOP ON STOP.INT_STOPID=T.INT_STOPID WHERE " +
                        more + " ORDER BY " + runs + ", T.RUNSEQ"})
            .out;
    };
    const std::string back = times(other + "/data/routing.mdb", "MID(RUN.COMMENT,6)", "True");
    EXPECT_GT(std::ranges::count(back, '\n'), 100);
    const std::string before = times(made.folder() + "/data/routing.mdb", "RUN.RUN",
                                     "RUN.ACTIVE=True AND STOP.STOPTYPE<>'DIRECTIONAL' AND "
                                     "STOP.STOPTYPE<>'GARAGE' AND STOP.XPOS<>0");
    EXPECT_TRUE(back.substr(back.find('\n')) == before.substr(before.find('\n'))) << back;
    // The plane and the ids are kept: nothing is another one the second time.
    EXPECT_THAT(run(words).out, HasSubstr("Nothing to write."));
}

TEST(CommandLine, TablesOfAnAccessFileAreImportedByTheirNames) {
    const MadeDistrict made(1);
    const std::string files = VIREO_SOURCE_DIR "/tests/tools/access/files/";
    const Outcome dry = run({"import", made.folder(), files + "delColTestV2000.mdb"});
    EXPECT_THAT(dry.complaints, HasSubstr("None of the files is one")) << dry.out;
    const support::TemporaryFolder folder;
    const std::string map =
        folder.write("access.map", "[Table1.csv as schools]\nschool = data\nname = data2\n");
    const Outcome mapped =
        run({"import", made.folder(), files + "delColTestV2000.mdb", "--map", map, "--apply"});
    EXPECT_EQ(mapped.status, ExitStatus::Done) << mapped.out << mapped.complaints;
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM SCHOOL WHERE SCHOOL = 'foo' AND SCHOOLNAME = "
                          "'foo2'"),
              1);
    folder.write("cut.mdb", "Standard Jet DB");
    EXPECT_EQ(run({"import", made.folder(), folder.path() + "cut.mdb"}).status, ExitStatus::Failed);
}

TEST(CommandLine, ImportsOnlyWhereItIsToldTo) {
    const MadeDistrict made(1);
    const support::TemporaryFolder sources;
    sources.write("stops.csv", "Stop Id,Landmark,Description\nNEW1,x,New\nNEW2,x\n");
    const auto import = [&](std::vector<std::string> more) {
        std::vector<std::string> words = {"import", made.folder(), sources.path()};
        words.insert(words.end(), {"--rejected", sources.path() + "rejected.out"});
        words.insert(words.end(), more.begin(), more.end());
        return run(words);
    };
    const Outcome dry = import({});
    EXPECT_EQ(dry.status, ExitStatus::Failed);
    EXPECT_THAT(dry.out, HasSubstr("STOP: 1 new, 0 changed, 0 as they are\n  new: NEW1\n"));
    EXPECT_THAT(dry.out, HasSubstr("columns left out: Landmark"));
    EXPECT_THAT(dry.out, HasSubstr("stops.csv, line 3: has 2 fields"));
    EXPECT_THAT(dry.out, HasSubstr("--apply writes it"));
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM STOP WHERE STOPID = 'NEW1'"), 0);
    const Outcome applied = import({"--apply", "--json"});
    EXPECT_TRUE(answerIn(applied)["result"]["written"].toBool());
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM STOP WHERE STOPID = 'NEW1'"), 1);
    EXPECT_THAT(import({"--sketch-map"}).out, HasSubstr("stop = Stop Id\n"));
    EXPECT_EQ(import({"--roll-over", "soon"}).status, ExitStatus::Misused);
    EXPECT_EQ(import({"--replace", "NOTABLE"}).status, ExitStatus::Misused);
    EXPECT_EQ(run({"import", made.folder()}).status, ExitStatus::Misused);
}

TEST(CommandLine, SetsAndTakesAwayAPassword) {
    const MadeDistrict made(1);
    const auto stored = [&] {
        const auto database = made.open(data::DatabaseFile::QDSC);
        const auto row = database->prepare("SELECT QDSC2 FROM QDSCU WHERE QDSC1 = 'PLANNER'");
        row->step();
        return std::string(row->text(0));
    };
    const auto password = [&](const std::string& user, const std::string& input) {
        return run({"password", made.folder(), user}, input);
    };
    EXPECT_EQ(password("planner", "first one\r\nmore").out, "The password of PLANNER was set.\n");
    EXPECT_TRUE(password::matches("first one", stored()));
    EXPECT_EQ(password("NOBODY", "x\n").status, ExitStatus::Failed);
    EXPECT_EQ(password("PLANNER", "").status, ExitStatus::Failed);
    EXPECT_EQ(password("PLANNER", std::string(password::Longest + 1, 'x')).status,
              ExitStatus::Failed);
    EXPECT_TRUE(password::matches("first one", stored()));
    EXPECT_EQ(password("PLANNER", "\n").status, ExitStatus::Done);
    EXPECT_EQ(password::kindOf(stored()), password::Stored::None);
}

TEST(CommandLine, KeepsUsersAndWhatTheyMayDo) {
    const MadeDistrict made(1);
    const auto users = [&](std::vector<std::string> words, const std::string& input = {}) {
        words.insert(words.begin(), {"users", made.folder()});
        return run(words, input);
    };
    EXPECT_THAT(users({"add", "Zoë", "new", "Change Bell Times", "rtg260"}).out,
                HasSubstr("Added Zoë without a password; may use New (RTG210), Change Bell"));
    EXPECT_EQ(users({"revoke", "ZOë", "bell-times"}).status, ExitStatus::Done);
    EXPECT_EQ(users({"password", "zoë"}, "Blue Bus\n").out, "The password of Zoë was set.\n");
    EXPECT_EQ(users({}).out,
              "User     Password  New     Delete  Change Bell Times  Group Change  Print\n"
              "                   RTG210  RTG230  RTG250             RTG260        RTG270\n"
              "CLERK    none      -       -       -                  -             yes\n"
              "PLANNER  none      yes     yes     yes                yes           yes\n"
              "R.T.E.   none      yes     yes     yes                yes           yes\n"
              "Zoë      set       yes     -       -                  yes           -\n");
    EXPECT_EQ(answer({"users", made.folder(), "list"})["result"]["users"][3]["user"].toString(),
              "Zoë");
    EXPECT_EQ(users({"remove", "CLERK"}).out,
              "Removed CLERK with 6 permissions of all programs of the suite.\n");
    EXPECT_EQ(run({"check", made.folder()}).status, ExitStatus::Done);

    for (const char* id : {"", " ", "zoë", "O'BRIAN", "-style", "A  B", "\xff"}) {
        EXPECT_NE(users({"add", id}).status, ExitStatus::Done) << id;
    }
    EXPECT_EQ(users({"grant", "NOBODY", "all"}).complaints, "There is no user NOBODY.\n");
    EXPECT_EQ(users({"grant", "PLANNER", "fly"}).status, ExitStatus::Misused);
    EXPECT_EQ(users({"promote", "PLANNER"}).status, ExitStatus::Misused);
}

TEST(CommandLine, GrantsWhatTheProgramCounts) {
    const MadeDistrict made(1);
    const auto file = data::DatabaseFile::QDSC;
    made.execute(file, "DELETE FROM QDSCPP WHERE PERM = 'RTG270'");
    made.execute(file, "DELETE FROM QDSCU_PP WHERE PERM = 'RTG270'");
    made.execute(file, "UPDATE QDSCU_PP SET PERM = 'rtg260' WHERE PERM = 'RTG260'");
    run({"users", made.folder(), "grant", "CLERK", "all"});
    const auto database = made.open(file);
    const auto row = database->prepare(
        "SELECT (SELECT COUNT(*) FROM QDSCPP WHERE PRODUCT = 'ROUTING'), COUNT(*),"
        " MIN(PERM = upper(PERM)) FROM QDSCU_PP WHERE QDSC1 = 'CLERK' AND PRODUCT = 'ROUTING'");
    row->step();
    EXPECT_EQ(row->integer(0), 5);
    EXPECT_EQ(row->integer(1), 5);
    EXPECT_EQ(row->integer(2), 1) << "the program compares codes exactly";
}

TEST(Companions, AreLinkedButNeverReplaceAFile) {
    const support::TemporaryFolder from;
    const support::TemporaryFolder to;
    from.write("Logon.Exe", "ours");
    EXPECT_THAT(linkCompanions(from.path(), to.path()), testing::ElementsAre("Logon.Exe"));
    EXPECT_THAT(linkCompanions(from.path(), to.path()), testing::ElementsAre("Logon.Exe"));
    EXPECT_EQ(support::contentsOf(to.path() + "Logon.Exe"), "ours");
    std::filesystem::remove(to.path() + "Logon.Exe");
    to.write("Logon.Exe", "the suite's own");
    EXPECT_THAT(linkCompanions(from.path(), to.path()), testing::IsEmpty());
    EXPECT_EQ(support::contentsOf(to.path() + "Logon.Exe"), "the suite's own");
}

TEST(CommandLine, TellsWhatItDoesNotUnderstand) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> misuses = {
        {{}, "A command is missing."},
        {{"make", "x"}, "Unknown command \"make\"."},
        {{"create"}, "Something is missing.\nUsage: vireo-district create FOLDER [--runs N "},
        {{"create", ""}, "Something is missing."},
        {{"password", "a"}, "Something is missing.\nUsage: vireo-district password FOLDER USER\n"},
        {{"create", "a", "b"}, "\"b\" is one word too many."},
        {{"create", "a", "--fast"}, "Unknown option 'fast'."},
        {{"create", "a", "--runs"}, "Missing value after '--runs'."},
        {{"create", "a", "--runs", "0"},
         "--runs takes a whole number from 1 to 200000, not \"0\"."},
        {{"create", "a", "--runs", "12x"}, "--runs takes a whole number from 1 to 200000, not"},
        {{"create", "a", "--seed", "1"}, "--seed says how to invent a district; it needs --runs."}};
    for (const auto& [words, complaint] : misuses) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, ExitStatus::Misused) << complaint;
        EXPECT_THAT(outcome.complaints, testing::StartsWith(complaint));
    }
}

TEST(CommandLine, TellsOfADistrictOfAnotherVersion) {
    const MadeDistrict made(1);
    const std::string version = std::to_string(data::currentVersion());
    const auto file = data::DatabaseFile::QDSC;
    const std::string users = made.folders().database(file).string();
    const auto complaints = [&] {
        const Outcome checked = run({"check", made.folder()});
        const Outcome asked = run({"sql", users, "SELECT QDSCU.QDSC1 FROM QDSCU"});
        const Outcome set = run({"password", made.folder(), "PLANNER"}, "x\n");
        for (const Outcome& one : {checked, asked, set}) {
            EXPECT_EQ(one.status, ExitStatus::Failed);
            EXPECT_THAT(checked.out, HasSubstr(one.complaints));
        }
        return set.complaints;
    };
    made.open(file)->setMark({});
    EXPECT_THAT(complaints(), testing::AllOf(HasSubstr("ZBQDSC1.mdb (version 0)"),
                                             HasSubstr("upgrade \"" + made.folder() + "\"")));
    const Outcome upgraded = run({"upgrade", made.folder()});
    EXPECT_EQ(upgraded.status, ExitStatus::Done);
    EXPECT_THAT(upgraded.out, testing::EndsWith("\nZBQDSC1.mdb: version " + version + ".\n"));
    EXPECT_THAT(run({"upgrade", made.folder()}).out, HasSubstr("nothing was changed"));
    EXPECT_THAT(run({"check", made.folder()}).out,
                testing::StartsWith("Version " + version + ". Looked at "));
    const auto mark = made.open(file)->mark();
    made.open(file)->setMark({mark.kind, mark.version + 1});
    EXPECT_THAT(complaints(), HasSubstr("newer than the program"));
    EXPECT_EQ(run({"upgrade", made.folder()}).status, ExitStatus::Failed);
}

}  // namespace tools::district
