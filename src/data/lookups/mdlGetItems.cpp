#include "data/lookups/mdlGetItems.h"

#include <optional>
#include <vector>

#include <fmt/format.h>

#include "data/lookups/lookups.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "startup/base/fieldvalues.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace data {

namespace {

constexpr auto Module = "mdlGetItems";
constexpr auto NotFound = "NOT FOUND";

using startup::textOf;

using Answer = std::optional<std::vector<std::string>>;

/// The look-up's fields of the first row; nothing where there is no row.
Answer ask(const KeyLookup& lookup, std::string sql) {
    lookupSql = std::move(sql);
    auto& connection = lookup.source == Source::Trip ? *startup::gcnTrip : *startup::gcnRouting;
    ado::Recordset rows;
    rows.Open(lookupSql, connection);
    if (rows.Eof() || rows.Bof()) {
        return std::nullopt;
    }
    std::vector<std::string> fields;
    for (const auto name : lookup.fields) {
        fields.push_back(textOf(rows.Fields(name)));
    }
    return fields;
}

std::string joined(const Answer& answer, std::string_view separator) {
    return answer ? fmt::format("{}", fmt::join(*answer, separator)) : NotFound;
}

std::string answer(std::string_view function, const base::Value& key = "") {
    return startup::trapped(function, Module, [&] {
        const auto& lookup = keyLookup(function);
        return joined(ask(lookup, keySql(lookup, key.asText())), lookup.separator);
    });
}

}  // namespace

std::string GetDeadHeadNeedRebuild() { return answer("GetDeadHeadNeedRebuild"); }
std::string GetDistrictName() { return answer("GetDistrictName"); }
std::string GetGGClosedStreet() { return answer("GetGGClosedStreet"); }
std::string GetLoadTime() { return answer("GetLoadTime"); }

std::string GetEmployeeName(const base::Value& empNum) { return answer("GetEmployeeName", empNum); }
std::string GetStopId(const base::Value& intStopId) { return answer("GetStopId", intStopId); }
std::string GetStopId_WithName(const base::Value& intStopId) {
    return answer("GetStopId_WithName", intStopId);
}

std::string GetLocCode(const std::string& locCode) { return answer("GetLocCode", locCode); }
std::string GetRoute(const std::string& routeId) { return answer("GetRoute", routeId); }
std::string GetRouteIntNum(const std::string& routeId) { return answer("GetRouteIntNum", routeId); }
std::string GetRun(const std::string& run) { return answer("GetRun", run); }
std::string GetRunFamily(const std::string& runFamily) { return answer("GetRunFamily", runFamily); }
std::string GetSchool(const std::string& school) { return answer("GetSchool", school); }
std::string GetSchoolType(const std::string& schoolType) {
    return answer("GetSchoolType", schoolType);
}
std::string GetSpecialNeeds(const std::string& code) { return answer("GetSpecialNeeds", code); }
std::string GetStopIntId(const std::string& stopId) { return answer("GetStopIntId", stopId); }
std::string GetStuIntId(const std::string& stuId) { return answer("GetStuIntId", stuId); }
std::string GetTripType(const std::string& tripType) { return answer("GetTripType", tripType); }
std::string GetVehicle(const std::string& vehicle) { return answer("GetVehicle", vehicle); }
std::string GetVehicle_VehType(const std::string& vehicle) {
    return answer("GetVehicle_VehType", vehicle);
}
std::string GetVehType(const std::string& vehType) { return answer("GetVehType", vehType); }

std::string GetVehType_Capacity(const std::string& vehType, const std::string& level) {
    return startup::trapped("GetVehType_Capacity", Module, [&]() -> std::string {
        const auto& lookup = keyLookup("GetVehType_Capacity");
        const auto capacities = ask(lookup, keySql(lookup, vehType));
        if (!capacities) {
            return NotFound;
        }
        const auto exact = base::trim(level);
        return (*capacities)[exact == "High" ? 0 : exact == "Medium" ? 1 : 2];
    });
}

std::string GetVehType_SpecialNeeds(const std::string& vehType, const std::string& code) {
    return startup::trapped("GetVehType_SpecialNeeds", Module, [&] {
        const auto& lookup = keyLookup("GetVehType_SpecialNeeds");
        const auto sql = fmt::format("{} AND VehType_SpecialNeeds.SPECIALNEEDS_CODE='{}'",
                                     keySql(lookup, vehType), base::trim(code));
        return joined(ask(lookup, sql), lookup.separator);
    });
}

void GetRouteInfo(const base::Value& intRouteId, std::string& routeId, std::string& routeName,
                  std::string& empNum, std::string& vehicle, std::string& aidEmpNum) {
    startup::trapped("GetRouteInfo", Module, [&] {
        const auto& lookup = keyLookup("GetRouteInfo");
        routeId = NotFound;
        if (const auto fields = ask(lookup, keySql(lookup, intRouteId.asText()))) {
            routeId = (*fields)[0];
            routeName = (*fields)[1];
            empNum = (*fields)[2];
            vehicle = (*fields)[3];
            aidEmpNum = (*fields)[4];
        }
    });
}

}  // namespace data
