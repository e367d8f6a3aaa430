#include "platform/store/sqlite/faults.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include "platform/base/value.h"
#include "platform/store/base/database.h"

namespace store::sqlite {

namespace {

/// What stands behind the engine's "… failed: ".
std::string_view afterColon(std::string_view message) {
    const auto colon = message.find(": ");
    return colon == std::string_view::npos ? message : message.substr(colon + 2);
}

std::string constraintText(const Source& source) {
    const std::string_view what = afterColon(sqlite3_errmsg(source.handle));
    switch (sqlite3_extended_errcode(source.handle)) {
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_ROWID:
            return fmt::format("A row with the same {} is in \"{}\" already.", what, source.path);
        case SQLITE_CONSTRAINT_NOTNULL:
            return fmt::format("{} in \"{}\" cannot be left without a value.", what, source.path);
        default:
            return fmt::format("The value cannot be stored in \"{}\": {}.", source.path, what);
    }
}

[[noreturn]] void raiseReplaced(const Source& source) {
    throw StoreError(
        Fault::Replaced,
        fmt::format(
            "The database file \"{}\" was replaced, overwritten, moved or deleted while it was "
            "open. Nothing was written. Where it was only moved, put it back and try again; where "
            "another file took its place, the program must be started again.",
            source.path));
}

[[noreturn]] void raiseFull(const Source& source) {
    throw StoreError(Fault::Full,
                     fmt::format("There is no room left on the disk for \"{}\". The change was not "
                                 "made.",
                                 source.path));
}

[[noreturn]] void raiseLocked(const Source& source) {
    throw StoreError(Fault::Locked,
                     fmt::format("The database file \"{}\" is locked by another program, which did "
                                 "not release it within {} seconds.",
                                 source.path, base::numberText(source.lockTimeoutMs / 1000.0)));
}

[[noreturn]] void raiseOther(const Source& source) {
    const int system = sqlite3_system_errno(source.handle);
    if (system == ENOSPC || system == EDQUOT) {
        raiseFull(source);
    }
    throw StoreError(Fault::Other,
                     fmt::format("The database file \"{}\" could not be read or written: {}.",
                                 source.path, sqlite3_errmsg(source.handle)));
}

}  // namespace

void raiseReadOnly(const Source& source) {
    throw StoreError(
        Fault::ReadOnly,
        fmt::format("The database file \"{}\" cannot be written: the file or its folder is "
                    "read-only for this user.",
                    source.path));
}

bool isWritable(const std::string& path) {
    const auto slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    return access(path.c_str(), W_OK) == 0 && access(folder.c_str(), W_OK) == 0;
}

bool areSameFiles(const Source& source) {
    return std::ranges::all_of(source.files, &OpenFile::isStillThere) &&
           std::ranges::none_of(source.contents, &OverwriteWatch::isOverwritten);
}

void requireSameFiles(const Source& source) {
    if (!areSameFiles(source)) {
        raiseReplaced(source);
    }
}

void raiseFault(const Source& source, int code) {
    if (source.raised != nullptr) {
        std::rethrow_exception(std::exchange(source.raised, nullptr));
    }
    switch (code & 0xff) {
        case SQLITE_BUSY:
        case SQLITE_PROTOCOL:
            raiseLocked(source);
        case SQLITE_NOTADB:
            raiseNotADatabase(source.path);
        case SQLITE_CORRUPT:
            raiseDamaged(source.path, sqlite3_errmsg(source.handle));
        case SQLITE_FULL:
            raiseFull(source);
        case SQLITE_READONLY:
            if (code == SQLITE_READONLY_DBMOVED) {
                raiseReplaced(source);
            }
            raiseReadOnly(source);
        case SQLITE_CANTOPEN:
            if (!isWritable(source.path)) {
                raiseReadOnly(source);
            }
            raiseOther(source);
        case SQLITE_CONSTRAINT:
        case SQLITE_MISMATCH:
            throw StoreError(Fault::Constraint, constraintText(source));
        case SQLITE_ERROR:
            throw StoreError(Fault::Statement, fmt::format("\"{}\": {}.", source.path,
                                                           sqlite3_errmsg(source.handle)));
        default:
            raiseOther(source);
    }
}

void check(const Source& source, int code) {
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE) {
        raiseFault(source, code);
    }
}

void raiseMissing(const std::string& path) {
    throw StoreError(Fault::Missing, fmt::format("The database file \"{}\" was not found.", path));
}

void raiseNotADatabase(const std::string& path) {
    throw StoreError(
        Fault::NotADatabase,
        fmt::format("The file \"{}\" is not a database that this program can read.", path));
}

void raiseOnNetwork(const std::string& path, const std::string& network) {
    throw StoreError(
        Fault::Network,
        fmt::format(
            "The database file \"{}\" lies on {}, where programs on two machines would lose "
            "each other's changes and damage the file. Move the district into a folder on "
            "this machine. For work from several machines a district belongs on a database "
            "server.",
            path, network));
}

void raiseAccessFile(const std::string& path) {
    throw StoreError(
        Fault::OtherKind,
        fmt::format("The file \"{}\" is an Access database. It must be imported before this "
                    "program can open it.",
                    path));
}

void raiseDamaged(const std::string& path, const std::string& detail) {
    throw StoreError(
        Fault::Damaged,
        fmt::format("The database file \"{}\" is damaged ({}). Restore it from a backup.", path,
                    detail));
}

}  // namespace store::sqlite
