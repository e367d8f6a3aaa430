#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/base/schema.h"

namespace data {

/// The six database files of a district.
enum class DatabaseFile { Routing, RouteWrk, Trip, VIREORpt, DeadCross, QDSC };

inline constexpr std::array AllDatabaseFiles = {DatabaseFile::Routing,   DatabaseFile::RouteWrk,
                                                DatabaseFile::Trip,      DatabaseFile::VIREORpt,
                                                DatabaseFile::DeadCross, DatabaseFile::QDSC};

/// The file's name as it is written: "routing.mdb".
[[nodiscard]] std::string_view fileName(DatabaseFile file);

/// The tables that a new file gets, with keys, defaults and indexes. Tables that another file holds
/// and a connection only links are not among them.
[[nodiscard]] const std::vector<store::Table>& tablesOf(DatabaseFile file);

/// The code texts that rules and queries name.
namespace stoptype {
inline constexpr std::string_view Regular = "REGULAR";
inline constexpr std::string_view Directional = "DIRECTIONAL";
inline constexpr std::string_view Garage = "GARAGE";
inline constexpr std::string_view School = "SCHOOL";
}  // namespace stoptype

/// Numbers of RUNLOG.ACTIVITYCODE.
namespace activity {
inline constexpr int Added = 1;
inline constexpr int Removed = 2;
inline constexpr int Moved = 3;
inline constexpr int Merged = 5;
inline constexpr int Imported = 6;
}  // namespace activity

}  // namespace data
