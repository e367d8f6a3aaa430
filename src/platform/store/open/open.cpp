#include "platform/store/open/open.h"

#include <utility>

#include "platform/store/base/location.h"
#include "platform/store/open/announced.h"
#include "platform/store/open/filepresence.h"
#include "platform/store/postgres/engine.h"
#include "platform/store/sqlite/engine.h"

namespace store {

std::string engineName(const std::string& folder) {
    return isServer(folder) ? "PostgreSQL on a server" : "SQLite " + sqlite::version();
}

std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs) {
    return isServer(path) ? postgres::open(path, lockTimeoutMs) : sqlite::open(path, lockTimeoutMs);
}

namespace {

class FileWatch final : public Watch {
public:
    FileWatch(const std::string& path, const Database& database, const std::string& who)
        : database_(database), mark_(database.changeMark()), presence_(path, who) {}

    Changes look() override {
        const auto mark = database_.changeMark();
        return {std::exchange(mark_, mark) != mark};
    }
    void open(const std::string& record) override { presence_.open(record); }
    std::vector<std::string> others() override { return presence_.others(); }

private:
    const Database& database_;
    std::int64_t mark_;
    FilePresence presence_;
};

}  // namespace

void announce(Database& database, const Table& table, const std::string& column) {
    if (database.catalog().engine() == Engine::Postgres) {
        postgres::announce(database, table, column);
    }
}

bool isAnnounced(const Database& database, const Table& table) {
    return database.catalog().engine() != Engine::Postgres ||
           postgres::isAnnounced(database, table);
}

std::unique_ptr<Watch> watch(const std::string& path, const Database& database,
                             const std::string& who) {
    return isServer(path) ? postgres::watch(path, who)
                          : std::make_unique<FileWatch>(path, database, who);
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
