#include <csignal>
#include <cstdlib>

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include "importing.h"
#include "platform/store/base/copying.h"
#include "platform/store/open/open.h"
#include "support/privateserver.h"
#include "tools/district/copy/copydistrict.h"
#include "tools/district/make/random.h"

namespace tools::district {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::map<std::string, std::string> FirstDay = {
    {"schools.csv", "School ID,Name,Type\nOAK,Oak School,ELEM\nELM,Elm School,ELEM\n"},
    {"stops.csv",
     "stop_id;type;name;x;y\nS1;;Oak Street;100;200.5\nS2;;Elm Street;;\n"
     "OAKSTOP;SCHOOL;Oak School;5;5\n"},
    {"vehicles.csv", "Bus Number,Vehicle Type\n12,BUS\n"},
    {"employees.csv", "EMPNUM,Last Name\n7,Jos\xE9\n"},
    {"routes.csv", "route,bus,driver\nR1,12,7\n"},
    {"runs.csv",
     "run,school,trip_type,route,bell,start\n101-AM,OAK,AM,R1,8:00 AM,7:05\n"
     "102-PM,OAK,PM,R1,15:00,\n"},
    {"run_stops.csv",
     "run,stop,seq,students,time,drive_minutes\n101-AM,S1,1,4,7:05,0\n"
     "101-AM,S2,2,3,7:15,9.5\n101-AM,OAKSTOP,3,,7:40,25\n102-PM,OAKSTOP,1,0,,\n"},
    {"students.csv",
     "Student_Number,Surname,First Name,School_id,Street,AM Stop Id,Needs\n"
     "17,Ng,Ann,OAK,1 Oak St,S1,WC AIDE\n18,Ito,Bo,ELM,,S2,\n"},
    {"deadhead.csv", "from,to,minutes,miles\nS1,OAKSTOP,5.1,2\n"},
    {"users.csv", "user,print,new\nBO,Y,N\n"},
};

}  // namespace

class Import : public Importing {
protected:
    Import() { options_.rules.addCodes = true; }
};

TEST_F(Import, BringsADistrictInAndFindsItTheSameTheNextTime) {
    options_.apply = false;
    const std::string planned = counts(import(FirstDay));
    EXPECT_EQ(rows("SELECT COUNT(*) FROM STOP"), "0");
    options_.apply = true;
    const ImportResult written = import(FirstDay);
    EXPECT_TRUE(written.isWritten);
    EXPECT_EQ(counts(written), planned);
    EXPECT_EQ(written.outcome.refused, 0) << written.outcome.rejections.front().reason;
    EXPECT_EQ(faults(), "");
    EXPECT_EQ(rows("SELECT SCHOOL, SCHOOLNAME, SCHOOLTYPE, ACTIVE FROM SCHOOL"),
              "OAK|Oak School|ELEM|1 / ELM|Elm School|ELEM|1");
    EXPECT_EQ(rows("SELECT r.RUN, PICKUP, TimeToUse, STARTTIME, ENDTIME, total_stops,"
                   " TOTAL_STUDENTS, f.STOPID, l.STOPID, CreatedBy, changeddt FROM RUN AS r"
                   " JOIN STOP AS f ON f.INT_STOPID = FirstStop"
                   " JOIN STOP AS l ON l.INT_STOPID = LastStop"),
              "101-AM|1|End Time|1899-12-30 07:05:00|1899-12-30 07:40:00|3|7|S1|OAKSTOP|IMPORT|"
              "2026-08-01 09:00:00 / 102-PM|0|Start Time|||1|0|OAKSTOP|OAKSTOP|IMPORT|"
              "2026-08-01 09:00:00");
    EXPECT_EQ(rows("SELECT STOPID, TRIPTYPE, RUN, RUNSEQ, NUM_STUDENTS, LOAD_TIME, TIME_TOSTOP,"
                   " UPDATE_TIME FROM STOP_TRIPTYPE JOIN STOP USING (INT_STOPID) ORDER BY ID"),
              "S1|AM|101-AM|1|4|0|0|1 / S2|AM|101-AM|2|3|0|9.5|1 / "
              "OAKSTOP|AM|101-AM|3|0|0|25|1 / OAKSTOP|PM|102-PM|1|0|0|0|1");
    EXPECT_EQ(
        rows("SELECT STUID, LASTNAME, a.ADDR1, STOPID, r.ADDRESSID = a.ADDRESSID, MONDAY, SUNDAY"
             " FROM STUDENT AS s LEFT JOIN STU_ADDR AS a ON a.INT_STUID = s.INT_STUID"
             " JOIN STU_ADDR_TRIPTYPE AS r ON r.INT_STUID = s.INT_STUID"
             " JOIN STOP AS p ON p.INT_STOPID = r.INT_STOPID"),
        "17|Ng|1 Oak St|S1|1|1|0 / 18|Ito||S2||1|0");
    EXPECT_EQ(rows("SELECT SPECIALNEEDS_CODE FROM STU_SPECIALNEEDS"), "WC / AIDE");
    EXPECT_EQ(rows("SELECT LASTNAME FROM EMPLOYEE", data::DatabaseFile::Trip), "José");
    EXPECT_EQ(
        rows("SELECT PERM, Authority FROM QDSCU_PP WHERE QDSC1 = 'BO'", data::DatabaseFile::QDSC),
        "RTG210|0 / RTG270|1");
    EXPECT_EQ(rows("SELECT RUNID, \"User\", ACTIVITYCODE FROM RUNLOG"),
              "101-AM|IMPORT|6 / 102-PM|IMPORT|6");
    const std::int64_t rowsBefore = std::stoll(rows("SELECT COUNT(*) FROM RUNLOG"));
    auto files = FirstDay;
    files["deadhead.csv"] = "to,from,minutes,miles\nS1,OAKSTOP,5.1,2\n";  // the way back is the way
    const ImportResult again = import(files);
    EXPECT_FALSE(again.isWritten);
    for (const TableOutcome& table : again.outcome.tables) {
        EXPECT_EQ(table.added + table.changed, 0) << table.table;
    }
    EXPECT_EQ(std::stoll(rows("SELECT COUNT(*) FROM RUNLOG")), rowsBefore);
}

// Whatever is imported, the rows on a server are those of the files, cell by cell, and so is what
// an import knows of the runs.
TEST_F(Import, WritesTheSameRowsOnAServer) {
    support::PrivateServer* const server = support::PrivateServer::find();
    if (server == nullptr) {
        GTEST_SKIP() << "PostgreSQL's server is not installed";
    }
    const Folders there = foldersOf(server->newPlace());
    copyDistrict(folders_.root.string(), there.root.string(), progress_);
    const auto importBoth = [&](const std::map<std::string, std::string>& files) {
        options_.folders = there;
        const std::string onServer = counts(import(files));
        options_.folders = folders_;
        EXPECT_EQ(onServer, counts(import(files)));
        for (const data::DatabaseFile file : data::AllDatabaseFiles) {
            const auto one = store::open(folders_.database(file).string());
            const auto other = store::open(there.database(file).string());
            for (const store::Table& table : one->catalog().tables()) {
                EXPECT_EQ(store::differenceOf(*one, *other, table), "") << table.name;
            }
        }
    };
    importBoth(FirstDay);
    importBoth(FirstDay);
    importBoth({{"runs.csv", "run,active,description\n101-AM,no,It's \"é\" \\ ? $1\n"},
                {"run_stops.csv", "run,stop,seq,time\n101-AM,S2,1,7:01\n101-AM,OAKSTOP,2,\n"}});
    options_.map = temporary_.write("sis.map", R"([Sis.txt as students]
separator = |
student = No
last_name = Who before "'\"
first_name = Who after "'\"
school: d'Été; -- ? $1 = OAK
school: * = ELM
)");
    importBoth(
        {{"Sis.txt", "No|Who|School\n20|O'Neill'\\Zażółć|D'Été; -- ? $1\n21|Ng|DROP TABLE\n"}});
    EXPECT_EQ(rows("SELECT STUID, LASTNAME, FIRSTNAME, SCHOOL FROM STUDENT WHERE STUID > '19'"),
              "20|O'Neill|Zażółć|OAK / 21|Ng||ELM");
    options_.map.clear();
    options_.rules.replaced = {"RUN"};
    options_.rules.rollOver = base::Date::of(2026, 6, 30);
    importBoth({{"runs.csv", "run,trip_type\n102-PM,PM\n"}, {"students.csv", "student\n17\n"}});
    EXPECT_TRUE(checkDistrict(there, progress_).isSound());
}

TEST_F(Import, LeavesRunsThatPlannersHaveChanged) {
    import(FirstDay);
    execute(data::DatabaseFile::Routing, "UPDATE RUN SET DEADHEAD_BEFORE_TIME = 3, REGENERATE = 1");
    auto files = std::map<std::string, std::string>{
        {"runs.csv", "run,school,trip_type,description\n101-AM,OAK,AM,To Oak\n"},
        {"run_stops.csv", "run,stop,seq\n101-AM,S2,1\n101-AM,OAKSTOP,2\n"}};
    EXPECT_EQ(counts(import(files)), "RUN 0 1 0, STOP_TRIPTYPE 0 3 0")
        << "what the dead-head and the map write is no change; S1 leaves the run";
    EXPECT_EQ(rows("SELECT STOPID, RUN, RUNSEQ FROM STOP_TRIPTYPE JOIN STOP USING (INT_STOPID)"
                   " WHERE TRIPTYPE = 'AM' ORDER BY RUNSEQ"),
              "S1| |0 / S2|101-AM|1 / OAKSTOP|101-AM|2");
    execute(data::DatabaseFile::Routing,
            "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = '1899-12-30 07:20:00' WHERE RUNSEQ = 1");
    files["runs.csv"] = "run,description\n101-AM,Another\n102-PM,Home\n";
    files["run_stops.csv"] = "run,stop,seq\n101-AM,S1,1\n102-PM,S2,1\n102-PM,OAKSTOP,2\n";
    const ImportResult left = import(files);
    EXPECT_THAT(left.outcome.editedRuns, ElementsAre("101-AM", "102-PM"))
        << "every stop trip at sequence 1 was changed";
    EXPECT_FALSE(left.isWritten);
    options_.rules.overwriteEdited = true;
    EXPECT_THAT(import(files).outcome.editedRuns, IsEmpty());
    EXPECT_EQ(rows("SELECT DESCRIPTION FROM RUN"), "Another / Home");
    EXPECT_EQ(faults(), "");
    options_.rules.overwriteEdited = false;
    files["runs.csv"] = "run,description\n101-AM,Once more\n";
    EXPECT_TRUE(import(files).isWritten) << "the import's own again";
}

TEST_F(Import, NoticesThatSomebodyElseHasWritten) {
    const std::string path = folders_.database(data::DatabaseFile::Routing).string();
    const auto own = store::open(path);
    const std::int64_t before = own->changeMark();
    own->execute("UPDATE SYSTEM SET NEEDDEADHEADBUILD = 0");
    EXPECT_EQ(own->changeMark(), before);
    execute(data::DatabaseFile::Routing, "UPDATE SYSTEM SET NEEDDEADHEADBUILD = 1");
    own->begin();
    EXPECT_NE(own->changeMark(), before);
    own->rollback();
}

TEST_F(Import, EndsTheRidesOfLeaversAndOfThoseWhoChangeSchool) {
    import(FirstDay);
    import({{ "students.csv", "student,last_name,school,pm_stop\n19,Stay,OAK,S1\n" }});
    options_.rules.rollOver = base::Date::of(2026, 6, 30);
    import({{ "students.csv", "student,school\n18,OAK\n19,OAK\n" }});
    EXPECT_EQ(rows("SELECT STUID, TRIPTYPE, ENDDT FROM STU_ADDR_TRIPTYPE JOIN STUDENT"
                   " USING (INT_STUID) ORDER BY STUID"),
              "17|AM|2026-06-30 00:00:00 / 18|AM|2026-06-30 00:00:00 / 19|PM|");
    EXPECT_EQ(rows("SELECT COUNT(*) FROM STUDENT"), "3");
}

TEST_F(Import, RemovesOnlyWhereItIsToldTo) {
    import(FirstDay);
    const std::map<std::string, std::string> less = {{"runs.csv", "run,trip_type\n101-AM,AM\n"}};
    EXPECT_FALSE(import(less).isWritten);
    options_.rules.replaced = {"RUN"};
    import(less);
    EXPECT_EQ(rows("SELECT RUN FROM RUN"), "101-AM");
    EXPECT_EQ(faults(), "");
    options_.rules.replaced = {"STOP"};
    EXPECT_THROW(import(less), base::RunTimeError) << "no file brings stops";
}

TEST_F(Import, ReadsOneLineAsSeveralRowsByAMap) {
    import(FirstDay);
    options_.map = temporary_.write("sis.map",
                                    "[Rides.txt as run_stops]\nheader = none\nrun = #2\nstop = #1\n"
                                    "sequence = #3\nrun: No Bus =\n"
                                    "[Rides.txt as stops]\nheader = none\nstop = #1\n"
                                    "description = #4\n");
    const ImportResult result =
        import({{"Rides.txt", "S9\t101-AM\t9\tNew stop\nS1\tNo Bus\t1\tx\n"}});
    EXPECT_EQ(counts(result), "STOP 1 1 0, STOP_TRIPTYPE 1 3 0");
    EXPECT_EQ(result.outcome.rejections.front().reason, "must not be empty");
}

// The program itself, killed wherever it happens to be: nothing of the import stands there, or all
// of it, and the same import again brings what is missing.
TEST_F(Import, KilledAnywhereItHarmsNothing) {
    std::string stops = "stop\n";
    std::string stopsOfRuns = "run,stop,sequence\n";
    std::string runs = "run,trip_type\n";
    for (int run = 0; run < 300; ++run) {
        runs += fmt::format("K{},AM\n", run);
        for (int stop = 0; stop < 10; ++stop) {
            stops += fmt::format("K{}-{}\n", run, stop);
            stopsOfRuns += fmt::format("K{},K{}-{},{}\n", run, run, stop, stop);
        }
    }
    const std::string folder = temporary_.path() + "source";
    for (const auto& [name, text] : {std::pair{"stops.csv", stops},
                                     {"runs.csv", runs},
                                     {"run_stops.csv", stopsOfRuns},
                                     {"vehicles.csv", "vehicle\nK1\n"},
                                     {"deadhead.csv", "from,to,minutes,miles\nK1-1,K2-2,1,1\n"}}) {
        temporary_.write(std::string("source/") + name, text);
    }
    const char* wanted = std::getenv("VIREO_KILLS");
    Random random(11);
    for (int kill = 0; kill < (wanted == nullptr ? 3 : std::atoi(wanted)); ++kill) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::execl(PROGRAM, PROGRAM, "import", folders_.root.c_str(), folder.c_str(), "--apply",
                    "--json", "--rejected", "/dev/null", nullptr);
            ::_exit(127);
        }
        ::usleep(static_cast<useconds_t>(random.below(900'000)));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        const std::string now = rows(
            "SELECT (SELECT COUNT(*) FROM STOP), (SELECT COUNT(*) FROM RUN),"
            " (SELECT COUNT(*) FROM STOP_TRIPTYPE)");
        EXPECT_TRUE(now == "0|0|0" || now == "3000|300|3000") << now;
        EXPECT_EQ(faults(), "");
    }
    options_.sources = {folder};
    static_cast<void>(importInto(options_, progress_));
    EXPECT_EQ(rows("SELECT COUNT(*) FROM STOP_TRIPTYPE"), "3000");
    EXPECT_EQ(rows("SELECT COUNT(*) FROM DEADHEAD_CROSS", data::DatabaseFile::DeadCross), "1");
    EXPECT_EQ(faults(), "");
}

}  // namespace tools::district
