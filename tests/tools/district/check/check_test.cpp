#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/store/open/plainfile.h"
#include "tools/district/check/checks.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

using data::DatabaseFile;
using testing::HasSubstr;

std::string reportOf(const Folders& folders) {
    Progress progress;
    return checkDistrict(folders, progress).text();
}

constexpr auto Routing = DatabaseFile::Routing;

const std::pair<DatabaseFile, const char*> Damages[] = {
    {Routing,
     "UPDATE RUN SET SCHOOL = 'X', INT_ROUTEID = 99, VEHTYPE = 'TANK', BELLTIME = '08:00',"
     " STARTTIME = '1899-12-30 08:00:00.5', Capacity = 'Huge', TOTAL_MILES = -3,"
     " DEADHEAD_AFTER_TIME = -7 WHERE RUN = 'A000001'"},
    {Routing, "UPDATE RUN SET RUN = 'A#1' WHERE RUN = 'A000002'"},
    {Routing, "UPDATE RUN SET RUN = 'A\\1' WHERE RUN = 'A000003'"},
    {Routing, "UPDATE STOP_TRIPTYPE SET RUNSEQ = 2, LOAD_TIME = NULL WHERE ID = 1"},
    {Routing, "UPDATE STOP_TRIPTYPE SET RUN = ' ', INT_STOPID = 999999 WHERE ID = 3"},
    {Routing, "UPDATE STOP_TRIPTYPE SET RUN = 'GONE', TIME_TOSTOP = 'far' WHERE ID = 4"},
    {Routing,
     "INSERT INTO STOP_TRIPTYPE (INT_STOPID, TRIPTYPE) SELECT INT_STOPID, TRIPTYPE"
     " FROM STOP_TRIPTYPE WHERE ID = 1"},
    {Routing, "UPDATE STOP SET STOPID = '000004' WHERE INT_STOPID = 5"},
    {Routing, "DELETE FROM STUDENT WHERE INT_STUID = 1"},
    {Routing, "UPDATE RUNLOG SET ACTIVITYCODE = 4 WHERE ID = 1"},
    {Routing, "INSERT INTO SYSTEM DEFAULT VALUES"},
    {Routing, "DROP TABLE RUNDIR"},
    {Routing, "ALTER TABLE RUN DROP COLUMN monday"},
    {DatabaseFile::Trip, "DELETE FROM EMPLOYEE"},
    {DatabaseFile::Trip, "UPDATE VEHTYPE SET LOW = 99 WHERE VEHTYPE = 'BUS66'"},
    // A table that another tool made guards nothing.
    {DatabaseFile::Trip, "DROP TABLE VEHICLE"},
    {DatabaseFile::Trip, "CREATE TABLE VEHICLE (VEHICLE TEXT, VEHDESC TEXT, VEHTYPE TEXT)"},
    {DatabaseFile::Trip, "INSERT INTO VEHICLE VALUES ('1001', '', 'B '), ('1001', '', 'BUS54')"},
    {DatabaseFile::DeadCross,
     "INSERT INTO DEADHEAD_CROSS SELECT DEST_INT_STOPID, ENDPOINT_INT_STOPID, -1, 1"
     " FROM DEADHEAD_CROSS LIMIT 1"},
    {DatabaseFile::QDSC, "DELETE FROM QDSCPP WHERE PERM = 'RTG210'"},
    {DatabaseFile::QDSC, "DELETE FROM QDSCU WHERE QDSC1 = 'CLERK'"}};

const char* const Said[] = {
    "Runs of an unknown school (RUN.SCHOOL): 1, such as X.",
    "Runs on a route that does not exist (RUN.INT_ROUTEID): 1, such as 99.",
    "Runs of an unknown vehicle type (RUN.VEHTYPE): 1, such as TANK.",
    "at whole seconds (RUN.BELLTIME): 1, such as \"08:00\" in the row of \"A000001\".",
    "Date-times that are none, or not at whole seconds (RUN.STARTTIME): 1",
    "Runs whose capacity is none of High, Medium, Low: 1",
    "Runs with a total that cannot be: 1",
    "Runs with a dead-head figure that cannot be: 1",
    "Run ids that are blank or hold one of # % * ' / \\ \": 2, such as A#1; A\\1.",
    "Runs with two stops at the same place of the sequence: 1, such as A000001.",
    "Stop trips without load or driving time: 1",
    "Stop trips on no run that still have a sequence: 1, such as 3.",
    "Stop trips of a stop that does not exist (STOP_TRIPTYPE.INT_STOPID): 1",
    "Stop trips on a run that does not exist (STOP_TRIPTYPE.RUN): ",
    "Numbers that are none (STOP_TRIPTYPE.TIME_TOSTOP): 1, such as \"far\"",
    "Stops that have two records of one trip type: 1",
    "Stop ids that more than one stop has: 1, such as 000004.",
    "Rides of a student who does not exist (STU_ADDR_TRIPTYPE.INT_STUID): 2, such as 1.",
    "Log entries of an unknown activity (RUNLOG.ACTIVITYCODE): 1, such as 4.",
    "Tables that must hold exactly one row: 1, such as SYSTEM with 2.",
    "Missing tables: 1, such as RUNDIR (routing.mdb).",
    "Missing columns: 1, such as RUN.monday.",
    "Routes with an unknown driver (ROUTE.EMPNUM): ",
    "Vehicle types with seats that cannot be: 1, such as BUS66.",
    "Keys that stand more than once in VEHICLE: 1, such as 1001.",
    "end in blanks (VEHICLE.VEHTYPE): 1, such as \"B \" in the row of \"1001\".",
    "Dead-head ways that stand more than once: 1",
    "Dead-head ways that cannot be: 1",
    "Users with more rights than there are permission points: 2, such as CLERK; PLANNER.",
    "Rights of an unknown user (QDSCU_PP.QDSC1): 6, such as CLERK."};

}  // namespace

TEST(Check, FindsEveryKindOfDamage) {
    const MadeDistrict made(10);
    for (const auto& [file, sql] : Damages) {
        made.open(file)->execute(sql);
    }
    const std::string report = reportOf(made.folders());
    for (const char* said : Said) {
        EXPECT_THAT(report, HasSubstr(said));
    }
}

TEST(Check, FindsAnIndexThatLostHalfOfItsEntries) {
    const MadeDistrict made(4);
    breakIndex(made.folders().database(DatabaseFile::Routing).string(),
               "index_STOP_TRIPTYPE_RUN_RUNSEQ",
               "UPDATE STOP_TRIPTYPE SET RUNSEQ = RUNSEQ + 100 WHERE ID < 15");
    EXPECT_THAT(reportOf(made.folders()),
                HasSubstr("Damaged database files, to be restored from a back-up: 1, such as "
                          "routing.mdb: the index index_STOP_TRIPTYPE_RUN_RUNSEQ does not hold the "
                          "rows of its table."));
}

TEST(Check, SaysWhichFileCannotBeOpenedAndGoesOn) {
    const MadeDistrict made(4);
    std::filesystem::remove(made.folders().database(DatabaseFile::DeadCross));
    std::ofstream(made.folders().database(DatabaseFile::QDSC)) << "no database at all";
    made.execute(DatabaseFile::Routing, "DELETE FROM District");
    const std::string report = reportOf(made.folders());
    EXPECT_THAT(report, HasSubstr("Database files that cannot be opened: 2, such as "));
    EXPECT_THAT(report, HasSubstr("District with 0"));
    std::filesystem::remove(made.folders().database(DatabaseFile::Routing));
    EXPECT_THAT(reportOf(made.folders()), HasSubstr("Looked at 0 rows in 0 tables: "));
}

TEST(Check, FindsSettingsAstrayAndWhoCanReadAndChangeTheFiles) {
    using std::filesystem::permissions;
    using std::filesystem::perms;
    const MadeDistrict made(4);
    const Folders moved{made.folder() + "-moved"};
    std::filesystem::rename(made.folder(), moved.root);
    const auto routing = moved.database(DatabaseFile::Routing);
    permissions(routing, perms(0660));
    std::string report = reportOf(moved);
    EXPECT_THAT(report, HasSubstr("Folders that the settings do not name: 3, such as "));
    EXPECT_THAT(report, HasSubstr("Files and folders that others than their owner can read: 1"));

    for (const auto& folder : {moved.data(), moved.programs(), moved.common()}) {
        permissions(folder, perms(02770));
    }
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        permissions(moved.database(file), perms(0660));
    }
    EXPECT_THAT(reportOf(moved), testing::Not(HasSubstr("Files and folders")));
    permissions(routing, perms(0640));
    permissions(moved.database(DatabaseFile::Trip), perms(0664));
    report = reportOf(moved);
    EXPECT_THAT(report, HasSubstr("that the group of this district cannot change: 1, such as " +
                                  routing.string()));
    EXPECT_THAT(report, HasSubstr("Files and folders that others than their group can read: 1"));
}

}  // namespace tools::district
