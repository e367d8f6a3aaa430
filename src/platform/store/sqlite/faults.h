#pragma once

#include <exception>
#include <string>
#include <vector>

#include "platform/store/sqlite/openfile.h"
#include "platform/store/sqlite/overwrite.h"

struct sqlite3;

namespace store::sqlite {

/// The open file as faults name it.
struct Source {
    sqlite3* handle = nullptr;
    std::string path;
    int lockTimeoutMs = 0;
    /// What a function called from SQL raised, until the statement's fault is reported.
    mutable std::exception_ptr raised;
    /// What must still be there when something is written.
    std::vector<OpenFile> files = {};
    /// Whose content nobody else must have written.
    mutable std::vector<OverwriteWatch> contents = {};
};

/// Whether the files are the ones that were opened, and no other content was put into them.
[[nodiscard]] bool areSameFiles(const Source& source);
/// Raises Replaced where they are not.
void requireSameFiles(const Source& source);

/// Whether this user can write the file and beside it.
[[nodiscard]] bool isWritable(const std::string& path);

/// Raises the StoreError that a result code of the engine stands for.
[[noreturn]] void raiseFault(const Source& source, int code);

/// Raises unless the code says that all went well.
void check(const Source& source, int code);

[[noreturn]] void raiseReadOnly(const Source& source);

// The texts of faults that are found before the engine reads the file.
[[noreturn]] void raiseMissing(const std::string& path);
[[noreturn]] void raiseNotADatabase(const std::string& path);
[[noreturn]] void raiseOnNetwork(const std::string& path, const std::string& network);
[[noreturn]] void raiseAccessFile(const std::string& path);
[[noreturn]] void raiseDamaged(const std::string& path, const std::string& detail);

}  // namespace store::sqlite
