#include "stops/search/stopsearch.h"

#include "stops/search/foundstops.h"
#include "stops/sequence/stopsdistrict.h"

namespace stops {

namespace {

/// The stops of StopsDistrict made different: their ids say what tells them from the others.
class StopSearch : public StopsDistrict {
protected:
    StopSearch() {
        change("STOP SET ACTIVE=True, XPOS=1, YPOS=1, LOCCODE='N', SCHOOL='OAK'");
        change("STOP SET DESCRIPTION='Oak and 1st', ADDR1='12 Oak St', ZIP='10001'", 1);
        change("STOP SET DESCRIPTION='Elm', ADDR1='120 Elm', ZIP='10001'", 2);
        change("STOP SET LOCCODE='S', SCHOOL='ELM'", 3);
        change("STOP SET ACTIVE=False", 4);
        change("STOP SET XPOS=0, YPOS=0", 5);
        change("STOP SET XPOS=Null, YPOS=0", 8);
        change("STOP SET XPOS=0", 9);
        change("STOP_TRIPTYPE SET ACTIVE=True, NUM_STUDENTS=1");
        change("STOP_TRIPTYPE SET ACTIVE=False", 3);
        change("STOP_TRIPTYPE SET NUM_STUDENTS=0", 1);
        change("STOP_TRIPTYPE SET NUM_STUDENTS=0", 2);
        byOthers(
            "INSERT INTO STU_ADDR_TRIPTYPE (INT_STUID, TRIPTYPE, INT_STOPID) VALUES (1, 'AM', 1), "
            "(1, 'PM', 2)");
        byOthers(
            "INSERT INTO STOP_TRIPTYPE (ID, INT_STOPID, TRIPTYPE, RUN, ACTIVE) VALUES (21, 2, "
            "'PM', 'r2', 1)");
    }
    void change(const std::string& what, int stop = 0) {
        connection.Execute("UPDATE " + what +
                           (stop == 0 ? "" : fmt::format(" WHERE INT_STOPID={}", stop)));
    }

    /// The numbers of the stops found, "2 21" where record 21 belongs to stop 2.
    std::string found(const StopSearchCriteria& criteria) {
        FoundStops stops(criteria, connection);
        auto table = stops.emptyTable();
        std::set<std::int64_t> keys;
        while (!stops.atEnd()) {
            stops.read(table, 2);
        }
        for (std::size_t row = 0; row < table.rowCount(); ++row) {
            const auto stop = stops.chosen(table, row);
            keys.insert(criteria.tripTypes ? stop.stopTripId : stop.intStopId);
        }
        return fmt::format("{}", fmt::join(keys, " "));
    }
};

TEST_F(StopSearch, FindsStopsAndTripTypeRecordsByEveryCriterion) {
    const struct {
        StopSearchCriteria criteria;
        const char* found;
    } cases[] = {
        {{}, "1 2 3 4 5 6 7 8 9"},
        {{.stopId = " s1 "}, "1"},
        {{.stopId = "%9"}, "9"},
        {{.description = "oak a"}, "1"},
        {{.description = "1st"}, ""},
        {{.address = "12"}, "1 2"},
        {{.zip = "10001"}, "1 2"},
        {{.location = "s"}, "3"},
        {{.school = "ELM"}, "3"},
        {{.stopType = "garage"}, "7"},
        {{.geocoded = Either::No}, "5 8"},
        {{.active = Either::Yes}, "1 2 3 5 6 7 8 9"},
        {{.active = Either::No}, "4"},
        {{.withoutStudents = true}, "6 7 8"},
        {{.zip = "10001", .tripType = "PM", .run = "R9", .unassigned = true}, "1 2"},
        {{.address = "12", .stopType = "REGULAR", .active = Either::No}, ""},
        {{.tripTypes = true}, "1 2 3 4 5 9 21"},
        {{.stopId = "S2", .tripTypes = true}, "2 21"},
        {{.tripTypes = true, .tripType = "pm"}, "21"},
        {{.tripTypes = true, .run = "R2"}, "9 21"},
        {{.tripTypes = true, .unassigned = true}, "1 2 3 4 5"},
        {{.active = Either::No, .tripTypes = true}, "3 4"},
        {{.withoutStudents = true, .tripTypes = true}, "2"},
        {{.geocoded = Either::No, .tripTypes = true, .tripType = "AM", .unassigned = true}, "5"},
    };
    for (const auto& [criteria, expected] : cases) {
        EXPECT_EQ(found(criteria), expected) << stopSearchQuery(criteria);
    }
}

TEST_F(StopSearch, ShowsWhatTheListsAreToShow) {
    const auto shown = [&](const StopSearchCriteria& criteria) {
        FoundStops stops(criteria, connection);
        auto table = stops.emptyTable();
        stops.read(table, 1);
        std::string text;
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            text += table.columns[i].caption + "=" + table.text(0, i) + "|";
        }
        return text;
    };
    EXPECT_EQ(shown({.stopId = "S4"}),
              "Stop ID=S4|Address= |School=OAK|Description= |Stop Type=REGULAR|Location=N|"
              "Active=INACTIVE|XPOS=1|YPOS=1|=|");
    connection.Execute(
        "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP=#7:05:00 AM#, TIME_TOSTOP=2.5, DIST_TOSTOP=0.75, "
        "RUNSEQ=4 WHERE ID=21");
    EXPECT_EQ(shown({.stopId = "S2", .tripTypes = true, .tripType = "PM"}),
              "Stop ID=S2|Address=120 Elm|School=OAK|Trip Type=PM|Description=Elm|Run=r2|"
              "Students=0|Stop Time=07:05 AM|Time=2.50|Miles=0.75|Seq=4|Stop Type=REGULAR|"
              "Location=N|Active=ACTIVE|ID=21|Int. Stop ID=2|XPOS=1|YPOS=1|=|");
    for (const auto* unplaced : {"S5", "S8"}) {
        EXPECT_THAT(shown({.stopId = unplaced}), testing::HasSubstr("|=no place on the map|"));
    }
}

}  // namespace

}  // namespace stops
