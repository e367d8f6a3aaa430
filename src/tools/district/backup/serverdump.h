#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

/// Whether a file is a back-up in the server's own format.
[[nodiscard]] bool isServerDump(const std::filesystem::path& file);

/// What names a district on a server in the name of a file: its folder, otherwise its database.
[[nodiscard]] std::string nameOnServer(const Folders& folders);

/// Writes a district on a server as it is at one moment in the server's own format, which
/// pg_restore takes apart, to a new file, and reads that again to its end; returns the bytes that
/// its database takes. Raises base::RunTimeError, Interrupted.
std::int64_t dumpDatabases(const Folders& folders, const std::filesystem::path& target,
                           Progress& progress);

/// Puts a district back from such a file, all of it at one moment: killed, the server has what it
/// had before. What stands there is replaced only where `mayReplace` says so and nobody works
/// there; it is kept in the file `former`, and true is returned. Where the server goes while it
/// commits, that file stays. Raises base::RunTimeError, store::StoreError, Interrupted.
bool restoreDatabases(const std::filesystem::path& file, const Folders& folders,
                      const std::function<bool()>& mayReplace, const std::filesystem::path& former,
                      Progress& progress);

}  // namespace tools::district
