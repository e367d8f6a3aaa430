#include "data/lookups/mdlGetItems.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"
#include "startup/base/fieldvalues.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace data {

namespace {

using startup::gcnRouting;
using startup::gcnTrip;
using startup::textOf;

constexpr auto Module = "mdlGetItems";
constexpr auto NotFound = "NOT FOUND";

/// What a function asks, with its key behind it, and the field or two it answers with.
struct KeyLookup {
    std::string_view sql;
    std::string_view field;
    const startup::ConnectionGlobal& connection = gcnRouting;
    std::string_view secondField = {};
    std::string_view between = ", ";
};

/// A text key is trimmed and gets the quote that closes it; a number stands as it is.
std::string keyed(const std::string& key) {
    return fmt::format("{}'", ado::escaped(base::trim(key)));
}
std::string keyed(const base::Value& key) { return key.asText(); }

/// Opens what `sql` finds; whether there is a row.
bool ask(ado::Recordset& rows, const startup::ConnectionGlobal& connection, std::string sql) {
    lookupSql = std::move(sql);
    rows.Open(lookupSql, *connection);
    return !rows.Eof() && !rows.Bof();
}

std::string answer(std::string_view function, const KeyLookup& lookup, const auto&... key) {
    return startup::trapped(function, Module, [&]() -> std::string {
        ado::Recordset rows;
        if (!ask(rows, lookup.connection, (std::string(lookup.sql) + ... + keyed(key)))) {
            return NotFound;
        }
        const auto text = textOf(rows.Fields(lookup.field));
        return lookup.secondField.empty() ? text
                                          : fmt::format("{}{}{}", text, lookup.between,
                                                        textOf(rows.Fields(lookup.secondField)));
    });
}

}  // namespace

constexpr KeyLookup NeedRebuild{"Select SYSTEM.NEEDDEADHEADBUILD FROM System", "NEEDDEADHEADBUILD"};
std::string GetDeadHeadNeedRebuild() { return answer(__func__, NeedRebuild); }

constexpr KeyLookup DistrictName{"Select District.DistName FROM District", "DistName"};
std::string GetDistrictName() { return answer(__func__, DistrictName); }

constexpr KeyLookup EmployeeName{
    "Select Employee.EmpNum, Employee.LastName, Employee.FirstName FROM Employee WHERE "
    "Employee.Empnum = ",
    "LastName", gcnTrip, "FirstName"};
std::string GetEmployeeName(const base::Value& empNum) {
    return answer(__func__, EmployeeName, empNum);
}

constexpr KeyLookup ClosedStreets{"Select * From District", "GIS_CLOSEDSTREETFILENAME"};
std::string GetGGClosedStreet() { return answer(__func__, ClosedStreets); }

constexpr KeyLookup LoadTime{"Select * From District", "Load_Time"};
std::string GetLoadTime() { return answer(__func__, LoadTime); }

constexpr KeyLookup LocCodeText{
    "Select LOCCODE.LOCCODE, LOCCODE.Description FROM LOCCODE WHERE LOCCODE.LOCCODE='",
    "Description"};
std::string GetLocCode(const std::string& locCode) {
    return answer(__func__, LocCodeText, locCode);
}

constexpr KeyLookup RouteName{
    "Select ROUTE.ROUTEID, ROUTE.ROUTENAME FROM ROUTE WHERE ROUTE.ROUTEID='", "RouteName"};
std::string GetRoute(const std::string& routeId) { return answer(__func__, RouteName, routeId); }

constexpr KeyLookup RouteKey{
    "Select ROUTE.ROUTEID, ROUTE.INT_ROUTEID FROM ROUTE WHERE ROUTE.ROUTEID='", "Int_RouteID"};
std::string GetRouteIntNum(const std::string& routeId) {
    return answer(__func__, RouteKey, routeId);
}

constexpr KeyLookup RunText{"Select Run.RUN, Run.Description FROM Run WHERE RUN.RUN='",
                            "Description"};
std::string GetRun(const std::string& run) { return answer(__func__, RunText, run); }

constexpr KeyLookup FamilyText{
    "Select RunFamily.RUNFAMILY, RunFamily.Description FROM RunFamily WHERE RUNFAMILY.RUNFAMILY='",
    "Description"};
std::string GetRunFamily(const std::string& runFamily) {
    return answer(__func__, FamilyText, runFamily);
}

constexpr KeyLookup SchoolName{
    "Select School.SCHOOL, School.SCHOOLNAME FROM School WHERE School.SCHOOL='", "SchoolName"};
std::string GetSchool(const std::string& school) { return answer(__func__, SchoolName, school); }

constexpr KeyLookup SchoolTypeText{
    "Select SchoolType.SCHOOLTYPE, SchoolType.Description FROM SchoolType WHERE "
    "SchoolType.SCHOOLTYPE='",
    "Description"};
std::string GetSchoolType(const std::string& schoolType) {
    return answer(__func__, SchoolTypeText, schoolType);
}

constexpr KeyLookup NeedText{
    "Select SpecialNeeds.SPECIALNEEDS_CODE, SpecialNeeds.Description FROM SpecialNeeds WHERE "
    "SpecialNeeds.SPECIALNEEDS_CODE='",
    "Description"};
std::string GetSpecialNeeds(const std::string& code) { return answer(__func__, NeedText, code); }

constexpr KeyLookup StopId{"Select STOP.STOPID, STOP.Int_StopID FROM STOP WHERE STOP.INT_STOPID = ",
                           "StopID"};
std::string GetStopId(const base::Value& intStopId) { return answer(__func__, StopId, intStopId); }

constexpr KeyLookup StopIdAndName{
    "Select STOP.STOPID, STOP.Description, STOP.Int_StopID FROM STOP WHERE STOP.INT_STOPID = ",
    "StopID", gcnRouting, "Description", ": "};
std::string GetStopId_WithName(const base::Value& intStopId) {
    return answer(__func__, StopIdAndName, intStopId);
}

constexpr KeyLookup StopKey{"Select STOP.STOPID, STOP.Int_StopID FROM STOP WHERE STOP.STOPID='",
                            "Int_STOPID"};
std::string GetStopIntId(const std::string& stopId) { return answer(__func__, StopKey, stopId); }

constexpr KeyLookup StudentKey{
    "Select STUDENT.STUID, STUDENT.INT_STUID FROM STUDENT WHERE STUDENT.STUID='", "Int_StuID"};
std::string GetStuIntId(const std::string& stuId) { return answer(__func__, StudentKey, stuId); }

constexpr KeyLookup TripTypeText{
    "Select TripType.TRIPTYPE, TripType.Description FROM TripType WHERE TripType.TRIPTYPE='",
    "Description"};
std::string GetTripType(const std::string& tripType) {
    return answer(__func__, TripTypeText, tripType);
}

constexpr KeyLookup VehicleText{
    "Select Vehicle.Vehicle, Vehicle.VEHDESC FROM Vehicle WHERE Vehicle.Vehicle='", "VehDesc",
    gcnTrip};
std::string GetVehicle(const std::string& vehicle) {
    return answer(__func__, VehicleText, vehicle);
}

constexpr KeyLookup TypeOfVehicle{
    "Select Vehicle.Vehicle, Vehicle.VEHDESC, Vehicle.VEHTYPE FROM Vehicle WHERE Vehicle.Vehicle='",
    "VehType", gcnTrip};
std::string GetVehicle_VehType(const std::string& vehicle) {
    return answer(__func__, TypeOfVehicle, vehicle);
}

constexpr KeyLookup VehTypeText{
    "Select VehType.VEHTYPE, VehType.VTypDesc FROM VehType WHERE VehType.VEHTYPE='", "VTYPDESC"};
std::string GetVehType(const std::string& vehType) {
    return answer(__func__, VehTypeText, vehType);
}

constexpr std::string_view Capacities =
    "Select VehType.VEHTYPE, VehType.VTypDesc, VehType.High, VehType.Medium, VehType.Low FROM "
    "VehType WHERE VehType.VEHTYPE='";
std::string capacityQuestion(const std::string& vehType) {
    return std::string(Capacities) + keyed(vehType);
}

std::string questionOf(KeyFunction function, const std::string& key) {
    const std::pair<KeyFunction, const KeyLookup*> lookups[]{{GetLocCode, &LocCodeText},
                                                             {GetRunFamily, &FamilyText},
                                                             {GetSchool, &SchoolName},
                                                             {GetTripType, &TripTypeText},
                                                             {GetVehType, &VehTypeText}};
    const auto* lookup =
        std::ranges::find(lookups, function, [](const auto& one) { return one.first; });
    if (lookup == std::end(lookups)) {
        throw std::logic_error("a look-up whose question nobody needed before");
    }
    return std::string(lookup->second->sql) + keyed(key);
}

std::string GetVehType_Capacity(const std::string& vehType, const std::string& level) {
    const auto exact = base::trim(level);
    const KeyLookup lookup{Capacities, exact == "High"     ? "high"
                                       : exact == "Medium" ? "medium"
                                                           : "low"};
    return answer(__func__, lookup, vehType);
}

std::string GetVehType_SpecialNeeds(const std::string& vehType, const std::string& code) {
    const auto sql = fmt::format(
        "Select VehType_SpecialNeeds.* FROM VehType_SpecialNeeds WHERE "
        "VehType_SpecialNeeds.VEHTYPE='{} AND VehType_SpecialNeeds.SPECIALNEEDS_CODE='",
        keyed(vehType));
    return answer(__func__, {sql, {"Capacity"}, gcnTrip}, code);
}

void GetRouteInfo(const base::Value& intRouteId, std::string& routeId, std::string& routeName,
                  std::string& empNum, std::string& vehicle, std::string& aidEmpNum) {
    startup::trapped(__func__, Module, [&] {
        routeId = NotFound;
        ado::Recordset rows;
        if (ask(rows, gcnRouting,
                "Select ROUTE.* FROM ROUTE WHERE ROUTE.INT_ROUTEID=" + keyed(intRouteId))) {
            routeId = textOf(rows["RouteID"]);
            routeName = textOf(rows["RouteName"]);
            empNum = textOf(rows["EmpNum"]);
            vehicle = textOf(rows["Vehicle"]);
            aidEmpNum = textOf(rows["Aid_EmpNum"]);
        }
    });
}

}  // namespace data
