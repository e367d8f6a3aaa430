#include "stops/search/stopsearch.h"

#include <string_view>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace stops {

namespace {

constexpr std::string_view StopColumns =
    "SELECT STOP.STOPID, STOP.ADDR1, STOP.SCHOOL, STOP.DESCRIPTION, STOP.STOPTYPE, STOP.LOCCODE, "
    "STOP.ACTIVE, STOP.XPOS, STOP.YPOS, STOP.INT_STOPID";
constexpr std::string_view TripColumns =
    ", STOP_TRIPTYPE.TRIPTYPE, STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.NUM_STUDENTS, "
    "STOP_TRIPTYPE.TIME_AT_STOP, STOP_TRIPTYPE.TIME_TOSTOP, STOP_TRIPTYPE.DIST_TOSTOP, "
    "STOP_TRIPTYPE.RUNSEQ, STOP_TRIPTYPE.ACTIVE AS TRIPACTIVE, STOP_TRIPTYPE.ID";
constexpr std::string_view StopsFrom = " FROM STOP";
constexpr std::string_view TripsFrom =
    " FROM STOP INNER JOIN STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID";

constexpr std::string_view NoStudentOfStop =
    " NOT EXISTS (SELECT STU_ADDR_TRIPTYPE.INT_STUID FROM STU_ADDR_TRIPTYPE WHERE "
    "STU_ADDR_TRIPTYPE.INT_STOPID = STOP.INT_STOPID)";
constexpr std::string_view NoPassengerOfStop =
    " NOT EXISTS (SELECT STOP_TRIPTYPE.ID FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.INT_STOPID = "
    "STOP.INT_STOPID AND STOP_TRIPTYPE.NUM_STUDENTS > 0)";
constexpr std::string_view NoStudentOfTrip =
    " NOT EXISTS (SELECT STU_ADDR_TRIPTYPE.INT_STUID FROM STU_ADDR_TRIPTYPE WHERE "
    "STU_ADDR_TRIPTYPE.INT_STOPID = STOP_TRIPTYPE.INT_STOPID AND STU_ADDR_TRIPTYPE.TRIPTYPE = "
    "STOP_TRIPTYPE.TRIPTYPE)";
constexpr std::string_view NoPassengerOfTrip =
    " (STOP_TRIPTYPE.NUM_STUDENTS = 0 OR STOP_TRIPTYPE.NUM_STUDENTS Is Null)";

constexpr std::string_view Placed = " (STOP.XPOS <> 0 OR STOP.YPOS <> 0)";
constexpr std::string_view NotPlaced =
    " (STOP.XPOS = 0 OR STOP.XPOS Is Null) AND (STOP.YPOS = 0 OR STOP.YPOS Is Null)";

constexpr std::string_view StopActive = " STOP.ACTIVE = True";
constexpr std::string_view StopInactive = " STOP.ACTIVE = False";
constexpr std::string_view TripActive = " STOP.ACTIVE = True AND STOP_TRIPTYPE.ACTIVE = True";
constexpr std::string_view TripInactive = " (STOP.ACTIVE = False OR STOP_TRIPTYPE.ACTIVE = False)";

using ado::Conditions;

void addEither(Conditions& where, Either wanted, std::string_view yes, std::string_view no) {
    if (wanted != Either::Any) {
        where.add(wanted == Either::Yes ? yes : no);
    }
}

/// What no index helps with and few stops meet.
Conditions rareConditions(const StopSearchCriteria& criteria) {
    Conditions where;
    where.addFilled(" STOP.DESCRIPTION LIKE '{}%'", criteria.description);
    where.addFilled(" STOP.ADDR1 LIKE '{}%'", criteria.address);
    if (criteria.geocoded == Either::No) {
        where.add(NotPlaced);
    }
    return where;
}

Conditions stopConditions(const StopSearchCriteria& criteria) {
    Conditions where;
    where.addFilled(" STOP.STOPID LIKE '{}%'", criteria.stopId);
    where.addFilled(" STOP.ZIP = '{}'", criteria.zip);
    where.addFilled(" STOP.LOCCODE = '{}'", criteria.location);
    where.addFilled(" STOP.SCHOOL = '{}'", criteria.school);
    where.addFilled(" STOP.STOPTYPE = '{}'", criteria.stopType);
    if (criteria.geocoded == Either::Yes) {
        where.add(Placed);
    }
    return where;
}

void addForStops(Conditions& where, const StopSearchCriteria& criteria) {
    if (const auto rare = rareConditions(criteria).text(); !rare.empty()) {
        where.add(rare);
    }
    addEither(where, criteria.active, StopActive, StopInactive);
    if (criteria.withoutStudents) {
        where.add(NoStudentOfStop);
        where.add(NoPassengerOfStop);
    }
}

void addForTrips(Conditions& where, const StopSearchCriteria& criteria) {
    // Looked up among the stops first: the database would go through every trip-type record.
    if (const auto rare = rareConditions(criteria).text(); !rare.empty()) {
        where.add(
            fmt::format(" STOP_TRIPTYPE.INT_STOPID IN (SELECT STOP.INT_STOPID FROM STOP WHERE {})",
                        base::trim(rare)));
    }
    addEither(where, criteria.active, TripActive, TripInactive);
    where.addFilled(" STOP_TRIPTYPE.TRIPTYPE = '{}'", criteria.tripType);
    where.addFilled(" STOP_TRIPTYPE.RUN = '{}'", criteria.run);
    if (criteria.unassigned) {
        where.add(" (STOP_TRIPTYPE.RUN = ' ' OR STOP_TRIPTYPE.RUN Is Null)");
    }
    if (criteria.withoutStudents) {
        where.add(NoPassengerOfTrip);
        where.add(NoStudentOfTrip);
    }
}

}  // namespace

std::string stopSearchQuery(const StopSearchCriteria& criteria) {
    const bool trips = criteria.tripTypes;
    auto where = stopConditions(criteria);
    (trips ? addForTrips : addForStops)(where, criteria);
    return fmt::format("{}{}{}{}{}", StopColumns, trips ? TripColumns : "",
                       trips ? TripsFrom : StopsFrom, where.keyword(), base::trim(where.text()));
}

}  // namespace stops
