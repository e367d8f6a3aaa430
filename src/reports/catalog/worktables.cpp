#include "reports/catalog/worktables.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace reports {

namespace {

/// A column of RPT_RUN and what fills it.
struct Filled {
    std::string_view column;
    std::string expression;
};

/// A code's description; the code where it has none, `none` without a code.
std::string named(std::string_view description, std::string_view code, std::string_view none) {
    return fmt::format("IIF(NZ({0},' ')<>' ',{0},IIF(NZ({1},' ')<>' ',{1},'{2}'))", description,
                       code, none);
}

std::string person(std::string_view table) {
    return fmt::format(
        "IIF(ISNULL({0}.EMPNUM),Null,TRIM({0}.LASTNAME) & IIF(NZ({0}.FIRSTNAME,' ')=' ','',', ' & "
        "TRIM({0}.FIRSTNAME)))",
        table);
}

/// The seats of a vehicle type at the run's level, Medium where that is blank; Null for none.
std::string seatsOf(std::string_view type) {
    const auto seats = fmt::format(
        "(IIF(RUN.Capacity='High',{0}.HIGH,IIF(NZ(RUN.Capacity,' ')=' ' OR "
        "RUN.Capacity='Medium',{0}.MEDIUM,IIF(RUN.Capacity='Low',{0}.LOW,Null)))+NZ(RUN.OverFill,"
        "0))",
        type);
    return fmt::format("IIF({0}>0,{0},Null)", seats);
}

std::string daysOf(std::string_view table) {
    return fmt::format(
        "IIF({0}.monday,'M','.') & IIF({0}.tuesday,'T','.') & IIF({0}.wednesday,'W','.') & "
        "IIF({0}.thursday,'T','.') & IIF({0}.friday,'F','.')",
        table);
}

/// The street of a corner: "77th Street" of "77th Street at 9th Avenue".
constexpr auto StreetOfEnd =
    "IIF(INSTR(ENDSTOP.DESCRIPTION,' at ')>0,LEFT(ENDSTOP.DESCRIPTION,"
    "INSTR(ENDSTOP.DESCRIPTION,' at ')-1),ENDSTOP.DESCRIPTION)";

/// Before any time of day: runs without times come first.
constexpr auto NoTime = "#12/29/1899#";

std::vector<Filled> filledColumns() {
    return {
        {"RUN", "RUN.RUN"},
        {"DESCRIPTION", "RUN.DESCRIPTION"},
        {"SCHOOL", "RUN.SCHOOL"},
        {"SCHOOLNAME", named("SCHOOL.SCHOOLNAME", "RUN.SCHOOL", "No school")},
        {"SCHOOLTYPENAME", named("SCHOOLTYPE.DESCRIPTION", "SCHOOL.SCHOOLTYPE", "No school type")},
        {"TRIPTYPENAME", named("TRIPTYPE.DESCRIPTION", "RUN.TRIPTYPE", "No trip type")},
        {"RUNFAMILYNAME", named("RUNFAMILY.DESCRIPTION", "RUN.RUNFAMILY", "No run family")},
        {"LOCNAME", named("LOCCODE.DESCRIPTION", "RUN.LOCCODE", "No location")},
        {"ROUTEKEY", "ROUTE.INT_ROUTEID"},
        {"ROUTEID", "ROUTE.ROUTEID"},
        {"VEHICLE", "ROUTE.VEHICLE"},
        {"DRIVER", person("EMPLOYEE")},
        {"AIDE", person("AIDE")},
        {"PICKUP", "RUN.PICKUP"},
        {"STARTTIME", "RUN.STARTTIME"},
        {"ENDTIME", "RUN.ENDTIME"},
        {"BELLTIME", "RUN.BELLTIME"},
        {"DAYS", daysOf("RUN")},
        {"PLACE", fmt::format("IIF(NZ(ENDSTOP.DESCRIPTION,' ')=' ',RUN.DESCRIPTION,IIF(RUN.PICKUP,"
                              "{0},'to ' & {0}))",
                              StreetOfEnd)},
        {"MINUTES", "RUN.TOTAL_TIME"},
        {"MILES", "RUN.TOTAL_MILES"},
        {"STOPS", "RUN.total_stops"},
        {"RIDERS", "RUN.TOTAL_STUDENTS"},
        {"SEATS",
         fmt::format("IIF(ISNULL(VEHICLE.VEHICLE),{},{})", seatsOf("VEHTYPE"), seatsOf("BUSTYPE"))},
        {"BEFOREMINUTES", "IIF(RUN.DEADHEAD_BEFORE_TIME<0,Null,RUN.DEADHEAD_BEFORE_TIME)"},
        {"BEFOREMILES", "RUN.DEADHEAD_MILES_BEFORE"},
        {"BEFORESTART", "RUN.DEADHEAD_BEFORE_STARTTIME"},
        {"AFTERMINUTES", "IIF(RUN.DEADHEAD_AFTER_TIME<0,Null,RUN.DEADHEAD_AFTER_TIME)"},
        {"AFTERMILES", "RUN.DEADHEAD_MILES_AFTER"},
        {"AFTERSTART", "RUN.DEADHEAD_AFTER_STARTTIME"},
        // The names are crossed: the first says that the bus goes back after the run.
        {"TOGARAGE", "RUN.SHOW_BOTH_BEG"},
        {"FROMGARAGE", "RUN.SHOW_BOTH_END"},
        {"BEGINS", fmt::format("NZ(NZ(RUN.STARTTIME,RUN.ENDTIME),{})", NoTime)},
        {"ENDS", fmt::format("NZ(NZ(RUN.ENDTIME,RUN.STARTTIME),{})", NoTime)},
        {"HOURS",
         "(DATEDIFF('s',RUN.STARTTIME,RUN.ENDTIME)+IIF(RUN.ENDTIME<RUN.STARTTIME,86400,0))/3600"},
        {"COMMENT", "RUN.COMMENT"},
        {"REGENERATE", "RUN.REGENERATE"},
        {"GARAGE", "IIF(NZ(GARAGESTOP.ADDR1,' ')=' ',GARAGESTOP.DESCRIPTION,GARAGESTOP.ADDR1)"},
        {"CHANGED", "RUN.changeddt"},
        {"CHANGEDBY", "RUN.ChangedBy"},
    };
}

/// What is joined to RUN, each where there is one.
constexpr std::pair<std::string_view, std::string_view> Joined[]{
    {"SCHOOL", "RUN.SCHOOL=SCHOOL.SCHOOL"},
    {"SCHOOLTYPE", "SCHOOL.SCHOOLTYPE=SCHOOLTYPE.SCHOOLTYPE"},
    {"TRIPTYPE", "RUN.TRIPTYPE=TRIPTYPE.TRIPTYPE"},
    {"RUNFAMILY", "RUN.RUNFAMILY=RUNFAMILY.RUNFAMILY"},
    {"LOCCODE", "RUN.LOCCODE=LOCCODE.LOCCODE"},
    {"ROUTE", "RUN.INT_ROUTEID=ROUTE.INT_ROUTEID"},
    {"EMPLOYEE", "ROUTE.EMPNUM=EMPLOYEE.EMPNUM"},
    {"EMPLOYEE AS AIDE", "ROUTE.AID_EMPNUM=AIDE.EMPNUM"},
    {"VEHICLE", "ROUTE.VEHICLE=VEHICLE.VEHICLE"},
    {"VEHTYPE AS BUSTYPE", "VEHICLE.VEHTYPE=BUSTYPE.VEHTYPE"},
    {"VEHTYPE", "RUN.VEHTYPE=VEHTYPE.VEHTYPE"},
    {"STOP AS GARAGESTOP", "ROUTE.GARAGE_STOPID=GARAGESTOP.INT_STOPID"},
    {"STOP AS ENDSTOP", "IIF(RUN.PICKUP,RUN.FirstStop,RUN.LastStop)=ENDSTOP.INT_STOPID"},
};

std::string runsAndMore() {
    std::string from = "RUN";
    for (const auto& [table, on] : Joined) {
        const bool isFirst = &table == &Joined[0].first;
        from = fmt::format("{}{}{} LEFT JOIN {} ON {}", isFirst ? "" : "(", from,
                           isFirst ? "" : ")", table, on);
    }
    return from;
}

/// `order` names its columns, each perhaps followed by DESC.
bool isOrderedBy(std::string_view column, const std::string& order) {
    const std::string terms = fmt::format(", {},", order);
    return terms.find(fmt::format(", {},", column)) != std::string::npos ||
           terms.find(fmt::format(", {} ", column)) != std::string::npos;
}

std::string fillRunsSql(std::int64_t session, const std::string& condition,
                        const std::string& order, RunColumns wanted) {
    std::string columns = "SESSION";
    std::string values = std::to_string(session);
    for (const auto& [column, expression] : filledColumns()) {
        if (wanted == RunColumns::All || isOrderedBy(column, order)) {
            columns += fmt::format(", {}", column);
            values += fmt::format(", {} AS {}", expression, column);
        }
    }
    return fmt::format("INSERT INTO RPT_RUN ({}) SELECT {} FROM {} WHERE {} ORDER BY {}", columns,
                       values, runsAndMore(), condition, order);
}

/// An empty trip counts once, with the run that it leads to: the one after a run only where no
/// later run of its route is there, or the bus is in the garage between them.
constexpr auto EmptyTrips =
    "UPDATE RPT_RUN SET EMPTYMILES=IIF(BEFOREMINUTES Is Null Or BEFOREMILES<0,0,"
    "NZ(BEFOREMILES,0))+IIF(AFTERMINUTES Is Null Or AFTERMILES<0,0,NZ(AFTERMILES,0))*"
    "IIF(ROUTEKEY Is Null Or TOGARAGE=True,1,NZ((SELECT TOP 1 ABS(N.FROMGARAGE) FROM RPT_RUN AS N "
    "WHERE N.SESSION={0} AND N.ROUTEKEY=RPT_RUN.ROUTEKEY AND (N.BEGINS>RPT_RUN.BEGINS OR "
    "(N.BEGINS=RPT_RUN.BEGINS AND (N.ENDS>RPT_RUN.ENDS OR (N.ENDS=RPT_RUN.ENDS AND "
    "N.ID>RPT_RUN.ID)))) ORDER BY N.BEGINS, N.ENDS, N.ID),1)) WHERE ID BETWEEN {1} AND {2}";
constexpr auto Cost =
    "UPDATE RPT_RUN SET COST=(NZ(MILES,0)+EMPTYMILES)*{3} WHERE ID BETWEEN {1} AND {2}";

constexpr auto Stops =
    "INSERT INTO RPT_STOP (SESSION, RUNID, RUNSEQ, INT_STOPID, STOPID, STOPTYPE, TRIPTYPE, "
    "TIME_AT_STOP, ADDRESS, DESCRIPTION, RIDERS, MINUTES, MILES, LEFTSIDE, COMMENT) SELECT {0}, "
    "R.ID, T.RUNSEQ, T.INT_STOPID, STOP.STOPID, STOP.STOPTYPE, T.TRIPTYPE, T.TIME_AT_STOP, "
    "STOP.ADDR1, STOP.DESCRIPTION, IIF(STOP.STOPTYPE='REGULAR',T.NUM_STUDENTS,0), T.TIME_TOSTOP, "
    "T.DIST_TOSTOP, IIF(NZ(T.RUN_PICKUP_SIDE,' ') IN (' ','right'),False,True), STOP.COMMENT FROM "
    "(RPT_RUN AS R INNER JOIN STOP_TRIPTYPE AS T ON R.RUN=T.RUN) INNER JOIN STOP ON "
    "T.INT_STOPID=STOP.INT_STOPID WHERE R.ID BETWEEN {1} AND {2} AND "
    "STOP.STOPTYPE<>'DIRECTIONAL' ORDER BY R.ID, T.RUNSEQ, T.ID";
constexpr auto Riding =
    "UPDATE RPT_RUN SET RIDING=NZ((SELECT SUM(T.NUM_STUDENTS) FROM STOP_TRIPTYPE AS T INNER JOIN "
    "STOP ON T.INT_STOPID=STOP.INT_STOPID WHERE T.RUN=RPT_RUN.RUN AND STOP.STOPTYPE='REGULAR'),0) "
    "WHERE ID BETWEEN {1} AND {2}{3}";

constexpr auto Students =
    "INSERT INTO RPT_STUDENT (SESSION, RUNID, STOPROW, INT_STUID, STUID, NAME, ADDRESS, PHONE, "
    "DAYS) SELECT {0}, S.RUNID, S.ID, STUDENT.INT_STUID, STUDENT.STUID, TRIM(STUDENT.LASTNAME) & "
    "IIF(NZ(STUDENT.FIRSTNAME,' ')=' ','',', ' & TRIM(STUDENT.FIRSTNAME)), H.ADDR1 & "
    "IIF(NZ(H.ADDR2,' ')=' ','',', ' & H.ADDR2) & IIF(NZ(H.CITY,' ')=' ','',', ' & H.CITY), "
    "H.PHONE, {3} FROM ((RPT_STOP AS S INNER JOIN STU_ADDR_TRIPTYPE AS A ON "
    "S.INT_STOPID=A.INT_STOPID AND S.TRIPTYPE=A.TRIPTYPE) INNER JOIN STUDENT ON "
    "A.INT_STUID=STUDENT.INT_STUID) LEFT JOIN STU_ADDR AS H ON A.ADDRESSID=H.ADDRESSID WHERE "
    "S.ID>{5} AND (A.STARTDT Is Null OR A.STARTDT<=#{4}#) AND "
    "(A.ENDDT Is Null OR A.ENDDT>=#{4}#) ORDER BY S.ID, STUDENT.LASTNAME, "
    "STUDENT.FIRSTNAME";
constexpr auto Need =
    "UPDATE RPT_STUDENT SET NEEDS=IIF(NEEDS Is Null,'',NEEDS & ', ') & '{3}' WHERE ID>{5} AND "
    "INT_STUID IN (SELECT N.INT_STUID FROM STU_SPECIALNEEDS AS N WHERE N.SPECIALNEEDS_CODE='{4}')";

constexpr auto Directions =
    "INSERT INTO RPT_LINE (SESSION, RUNID, INT_STOPID, STOPID, LINETYPE, LINETEXT1, LINETEXT2, "
    "SHORTTEXT, SHORTDIST) SELECT {0}, R.ID, D.INT_STOPID, D.STOPID, D.LINETYPE, D.LINETEXT1, "
    "D.LINETEXT2, D.SHORTTEXT, D.SHORTDIST FROM RPT_RUN AS R INNER JOIN RUNDIR AS D ON R.RUN=D.RUN "
    "WHERE R.ID BETWEEN {1} AND {2} ORDER BY R.ID, D.ID";

constexpr auto Warnings =
    "INSERT INTO RPT_NOTE (SESSION, RUNID, KIND, NOTED, NOTE) SELECT {0}, R.ID, W.WARNINGTYPE, "
    "W.WARNINGDATETIME, W.WARNINGTEXT FROM RPT_RUN AS R INNER JOIN RUNWARNING AS W ON R.RUN=W.RUN "
    "WHERE R.ID BETWEEN {1} AND {2} ORDER BY R.ID, W.WARNINGDATETIME DESC";

constexpr auto Changes =
    "INSERT INTO RPT_NOTE (SESSION, RUNID, KIND, NOTED, WHO, NOTE) SELECT {0}, R.ID, '{3}', "
    "RUN.{4}, RUN.{5}, '{6}' FROM RPT_RUN AS R INNER JOIN RUN ON R.RUN=RUN.RUN WHERE "
    "R.ID BETWEEN {1} AND {2} AND RUN.{4}>#{7}# ORDER BY R.ID";
constexpr auto Logged =
    "INSERT INTO RPT_NOTE (SESSION, RUNID, KIND, NOTED, WHO, STOPID, NOTE) SELECT {0}, R.ID, "
    "SWITCH(L.ACTIVITYCODE=1,'Stop added',L.ACTIVITYCODE=2,'Stop removed',L.ACTIVITYCODE=3,"
    "'Stop moved',L.ACTIVITYCODE=5,'Stops merged',True,'Changed'), L.LOGDATE, L.User, L.StopID, "
    "L.Description FROM RPT_RUN AS R INNER JOIN RUNLOG AS L ON R.RUN=L.RUNID WHERE R.ID BETWEEN "
    "{1} AND {2} AND L.LOGDATE>#{3}# ORDER BY R.ID, L.LOGDATE, L.ID";

constexpr auto OnTheRoute =
    "UPDATE RPT_RUN SET PREVRUN=(SELECT TOP 1 N.RUN FROM RUN AS N WHERE "
    "N.INT_ROUTEID=RPT_RUN.ROUTEKEY AND N.STARTTIME<RPT_RUN.STARTTIME ORDER BY N.STARTTIME DESC, "
    "N.ENDTIME DESC, N.RUN), NEXTRUN=(SELECT TOP 1 N.RUN FROM RUN AS N WHERE "
    "N.INT_ROUTEID=RPT_RUN.ROUTEKEY AND N.STARTTIME>RPT_RUN.STARTTIME ORDER BY N.STARTTIME, "
    "N.ENDTIME, N.RUN) WHERE ID BETWEEN {1} AND {2}";
constexpr auto OnTheBus =
    "UPDATE RPT_RUN SET BUSRUN=(SELECT TOP 1 N.RUN FROM RUN AS N WHERE {3} AND N.ACTIVE=True AND "
    "N.STARTTIME>RPT_RUN.STARTTIME AND "
    "((N.monday=True AND RPT_RUN.DAYS LIKE 'M____') OR (N.tuesday=True AND RPT_RUN.DAYS LIKE "
    "'_T___') OR (N.wednesday=True AND RPT_RUN.DAYS LIKE '__W__') OR (N.thursday=True AND "
    "RPT_RUN.DAYS LIKE '___T_') OR (N.friday=True AND RPT_RUN.DAYS LIKE '____F')) ORDER BY "
    "N.STARTTIME, N.RUN) WHERE ID BETWEEN {1} AND {2} AND {4}";
constexpr auto NextSchool =
    "UPDATE RPT_RUN SET BUSSCHOOL=(SELECT {3} FROM RUN AS N LEFT JOIN SCHOOL ON "
    "N.SCHOOL=SCHOOL.SCHOOL WHERE N.RUN=RPT_RUN.BUSRUN), BUSSTART=(SELECT N.STARTTIME FROM RUN AS "
    "N WHERE N.RUN=RPT_RUN.BUSRUN), BUSPICKUP=(SELECT N.PICKUP FROM RUN AS N WHERE "
    "N.RUN=RPT_RUN.BUSRUN) WHERE ID BETWEEN {1} AND {2} AND BUSRUN Is Not Null";

template <class... More>
void runOn(const Batch& batch, std::string_view sql, const More&... more) {
    batch.work.Execute(
        fmt::format(fmt::runtime(sql), batch.session, batch.first, batch.last, more...));
}

}  // namespace

std::optional<std::vector<std::string>> runsOf(ado::Connection& work, const std::string& question,
                                               const KeepGoing& keepGoing) {
    constexpr std::size_t Often = 2'000;
    std::vector<std::string> runs;
    ado::Recordset rows(question, work);
    if (rows.Eof()) {
        return runs;
    }
    for (const ado::Field& run = rows["RUN"]; !rows.Eof(); rows.MoveNext()) {
        if (runs.size() % Often == 0 && keepGoing && !keepGoing(0)) {
            return std::nullopt;
        }
        runs.push_back(run.asText());
    }
    return runs;
}

std::string runsMeeting(const std::string& condition) {
    return fmt::format("SELECT RUN.RUN FROM RUN WHERE {}", condition);
}

std::string runsFilled(std::int64_t session, const std::string& order) {
    return fmt::format("SELECT RPT_RUN.RUN FROM RPT_RUN WHERE RPT_RUN.SESSION={} ORDER BY {}",
                       session, order);
}

void fillRuns(ado::Connection& work, std::int64_t session, std::span<const std::string> runs,
              const std::string& order, RunColumns columns) {
    const auto keys =
        base::joined(runs, ",", [](const auto& run) { return "'" + ado::escaped(run) + "'"; });
    work.Execute(fillRunsSql(session, fmt::format("RUN.RUN IN ({})", keys), order, columns));
}

void fillCosts(const Batch& batch) {
    runOn(batch, EmptyTrips);
    runOn(batch, Cost, base::numberText(batch.runCost));
}

void fillStops(const Batch& batch) { runOn(batch, Stops); }

void fillRiders(const Batch& batch) { runOn(batch, Riding, ""); }

void fillRidersHome(const Batch& batch) { runOn(batch, Riding, " AND PICKUP=False"); }

void fillStudents(const Batch& batch) {
    const auto before = lastKey(batch.work, "RPT_STUDENT");
    runOn(batch, Students, daysOf("A"), batch.now.dateValue().text(), batch.stopsBefore);
    ado::Recordset needs(
        "SELECT SPECIALNEEDS.SPECIALNEEDS_CODE, SPECIALNEEDS.DESCRIPTION FROM SPECIALNEEDS",
        batch.work);
    for (; !needs.Eof(); needs.MoveNext()) {
        const std::string code = needs["SPECIALNEEDS_CODE"].asText();
        const auto& description = needs["DESCRIPTION"];
        runOn(batch, Need, ado::escaped(description.isNull() ? code : description.asText()),
              ado::escaped(code), before);
    }
}

void fillDirections(const Batch& batch) { runOn(batch, Directions); }

void fillWarnings(const Batch& batch) { runOn(batch, Warnings); }

void fillChanges(const Batch& batch) {
    const auto since = batch.since.text();
    runOn(batch, Changes, "Run made", "CREATEDDT", "CreatedBy", "", since);
    runOn(batch, Logged, since);
    runOn(batch, Changes, "Run saved", "changeddt", "ChangedBy", "", since);
}

void fillNeighbours(const Batch& batch) {
    runOn(batch, OnTheRoute);
    runOn(batch, OnTheBus,
          "N.INT_ROUTEID IN (SELECT T.INT_ROUTEID FROM ROUTE AS T WHERE T.VEHICLE=RPT_RUN.VEHICLE)",
          "NZ(VEHICLE,' ')<>' '");
    runOn(batch, OnTheBus, "N.INT_ROUTEID=RPT_RUN.ROUTEKEY", "NZ(VEHICLE,' ')=' '");
    runOn(batch, NextSchool, named("SCHOOL.SCHOOLNAME", "N.SCHOOL", "no school"));
}

std::int64_t lastKey(ado::Connection& work, std::string_view table) {
    ado::Recordset row(fmt::format("SELECT MAX({0}.ID) AS LASTID FROM {0}", table), work);
    return row["LASTID"].isNull() ? 0 : row["LASTID"].asInteger();
}

bool isRunColumn(std::string_view column) {
    static const auto columns = filledColumns();
    return std::ranges::any_of(
        columns, [&](const Filled& filled) { return base::equalsNoCase(filled.column, column); });
}

}  // namespace reports
