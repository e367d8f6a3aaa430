#pragma once

#include <string>

#include <gmock/gmock.h>

#include "platform/ado/recordset.h"
#include "startup/base/session.h"
#include "stops/triprecord/triprecord.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace stops {

/// Run R brings students to school by 8:00; it starts at 7:00 and ends at 7:30. Record 50 is stop
/// B's in the afternoon, on no run.
///
/// | Record | Stop | Students | Load | Drive | At | |
/// |---|---|---|---|---|---|---|
/// | 41 | A | 10 | 1 | 0 | 7:00 | |
/// | 42 | TURN | 0 | 0 | 3 | none | a turn point |
/// | 43 | B | 5 | 2.3533332 | 9 | 7:10 | right side only; Kim has two needs, Lee none |
/// | 44 | SCH | 0 | 1 | 10 | 7:30 | the school |
class TripRecordTest : public testing::Test {
protected:
    TripRecordTest() {
        support::fillSmall(district);
        sql("UPDATE District SET CHECKRUNLATEBELL = 1, CHECKSTOPOVERLAP = 1");
        sql("INSERT INTO RUN(RUN, PICKUP, BELLTIME, STARTTIME, ENDTIME) VALUES ('R', 1, "
            "'1899-12-30 08:00:00', '1899-12-30 07:00:00', '1899-12-30 07:30:00')");
        sql("INSERT INTO STOP(INT_STOPID, STOPID, STOPTYPE, RIGHTSIDE, COMMENT) VALUES "
            "(11, 'A', 'REGULAR', 0, NULL), (12, 'TURN', 'DIRECTIONAL', 0, NULL), "
            "(13, 'B', 'REGULAR', 1, 'Gate code 7'), (14, 'SCH', 'SCHOOL', 0, NULL)");
        sql("INSERT INTO STOP_TRIPTYPE(ID, INT_STOPID, TRIPTYPE, RUN, RUNSEQ, NUM_STUDENTS, "
            "LOAD_TIME, TIME_TOSTOP, TIME_AT_STOP, RUN_PICKUP_SIDE, ACTIVE) VALUES "
            "(41, 11, 'AM', 'R', 1, 10, 1, 0, '1899-12-30 07:00:00', NULL, 1), "
            "(42, 12, 'AM', 'R', 2, 0, 0, 3, NULL, NULL, 1), "
            "(43, 13, 'AM', 'R', 3, 5, 2.3533332, 9, '1899-12-30 07:10:00', 'left', 1), "
            "(44, 14, 'AM', 'R', 4, 0, 1, 10, '1899-12-30 07:30:00', 'right', 1), "
            "(50, 13, 'PM', ' ', 0, 3, 1, 0, NULL, 'both', 1)");
        sql("INSERT INTO STUDENT(INT_STUID, STUID, LASTNAME, FIRSTNAME, SCHOOL) VALUES "
            "(502, 'ST2', 'Adams', 'Lee', 'OAK')");
        sql("INSERT INTO STU_ADDR_TRIPTYPE(INT_STUID, ADDRESSID, TRIPTYPE, INT_STOPID) VALUES "
            "(501, 1, 'AM', 13), (501, 2, 'AM', 13), (502, 3, 'AM', 13), (502, 3, 'PM', 11)");
        sql("INSERT INTO STU_SPECIALNEEDS(INT_STUID, SPECIALNEEDS_CODE) VALUES "
            "(501, 'WC'), (501, 'AIDE')");
        session.start(district.configFolder());
        startup::gCommandLine = "PLANNER";
    }

    void sql(const std::string& text) const { district.sql(data::DatabaseFile::Routing, text); }

    /// The rows of a query, cells apart by "|", rows by blanks.
    static std::string rowsOf(const std::string& query) {
        ado::Recordset rows;
        rows.Open(query, *startup::gcnRouting);
        std::string text;
        for (; !rows.Eof(); rows.MoveNext()) {
            text += text.empty() ? "" : " ";
            for (int i = 0; i < rows.fieldCount(); ++i) {
                const auto value = rows.Fields(i).Value();
                text += (i == 0 ? "" : "|") + (value.isNull() ? "Null" : value.asText());
            }
        }
        return text;
    }
    static std::string record(int id) {
        return rowsOf(
            "SELECT NUM_STUDENTS, LOAD_TIME, TIME_TOSTOP, DIST_TOSTOP, TIME_AT_STOP,"
            " RUN_PICKUP_SIDE, STOP_TRIPTYPE.ACTIVE, COMMENT, ChangedBy FROM STOP INNER JOIN"
            " STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE ID=" +
            std::to_string(id));
    }
    static std::string timesOfRun() {
        return rowsOf("SELECT TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUN='R' ORDER BY RUNSEQ");
    }

    support::TestDistrict district;
    support::TestSession session;
};

constexpr auto RecordB = "5|2.3533332|9|0|7:10:00 AM|left|True|Gate code 7|Null";

}  // namespace stops
