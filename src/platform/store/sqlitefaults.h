#pragma once

#include <exception>
#include <string>

struct sqlite3;

namespace store::sqlite {

/// The open file as faults name it.
struct Source {
    sqlite3* handle = nullptr;
    std::string path;
    int lockTimeoutMs = 0;
    /// What a function called from SQL raised, until the statement's fault is reported.
    mutable std::exception_ptr raised;
};

/// Raises the StoreError that a result code of the engine stands for.
[[noreturn]] void raiseFault(const Source& source, int code);

/// Raises unless the code says that all went well.
void check(const Source& source, int code);

// The texts of faults that are found before the engine reads the file.
[[noreturn]] void raiseMissing(const std::string& path);
[[noreturn]] void raiseNotADatabase(const std::string& path);
[[noreturn]] void raiseAccessFile(const std::string& path);
[[noreturn]] void raiseDamaged(const std::string& path, const std::string& detail);

}  // namespace store::sqlite
