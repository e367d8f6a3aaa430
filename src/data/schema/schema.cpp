#include "data/schema/schema.h"

#include <utility>

#include "platform/base/lookup.h"

namespace data {

namespace {

using store::Column;
using store::ColumnKind;
using store::Index;
using store::Table;

Column code(std::string name) { return {std::move(name), ColumnKind::Code}; }
Column text(std::string name) { return {std::move(name), ColumnKind::Text}; }
Column whole(std::string name) { return {std::move(name), ColumnKind::Integer}; }
Column number(std::string name) { return {std::move(name), ColumnKind::Number}; }
Column single(std::string name) { return {std::move(name), ColumnKind::Single}; }
Column date(std::string name) { return {std::move(name), ColumnKind::Date}; }
Column yesNo(std::string name) { return {std::move(name), ColumnKind::YesNo, false, "0"}; }
Column counter(std::string name) { return {std::move(name), ColumnKind::Counter, false}; }

Column required(Column column) {
    column.nullable = false;
    return column;
}

Column withDefault(Column column, std::string sql) {
    column.defaultSql = std::move(sql);
    return column;
}

/// A number that counts from 0 where nothing is known yet.
Column fromZero(Column column) { return withDefault(std::move(column), "0"); }

Index on(std::vector<std::string> columns) { return {std::move(columns), false}; }

Table run() {
    return {.name = "RUN",
            .columns = {required(code("RUN")),
                        text("DESCRIPTION"),
                        yesNo("ACTIVE"),
                        code("SCHOOL"),
                        code("TRIPTYPE"),
                        code("RUNFAMILY"),
                        code("LOCCODE"),
                        whole("INT_ROUTEID"),
                        code("VEHTYPE"),
                        text("Capacity"),
                        whole("OverFill"),
                        date("BELLTIME"),
                        yesNo("PICKUP"),
                        text("TimeToUse"),
                        date("STARTTIME"),
                        date("ENDTIME"),
                        number("TOTAL_TIME"),
                        number("TOTAL_MILES"),
                        whole("TOTAL_STUDENTS"),
                        whole("total_stops"),
                        text("COMMENT"),
                        yesNo("REGENERATE"),
                        yesNo("SHOW_BOTH_BEG"),
                        yesNo("SHOW_BOTH_END"),
                        single("DEADHEAD_BEFORE_TIME"),
                        single("DEADHEAD_AFTER_TIME"),
                        date("DEADHEAD_BEFORE_STARTTIME"),
                        date("DEADHEAD_AFTER_STARTTIME"),
                        number("DEADHEAD_MILES_BEFORE"),
                        number("DEADHEAD_MILES_AFTER"),
                        code("CreatedBy"),
                        date("CREATEDDT"),
                        code("ChangedBy"),
                        date("changeddt"),
                        date("STATUSCHGDT"),
                        text("GIS_CLOSEDSTREETFILENAME"),
                        yesNo("monday"),
                        yesNo("tuesday"),
                        yesNo("wednesday"),
                        yesNo("thursday"),
                        yesNo("friday"),
                        whole("FirstStop"),
                        whole("LastStop")},
            .key = {"RUN"},
            .indexes = {on({"INT_ROUTEID", "STARTTIME", "ENDTIME"}), on({"SCHOOL", "BELLTIME"})}};
}

Table route() {
    return {
        .name = "ROUTE",
        .columns = {counter("INT_ROUTEID"), code("ROUTEID"), text("ROUTENAME"), code("ROUTEFAMILY"),
                    code("LOCCODE"), code("VEHICLE"), whole("EMPNUM"), whole("AID_EMPNUM"),
                    text("COMMENT"), yesNo("DEADERROR"), whole("GARAGE_STOPID")},
        .key = {"INT_ROUTEID"},
        .indexes = {on({"ROUTEID"}), on({"EMPNUM"}), on({"AID_EMPNUM"}), on({"VEHICLE"})}};
}

/// A code and its description, then further columns.
Table codeTable(const std::string& name, const std::string& keyColumn, std::vector<Column> rest) {
    Table table{.name = name, .columns = {required(code(keyColumn))}, .key = {keyColumn}};
    for (auto& column : rest) {
        table.columns.push_back(std::move(column));
    }
    return table;
}

std::vector<Table> routingCodes() {
    return {
        codeTable("RUNFAMILY", "RUNFAMILY", {text("DESCRIPTION")}),
        codeTable("LOCCODE", "LOCCODE", {text("DESCRIPTION"), yesNo("ACTIVE")}),
        codeTable("STOPTYPE", "STOPTYPE", {text("DESCRIPTION"), yesNo("ACTIVE")}),
        codeTable("TRIPTYPE", "TRIPTYPE", {text("DESCRIPTION"), code("CATEGORY"), yesNo("ACTIVE")}),
        codeTable("SCHOOL", "SCHOOL", {text("SCHOOLNAME"), code("SCHOOLTYPE"), yesNo("ACTIVE")}),
        codeTable("SCHOOLTYPE", "SCHOOLTYPE", {text("DESCRIPTION"), yesNo("ACTIVE")}),
        codeTable("TIMEZONES", "TIMEZONE", {date("STARTTIME"), date("ENDTIME")}),
        codeTable("SPECIALNEEDS", "SPECIALNEEDS_CODE", {text("DESCRIPTION")})};
}

Table runDir() {
    return {.name = "RUNDIR",
            .columns = {counter("ID"), code("RUN"), whole("INT_STOPID"), code("STOPID"),
                        code("LINETYPE"), text("LINETEXT1"), text("LINETEXT2"), text("SHORTTEXT"),
                        text("SHORTDIST")},
            .key = {"ID"},
            .indexes = {on({"RUN", "ID"})}};
}

Table stop() {
    return {
        .name = "STOP",
        .columns = {counter("INT_STOPID"), code("STOPID"), code("STOPTYPE"), text("DESCRIPTION"),
                    text("ADDR1"), text("CITY"), code("STATE"), code("ZIP"), code("SCHOOL"),
                    code("LOCCODE"), yesNo("ACTIVE"), yesNo("RIGHTSIDE"), fromZero(number("XPOS")),
                    fromZero(number("YPOS")), text("COMMENT")},
        .key = {"INT_STOPID"},
        .indexes = {on({"STOPID"}), on({"SCHOOL", "STOPTYPE"})}};
}

/// What STOP_TRIPTYPE and its working copy share. A row's time is computed unless somebody says
/// otherwise, so UPDATE_TIME alone of all yes/no columns starts as yes.
std::vector<Column> stopTripTypeColumns() {
    return {counter("ID"),
            whole("INT_STOPID"),
            code("TRIPTYPE"),
            code("RUN"),
            fromZero(whole("RUNSEQ")),
            fromZero(whole("NUM_STUDENTS")),
            fromZero(single("LOAD_TIME")),
            fromZero(single("TIME_TOSTOP")),
            fromZero(number("DIST_TOSTOP")),
            date("TIME_AT_STOP"),
            fromZero(number("CUM_TIME")),
            fromZero(number("CUM_MILES")),
            code("RUN_PICKUP_SIDE"),
            yesNo("ACTIVE"),
            date("STATUSCHGDT"),
            date("CREATEDDT"),
            date("changeddt"),
            code("CreatedBy"),
            code("ChangedBy"),
            withDefault(yesNo("UPDATE_TIME"), "1")};
}

Table stopTripType() {
    return {.name = "STOP_TRIPTYPE",
            .columns = stopTripTypeColumns(),
            .key = {"ID"},
            .indexes = {on({"RUN", "RUNSEQ"}), on({"INT_STOPID", "TRIPTYPE"})}};
}

std::vector<Table> students() {
    return {
        {.name = "STUDENT",
         .columns = {counter("INT_STUID"), code("STUID"), text("LASTNAME"), text("FIRSTNAME"),
                     code("SCHOOL")},
         .key = {"INT_STUID"},
         .indexes = {on({"SCHOOL"})}},
        {.name = "STU_ADDR",
         .columns = {counter("ADDRESSID"), whole("INT_STUID"), whole("CONTACTID"), text("ADDR1"),
                     text("ADDR2"), text("CITY"), code("STATE"), text("PHONE"), text("COMMENT")},
         .key = {"ADDRESSID"},
         .indexes = {on({"INT_STUID"})}},
        {.name = "STU_ADDR_TRIPTYPE",
         .columns = {whole("INT_STUID"), whole("ADDRESSID"), code("TRIPTYPE"), whole("INT_STOPID"),
                     date("STARTDT"), date("ENDDT"), yesNo("SUNDAY"), yesNo("MONDAY"),
                     yesNo("TUESDAY"), yesNo("WEDNESDAY"), yesNo("THURSDAY"), yesNo("FRIDAY"),
                     yesNo("SATURDAY")},
         .indexes = {on({"INT_STOPID", "TRIPTYPE", "INT_STUID"}), on({"INT_STUID"})}},
        {.name = "STU_SPECIALNEEDS",
         .columns = {whole("INT_STUID"), code("SPECIALNEEDS_CODE")},
         .indexes = {on({"INT_STUID", "SPECIALNEEDS_CODE"})}}};
}

std::vector<Table> settings() {
    return {
        {.name = "District",
         .columns = {text("DistName"), number("Load_Time"), whole("MaxRideTime"),
                     whole("RUNREFRESHTIME"), number("RUNCOST"), yesNo("SENDTOMAP"),
                     text("GIS_CLOSEDSTREETFILENAME"), whole("Back_To_Garage_Gap"),
                     yesNo("CHECKRUNNUMPASS"), yesNo("CHECKRUNRIGHT"), yesNo("CHECKRUNEARLYBELL"),
                     yesNo("CHECKRUNLATEBELL"), yesNo("CHECKRUNRIDETIME"), yesNo("CHECKRUNSPECIAL"),
                     yesNo("CHECKSTOPOVERLAP")}},
        {.name = "SYSTEM", .columns = {yesNo("NEEDDEADHEADBUILD"), date("LASTDEADHEADBUILD")}},
        {.name = "StartEnd",
         .columns = {text("StartorEnd"), date("CalcTime"), code("Run"), code("VehType"),
                     date("BellTime"), yesNo("Pickup"), whole("VehCapacity"), yesNo("UpdateMap")}}};
}

std::vector<Table> findings() {
    return {{.name = "RUNWARNING",
             .columns = {code("RUN"), code("WARNINGTYPE"), date("WARNINGDATETIME"),
                         text("WARNINGTEXT")},
             .indexes = {on({"RUN", "WARNINGTYPE"})}},
            {.name = "ROUTEWARNING",
             .columns = {whole("INT_ROUTEID"), code("RUNID1"), code("WARNINGTYPE"),
                         date("WARNINGDATETIME"), text("WARNINGTEXT")},
             .indexes = {on({"RUNID1", "WARNINGTYPE"})}},
            {.name = "RUNLOG",
             .columns = {counter("ID"), code("RUNID"), whole("Int_STOPID"), code("StopID"),
                         code("TripType"), date("LOGDATE"), code("User"), whole("ACTIVITYCODE"),
                         text("Description")},
             .key = {"ID"},
             .indexes = {on({"LOGDATE"}), on({"RUNID", "LOGDATE"})}}};
}

template <class Item>
void append(std::vector<Item>& items, std::vector<Item> more) {
    for (auto& item : more) {
        items.push_back(std::move(item));
    }
}

std::vector<Table> routing() {
    std::vector<Table> tables = {run(), route(), runDir(), stop(), stopTripType()};
    append(tables, routingCodes());
    append(tables, students());
    append(tables, settings());
    append(tables, findings());
    return tables;
}

Table tempStopTripType() {
    Table table{.name = "Temp_Stop_TripType", .columns = stopTripTypeColumns()};
    table.columns.front() = whole("ID");
    table.columns.push_back(code("StopType"));
    table.columns.push_back(code("StopID"));
    table.indexes = {on({"RUNSEQ"})};
    return table;
}

std::vector<Table> routeWrk() {
    return {
        tempStopTripType(),
        {.name = "TEMPRUNDIR", .columns = {code("STOPID"), number("LINEDIST"), number("LINETIME")}},
        {.name = "TEMPSELSTOPS", .columns = {whole("INT_STOPID")}},
        {.name = "TEMP_RUNSTOPS",
         .columns = {code("RUNID"), code("RUN"), code("ROUTEID"), whole("RUNSEQ"),
                     whole("INT_STOPID"), code("STOPTYPE"), date("TIME_AT_STOP"),
                     date("STARTTIME")}},
        {.name = "TEMP_STUSTOP",
         .columns = {code("RUN"), whole("INT_STOPID"), whole("INT_STUID"), code("ACTION")}},
        {.name = "RUNLOG_ACTIVITY_CODES",
         .columns = {required(whole("ACTIVITYCODE")), text("ACTIVITYDESC")},
         .key = {"ACTIVITYCODE"}}};
}

std::vector<Table> trip() {
    return {{.name = "EMPLOYEE",
             .columns = {required(whole("EMPNUM")), text("LASTNAME"), text("FIRSTNAME")},
             .key = {"EMPNUM"}},
            codeTable("VEHICLE", "VEHICLE", {text("VEHDESC"), code("VEHTYPE")}),
            codeTable("VEHTYPE", "VEHTYPE",
                      {text("VTYPDESC"), whole("HIGH"), whole("MEDIUM"), whole("LOW"),
                       whole("HIGHOVERFILL"), whole("MEDIUMOVERFILL"), whole("LOWOVERFILL"),
                       yesNo("ACTIVE")}),
            {.name = "VEHTYPE_SPECIALNEEDS",
             .columns = {required(code("VEHTYPE")), required(code("SPECIALNEEDS_CODE")),
                         whole("Capacity")},
             .key = {"VEHTYPE", "SPECIALNEEDS_CODE"}}};
}

std::vector<Table> deadCross() {
    return {{.name = "DEADHEAD_CROSS",
             .columns = {whole("ENDPOINT_INT_STOPID"), whole("DEST_INT_STOPID"),
                         single("TRAVEL_MINUTES"), single("TRAVEL_MILES")},
             .indexes = {on({"DEST_INT_STOPID", "ENDPOINT_INT_STOPID"})}}};
}

std::vector<Table> permissions() {
    return {
        {.name = "QDSCPP",
         .columns = {required(code("PRODUCT")), required(code("PERM")), text("DESCRIPTION")},
         .key = {"PRODUCT", "PERM"}},
        {.name = "QDSCU", .columns = {required(code("QDSC1")), text("QDSC2")}, .key = {"QDSC1"}},
        {.name = "QDSCU_PP",
         .columns = {required(code("PRODUCT")), required(code("QDSC1")), required(code("PERM")),
                     yesNo("Authority")},
         .key = {"PRODUCT", "QDSC1", "PERM"}}};
}

/// What the rows of a report have in common: the preparation they belong to, and the run. Their
/// keys are generated in the order in which the report shows them. They are written by the ten
/// thousand while somebody waits, so that they are free text without rules, read in the order of
/// their keys.
Table reportTable(std::string name, std::vector<Column> columns) {
    Table table{.name = std::move(name),
                .columns = {counter("ID"), whole("SESSION"), whole("RUNID")},
                .key = {"ID"}};
    append(table.columns, std::move(columns));
    return table;
}

/// A run with everything that any report says of it.
Table reportedRun() {
    return {.name = "RPT_RUN",
            .columns = {counter("ID"),
                        whole("SESSION"),
                        code("RUN"),
                        text("DESCRIPTION"),
                        text("SCHOOL"),
                        text("SCHOOLNAME"),
                        text("SCHOOLTYPENAME"),
                        text("TRIPTYPENAME"),
                        text("RUNFAMILYNAME"),
                        text("LOCNAME"),
                        whole("ROUTEKEY"),
                        code("ROUTEID"),
                        code("VEHICLE"),
                        text("DRIVER"),
                        text("AIDE"),
                        yesNo("PICKUP"),
                        date("STARTTIME"),
                        date("ENDTIME"),
                        date("BELLTIME"),
                        text("DAYS"),
                        text("PLACE"),
                        number("MINUTES"),
                        number("MILES"),
                        whole("STOPS"),
                        whole("RIDERS"),
                        whole("RIDING"),
                        whole("SEATS"),
                        number("BEFOREMINUTES"),
                        number("BEFOREMILES"),
                        date("BEFORESTART"),
                        number("AFTERMINUTES"),
                        number("AFTERMILES"),
                        date("AFTERSTART"),
                        yesNo("TOGARAGE"),
                        yesNo("FROMGARAGE"),
                        date("BEGINS"),
                        date("ENDS"),
                        number("HOURS"),
                        number("EMPTYMILES"),
                        number("COST"),
                        text("COMMENT"),
                        yesNo("REGENERATE"),
                        text("GARAGE"),
                        text("PREVRUN"),
                        text("NEXTRUN"),
                        code("BUSRUN"),
                        text("BUSSCHOOL"),
                        date("BUSSTART"),
                        yesNo("BUSPICKUP"),
                        date("CHANGED"),
                        text("CHANGEDBY")},
            .key = {"ID"},
            .indexes = {on({"SESSION", "ROUTEKEY", "BEGINS"})}};
}

std::vector<Table> reports() {
    return {{.name = "RPT_SESSION",
             .columns = {counter("SESSION"), text("OWNER"), date("STARTED")},
             .key = {"SESSION"}},
            reportedRun(),
            reportTable("RPT_STOP",
                        {whole("RUNSEQ"), whole("INT_STOPID"), text("STOPID"), text("STOPTYPE"),
                         text("TRIPTYPE"), date("TIME_AT_STOP"), text("ADDRESS"),
                         text("DESCRIPTION"), whole("RIDERS"), number("MINUTES"), number("MILES"),
                         whole("LEFTSIDE"), text("COMMENT")}),
            reportTable("RPT_STUDENT",
                        {whole("STOPROW"), whole("INT_STUID"), text("STUID"), text("NAME"),
                         text("ADDRESS"), text("PHONE"), text("DAYS"), text("NEEDS")}),
            reportTable("RPT_LINE",
                        {whole("INT_STOPID"), text("STOPID"), text("LINETYPE"), text("LINETEXT1"),
                         text("LINETEXT2"), text("SHORTTEXT"), text("SHORTDIST")}),
            reportTable("RPT_NOTE",
                        {text("KIND"), date("NOTED"), text("WHO"), text("STOPID"), text("NOTE")})};
}

}  // namespace

std::string_view fileName(DatabaseFile file) {
    static constexpr std::pair<DatabaseFile, std::string_view> Names[] = {
        {DatabaseFile::Routing, "routing.mdb"},     {DatabaseFile::RouteWrk, "RouteWrk.mdb"},
        {DatabaseFile::Trip, "trip.mdb"},           {DatabaseFile::VIREORpt, "VIREORpt.mdb"},
        {DatabaseFile::DeadCross, "DEADCROSS.mdb"}, {DatabaseFile::QDSC, "ZBQDSC1.mdb"}};
    return base::lookUp(Names, file, "");
}

const std::vector<Table>& tablesOf(DatabaseFile file) {
    static const std::array<std::vector<Table>, AllDatabaseFiles.size()> tables = {
        routing(), routeWrk(), trip(), reports(), deadCross(), permissions()};
    return tables[static_cast<std::size_t>(file)];
}

}  // namespace data
