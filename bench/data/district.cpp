#include "district.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>

#include <fmt/format.h>
#include <stdlib.h>

#include "data/schema/version.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "support/insertmany.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

fs::path& madeFolder() {
    static fs::path folder;
    return folder;
}

std::unique_ptr<store::Database> makeFile(const fs::path& path, data::DatabaseFile file) {
    auto database = store::createFile(path);
    database->setDurability(store::Durability::Crash);
    database->setMark(data::markOf(file));
    for (const store::Table& table : data::tablesOf(file)) {
        database->create(table);
    }
    return database;
}

void fillTrip(store::Database& trip) {
    trip.execute(insertMany("EMPLOYEE", 1500, "EMPNUM, LASTNAME, FIRSTNAME",
                            "i, 'Lastname' || i, 'First' || (i % 97)"));
}

void fillRouting(store::Database& routing) {
    routing.execute(insertMany(
        "ROUTE", 1500, "INT_ROUTEID, ROUTEID, ROUTENAME, VEHICLE, EMPNUM, AID_EMPNUM",
        "i, 'RT' || i, 'Route number ' || i, 'BUS' || i, i, CASE i % 3 WHEN 0 THEN 1500 - i END"));
    routing.execute(insertMany(
        "RUN", 20000,
        "RUN, DESCRIPTION, ACTIVE, SCHOOL, TRIPTYPE, RUNFAMILY, LOCCODE, INT_ROUTEID, VEHTYPE,"
        " Capacity, OverFill, BELLTIME, PICKUP, TimeToUse, STARTTIME, ENDTIME, TOTAL_TIME,"
        " TOTAL_MILES, TOTAL_STUDENTS, total_stops, COMMENT, DEADHEAD_BEFORE_TIME,"
        " DEADHEAD_AFTER_TIME, DEADHEAD_BEFORE_STARTTIME, DEADHEAD_AFTER_STARTTIME,"
        " DEADHEAD_MILES_BEFORE, DEADHEAD_MILES_AFTER, CreatedBy, ChangedBy, CREATEDDT, changeddt",
        "'R' || substr('0000' || i, -5), 'Run ' || i || ' to a school of the district', 1,"
        " 'SCH' || (i % 80), 'AM' || (i % 4), 'FAM' || (i % 12), 'LOC' || (i % 9),"
        " CASE WHEN i % 10 THEN i % 1500 + 1 END, 'BUS' || (i % 5), 'Medium', 0,"
        " '1899-12-30 08:00:00', i % 2, 'Start Time', '1899-12-30 07:1' || (i % 10) || ':00',"
        " '1899-12-30 07:5' || (i % 10) || ':00', i % 90, i % 300 / 10.0, i % 60, i % 25,"
        " CASE i % 7 WHEN 0 THEN 'call the school before a change' END, 5.5, 7.25,"
        " '1899-12-30 07:00:00', '1899-12-30 08:10:00', 2.5, 3.25, 'IMPORT', 'IMPORT',"
        " '2026-01-05 10:00:00', '2026-01-05 10:00:00'"));
    routing.execute(insertMany("STOP", 20000, "INT_STOPID, STOPID, STOPTYPE, ADDR1",
                               "i, 'S' || i, 'REGULAR', i || ' Main Street'"));
    routing.execute(insertMany(
        "STOP_TRIPTYPE", 20000, "INT_STOPID, TRIPTYPE, RUN, RUNSEQ, LOAD_TIME, TIME_TOSTOP",
        "i, 'AM1', 'R' || substr('0000' || (i / 20 + 1), -5), i % 20 + 1, 0.5, 1.75"));
}

District make() {
    std::string pattern = (fs::temp_directory_path() / "vireo-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no folder to work in");
    }
    madeFolder() = pattern;
    const District district{madeFolder() / "routing.mdb", madeFolder() / "trip.mdb"};
    const auto trip = makeFile(district.trip, data::DatabaseFile::Trip);
    fillTrip(*trip);
    const auto routing = makeFile(district.routing, data::DatabaseFile::Routing);
    fillRouting(*routing);
    routing->checkpoint();
    return district;
}

/// The file of that name in the folder or in a folder below it.
std::optional<std::string> findFile(const fs::path& folder, const std::string& name) {
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().filename() == name) {
            return entry.path().string();
        }
    }
    return std::nullopt;
}

District findOrMake() {
    const char* folder = std::getenv("VIREO_DISTRICT");
    if (folder == nullptr) {
        return make();
    }
    const auto routing = findFile(folder, "routing.mdb");
    const auto trip = findFile(folder, "trip.mdb");
    if (!routing || !trip) {
        throw std::runtime_error(fmt::format("no district in {}", folder));
    }
    return {*routing, *trip};
}

}  // namespace

const District& district() {
    static const District found = findOrMake();
    return found;
}

void removeDistrict() {
    if (!madeFolder().empty()) {
        fs::remove_all(madeFolder());
    }
}

const std::string& routingSearch() {
    static const std::string sql =
        "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM,  (IIF(ISNULL(ROUTE.EMPNUM),' ',"
        "(TRIM$(EMPLOYEE.LASTNAME) & ', ' & TRIM$(EMPLOYEE.FIRSTNAME)))) AS EMPNAME,"
        " ROUTE.AID_EMPNUM, (IIF(ISNULL(ROUTE.AID_EMPNUM),' ',(TRIM$(EMPLOYEE_1.LASTNAME) & ', ' &"
        " TRIM$(EMPLOYEE_1.FIRSTNAME)))) AS AIDNAME, (RUN.TOTAL_MILES + RUN.DEADHEAD_MILES_BEFORE +"
        " RUN.DEADHEAD_MILES_AFTER) AS TOTAL_MILES_WITH_DEADHEAD FROM ((ROUTE RIGHT JOIN RUN ON"
        " ROUTE.INT_ROUTEID = RUN.INT_ROUTEID) LEFT JOIN EMPLOYEE ON ROUTE.EMPNUM ="
        " EMPLOYEE.EMPNUM) LEFT JOIN EMPLOYEE AS EMPLOYEE_1 ON ROUTE.AID_EMPNUM ="
        " EMPLOYEE_1.EMPNUM";
    return sql;
}

const std::string& rawRoutingSearch() {
    static const std::string sql =
        "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM,"
        " iif(ROUTE.EMPNUM IS NULL, ' ', trim(d.LASTNAME) || ', ' || trim(d.FIRSTNAME)) AS EMPNAME,"
        " ROUTE.AID_EMPNUM, iif(ROUTE.AID_EMPNUM IS NULL, ' ', trim(a.LASTNAME) || ', ' ||"
        " trim(a.FIRSTNAME)) AS AIDNAME, RUN.TOTAL_MILES + RUN.DEADHEAD_MILES_BEFORE +"
        " RUN.DEADHEAD_MILES_AFTER AS TOTAL_MILES_WITH_DEADHEAD FROM RUN LEFT JOIN ROUTE ON"
        " ROUTE.INT_ROUTEID = RUN.INT_ROUTEID LEFT JOIN EMPLOYEE d ON d.EMPNUM = ROUTE.EMPNUM"
        " LEFT JOIN EMPLOYEE a ON a.EMPNUM = ROUTE.AID_EMPNUM";
    return sql;
}

}  // namespace bench
