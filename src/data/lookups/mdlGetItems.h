#pragma once

#include <string>

#include "platform/base/value.h"

/// Single questions by key. Each answers with a field as text (a blank one is a single blank), and
/// with "NOT FOUND" where no row has the key. Text keys are trimmed and, like everything put into
/// a statement, taken as they are.
namespace data {

/// The statement of the last question.
inline std::string lookupSql;

std::string GetDeadHeadNeedRebuild();  ///< "True" or "False"
std::string GetDistrictName();
std::string GetGGClosedStreet();
std::string GetLoadTime();  ///< minutes

std::string GetEmployeeName(const base::Value& empNum);  ///< "Smith, Ann"
std::string GetStopId(const base::Value& intStopId);
std::string GetStopId_WithName(const base::Value& intStopId);  ///< "S12: Oak and Main"

using KeyFunction = std::string (*)(const std::string& key);
/// What GetLocCode, GetRunFamily, GetSchool, GetTripType or GetVehType asks, for who asks several
/// questions at once (ado::ReadAhead).
[[nodiscard]] std::string questionOf(KeyFunction function, const std::string& key);
/// The same of GetVehType_Capacity.
[[nodiscard]] std::string capacityQuestion(const std::string& vehType);

std::string GetLocCode(const std::string& locCode);
std::string GetRoute(const std::string& routeId);        ///< the route's name
std::string GetRouteIntNum(const std::string& routeId);  ///< the internal route id
std::string GetRun(const std::string& run);
std::string GetRunFamily(const std::string& runFamily);
std::string GetSchool(const std::string& school);
std::string GetSchoolType(const std::string& schoolType);
std::string GetSpecialNeeds(const std::string& code);
std::string GetStopIntId(const std::string& stopId);  ///< the internal stop id
std::string GetStuIntId(const std::string& stuId);    ///< the internal student id
std::string GetTripType(const std::string& tripType);
std::string GetVehicle(const std::string& vehicle);
std::string GetVehicle_VehType(const std::string& vehicle);
std::string GetVehType(const std::string& vehType);

/// Seats at a capacity level: "High" and "Medium" exactly as written, anything else ("high", too)
/// reads the low capacity.
std::string GetVehType_Capacity(const std::string& vehType, const std::string& level);
/// How many passengers with a special need a vehicle type can carry.
std::string GetVehType_SpecialNeeds(const std::string& vehType, const std::string& code);

/// A route's texts by its internal id. Where there is none, `routeId` becomes "NOT FOUND" and the
/// others stay as they are.
void GetRouteInfo(const base::Value& intRouteId, std::string& routeId, std::string& routeName,
                  std::string& empNum, std::string& vehicle, std::string& aidEmpNum);

}  // namespace data
