#include "runsearch/search/runsearchquery.h"

#include <functional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace runsearch {
namespace {

const std::string RouteSelect =
    "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM,  (IIF(ISNULL(ROUTE.EMPNUM),' "
    "',(TRIM$(EMPLOYEE.LASTNAME) & ', ' & TRIM$(EMPLOYEE.FIRSTNAME)))) AS EMPNAME, "
    "ROUTE.AID_EMPNUM, (IIF(ISNULL(ROUTE.AID_EMPNUM),' ',(TRIM$(EMPLOYEE_1.LASTNAME) & ', ' "
    "& TRIM$(EMPLOYEE_1.FIRSTNAME)))) AS AIDNAME, (RUN.TOTAL_MILES + "
    "RUN.DEADHEAD_MILES_BEFORE + RUN.DEADHEAD_MILES_AFTER) AS TOTAL_MILES_WITH_DEADHEAD";
const std::string RouteFrom =
    " FROM ((ROUTE RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID) LEFT JOIN EMPLOYEE "
    "ON ROUTE.EMPNUM = EMPLOYEE.EMPNUM) LEFT JOIN EMPLOYEE AS EMPLOYEE_1 ON ROUTE.AID_EMPNUM "
    "= EMPLOYEE_1.EMPNUM";
const std::string PlainSelect =
    "SELECT RUN.*, (RUN.TOTAL_MILES + RUN.DEADHEAD_MILES_BEFORE + RUN.DEADHEAD_MILES_AFTER) "
    "AS TOTAL_MILES_WITH_DEADHEAD";
const std::string PlainFrom = " FROM RUN";
const std::string SchoolSelect =
    "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM, (IIf(IsNull(ROUTE.EMPNUM),' "
    "',(Trim$(EMPLOYEE.LASTNAME) & ', ' & Trim$(EMPLOYEE.FIRSTNAME)))) AS EMPNAME, "
    "ROUTE.AID_EMPNUM, (IIf(IsNull(ROUTE.AID_EMPNUM),' ',(Trim$(EMPLOYEE_1.LASTNAME) & ', ' "
    "& Trim$(EMPLOYEE_1.FIRSTNAME)))) AS AIDNAME, SCHOOL.SCHOOLTYPE,  (RUN.TOTAL_MILES + "
    "RUN.DEADHEAD_MILES_BEFORE + RUN.DEADHEAD_MILES_AFTER) AS TOTAL_MILES_WITH_DEADHEAD, "
    "(RUN.DEADHEAD_MILES_BEFORE + RUN.DEADHEAD_MILES_AFTER) AS TOTAL_DEADHEAD_MILES";
const std::string SchoolFrom =
    " FROM SCHOOL RIGHT JOIN (((ROUTE RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID) "
    "LEFT JOIN EMPLOYEE ON ROUTE.EMPNUM = EMPLOYEE.EMPNUM) LEFT JOIN EMPLOYEE AS EMPLOYEE_1 "
    "ON ROUTE.AID_EMPNUM = EMPLOYEE_1.EMPNUM) ON SCHOOL.SCHOOL = RUN.SCHOOL";
const std::string SchoolStops =
    "SELECT RUN.RUN FROM (STOP LEFT JOIN SCHOOL ON STOP.SCHOOL = SCHOOL.SCHOOL) INNER JOIN "
    "(RUN INNER JOIN STOP_TRIPTYPE ON RUN.RUN = STOP_TRIPTYPE.RUN) ON STOP.INT_STOPID = "
    "STOP_TRIPTYPE.INT_STOPID GROUP BY RUN.RUN, STOP.SCHOOL, STOP.STOPTYPE, RUN.RUNFAMILY, "
    "SCHOOL.SCHOOLTYPE";
const std::string TripTypeStops =
    "SELECT RUN.RUN FROM RUN INNER JOIN STOP_TRIPTYPE ON RUN.RUN = STOP_TRIPTYPE.RUN GROUP "
    "BY RUN.RUN, STOP_TRIPTYPE.TRIPTYPE";

/// Both texts with the same conditions behind the one from-part and the other.
void expectBoth(const RunSearchCriteria& criteria, const std::string& conditions) {
    const auto query = runSearchQuery(criteria);
    ASSERT_TRUE(query);
    const auto main = criteria.useRoute ? RouteSelect + RouteFrom : PlainSelect + PlainFrom;
    EXPECT_EQ(query->runs, main + conditions);
    EXPECT_EQ(query->runsSchool, SchoolSelect + SchoolFrom + conditions);
}

RunSearchCriteria criteria(const std::function<void(RunSearchCriteria&)>& fill) {
    RunSearchCriteria result;
    fill(result);
    return result;
}

std::vector<SchoolRow> schools(const std::vector<std::string>& selected) {
    std::vector<SchoolRow> rows{{"A", "ELEM"}, {"B", "HIGH"}, {"C", "ELEM"}};
    for (auto& row : rows) {
        row.selected = std::find(selected.begin(), selected.end(), row.code) != selected.end();
    }
    return rows;
}

using base::Date;

TEST(RunSearchQuery, TurnsEachCriterionIntoItsCondition) {
    struct Case {
        std::function<void(RunSearchCriteria&)> fill;
        std::string condition;
    };
    expectBoth({}, "");
    expectBoth(criteria([](auto& c) { c.useRoute = true; }), "");
    const std::vector<Case> cases{
        {[](auto& c) { c.runId = " O'1; -- "; }, "Run.Run LIKE 'O'1; --%'"},
        {[](auto& c) { c.runId = " 12 "; }, "Run.Run LIKE '12%'"},
        {[](auto& c) { c.description = "Oak"; }, "Run.Description LIKE 'Oak%'"},
        {[](auto& c) { c.startTime.from = Date::timeOfDay(7, 5); },
         "Run.StartTime >= #7:05:00 AM#"},
        {[](auto& c) { c.startTime.to = Date::of(2026, 1, 31, 19, 5, 9); },
         "Run.StartTime <= #7:05:09 PM#"},
        {[](auto& c) { c.endTime.from = Date::timeOfDay(0, 0); }, "Run.EndTime >= #12:00:00 AM#"},
        {[](auto& c) { c.endTime.to = Date::timeOfDay(12, 0); }, "Run.EndTime <= #12:00:00 PM#"},
        {[](auto& c) { c.bellTime.from = Date::timeOfDay(8, 0); }, "Run.BellTime >= #8:00:00 AM#"},
        {[](auto& c) { c.bellTime.to = Date::timeOfDay(9, 0); }, "Run.BellTime <= #9:00:00 AM#"},
        {[](auto& c) { c.runFamily = "AM"; }, "Run.RunFamily = 'AM'"},
        {[](auto& c) { c.needsResolve = true; }, "Run.Regenerate = True"},
        {[](auto& c) { c.location = "NORTH"; }, "Run.LOCCODE = 'NORTH'"},
        {[](auto& c) { c.driver = "17"; }, "Route.EMPNUM = 17"},
        {[](auto& c) { c.vehicle = "BUS 4"; }, "Route.Vehicle = 'BUS 4'"},
        {[](auto& c) { c.aid = "18"; }, "Route.AID_EMPNUM = 18"},
        {[](auto& c) { c.route = "R9"; }, "Route.RouteID = 'R9'"},
        {[](auto& c) { c.notOnRoute = true; }, "RUN.INT_ROUTEID Is Null"},
    };
    for (const auto& [fill, condition] : cases) {
        expectBoth(criteria(fill), " Where  " + condition);
    }
}

TEST(RunSearchQuery, JoinsCriteriaInTheirOrderWithSingleBlanks) {
    const auto all = criteria([](auto& c) {
        c.notOnRoute = c.useRoute = c.needsResolve = true;
        c.runId = "1";
        c.description = "d";
        c.startTime = {Date::timeOfDay(7, 0), Date::timeOfDay(8, 0)};
        c.runFamily = "F";
        c.location = "L";
        c.driver = "1";
        c.vehicle = "V";
        c.aid = "2";
        c.route = "R";
        c.schools = schools({"B"});
        c.tripTypes = {"AM", "PM"};
        c.schoolType = "ELEM";
    });
    expectBoth(all,
               " Where Run.Run LIKE '1%' AND Run.Description LIKE 'd%' AND Run.StartTime >= "
               "#7:00:00 AM# AND Run.StartTime <= #8:00:00 AM# AND Run.RunFamily = 'F' AND ( "
               "RUN.SCHOOL = 'B') AND ( RUN.TRIPTYPE = 'AM' OR RUN.TRIPTYPE = 'PM') AND ( "
               "RUN.SCHOOL = 'A' OR RUN.SCHOOL = 'C') AND Run.Regenerate = True AND Run.LOCCODE = "
               "'L' AND Route.EMPNUM = 1 AND Route.Vehicle = 'V' AND Route.AID_EMPNUM = 2 AND "
               "Route.RouteID = 'R' AND RUN.INT_ROUTEID Is Null");
}

TEST(RunSearchQuery, LooksForSchoolStops) {
    auto stops = criteria([](auto& c) {
        c.searchSchoolStops = true;
        c.schools = schools({"A", "B"});
    });
    expectBoth(stops, " Where RUN.RUN IN (" + SchoolStops +
                          " HAVING STOP.SCHOOL = 'A' AND STOP.STOPTYPE='SCHOOL' OR STOP.SCHOOL = "
                          "'B' AND STOP.STOPTYPE='SCHOOL' )");
    stops.schoolType = "ELEM";
    expectBoth(stops, " Where RUN.RUN IN (" + SchoolStops +
                          " HAVING STOP.SCHOOL = 'A' AND STOP.STOPTYPE='SCHOOL' OR STOP.SCHOOL = "
                          "'B' AND STOP.STOPTYPE='SCHOOL' AND STOP.SCHOOL = 'A' AND "
                          "STOP.STOPTYPE='SCHOOL' OR STOP.SCHOOL = 'C' AND "
                          "STOP.STOPTYPE='SCHOOL' )");
}

TEST(RunSearchQuery, LooksForTheTripTypesOfStopsBesideFurtherConditions) {
    auto stops = criteria([](auto& c) {
        c.searchTripTypeStops = true;
        c.tripTypes = {"AM", "PM"};
    });
    const auto in = " Where RUN.RUN IN (" + TripTypeStops;
    expectBoth(stops,
               in + " HAVING STOP_TRIPTYPE.TRIPTYPE = 'AM' OR STOP_TRIPTYPE.TRIPTYPE = 'PM')");
    stops.tripTypes = {"AM"};
    stops.runId = "12";
    const auto sub = in + " HAVING  STOP_TRIPTYPE.TRIPTYPE = 'AM')";
    expectBoth(stops, sub + " AND Run.Run LIKE '12%'");
    stops.needsResolve = true;
    expectBoth(stops, sub + " AND Run.Run LIKE '12%' AND Run.Regenerate = True");
    stops.runId.clear();
    stops.needsResolve = false;
    stops.schools = schools({"C"});
    expectBoth(stops, sub + " AND ( RUN.SCHOOL = 'C')");
}

TEST(RunSearchQuery, FindsTheSchoolsOfATypeWhateverIsSelected) {
    auto type = criteria([](auto& c) {
        c.schools = schools({});
        c.schoolType = "elem ";
    });
    expectBoth(type, " Where ( RUN.SCHOOL = 'A' OR RUN.SCHOOL = 'C')");
    type.schools = schools({"B"});
    expectBoth(type, " Where ( RUN.SCHOOL = 'B') AND ( RUN.SCHOOL = 'A' OR RUN.SCHOOL = 'C')");
    type.schoolType = "MIDDLE";
    EXPECT_FALSE(runSearchQuery(type));
}

}  // namespace
}  // namespace runsearch
