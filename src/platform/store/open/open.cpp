#include "platform/store/open/open.h"

#include "platform/store/base/location.h"
#include "platform/store/postgres/engine.h"
#include "platform/store/sqlite/engine.h"

namespace store {

std::string engineName(const std::string& folder) {
    return isServer(folder) ? "PostgreSQL on a server" : "SQLite " + sqlite::version();
}

std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs) {
    return isServer(path) ? postgres::open(path, lockTimeoutMs) : sqlite::open(path, lockTimeoutMs);
}

std::unique_ptr<Database> openAlone(const std::string& path) {
    return isServer(path) ? postgres::openAlone(path) : sqlite::openAlone(path);
}

std::unique_ptr<Database> createFile(const std::string& path) {
    return isServer(path) ? postgres::createDatabase(path) : sqlite::createDatabase(path);
}

void removeFile(const std::string& path) {
    isServer(path) ? postgres::removeDatabase(path) : sqlite::removeDatabase(path);
}

}  // namespace store
