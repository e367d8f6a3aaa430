#include "platform/store/engine.h"

#include <cstdio>

#include <sqlite3.h>

#include "platform/store/location.h"
#include "platform/store/postgresdatabase.h"
#include "platform/store/sqlitedatabase.h"

namespace store {

std::string engineName(const std::string& folder) {
    return isServer(folder) ? "PostgreSQL on a server"
                            : std::string("SQLite ") + sqlite3_libversion();
}

std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs) {
    if (isServer(path)) {
        return postgres::open(path, lockTimeoutMs);
    }
    return std::make_unique<sqlite::SqliteDatabase>(path, lockTimeoutMs);
}

std::unique_ptr<Database> openAlone(const std::string& path) {
    if (isServer(path)) {
        return postgres::openAlone(path);
    }
    constexpr int DoNotWait = 0;
    return std::make_unique<sqlite::SqliteDatabase>(path, DoNotWait, sqlite::Sharing::Alone);
}

std::unique_ptr<Database> createFile(const std::string& path) {
    return isServer(path) ? postgres::createDatabase(path) : sqlite::createDatabase(path);
}

void removeFile(const std::string& path) {
    if (isServer(path)) {
        return postgres::removeDatabase(path);
    }
    for (const std::string_view beside : {"", "-wal", "-shm"}) {
        std::remove((path + std::string(beside)).c_str());
    }
}

}  // namespace store
