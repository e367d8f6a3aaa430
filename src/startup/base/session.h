#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "startup/base/cErrorHandler.h"
#include "startup/base/connectionglobal.h"

/// What holds for the program's whole run. Forms and façades use it; everything below them is given
/// its connection and its values.
namespace startup {

/// The user's identifier: the whole command line as it was given.
inline std::string gCommandLine;

// From the configuration file; folders end in a separator.
inline std::string gIniFile;
inline std::string gDataPath;
inline std::string gProgPath;
inline std::string gVIREOPath;
inline std::string gReportPath;
/// Whether procedures trap run-time errors; see trapped().
inline bool gErrorHandling = false;
/// Only "ArcView3.2" has an exchange with the map program.
inline std::string gMapSoftware;

inline std::unique_ptr<cErrorHandler> gErrHandler;

// The databases, open from start-up to shut-down.
inline ConnectionGlobal gcnRouting;    ///< routing.mdb; also sees the tables of trip.mdb
inline ConnectionGlobal gcnRouteWrk;   ///< RouteWrk.mdb: work tables
inline ConnectionGlobal gcnTrip;       ///< trip.mdb: employees, vehicles, vehicle types
inline ConnectionGlobal gcnVIREORpt;   ///< VIREORpt.mdb: report work tables
inline ConnectionGlobal gcnDeadCross;  ///< DEADCROSS.mdb
inline ConnectionGlobal gcnQDSC;       ///< ZBQDSC1.mdb: users and permissions

// Permissions; see mdlSecurity_Routines.h.
inline std::int16_t gPermCount = 0;
inline std::vector<std::string> gPermCode;
inline std::vector<bool> gPermAuthority;
inline bool gSecurityOn = false;

/// The query that filled the run list, and its conditions over the query that joins SCHOOL.
inline std::string RunSearchSQL;
inline std::string RunSearchSchoolSQL;
/// Set by a form that changed runs: the main form repeats its search when it becomes active again.
inline bool RefreshRunList = false;
/// The run that the forms share as the selected one; empty is none.
inline std::string SelectedRun;
/// The district's run refresh time.
inline int RunRefreshTime = 0;
/// Runs saved since the program was started.
inline int TotSavedRuns = 0;

/// Closes the databases and gives every global its first value again, as before start-up.
void resetSession();

}  // namespace startup
