#pragma once

#include <memory>
#include <string>

#include "platform/ado/connection.h"

namespace startup {

/// Finds the configuration file and reads folders and the error switch from it into the session's
/// globals. A key that is missing or empty is told in a message box and left empty; an error switch
/// that is no Boolean raises "Type mismatch" (13).
void SetPaths();

/// The path of a database in a folder of the settings: in a folder of this machine found without
/// regard to the case of its name.
[[nodiscard]] std::string databasePath(const std::string& folder, const std::string& name);

/// Where what a district keeps beside its databases lies: with the data, or in the program folder
/// where the data are on a server. Ends as the settings have it.
[[nodiscard]] const std::string& folderOfFiles();

/// Where RouteWrk.mdb is: in the program folder, or with the data where these are on a server.
[[nodiscard]] const std::string& workPath();

/// Opens one database file, found without regard to the case of its name. Raises store::StoreError.
/// The optional texts are not used. An error is its caller's.
std::unique_ptr<ado::Connection> GetJetConnection(const std::string& path,
                                                  const std::string& user = {},
                                                  const std::string& password = {},
                                                  const std::string& provider = {});

/// Opens the six databases of the session. Raises store::StoreError at the first that does not
/// open.
void OpenRoutingDatabase();

/// Closes and releases the connections that are open, unloads every form and ends the program
/// (throws base::EndProgram). A unit of work still open keeps what it has written.
[[noreturn]] void ShutDown(int exitCode = 0);

/// Closes and releases the connections only; for the very end of the program. Where closing one
/// fails, the others are closed all the same, and the first error is raised.
void closeConnections();

}  // namespace startup
