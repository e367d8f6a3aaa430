#pragma once

#include <string>

namespace startup {

/// Starts the program: reads the configuration, opens the databases and shows the main form to the
/// user whom the command line names. Without one, or for a user whom the suite does not know,
/// starts the logon program instead and throws base::EndProgram; the same for a district of another
/// version, which is told first. Needs the application object.
void Main(const std::string& commandLine);

/// Puts the district on the user's list, with the user that works on it; after Main.
void rememberDistrict();

/// The whole command line behind the program's name: its arguments joined with single blanks.
[[nodiscard]] std::string commandLineOf(int argc, const char* const* argv);

}  // namespace startup
