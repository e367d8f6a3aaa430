#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "data/schema/schema.h"
#include "platform/ado/connection.h"

namespace startup {

/// Which of a district's files a connection has open.
using OpenFile = std::pair<data::DatabaseFile, const ado::Connection&>;

/// Why the program cannot work with these files, in plain words with what helps; empty where it
/// can. The district's folder is that of the settings in force.
[[nodiscard]] std::string versionComplaint(std::initializer_list<OpenFile> files);

/// Tells such a complaint in a message box and ends the program (throws base::EndProgram): nobody
/// meets a missing column in the middle of his work.
void requireVersion(std::initializer_list<OpenFile> files);

}  // namespace startup
