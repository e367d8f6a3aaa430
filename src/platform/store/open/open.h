#pragma once

#include <memory>
#include <string>

#include "platform/store/base/database.h"
#include "platform/store/base/watch.h"

namespace store {

/// Opens an existing file and reads it once. Never creates one. A path on a server (see isServer)
/// is opened there. Raises StoreError: Missing, NotADatabase, OtherKind, Damaged, Locked, Network,
/// Unreachable; ReadOnly where even reading needs to write beside it.
std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs = LockTimeoutMs);

/// The same for this program alone: nobody else opens the file until it is closed. Raises Locked
/// where somebody has it open; on a server after five seconds, in which a program that has just
/// ended may leave.
std::unique_ptr<Database> openAlone(const std::string& path);

/// Creates a new, empty file, readable by its owner only, or its place on a server, whose database
/// must be there; raises StoreError where one is there.
std::unique_ptr<Database> createFile(const std::string& path);

/// Removes a file that nobody has open with everything in it, or its place on a server. Raises
/// StoreError.
void removeFile(const std::string& path);

/// From now on whoever watches the database is told of the rows of this table that are written, by
/// their value in a column of codes. A file needs nothing for that.
void announce(Database& database, const Table& table, const std::string& column);

/// A watch on an open database, which outlives it. What is written over connections of this program
/// is not told on a server, and over the given one not in a file. `who` is what others call this
/// program.
std::unique_ptr<Watch> watch(const std::string& path, const Database& database,
                             const std::string& who);

/// The engine that keeps what is in a folder: "SQLite 3.40.1", "PostgreSQL on a server".
[[nodiscard]] std::string engineName(const std::string& folder);

}  // namespace store
