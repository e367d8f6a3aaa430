#pragma once

#include <fmt/format.h>

#include "support/testdistrict.h"

namespace groupops {

/// | Run | Stops by sequence |
/// |---|---|
/// | TO | 5: A, 7: SCH (a school) |
/// | FROM (Oak morning) | 2: B, 4: TURN (a turn point), 9: one whose record is missing |
/// | EMPTY | none |
/// | OLD (not active) | 1: C |
inline void fillMerge(const support::TestDistrict& district) {
    const auto routing = [&district](const std::string& sql) {
        district.sql(data::DatabaseFile::Routing, sql);
    };
    routing(
        "INSERT INTO STOP(INT_STOPID, STOPID, STOPTYPE) VALUES (1, 'A', 'REGULAR'), "
        "(2, 'B', 'REGULAR'), (3, 'C', 'REGULAR'), (4, 'TURN', 'DIRECTIONAL'), (5, 'SCH', "
        "'SCHOOL')");
    routing(
        "INSERT INTO RUN(RUN, DESCRIPTION, SCHOOL, TRIPTYPE, ACTIVE) VALUES ('TO', NULL, NULL, "
        "'AM', 1), ('FROM', 'Oak morning', 'OAK', 'AM', 1), ('EMPTY', NULL, NULL, NULL, 1), "
        "('OLD', NULL, NULL, NULL, 0)");
    routing("UPDATE RUN SET VEHTYPE = 'SMALL', Capacity = 'Low' WHERE RUN = 'TO'");
    district.sql(data::DatabaseFile::Trip,
                 "INSERT INTO VEHTYPE(VEHTYPE, LOW) VALUES ('SMALL', 12)");
    routing(
        "INSERT INTO STOP_TRIPTYPE(INT_STOPID, TRIPTYPE, RUN, RUNSEQ) VALUES (1, 'AM', 'TO', 5), "
        "(5, 'AM', 'TO', 7), (99, 'PM', 'FROM', 9), (2, 'AM', 'FROM', 2), (4, 'AM', 'FROM', 4), "
        "(3, 'AM', 'OLD', 1)");
    routing("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 20 WHERE INT_STOPID < 5");
}

}  // namespace groupops
