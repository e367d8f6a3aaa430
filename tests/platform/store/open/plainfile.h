#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

#include "platform/store/base/database.h"

/// Another program at the same file: the engine's plain interface, nothing of ours registered.
class PlainFile {
public:
    explicit PlainFile(const std::string& path) {
        if (sqlite3_open_v2(path.c_str(), &handle_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(handle_));
        }
    }
    ~PlainFile() { sqlite3_close(handle_); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    /// Runs statements; the first cell of the last row, "NULL" for Null, empty without a row.
    std::string run(const std::string& sql) const {
        std::string cell;
        char* message = nullptr;
        const auto keep = [](void* to, int, char** cells, char**) {
            *static_cast<std::string*>(to) = cells[0] == nullptr ? "NULL" : cells[0];
            return 0;
        };
        if (sqlite3_exec(handle_, sql.c_str(), keep, &cell, &message) != SQLITE_OK) {
            const std::unique_ptr<char, void (*)(void*)> owner(message, sqlite3_free);
            throw std::runtime_error(message);
        }
        return cell;
    }

private:
    sqlite3* handle_ = nullptr;
};

/// Changes a table behind the back of one of its indexes.
inline void breakIndex(const std::string& path, const std::string& index,
                       const std::string& change) {
    const std::string name = "'" + index + "'";
    const auto schema = [&](const std::string& sql) {
        return PlainFile(path).run("PRAGMA writable_schema = ON; " + sql);
    };
    const auto kept = schema(
        "SELECT quote(tbl_name) || ',' || rootpage || ',' || quote(sql) FROM "
        "sqlite_schema WHERE name = " +
        name);
    schema("DELETE FROM sqlite_schema WHERE name = " + name);
    PlainFile(path).run(change);
    schema("INSERT INTO sqlite_schema (type, name, tbl_name, rootpage, sql) VALUES ('index', " +
           name + "," + kept + ")");
}

/// The fault that an action raises; there must be one.
template <class Action>
store::StoreError refusalOf(Action&& action) {
    try {
        static_cast<void>(action());
    } catch (const store::StoreError& error) {
        return error;
    }
    throw std::logic_error("was taken");
}
