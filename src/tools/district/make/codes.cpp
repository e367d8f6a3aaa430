#include "tools/district/make/codes.h"

#include <algorithm>

#include "platform/base/date.h"
#include "platform/base/error.h"
#include "platform/password/password.h"

namespace tools::district {

namespace {

using base::Date;
using data::DatabaseFile;

CodeRows tripTypes() {
    return {DatabaseFile::Routing,
            "TRIPTYPE",
            {"TRIPTYPE", "DESCRIPTION", "CATEGORY", "ACTIVE"},
            {{"AM", "Morning to school", "PICKUP", true},
             {"PM", "Afternoon to home", "DROPOFF", true},
             {"MID", "Noon, half-day classes", "DROPOFF", true},
             {"LATE", "Late bus after activities", "DROPOFF", true},
             {"SUM", "Summer session", "PICKUP", false}}};
}

CodeRows stopTypes() {
    return {DatabaseFile::Routing,
            "STOPTYPE",
            {"STOPTYPE", "DESCRIPTION", "ACTIVE"},
            {{"REGULAR", "Students board and leave here", true},
             {"DIRECTIONAL", "Turn point for the map", true},
             {"GARAGE", "Garage", true},
             {"SCHOOL", "School", true},
             {"TRANSFER", "Change of bus", true},
             {"DAYCARE", "Day care center", false}}};
}

CodeRows schoolTypes() {
    return {DatabaseFile::Routing,
            "SCHOOLTYPE",
            {"SCHOOLTYPE", "DESCRIPTION", "ACTIVE"},
            {{"HS", "High school", true},
             {"MS", "Middle school", true},
             {"ELEM", "Elementary school", true},
             {"PK", "Early learning", true},
             {"VOC", "Vocational school", false}}};
}

CodeRows runFamilies() {
    return {DatabaseFile::Routing,
            "RUNFAMILY",
            {"RUNFAMILY", "DESCRIPTION"},
            {{"HS", "High school runs"},
             {"MS", "Middle school runs"},
             {"ELEM", "Elementary school runs"},
             {"PK", "Early learning runs"},
             {"SUMMER", "Summer session runs"}}};
}

CodeRows locations() {
    return {DatabaseFile::Routing,
            "LOCCODE",
            {"LOCCODE", "DESCRIPTION", "ACTIVE"},
            {{"NE", "Norwell", true},
             {"NW", "Oakhaven", true},
             {"SE", "Eastmere", true},
             {"SW", "Westbrook", true},
             {"OUT", "Out of district", false}}};
}

CodeRows timeZones() {
    return {DatabaseFile::Routing,
            "TIMEZONES",
            {"TIMEZONE", "STARTTIME", "ENDTIME"},
            {{"Early morning", Date::timeOfDay(4, 0), Date::timeOfDay(7, 0)},
             {"Morning", Date::timeOfDay(7, 0), Date::timeOfDay(9, 30)},
             {"Midday", Date::timeOfDay(9, 30), Date::timeOfDay(13, 0)},
             {"Afternoon", Date::timeOfDay(13, 0), Date::timeOfDay(16, 30)},
             {"Evening", Date::timeOfDay(16, 30), Date::timeOfDay(20, 0)}}};
}

CodeRows specialNeeds() {
    return {DatabaseFile::Routing,
            "SPECIALNEEDS",
            {"SPECIALNEEDS_CODE", "DESCRIPTION"},
            {{"AIDE", "Rides with an aide"},
             {"SEAT", "Child safety seat"},
             {"HARN", "Safety harness"},
             {"WC", "Wheelchair"}}};
}

CodeRows activityCodes() {
    return {DatabaseFile::RouteWrk,
            "RUNLOG_ACTIVITY_CODES",
            {"ACTIVITYCODE", "ACTIVITYDESC"},
            {{data::activity::Added, "Stop added to run"},
             {data::activity::Removed, "Stop removed from run"},
             {data::activity::Moved, "Stop's sequence changed"},
             {data::activity::Merged, "Stop merged from another run"}}};
}

void addPermissions(std::vector<CodeRows>& all) {
    CodeRows points{DatabaseFile::QDSC, "QDSCPP", {"PRODUCT", "PERM", "DESCRIPTION"}, {}};
    CodeRows rights{DatabaseFile::QDSC, "QDSCU_PP", {"PRODUCT", "QDSC1", "PERM", "Authority"}, {}};
    for (const Permission& permission : Permissions) {
        const bool printing = permission.word == "print";
        points.rows.push_back({Product, permission.code, permission.description});
        rights.rows.push_back({Product, user::Planner, permission.code, true});
        rights.rows.push_back({Product, user::Clerk, permission.code, printing});
    }
    points.rows.push_back({"STUDENTS", "STU110", "Change a student"});
    rights.rows.push_back({"STUDENTS", user::Clerk, "STU110", true});
    all.push_back({DatabaseFile::QDSC,
                   "QDSCU",
                   {"QDSC1"},
                   {{user::Planner}, {user::Clerk}, {user::BuiltIn}}});
    all.push_back(std::move(points));
    all.push_back(std::move(rights));
}

void addAdministrator(const Administrator& administrator, std::vector<CodeRows>& all) {
    const auto& [user, password] = administrator;
    CodeRows points{DatabaseFile::QDSC, "QDSCPP", {"PRODUCT", "PERM", "DESCRIPTION"}, {}};
    CodeRows rights{DatabaseFile::QDSC, "QDSCU_PP", {"PRODUCT", "QDSC1", "PERM", "Authority"}, {}};
    for (const Permission& permission : Permissions) {
        points.rows.push_back({Product, permission.code, permission.description});
        rights.rows.push_back({Product, user, permission.code, true});
    }
    all.push_back(
        {DatabaseFile::QDSC, "QDSCU", {"QDSC1", "QDSC2"}, {{user, password::hashed(password)}}});
    all.push_back(std::move(points));
    all.push_back(std::move(rights));
}

/// The rows of a code table whose codes are among those wanted.
CodeRows only(CodeRows codes, std::initializer_list<std::string_view> wanted) {
    std::erase_if(codes.rows, [&](const auto& row) {
        return std::ranges::find(wanted, row.front().heldText()) == wanted.end();
    });
    return codes;
}

void addVehicleTypes(std::vector<CodeRows>& all) {
    CodeRows types{DatabaseFile::Trip,
                   "VEHTYPE",
                   {"VEHTYPE", "VTYPDESC", "HIGH", "MEDIUM", "LOW", "HIGHOVERFILL",
                    "MEDIUMOVERFILL", "LOWOVERFILL", "ACTIVE"},
                   {}};
    CodeRows needs{DatabaseFile::Trip,
                   "VEHTYPE_SPECIALNEEDS",
                   {"VEHTYPE", "SPECIALNEEDS_CODE", "Capacity"},
                   {}};
    for (const VehicleType& type : vehicleTypes()) {
        types.rows.push_back({type.code, type.description, type.high, type.medium, type.low,
                              type.overfill, type.overfill / 2, 0, type.active});
        for (const runedit::NeedCount& need : type.needs) {
            needs.rows.push_back({type.code, need.code, need.count});
        }
    }
    all.push_back(std::move(types));
    all.push_back(std::move(needs));
}

}  // namespace

int VehicleType::seats(std::string_view level) const {
    return level == "High" ? high : level == "Medium" ? medium : low;
}

const std::vector<VehicleType>& vehicleTypes() {
    static const std::vector<VehicleType> types = {
        {"BUS66", "Bus, 66 seats", 66, 55, 44, 6, true, {{"AIDE", 8}, {"HARN", 6}, {"SEAT", 6}}},
        {"BUS66L",
         "Bus, 66 seats, wheelchair lift",
         66,
         55,
         44,
         4,
         true,
         {{"AIDE", 8}, {"HARN", 6}, {"SEAT", 6}, {"WC", 4}}},
        {"BUS54", "Bus, 54 seats", 54, 45, 36, 4, true, {{"AIDE", 6}, {"HARN", 4}, {"SEAT", 4}}},
        {"MINI20",
         "Short bus, 20 seats, wheelchair lift",
         20,
         16,
         14,
         0,
         true,
         {{"AIDE", 10}, {"HARN", 10}, {"SEAT", 10}, {"WC", 6}}},
        {"VAN8", "Van, 8 seats", 8, 8, 6, 0, true, {{"SEAT", 4}}},
        {"BUS35", "Bus, 35 seats, sold", 35, 30, 24, 2, false, {}}};
    return types;
}

const VehicleType& vehicleType(std::string_view code) {
    const auto found = std::ranges::find(vehicleTypes(), code, &VehicleType::code);
    if (found == vehicleTypes().end()) {
        base::raise(base::errors::SubscriptOutOfRange);
    }
    return *found;
}

std::vector<CodeRows> codeRows() {
    std::vector<CodeRows> all = {tripTypes(), stopTypes(), schoolTypes(),  runFamilies(),
                                 locations(), timeZones(), specialNeeds(), activityCodes()};
    addPermissions(all);
    addVehicleTypes(all);
    return all;
}

std::vector<CodeRows> startingRows(const Administrator& administrator) {
    using namespace data::stoptype;
    std::vector<CodeRows> all = {only(tripTypes(), {triptype::Morning, triptype::Afternoon}),
                                 only(stopTypes(), {Regular, Directional, Garage, School}),
                                 timeZones(), activityCodes()};
    addAdministrator(administrator, all);
    return all;
}

}  // namespace tools::district
