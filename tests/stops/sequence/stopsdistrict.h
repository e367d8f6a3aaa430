#pragma once

#include <algorithm>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/ado/recordset.h"
#include "stops/sequence/runstops.h"
#include "support/fakes.h"
#include "support/testdistrict.h"

namespace stops {

/// A district with the empty run "R1" of trip type AM, "R2" with stop 9 on it, and stops whose id
/// is "S" and their internal key. Stop 1 to 5 have an AM record of the same key on no run, 6 is a
/// school and 7 a garage without one, 8 is a regular stop without one.
class StopsDistrict : public testing::Test {
protected:
    StopsDistrict() {
        connection.Open(district.path(data::DatabaseFile::Routing));
        connection.setDurability(store::Durability::Crash);
        for (int stop = 1; stop <= 9; ++stop) {
            connection.Execute(fmt::format(
                "INSERT INTO STOP (INT_STOPID, STOPID, STOPTYPE) VALUES ({0}, 'S{0}', '{1}')", stop,
                stop == 6   ? "SCHOOL"
                : stop == 7 ? "GARAGE"
                            : "REGULAR"));
        }
        for (const auto& [stop, onRun] :
             {std::pair{1, "Null"}, {2, "''"}, {3, "' '"}, {4, "Null"}, {5, "' '"}, {9, "'R2'"}}) {
            connection.Execute(
                fmt::format("INSERT INTO STOP_TRIPTYPE (ID, INT_STOPID, TRIPTYPE, "
                            "RUN, RUNSEQ) VALUES ({0}, {0}, 'AM', {1}, 0)",
                            stop, onRun));
        }
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

    std::vector<std::string> rows(const std::string& sql) {
        ado::Recordset found;
        found.Open(sql, connection);
        std::vector<std::string> lines;
        for (; !found.Eof(); found.MoveNext()) {
            auto& line = lines.emplace_back();
            for (int i = 0; i < found.fieldCount(); ++i) {
                const auto value = found.Fields(i).Value();
                line += (i == 0 ? "" : "|") + (value.isNull() ? "Null" : value.asText());
            }
        }
        return lines;
    }

    support::FakeClock clock;
    support::TestDistrict district;
    ado::Connection connection;
    EditedRun run{"R1", "AM", "PAT"};
};

}  // namespace stops
