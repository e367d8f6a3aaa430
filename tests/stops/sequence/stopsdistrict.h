#pragma once

#include <algorithm>

#include <fmt/format.h>

#include "startup/base/session.h"
#include "stops/sequence/runstops.h"
#include "support/districtsession.h"

namespace stops {

/// The runs "R1", empty, and "R2" with stop 9 on it, of trip type AM, and stops whose id is "S" and
/// their internal key. Stop 1 to 5 have an AM record of the same key on no run, 6 is a school and 7
/// a garage without one, 8 is a regular stop without one.
inline void fillStops(const support::TestDistrict& district) {
    const auto sql = [&](const char* text) { district.sql(data::DatabaseFile::Routing, text); };
    sql("WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < 9) INSERT INTO "
        "STOP (INT_STOPID, STOPID, STOPTYPE) SELECT i, 'S' || i, CASE i WHEN 6 THEN 'SCHOOL' WHEN "
        "7 THEN 'GARAGE' ELSE 'REGULAR' END FROM n");
    sql("INSERT INTO RUN (RUN, TRIPTYPE, ACTIVE) VALUES ('R1', 'AM', 1), ('R2', 'AM', 1)");
    sql("INSERT INTO STOP_TRIPTYPE (ID, INT_STOPID, TRIPTYPE, RUN, RUNSEQ) VALUES (1, 1, 'AM', "
        "Null, 0), (2, 2, 'AM', '', 0), (3, 3, 'AM', ' ', 0), (4, 4, 'AM', Null, 0), (5, 5, 'AM', "
        "' ', 0), (9, 9, 'AM', 'R2', 0)");
}

class StopsDistrict : public support::DistrictSession {
protected:
    StopsDistrict() : DistrictSession(fillStops) {
        connection.setDurability(store::Durability::Crash);
    }

    /// As the list of trip-type records shows a stop that is on no run; 6 to 8 as plain stops.
    static ChosenStop chosen(int stop) {
        const bool plain = stop >= 6 && stop <= 8;
        return {.intStopId = stop,
                .stopId = fmt::format("S{}", stop),
                .stopType = stop == 6   ? "SCHOOL"
                            : stop == 7 ? "GARAGE"
                                        : "REGULAR",
                .stopTripId = plain ? 0 : stop,
                .tripType = plain ? "" : "AM",
                .run = stop == 9 ? "R2" : " "};
    }

    AddedStops add(const std::vector<int>& stops) {
        std::vector<ChosenStop> selected(stops.size());
        std::transform(stops.begin(), stops.end(), selected.begin(), chosen);
        return addStops(connection, run, selected);
    }

    /// The run as "S1:1 S6:2": stop id and sequence in the order of the list.
    std::string shown(std::string_view of = "R1") {
        std::string text;
        for (const auto& stop : readRunStops(connection, of)) {
            text += fmt::format("{}{}:{}", text.empty() ? "" : " ", stop.stopId, stop.sequence);
        }
        return text;
    }

    /// The key of the n-th stop of the run, from 0.
    std::int64_t at(std::size_t place) {
        return readRunStops(connection, run.run).at(place).stopTripId;
    }

    /// The stops that the log calls moved and the numbers that they had before: "S3:3 S2:1".
    std::string movesLogged() {
        std::vector<std::string> moves;
        for (const auto& row : rows("SELECT StopID, Description FROM RUNLOG ORDER BY ID")) {
            const auto number = row.find("sequence was: ") + 14;
            moves.push_back(row.substr(0, 2) + ":" +
                            row.substr(number, row.find('.', number) - number));
        }
        return support::joined(moves);
    }

    ado::Connection& connection = *startup::gcnRouting;
    EditedRun run{"R1", "AM", "PAT"};
};

}  // namespace stops
