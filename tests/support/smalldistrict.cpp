#include "support/smalldistrict.h"

namespace support {

using data::DatabaseFile;

namespace {

void fillFleetAndStaff(const TestDistrict& district) {
    const auto sql = [&](const char* text) { district.sql(DatabaseFile::Trip, text); };
    sql("INSERT INTO EMPLOYEE(EMPNUM, LASTNAME, FIRSTNAME) VALUES (12, 'Smith', 'Ann'), "
        "(7, 'Adams', 'Bo'), (9, 'Smith', NULL)");
    sql("INSERT INTO VEHICLE(VEHICLE, VEHDESC, VEHTYPE) VALUES ('B7', 'Bus 7', 'LARGE'), "
        "('B8', NULL, 'SMALL')");
    sql("INSERT INTO VEHTYPE(VEHTYPE, VTYPDESC, HIGH, MEDIUM, LOW, HIGHOVERFILL, MEDIUMOVERFILL, "
        "LOWOVERFILL, ACTIVE) VALUES ('LARGE', 'Large bus', 72, 60, 48, 6, 5, NULL, 1), "
        "('SMALL', 'Small bus', 20, 16, 12, 0, 0, 0, 0)");
    sql("INSERT INTO VEHTYPE_SPECIALNEEDS(VEHTYPE, SPECIALNEEDS_CODE, Capacity) VALUES "
        "('LARGE', 'WC', 2)");
}

void fillCodes(const TestDistrict& district) {
    const auto sql = [&](const char* text) { district.sql(DatabaseFile::Routing, text); };
    sql("INSERT INTO District(DistName, Load_Time, RUNREFRESHTIME, GIS_CLOSEDSTREETFILENAME) "
        "VALUES ('Small District', 0.5, 5, NULL)");
    sql("INSERT INTO SYSTEM(NEEDDEADHEADBUILD) VALUES (1)");
    sql("INSERT INTO SCHOOL(SCHOOL, SCHOOLNAME, SCHOOLTYPE, ACTIVE) VALUES "
        "('PINE', 'Pine School', 'HIGH', 1), ('OAK', 'Oak School', 'ELEM', 1), "
        "('ASH', 'Ash School', 'ELEM', 1), ('OLD', 'Old School', 'ELEM', 0)");
    sql("INSERT INTO SCHOOLTYPE(SCHOOLTYPE, DESCRIPTION, ACTIVE) VALUES "
        "('ELEM', 'Elementary', 1), ('HIGH', 'High', 1), ('ADULT', NULL, 1), ('GONE', 'Gone', 0)");
    sql("INSERT INTO TRIPTYPE(TRIPTYPE, DESCRIPTION, ACTIVE) VALUES ('AM', 'Morning', 1), "
        "('PM', 'Afternoon', 1), ('NOON', 'Noon', 0)");
    sql("INSERT INTO STOPTYPE(STOPTYPE, DESCRIPTION, ACTIVE) VALUES ('REGULAR', 'Regular', 1)");
    sql("INSERT INTO RUNFAMILY(RUNFAMILY, DESCRIPTION) VALUES ('REG', 'Regular'), ('SPORT', NULL)");
    sql("INSERT INTO LOCCODE(LOCCODE, DESCRIPTION, ACTIVE) VALUES ('NORTH', 'North yard', 1), "
        "('SHUT', 'Shut yard', 0)");
    sql("INSERT INTO SPECIALNEEDS(SPECIALNEEDS_CODE, DESCRIPTION) VALUES ('WC', 'Wheelchair')");
    sql("INSERT INTO STUDENT(INT_STUID, STUID, LASTNAME, FIRSTNAME, SCHOOL) VALUES "
        "(501, 'ST1', 'Hill', 'Kim', 'OAK')");
}

void fillRuns(const TestDistrict& district) {
    const auto sql = [&](const char* text) { district.sql(DatabaseFile::Routing, text); };
    sql("INSERT INTO ROUTE(INT_ROUTEID, ROUTEID, ROUTENAME, VEHICLE, EMPNUM, AID_EMPNUM) VALUES "
        "(1, 'R1', 'North loop', 'B7', 12, 7), (2, 'R2', NULL, NULL, NULL, NULL)");
    sql("INSERT INTO RUN(RUN, DESCRIPTION, ACTIVE, SCHOOL, TRIPTYPE, RUNFAMILY, LOCCODE, "
        "INT_ROUTEID, STARTTIME, ENDTIME, BELLTIME, TOTAL_TIME, TOTAL_MILES, TOTAL_STUDENTS, "
        "total_stops, Capacity, TimeToUse, REGENERATE) VALUES "
        "('101-AM', 'Oak morning', 1, 'OAK', 'AM', 'REG', 'NORTH', 1, '1899-12-30 07:05:00', "
        "'1899-12-30 07:45:00', '1899-12-30 08:00:00', 40, 12.5, 31, 6, 'High', 'Start Time', 0), "
        "('102-AM', 'Pine 100%', 1, 'PINE', 'AM', 'SPORT', 'SOUTH', 2, '1899-12-30 06:30:00', "
        "'1899-12-30 12:00:00', '1899-12-30 00:15:00', 90, 9, 4, 2, 'Low', 'End Time', 1), "
        "('103-PM', NULL, 0, 'ASH', 'PM', NULL, ' ', NULL, NULL, NULL, NULL, NULL, NULL, NULL, "
        "NULL, NULL, NULL, 0), "
        "('201-PM', 'Oak [late]', 1, 'OAK', 'PM', 'REG', 'NORTH', NULL, '1899-12-30 15:10:00', "
        "'1899-12-30 15:50:00', '1899-12-30 15:00:00', 40, 0, 20, 5, 'High', 'Start Time', 0)");
    sql("INSERT INTO STOP(INT_STOPID, STOPID, STOPTYPE, DESCRIPTION, SCHOOL, ACTIVE) VALUES "
        "(1, 'S1', 'SCHOOL', 'Oak School', 'OAK', 1), (2, 'S2', 'SCHOOL', 'Pine School', 'PINE', "
        "1), (3, 'S3', 'REGULAR', 'Elm and Main', 'ASH', 1), (4, 'G1', 'GARAGE', 'Yard', NULL, 1)");
    sql("INSERT INTO STOP_TRIPTYPE(INT_STOPID, TRIPTYPE, RUN, RUNSEQ) VALUES "
        "(3, 'AM', '101-AM', 1), (1, 'AM', '101-AM', 2), (2, 'AM', '102-AM', 1), "
        "(1, 'AM', '102-AM', 2), (3, 'AM', '201-PM', 1), (1, 'PM', '201-PM', 2)");
}

}  // namespace

void fillSmall(const TestDistrict& district) {
    fillFleetAndStaff(district);
    fillCodes(district);
    fillRuns(district);
}

}  // namespace support
