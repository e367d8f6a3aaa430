#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include <sqlite3.h>

namespace support {

/// What this process's connections to files do. A test program that includes this watches them all.
class StoreWatch {
public:
    /// How often one of them committed what it wrote.
    static inline int commits = 0;
    /// Called with each statement before it runs.
    static inline std::function<void(std::string_view)> before = {};

private:
    static int watch(sqlite3* store, char** /*error*/, const sqlite3_api_routines* /*routines*/) {
        const auto commit = [](void* /*context*/) { return ++commits, 0; };
        const auto run = [](unsigned /*event*/, void* /*context*/, void* statement, void* /*sql*/) {
            if (const auto told = std::exchange(before, {})) {  // and nothing of what it does
                told(sqlite3_sql(static_cast<sqlite3_stmt*>(statement)));
                before = told;
            }
            return 0;
        };
        sqlite3_commit_hook(store, commit, nullptr);
        return sqlite3_trace_v2(store, SQLITE_TRACE_STMT, run, nullptr);
    }
    static inline const int started = sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch));
};

}  // namespace support
