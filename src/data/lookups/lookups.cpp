#include "data/lookups/lookups.h"

#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace data {

namespace {

using table::CellKind;

constexpr std::string_view Employees =
    "SELECT EMPLOYEE.EMPNUM, EMPLOYEE.LASTNAME, EMPLOYEE.FIRSTNAME FROM EMPLOYEE ORDER BY "
    "EMPLOYEE.LASTNAME, EMPLOYEE.FIRSTNAME;";
constexpr std::string_view ActiveSchools =
    "SELECT SCHOOL.SCHOOL, SCHOOL.SCHOOLNAME From SCHOOL Where (SCHOOL.ACTIVE = True) ORDER BY "
    "SCHOOL.SCHOOLNAME";

std::vector<LookupColumn> employeeColumns() {
    return {{"Employee Number", 1500, {"EmpNum"}},
            {"Employee Name", 3000, {"LastName", "FirstName"}}};
}

LookupColumn capacity(std::string_view caption, std::string_view field) {
    return {caption, 1300, {field}, CellKind::Number};
}

std::vector<ListLookup> makeListLookups() {
    return {
        {"Load_cmbAid", "cmbAid", Source::Trip, Employees, employeeColumns(), ":"},
        {"Load_cmbEmployee", "cmbEmployee", Source::Trip, Employees, employeeColumns(), ":"},
        {"Load_cmbGarage",
         "cmbGarage",
         Source::Routing,
         "SELECT STOP.STOPID, STOP.DESCRIPTION From STOP Where (STOP.STOPTYPE = 'GARAGE') AND "
         "(STOP.ACTIVE = True) ORDER BY STOP.STOPID",
         {{"Garage", 1500, {"StopID"}}, {"Description", 3000, {"Description"}}}},
        {"Load_cmbLOCCODE",
         "cmbLOCCODE",
         Source::Routing,
         "SELECT LOCCODE.LOCCODE, LOCCODE.DESCRIPTION From LOCCODE Where (LOCCODE.ACTIVE = True) "
         "ORDER BY LOCCODE.LOCCODE",
         {{"Location Code", 1500, {"LocCode"}}, {"Description", 3000, {"Description"}}}},
        {"Load_cmbRoute",
         "cmbRoute",
         Source::Routing,
         "SELECT ROUTE.ROUTEID, ROUTE.ROUTENAME FROM ROUTE ORDER BY ROUTE.ROUTEID, "
         "ROUTE.ROUTENAME;",
         {{"Route #", 1500, {"RouteID"}}, {"Name", 3000, {"RouteName"}}}},
        {"Load_cmbRUN",
         "cmbRUN",
         Source::Routing,
         "SELECT RUN.RUN, RUN.DESCRIPTION FROM RUN Where (RUN.ACTIVE = True) ORDER BY RUN.RUN",
         {{"Run", 1500, {"Run"}}, {"Description", 3000, {"Description"}}}},
        {"Load_cmbRunFamily",
         "cmbRunFamily",
         Source::Routing,
         "SELECT RUNFAMILY.RUNFAMILY, RUNFAMILY.DESCRIPTION FROM RUNFAMILY ORDER BY RUNFAMILY;",
         {{"Run Family", 2000, {"RunFamily"}}, {"Description", 3000, {"Description"}}}},
        {"Load_cmbSchool",
         "cmbSchool",
         Source::Routing,
         ActiveSchools,
         {{"School", 1500, {"School"}}, {"School Name", 3000, {"SchoolName"}}}},
        {"Load_cmbSCHOOLTYPE",
         "cmbSchoolType",
         Source::Routing,
         "SELECT SCHOOLTYPE.SCHOOLTYPE, SCHOOLTYPE.DESCRIPTION From SCHOOLTYPE Where "
         "(SCHOOLTYPE.ACTIVE = True) order by SCHOOLTYPE.SCHOOLTYPE",
         {{"School Type", 1500, {"SchoolType"}}, {"Description", 3000, {"Description"}}}},
        {"Load_cmbSTOPTYPE",
         "cmbSTOPTYPE",
         Source::Routing,
         "SELECT STOPTYPE.STOPTYPE, STOPTYPE.DESCRIPTION FROM STOPTYPE Where (STOPTYPE.Active = "
         "True) ORDER BY STOPTYPE.STOPTYPE",
         {{"", 1500, {"Stoptype"}}, {"", 3000, {"Description"}}}},
        {"Load_cmbTRIPTYPE",
         "cmbTripType",
         Source::Routing,
         "SELECT TRIPTYPE.TRIPTYPE, TRIPTYPE.DESCRIPTION FROM TRIPTYPE Where (TRIPTYPE.ACTIVE = "
         "True) ORDER BY TRIPTYPE.TRIPTYPE",
         {{"Trip Type", 1500, {"TripType"}}, {"Description", 3000, {"Description"}}}},
        {"Load_cmbVehicle",
         "cmbVehicle",
         Source::Trip,
         "SELECT VEHICLE.VEHICLE, VEHICLE.VEHDESC FROM VEHICLE ORDER BY VEHICLE.VEHICLE;",
         {{"Vehicle #", 1500, {"Vehicle"}}, {"Description", 3000, {"VehDesc"}}},
         ": "},
        {"Load_cmbVehType",
         "cmbVEHTYPE",
         Source::Trip,
         "SELECT VEHTYPE.VEHTYPE, VEHTYPE.VTYPDESC, VEHTYPE.HIGH, VEHTYPE.MEDIUM, VEHTYPE.LOW, "
         "VEHTYPE.HIGHOVERFILL, VEHTYPE.MEDIUMOVERFILL, VEHTYPE.LOWOVERFILL FROM VEHTYPE Where "
         "(VehType.ACTIVE = True) order BY VEHTYPE;",
         {{"Vehicle Type", 1500, {"VehType"}},
          {"Description", 3000, {"VTYPDESC"}},
          capacity("High Capacity", "high"),
          capacity("Med Capacity", "medium"),
          capacity("Low Capacity", "low"),
          capacity("High OverFill", "HighOverFill"),
          capacity("Med OverFill", "MediumOverFill"),
          capacity("Low OverFill", "LowOverFill")}},
        {"Load_lstSchool",
         "lstSchool",
         Source::Routing,
         ActiveSchools,
         {{"School", 1500, {"School"}}, {"School Name", 3000, {"SchoolName"}}}},
        {"Load_lstSchool_With_SchoolType",
         "lstSchool",
         Source::Routing,
         "SELECT SCHOOL.SCHOOL, SCHOOL.SCHOOLNAME, SCHOOL.SCHOOLTYPE From SCHOOL Where "
         "(SCHOOL.ACTIVE = True) ORDER BY SCHOOL.SCHOOLNAME",
         {{"School", 1500, {"School"}},
          {"School Name", 3000, {"SchoolName"}},
          {"School Type", 3000, {"SchoolType"}}}},
        {"Load_lstSpecNeeds",
         "lstSpecNeeds",
         Source::Routing,
         "SELECT SPECIALNEEDS.SPECIALNEEDS_CODE, SPECIALNEEDS.DESCRIPTION From SPECIALNEEDS ORDER "
         "BY SPECIALNEEDS.SPECIALNEEDS_CODE",
         {{"Special Needs", 1500, {"SpecialNeeds_Code"}}, {"Description", 3000, {"Description"}}}},
        {"Load_lstTripType",
         "lstTripType",
         Source::Routing,
         "SELECT TRIPTYPE.TRIPTYPE, TRIPTYPE.DESCRIPTION From TRIPTYPE Where (TRIPTYPE.ACTIVE = "
         "True) ORDER BY TRIPTYPE.TRIPTYPE",
         {{"TripType", 2500, {"TripType"}}, {"Description", 3000, {"Description"}}}},
    };
}

std::vector<KeyLookup> makeKeyLookups() {
    constexpr auto Routing = Source::Routing;
    constexpr auto Trip = Source::Trip;
    constexpr auto None = KeyKind::None;
    constexpr auto Text = KeyKind::Text;
    constexpr auto Number = KeyKind::Number;
    return {
        {"GetDeadHeadNeedRebuild",
         Routing,
         None,
         "Select SYSTEM.NEEDDEADHEADBUILD FROM System",
         {"NEEDDEADHEADBUILD"}},
        {"GetDistrictName", Routing, None, "Select District.DistName FROM District", {"DistName"}},
        {"GetEmployeeName",
         Trip,
         Number,
         "Select Employee.EmpNum, Employee.LastName, Employee.FirstName FROM Employee WHERE "
         "Employee.Empnum = ",
         {"LastName", "FirstName"}},
        {"GetGGClosedStreet",
         Routing,
         None,
         "Select * From District",
         {"GIS_CLOSEDSTREETFILENAME"}},
        {"GetLoadTime", Routing, None, "Select * From District", {"Load_Time"}},
        {"GetLocCode",
         Routing,
         Text,
         "Select LOCCODE.LOCCODE, LOCCODE.Description FROM LOCCODE WHERE LOCCODE.LOCCODE='",
         {"Description"}},
        {"GetRoute",
         Routing,
         Text,
         "Select ROUTE.ROUTEID, ROUTE.ROUTENAME FROM ROUTE WHERE ROUTE.ROUTEID='",
         {"RouteName"}},
        {"GetRouteInfo",
         Routing,
         Number,
         "Select ROUTE.* FROM ROUTE WHERE ROUTE.INT_ROUTEID=",
         {"RouteID", "RouteName", "EmpNum", "Vehicle", "Aid_EmpNum"}},
        {"GetRouteIntNum",
         Routing,
         Text,
         "Select ROUTE.ROUTEID, ROUTE.INT_ROUTEID FROM ROUTE WHERE ROUTE.ROUTEID='",
         {"Int_RouteID"}},
        {"GetRun",
         Routing,
         Text,
         "Select Run.RUN, Run.Description FROM Run WHERE RUN.RUN='",
         {"Description"}},
        {"GetRunFamily",
         Routing,
         Text,
         "Select RunFamily.RUNFAMILY, RunFamily.Description FROM RunFamily WHERE "
         "RUNFAMILY.RUNFAMILY='",
         {"Description"}},
        {"GetSchool",
         Routing,
         Text,
         "Select School.SCHOOL, School.SCHOOLNAME FROM School WHERE School.SCHOOL='",
         {"SchoolName"}},
        {"GetSchoolType",
         Routing,
         Text,
         "Select SchoolType.SCHOOLTYPE, SchoolType.Description FROM SchoolType WHERE "
         "SchoolType.SCHOOLTYPE='",
         {"Description"}},
        {"GetSpecialNeeds",
         Routing,
         Text,
         "Select SpecialNeeds.SPECIALNEEDS_CODE, SpecialNeeds.Description FROM SpecialNeeds WHERE "
         "SpecialNeeds.SPECIALNEEDS_CODE='",
         {"Description"}},
        {"GetStopId",
         Routing,
         Number,
         "Select STOP.STOPID, STOP.Int_StopID FROM STOP WHERE STOP.INT_STOPID = ",
         {"StopID"}},
        {"GetStopId_WithName",
         Routing,
         Number,
         "Select STOP.STOPID, STOP.Description, STOP.Int_StopID FROM STOP WHERE STOP.INT_STOPID = ",
         {"StopID", "Description"},
         ": "},
        {"GetStopIntId",
         Routing,
         Text,
         "Select STOP.STOPID, STOP.Int_StopID FROM STOP WHERE STOP.STOPID='",
         {"Int_STOPID"}},
        {"GetStuIntId",
         Routing,
         Text,
         "Select STUDENT.STUID, STUDENT.INT_STUID FROM STUDENT WHERE STUDENT.STUID='",
         {"Int_StuID"}},
        {"GetTripType",
         Routing,
         Text,
         "Select TripType.TRIPTYPE, TripType.Description FROM TripType WHERE TripType.TRIPTYPE='",
         {"Description"}},
        {"GetVehicle",
         Trip,
         Text,
         "Select Vehicle.Vehicle, Vehicle.VEHDESC FROM Vehicle WHERE Vehicle.Vehicle='",
         {"VehDesc"}},
        {"GetVehicle_VehType",
         Trip,
         Text,
         "Select Vehicle.Vehicle, Vehicle.VEHDESC, Vehicle.VEHTYPE FROM Vehicle WHERE "
         "Vehicle.Vehicle='",
         {"VehType"}},
        {"GetVehType",
         Routing,
         Text,
         "Select VehType.VEHTYPE, VehType.VTypDesc FROM VehType WHERE VehType.VEHTYPE='",
         {"VTYPDESC"}},
        {"GetVehType_Capacity",
         Routing,
         Text,
         "Select VehType.VEHTYPE, VehType.VTypDesc, VehType.High, VehType.Medium, VehType.Low FROM "
         "VehType WHERE VehType.VEHTYPE='",
         {"high", "medium", "low"}},
        {"GetVehType_SpecialNeeds",
         Trip,
         Text,
         "Select VehType_SpecialNeeds.* FROM VehType_SpecialNeeds WHERE "
         "VehType_SpecialNeeds.VEHTYPE='",
         {"Capacity"}},
    };
}

template <class Lookup>
const Lookup& found(const std::vector<Lookup>& lookups, std::string_view name,
                    std::string_view Lookup::*member) {
    const auto it = std::find_if(lookups.begin(), lookups.end(),
                                 [&](const Lookup& lookup) { return lookup.*member == name; });
    if (it == lookups.end()) {
        throw std::logic_error(fmt::format("no look-up named {}", name));
    }
    return *it;
}

}  // namespace

const std::vector<ListLookup>& listLookups() {
    static const auto lookups = makeListLookups();
    return lookups;
}

const std::vector<KeyLookup>& keyLookups() {
    static const auto lookups = makeKeyLookups();
    return lookups;
}

const ListLookup& listLookup(std::string_view procedure) {
    return found(listLookups(), procedure, &ListLookup::procedure);
}

const KeyLookup& keyLookup(std::string_view function) {
    return found(keyLookups(), function, &KeyLookup::function);
}

std::string keySql(const KeyLookup& lookup, std::string_view key) {
    switch (lookup.key) {
        case KeyKind::Text:
            return fmt::format("{}{}'", lookup.sql, base::trim(key));
        case KeyKind::Number:
            return fmt::format("{}{}", lookup.sql, key);
        case KeyKind::None:
            break;
    }
    return std::string(lookup.sql);
}

}  // namespace data
