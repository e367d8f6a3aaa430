#pragma once

#include <memory>
#include <string>

#include "platform/store/base/database.h"

namespace store {

/// Opens an existing file and reads it once. Never creates one. A path on a server (see isServer)
/// is opened there. Raises StoreError: Missing, NotADatabase, OtherKind, Damaged, Locked, Network,
/// Unreachable; ReadOnly where even reading needs to write beside it.
std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs = LockTimeoutMs);

/// The same for this program alone: nobody else opens the file until it is closed. Raises Locked at
/// once where somebody has it open.
std::unique_ptr<Database> openAlone(const std::string& path);

/// Creates a new, empty file, readable by its owner only, or its place on a server, whose database
/// must be there; raises StoreError where one is there.
std::unique_ptr<Database> createFile(const std::string& path);

/// Removes a file that nobody has open with everything in it, or its place on a server. Raises
/// StoreError.
void removeFile(const std::string& path);

/// The engine that keeps what is in a folder: "SQLite 3.40.1", "PostgreSQL on a server".
[[nodiscard]] std::string engineName(const std::string& folder);

}  // namespace store
