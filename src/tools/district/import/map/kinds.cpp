#include "tools/district/import/map/kinds.h"

#include <algorithm>
#include <utility>

#include "platform/base/text.h"

namespace tools::district {

namespace {

using data::DatabaseFile;

std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> all;
    while (!(text = base::trimLeft(text)).empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        all.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return all;
}

FileField field(std::string name, std::string_view synonyms = {}) {
    return {std::move(name), words(synonyms), false};
}

FileField needed(std::string name, std::string_view synonyms = {}) {
    return {std::move(name), words(synonyms), true};
}

CellSource from(std::string column, std::string field, TextRule rule = TextRule::None) {
    return {.column = std::move(column), .field = std::move(field), .rule = rule};
}

CellSource always(std::string column, base::Value value) {
    return {.column = std::move(column), .always = std::move(value)};
}

/// The number of the row that the line's first or other kind of row has.
CellSource rowOf(std::string column, std::size_t which) {
    return {.column = std::move(column), .rowOf = which};
}

CellSource owner(std::string column) { return rowOf(std::move(column), 0); }

/// A code that stands in its own table under its own name.
CellSource code(std::string column, std::string field, const std::string& table,
                const std::string& keyColumn = {}) {
    static const std::vector<std::string> MayBeMadeUp = {"SCHOOLTYPE", "LOCCODE", "RUNFAMILY",
                                                         "SPECIALNEEDS"};
    return {.column = std::move(column),
            .field = std::move(field),
            .reference =
                Reference{.table = table,
                          .column = keyColumn.empty() ? table : keyColumn,
                          .isCode = std::ranges::find(MayBeMadeUp, table) != MayBeMadeUp.end()}};
}

CellSource idOf(std::string column, std::string field, std::string table, std::string named) {
    return {.column = std::move(column),
            .field = std::move(field),
            .reference = Reference{
                .table = std::move(table), .column = std::move(named), .as = Reference::As::Row}};
}

/// What follows from the note of the row that the field names.
CellSource following(std::string column, std::string field, const std::string& table,
                     base::Value (*ofNote)(std::string_view)) {
    return {.column = std::move(column),
            .field = std::move(field),
            .reference = Reference{
                .table = table, .column = table, .as = Reference::As::Note, .ofNote = ofNote}};
}

base::Value theNote(std::string_view note) {
    return note.empty() ? base::Value() : base::Value(note);
}

bool isToSchool(std::string_view category) { return !base::equalsNoCase(category, "DROPOFF"); }

base::Value pickupOf(std::string_view category) { return isToSchool(category); }

base::Value timeToUseOf(std::string_view category) {
    return isToSchool(category) ? "End Time" : "Start Time";
}

FileKind schools() {
    return {
        .name = "schools",
        .fields = {needed("school",
                          "code schoolid schoolcode schoolnumber sourcedid "
                          "identifier id"),
                   field("name", "schoolname title orgname"), field("type", "schooltype level"),
                   field("active", "status enabled")},
        .rows = {{.table = "SCHOOL",
                  .key = {from("SCHOOL", "school")},
                  .values = {from("SCHOOLNAME", "name"), code("SCHOOLTYPE", "type", "SCHOOLTYPE"),
                             from("ACTIVE", "active")},
                  .onAdding = {always("ACTIVE", true)}}}};
}

FileKind stops() {
    return {.name = "stops",
            .fields = {needed("stop", "stopid stopcode busstop busstopcode stopnumber id"),
                       field("type", "stoptype"),
                       field("description", "stopdescription stopdesc stopname name desc"),
                       field("address", "addr1 street streetaddress stopaddress"),
                       field("city", "town"), field("state", "province"),
                       field("zip", "zipcode postcode postalcode"), field("school", "schoolid"),
                       field("location", "loccode locationcode area"), field("active", "status"),
                       field("right_side", "rightsideonly"), field("x", "xpos xcoord easting"),
                       field("y", "ypos ycoord northing"),
                       field("comment", "comments note notes remarks")},
            .rows = {{.table = "STOP",
                      .key = {from("STOPID", "stop")},
                      .values = {code("STOPTYPE", "type", "STOPTYPE"),
                                 from("DESCRIPTION", "description"), from("ADDR1", "address"),
                                 from("CITY", "city"), from("STATE", "state"), from("ZIP", "zip"),
                                 code("SCHOOL", "school", "SCHOOL"),
                                 code("LOCCODE", "location", "LOCCODE"), from("ACTIVE", "active"),
                                 from("RIGHTSIDE", "right_side"), from("XPOS", "x"),
                                 from("YPOS", "y"), from("COMMENT", "comment")},
                      .onAdding = {always("STOPTYPE", std::string(data::stoptype::Regular)),
                                   always("ACTIVE", true)}}}};
}

FileKind employees() {
    return {.name = "employees",
            .fields = {needed("number", "empnum employeeid employeenumber employee staffid id"),
                       field("last_name", "lastname surname familyname"),
                       field("first_name", "firstname givenname")},
            .rows = {{.file = DatabaseFile::Trip,
                      .table = "EMPLOYEE",
                      .key = {from("EMPNUM", "number")},
                      .values = {from("LASTNAME", "last_name"), from("FIRSTNAME", "first_name")}}}};
}

FileKind vehicles() {
    return {
        .name = "vehicles",
        .fields = {needed("vehicle", "vehicleid vehiclenumber bus busnumber unit unitnumber id"),
                   field("description", "vehdesc vehicledescription desc name"),
                   field("type", "vehtype vehicletype bustype")},
        .rows = {{.file = DatabaseFile::Trip,
                  .table = "VEHICLE",
                  .key = {from("VEHICLE", "vehicle")},
                  .values = {from("VEHDESC", "description"), code("VEHTYPE", "type", "VEHTYPE")}}}};
}

FileKind routes() {
    return {
        .name = "routes",
        .fields = {needed("route", "routeid routenumber id"),
                   field("name", "routename description"), field("family", "routefamily"),
                   field("location", "loccode area"), field("vehicle", "vehicleid bus busnumber"),
                   field("driver", "empnum driverid drivernumber"),
                   field("aide", "aid aidempnum aideid aidid monitor"),
                   field("garage", "garagestop garagestopid depot"),
                   field("comment", "comments note notes")},
        .rows = {{.table = "ROUTE",
                  .key = {from("ROUTEID", "route")},
                  .values = {from("ROUTENAME", "name"), from("ROUTEFAMILY", "family"),
                             code("LOCCODE", "location", "LOCCODE"),
                             code("VEHICLE", "vehicle", "VEHICLE"),
                             code("EMPNUM", "driver", "EMPLOYEE", "EMPNUM"),
                             code("AID_EMPNUM", "aide", "EMPLOYEE", "EMPNUM"),
                             idOf("GARAGE_STOPID", "garage", "STOP", "STOPID"),
                             from("COMMENT", "comment")},
                  .onAdding = {always("DEADERROR", true)}}}};
}

std::vector<CellSource> runValues() {
    using enum TextRule;
    return {from("DESCRIPTION", "description"),
            from("ACTIVE", "active"),
            code("SCHOOL", "school", "SCHOOL"),
            code("TRIPTYPE", "trip_type", "TRIPTYPE"),
            code("RUNFAMILY", "family", "RUNFAMILY"),
            code("LOCCODE", "location", "LOCCODE"),
            idOf("INT_ROUTEID", "route", "ROUTE", "ROUTEID"),
            code("VEHTYPE", "vehicle_type", "VEHTYPE"),
            from("Capacity", "capacity", Capacity),
            from("OverFill", "overfill", NotNegative),
            from("BELLTIME", "bell"),
            from("PICKUP", "pickup"),
            from("TimeToUse", "time_to_use"),
            from("STARTTIME", "start"),
            from("ENDTIME", "end"),
            from("TOTAL_TIME", "minutes", Minutes),
            from("TOTAL_MILES", "miles", NotNegative),
            from("TOTAL_STUDENTS", "students", NotNegative),
            from("COMMENT", "comment"),
            from("monday", "monday"),
            from("tuesday", "tuesday"),
            from("wednesday", "wednesday"),
            from("thursday", "thursday"),
            from("friday", "friday")};
}

FileKind runs() {
    return {.name = "runs",
            .fields = {needed("run", "runid runnumber runname id"),
                       field("description", "rundescription desc name"),
                       field("active", "status"),
                       field("school", "schoolid schoolcode"),
                       field("trip_type", "triptype ampm tripdirection direction"),
                       field("family", "runfamily"),
                       field("location", "loccode area"),
                       field("route", "routeid routenumber busroute"),
                       field("vehicle_type", "vehtype vehicletype bustype"),
                       field("capacity"),
                       field("overfill"),
                       field("bell", "belltime schoolstart"),
                       field("pickup", "ispickup"),
                       field("time_to_use", "timetouse"),
                       field("start", "starttime begintime departure"),
                       field("end", "endtime finishtime arrival"),
                       field("minutes", "totaltime duration"),
                       field("miles", "totalmiles distance"),
                       field("students", "totalstudents riders"),
                       field("comment", "comments note notes"),
                       field("monday", "mon"),
                       field("tuesday", "tue"),
                       field("wednesday", "wed"),
                       field("thursday", "thu"),
                       field("friday", "fri")},
            .rows = {{.table = "RUN",
                      .key = {from("RUN", "run", TextRule::RunId)},
                      .values = runValues(),
                      .onAdding = {following("PICKUP", "trip_type", "TRIPTYPE", pickupOf),
                                   following("TimeToUse", "trip_type", "TRIPTYPE", timeToUseOf),
                                   always("ACTIVE", true), always("Capacity", "High"),
                                   always("DEADHEAD_BEFORE_TIME", -2),
                                   always("DEADHEAD_AFTER_TIME", -2), always("monday", true),
                                   always("tuesday", true), always("wednesday", true),
                                   always("thursday", true), always("friday", true)}}}};
}

FileKind runStops() {
    using enum TextRule;
    return {
        .name = "run_stops",
        .fields = {needed("run", "runid runnumber busroute"),
                   needed("stop", "stopid stopcode busstopcode"),
                   needed("sequence", "runseq seq stopsequence stoporder order"),
                   field("students", "numstudents riders count"), field("load_minutes", "loadtime"),
                   field("drive_minutes", "timetostop traveltime"),
                   field("miles", "disttostop distance"),
                   field("time", "timeatstop stoptime arrival arrivaltime departuretime"),
                   field("side", "runpickupside"), field("active", "status"),
                   field("update_time", "updatetime")},
        .rows = {{.table = "STOP_TRIPTYPE",
                  .key = {idOf("INT_STOPID", "stop", "STOP", "STOPID"),
                          following("TRIPTYPE", "run", "RUN", theNote), code("RUN", "run", "RUN")},
                  .values = {code("RUN", "run", "RUN"), from("RUNSEQ", "sequence", NotNegative),
                             from("NUM_STUDENTS", "students", NotNegative),
                             from("LOAD_TIME", "load_minutes", Minutes),
                             from("TIME_TOSTOP", "drive_minutes", Minutes),
                             from("DIST_TOSTOP", "miles", NotNegative),
                             from("TIME_AT_STOP", "time"), from("RUN_PICKUP_SIDE", "side"),
                             from("ACTIVE", "active"), from("UPDATE_TIME", "update_time")},
                  .onAdding = {always("ACTIVE", true), always("RUN_PICKUP_SIDE", "right")}}}};
}

/// Where a student rides from in the trips of one type.
RowSource ride(const std::string& field, const std::string& tripType) {
    return {
        .table = "STU_ADDR_TRIPTYPE",
        .key = {owner("INT_STUID"), always("TRIPTYPE", tripType)},
        .values = {idOf("INT_STOPID", field, "STOP", "STOPID")},
        .onAdding = {rowOf("ADDRESSID", 1), always("MONDAY", true), always("TUESDAY", true),
                     always("WEDNESDAY", true), always("THURSDAY", true), always("FRIDAY", true)},
        .onlyWith = field};
}

FileKind students() {
    return {.name = "students",
            .fields = {needed("student",
                              "stuid studentid studentnumber studentno localstudentkey "
                              "permid sourcedid identifier id"),
                       field("last_name", "lastname surname familyname studentlastname"),
                       field("first_name", "firstname givenname studentfirstname"),
                       field("school", "schoolid schoolcode enrolledschool orgsourcedids"),
                       field("address",
                             "addr1 street studentstreet mailingstreet streetaddress "
                             "pickupaddress"),
                       field("address2", "addr2 apartment"), field("city", "town mailingcity"),
                       field("state", "province mailingstate"),
                       field("phone", "homephone primaryphone primaryphonenumber telephone sms"),
                       field("comment", "comments note notes"),
                       field("am_stop", "amstopid ampickupstop pickupstop morningstop"),
                       field("pm_stop", "pmstopid pmdropoffstop dropoffstop afternoonstop"),
                       field("needs", "specialneeds specialneed needcodes")},
            .rows = {{.table = "STUDENT",
                      .key = {from("STUID", "student")},
                      .values = {from("LASTNAME", "last_name"), from("FIRSTNAME", "first_name"),
                                 code("SCHOOL", "school", "SCHOOL")}},
                     {.table = "STU_ADDR",
                      .key = {owner("INT_STUID")},
                      .values = {from("ADDR1", "address"), from("ADDR2", "address2"),
                                 from("CITY", "city"), from("STATE", "state"),
                                 from("PHONE", "phone"), from("COMMENT", "comment")},
                      .onlyWith = "address"},
                     ride("am_stop", "AM"),
                     ride("pm_stop", "PM"),
                     {.table = "STU_SPECIALNEEDS",
                      .key = {owner("INT_STUID"), code("SPECIALNEEDS_CODE", "needs", "SPECIALNEEDS",
                                                       "SPECIALNEEDS_CODE")},
                      .values = {},
                      .onlyWith = "needs",
                      .listIn = "needs"}}};
}

FileKind deadHead() {
    return {
        .name = "deadhead",
        .fields = {needed("from", "fromstop origin endpoint"),
                   needed("to", "tostop destination dest"), needed("minutes", "travelminutes time"),
                   needed("miles", "travelmiles distance")},
        .rows = {{.file = DatabaseFile::DeadCross,
                  .table = "DEADHEAD_CROSS",
                  .key = {idOf("ENDPOINT_INT_STOPID", "from", "STOP", "STOPID"),
                          idOf("DEST_INT_STOPID", "to", "STOP", "STOPID")},
                  .values = {from("TRAVEL_MINUTES", "minutes", TextRule::NotNegative),
                             from("TRAVEL_MILES", "miles", TextRule::NotNegative)}}}};
}

RowSource permission(const std::string& field, const std::string& point) {
    return {.file = DatabaseFile::QDSC,
            .table = "QDSCU_PP",
            .key = {always("PRODUCT", "ROUTING"), from("QDSC1", "user"), always("PERM", point)},
            .values = {from("Authority", field)},
            .onlyWith = field};
}

FileKind users() {
    return {.name = "users",
            .fields = {needed("user", "userid username login id"), field("new", "rtg210"),
                       field("delete", "rtg230"), field("bell_times", "rtg250"),
                       field("group_change", "rtg260"), field("print", "rtg270")},
            .rows = {{.file = DatabaseFile::QDSC,
                      .table = "QDSCU",
                      .key = {from("QDSC1", "user")},
                      .values = {}},
                     permission("new", "RTG210"),
                     permission("delete", "RTG230"),
                     permission("bell_times", "RTG250"),
                     permission("group_change", "RTG260"),
                     permission("print", "RTG270")}};
}

/// The columns that tell the rows of a table apart which has no key of its own; of any other table
/// without one, all columns do.
std::vector<std::string> keyOf(const store::Table& table) {
    if (!table.key.empty()) {
        return table.key;
    }
    static const std::vector<std::pair<std::string_view, std::vector<std::string>>> Known = {
        {"STU_ADDR_TRIPTYPE", {"INT_STUID", "TRIPTYPE", "INT_STOPID"}},
        {"DEADHEAD_CROSS", {"ENDPOINT_INT_STOPID", "DEST_INT_STOPID"}},
        {"District", {}},
        {"SYSTEM", {}},
        {"StartEnd", {}}};
    for (const auto& [name, columns] : Known) {
        if (name == table.name) {
            return columns;
        }
    }
    std::vector<std::string> all;
    std::ranges::transform(table.columns, std::back_inserter(all), &store::Column::name);
    return all;
}

FileKind kindOf(data::DatabaseFile file, const store::Table& table) {
    FileKind kind{.name = table.name, .fields = {}, .rows = {}, .isTable = true};
    RowSource row{.file = file, .table = table.name, .key = {}, .values = {}};
    const auto key = keyOf(table);
    for (const store::Column& column : table.columns) {
        const bool isKey = std::ranges::find(key, column.name) != key.end();
        kind.fields.push_back({column.name, {}, isKey});
        (isKey ? row.key : row.values).push_back(from(column.name, column.name));
    }
    kind.rows.push_back(std::move(row));
    return kind;
}

const std::vector<FileKind>& tableKinds() {
    static const std::vector<FileKind> kinds = [] {
        std::vector<FileKind> all;
        for (const DatabaseFile file : data::AllDatabaseFiles) {
            for (const store::Table& table : data::tablesOf(file)) {
                all.push_back(kindOf(file, table));
            }
        }
        return all;
    }();
    return kinds;
}

}  // namespace

const FileField* FileKind::find(std::string_view field) const {
    const std::string wanted = plainName(field);
    const auto found =
        std::ranges::find(fields, wanted, [](const FileField& one) { return plainName(one.name); });
    return found == fields.end() ? nullptr : &*found;
}

const std::vector<FileKind>& practicalKinds() {
    static const std::vector<FileKind> kinds = {schools(),  stops(), employees(), vehicles(),
                                                routes(),   runs(),  runStops(),  students(),
                                                deadHead(), users()};
    return kinds;
}

const FileKind* kindNamed(std::string_view name) {
    for (const auto* kinds : {&practicalKinds(), &tableKinds()}) {
        const auto found = std::ranges::find_if(
            *kinds, [&](const FileKind& kind) { return base::equalsNoCase(kind.name, name); });
        if (found != kinds->end()) {
            return &*found;
        }
    }
    return nullptr;
}

std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        const bool isKept = (c >= '0' && c <= '9') ||
                            (base::lowered(c) >= 'a' && base::lowered(c) <= 'z') ||
                            static_cast<unsigned char>(c) >= 0x80;
        if (isKept) {
            plain += base::lowered(c);
        }
    }
    return plain;
}

}  // namespace tools::district
