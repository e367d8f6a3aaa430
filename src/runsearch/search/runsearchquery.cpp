#include "runsearch/search/runsearchquery.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace runsearch {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view PlainSelect =
    "SELECT RUN.*, (RUN.TOTAL_MILES + RUN.DEADHEAD_MILES_BEFORE + RUN.DEADHEAD_MILES_AFTER) AS "
    "TOTAL_MILES_WITH_DEADHEAD";
constexpr std::string_view PlainFrom = " FROM RUN";

constexpr std::string_view RouteSelect =
    "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM,  (IIF(ISNULL(ROUTE.EMPNUM),' "
    "',(TRIM$(EMPLOYEE.LASTNAME) & ', ' & TRIM$(EMPLOYEE.FIRSTNAME)))) AS EMPNAME, "
    "ROUTE.AID_EMPNUM, (IIF(ISNULL(ROUTE.AID_EMPNUM),' ',(TRIM$(EMPLOYEE_1.LASTNAME) & ', ' & "
    "TRIM$(EMPLOYEE_1.FIRSTNAME)))) AS AIDNAME, (RUN.TOTAL_MILES + RUN.DEADHEAD_MILES_BEFORE + "
    "RUN.DEADHEAD_MILES_AFTER) AS TOTAL_MILES_WITH_DEADHEAD";
constexpr std::string_view RouteFrom =
    " FROM ((ROUTE RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID) LEFT JOIN EMPLOYEE ON "
    "ROUTE.EMPNUM = EMPLOYEE.EMPNUM) LEFT JOIN EMPLOYEE AS EMPLOYEE_1 ON ROUTE.AID_EMPNUM = "
    "EMPLOYEE_1.EMPNUM";

constexpr std::string_view SchoolSelect =
    "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM, (IIf(IsNull(ROUTE.EMPNUM),' "
    "',(Trim$(EMPLOYEE.LASTNAME) & ', ' & Trim$(EMPLOYEE.FIRSTNAME)))) AS EMPNAME, "
    "ROUTE.AID_EMPNUM, (IIf(IsNull(ROUTE.AID_EMPNUM),' ',(Trim$(EMPLOYEE_1.LASTNAME) & ', ' & "
    "Trim$(EMPLOYEE_1.FIRSTNAME)))) AS AIDNAME, SCHOOL.SCHOOLTYPE,  (RUN.TOTAL_MILES + "
    "RUN.DEADHEAD_MILES_BEFORE + RUN.DEADHEAD_MILES_AFTER) AS TOTAL_MILES_WITH_DEADHEAD, "
    "(RUN.DEADHEAD_MILES_BEFORE + RUN.DEADHEAD_MILES_AFTER) AS TOTAL_DEADHEAD_MILES";
constexpr std::string_view SchoolFrom =
    " FROM SCHOOL RIGHT JOIN (((ROUTE RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID) LEFT "
    "JOIN EMPLOYEE ON ROUTE.EMPNUM = EMPLOYEE.EMPNUM) LEFT JOIN EMPLOYEE AS EMPLOYEE_1 ON "
    "ROUTE.AID_EMPNUM = EMPLOYEE_1.EMPNUM) ON SCHOOL.SCHOOL = RUN.SCHOOL";

constexpr std::string_view SchoolStops =
    "SELECT RUN.RUN FROM (STOP LEFT JOIN SCHOOL ON STOP.SCHOOL = SCHOOL.SCHOOL) INNER JOIN (RUN "
    "INNER JOIN STOP_TRIPTYPE ON RUN.RUN = STOP_TRIPTYPE.RUN) ON STOP.INT_STOPID = "
    "STOP_TRIPTYPE.INT_STOPID GROUP BY RUN.RUN, STOP.SCHOOL, STOP.STOPTYPE, RUN.RUNFAMILY, "
    "SCHOOL.SCHOOLTYPE";
constexpr std::string_view TripTypeStops =
    "SELECT RUN.RUN FROM RUN INNER JOIN STOP_TRIPTYPE ON RUN.RUN = STOP_TRIPTYPE.RUN GROUP BY "
    "RUN.RUN, STOP_TRIPTYPE.TRIPTYPE";

bool filled(std::string_view text) { return !base::trim(text).empty(); }
bool filled(const TimeRange& range) { return range.from || range.to; }

struct Clause {
    std::string_view keyword;
    ado::Conditions body;
};

class Assembly {
public:
    explicit Assembly(const RunSearchCriteria& criteria) : criteria_(criteria) {}

    std::optional<RunSearchQuery> query();

private:
    void appendRun();
    void appendSelectedSchools();
    void appendTripTypes();
    bool appendSchoolType();
    void appendAttributes();

    void condition(std::string_view fragment);
    void textCondition(fmt::format_string<std::string_view> fragment, std::string_view value);
    void timeConditions(std::string_view column, const TimeRange& range);
    void group(Clause& having, bool inStops, const std::vector<std::string>& fragments);
    std::string schoolFragment(const std::string& school) const;
    std::string subQuery() const;
    std::string assembled(std::string_view select, std::string_view from,
                          const std::string& sub) const;

    const RunSearchCriteria& criteria_;
    Clause where_;
    Clause schoolHaving_;
    Clause tripTypeHaving_;
};

std::optional<RunSearchQuery> Assembly::query() {
    appendRun();
    appendSelectedSchools();
    appendTripTypes();
    if (!appendSchoolType()) {
        return std::nullopt;
    }
    appendAttributes();
    const auto sub = subQuery();
    const bool route = criteria_.useRoute;
    return RunSearchQuery{
        assembled(route ? RouteSelect : PlainSelect, route ? RouteFrom : PlainFrom, sub),
        assembled(SchoolSelect, SchoolFrom, sub)};
}

void Assembly::condition(std::string_view fragment) {
    where_.keyword = " Where "sv;
    where_.body.add(fragment);
}

void Assembly::textCondition(fmt::format_string<std::string_view> fragment,
                             std::string_view value) {
    if (filled(value)) {
        condition(fmt::format(fragment, base::trim(value)));
    }
}

void Assembly::timeConditions(std::string_view column, const TimeRange& range) {
    if (range.from) {
        condition(fmt::format(" Run.{} >= #{}#", column, range.from->timeValue().text()));
    }
    if (range.to) {
        condition(fmt::format(" Run.{} <= #{}#", column, range.to->timeValue().text()));
    }
}

void Assembly::appendRun() {
    textCondition(" Run.Run LIKE '{}%'", criteria_.runId);
    textCondition(" Run.Description LIKE '{}%'", criteria_.description);
    timeConditions("StartTime", criteria_.startTime);
    timeConditions("EndTime", criteria_.endTime);
    timeConditions("BellTime", criteria_.bellTime);
    textCondition(" Run.RunFamily = '{}'", criteria_.runFamily);
}

/// The alternatives go into the sub-query's HAVING or, in parentheses, into WHERE. WHERE is needed
/// either way: it introduces the sub-query.
void Assembly::group(Clause& having, bool inStops, const std::vector<std::string>& fragments) {
    where_.keyword = " Where "sv;
    if (inStops) {
        having.keyword = " HAVING "sv;
    }
    auto& target = inStops ? having.body : where_.body;
    target.add(inStops ? "" : " (");
    for (std::size_t i = 0; i < fragments.size(); ++i) {
        if (i > 0) {
            target.append(" OR");
        }
        target.append(fragments[i]);
    }
    if (!inStops) {
        target.append(")");
    }
}

std::string Assembly::schoolFragment(const std::string& school) const {
    const auto code = ado::escaped(school);
    return criteria_.searchSchoolStops
               ? fmt::format(" STOP.SCHOOL = '{}' AND STOP.STOPTYPE='SCHOOL' ", code)
               : fmt::format(" RUN.SCHOOL = '{}'", code);
}

void Assembly::appendSelectedSchools() {
    std::vector<std::string> fragments;
    for (const auto& school : criteria_.schools) {
        if (school.selected) {
            fragments.push_back(schoolFragment(school.code));
        }
    }
    if (!fragments.empty()) {
        group(schoolHaving_, criteria_.searchSchoolStops, fragments);
    }
}

void Assembly::appendTripTypes() {
    std::vector<std::string> fragments;
    for (const auto& tripType : criteria_.tripTypes) {
        const auto code = ado::escaped(tripType);
        fragments.push_back(criteria_.searchTripTypeStops
                                ? fmt::format(" STOP_TRIPTYPE.TRIPTYPE = '{}'", code)
                                : fmt::format(" RUN.TRIPTYPE = '{}'", code));
    }
    if (!fragments.empty()) {
        group(tripTypeHaving_, criteria_.searchTripTypeStops, fragments);
    }
}

/// False where no listed school is of the type.
bool Assembly::appendSchoolType() {
    if (!filled(criteria_.schoolType)) {
        return true;
    }
    const auto type = base::trim(criteria_.schoolType);
    std::vector<std::string> fragments;
    for (const auto& school : criteria_.schools) {
        if (base::equalsNoCase(base::trim(school.schoolType), type)) {
            fragments.push_back(schoolFragment(school.code));
        }
    }
    if (fragments.empty()) {
        return false;
    }
    group(schoolHaving_, criteria_.searchSchoolStops, fragments);
    return true;
}

void Assembly::appendAttributes() {
    if (criteria_.needsResolve) {
        condition(" Run.Regenerate = True");
    }
    textCondition(" Run.LOCCODE = '{}'", criteria_.location);
    textCondition(" Route.EMPNUM = {}", criteria_.driver);
    textCondition(" Route.Vehicle = '{}'", criteria_.vehicle);
    textCondition(" Route.AID_EMPNUM = {}", criteria_.aid);
    textCondition(" Route.RouteID = '{}'", criteria_.route);
    if (criteria_.notOnRoute) {
        condition(" RUN.INT_ROUTEID Is Null");
    }
}

std::string Assembly::subQuery() const {
    if (criteria_.searchSchoolStops && !schoolHaving_.keyword.empty()) {
        return fmt::format("{}{}{}", SchoolStops, schoolHaving_.keyword, schoolHaving_.body.text());
    }
    if (criteria_.searchTripTypeStops && !tripTypeHaving_.keyword.empty()) {
        return fmt::format("{}{}{}", TripTypeStops, tripTypeHaving_.keyword,
                           tripTypeHaving_.body.text());
    }
    return {};
}

std::string Assembly::assembled(std::string_view select, std::string_view from,
                                const std::string& sub) const {
    const std::string& where = where_.body.text();
    if (sub.empty()) {
        return fmt::format("{}{}{}{}", select, from, where_.keyword, where);
    }
    auto text = fmt::format("{}{}{}RUN.RUN IN ({})", select, from, where_.keyword, sub);
    if (!where_.body.empty()) {
        text += where.starts_with(' ') ? " AND" : " AND ";
        text += where;
    }
    return text;
}

}  // namespace

std::optional<RunSearchQuery> runSearchQuery(const RunSearchCriteria& criteria) {
    return Assembly(criteria).query();
}

FilledCriteria filledCriteria(const RunSearchCriteria& criteria) {
    const auto selected = std::any_of(criteria.schools.begin(), criteria.schools.end(),
                                      [](const SchoolRow& school) { return school.selected; });
    return {filled(criteria.runId) + filled(criteria.description) + filled(criteria.startTime) +
                filled(criteria.endTime) + filled(criteria.bellTime) + filled(criteria.runFamily) +
                filled(criteria.location) + criteria.needsResolve,
            selected + filled(criteria.schoolType) + !criteria.tripTypes.empty(),
            filled(criteria.driver) + filled(criteria.vehicle) + filled(criteria.aid) +
                filled(criteria.route) + criteria.notOnRoute};
}

}  // namespace runsearch
