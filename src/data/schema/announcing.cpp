#include "data/schema/announcing.h"

#include <algorithm>
#include <vector>

#include "platform/store/open/announced.h"
#include "platform/store/open/open.h"

namespace data {

namespace {

std::vector<const store::Table*> tablesOfRuns(const store::Database& database, DatabaseFile file) {
    std::vector<const store::Table*> tables;
    if (file != DatabaseFile::Routing) {
        return tables;
    }
    for (const char* name : {"RUN", "STOP_TRIPTYPE"}) {
        if (const store::Table* table = database.catalog().find(name)) {
            tables.push_back(table);
        }
    }
    return tables;
}

}  // namespace

void announceRuns(store::Database& database, DatabaseFile file) {
    for (const store::Table* table : tablesOfRuns(database, file)) {
        store::announce(database, *table, "RUN");
    }
}

bool areRunsAnnounced(const store::Database& database, DatabaseFile file) {
    return std::ranges::all_of(tablesOfRuns(database, file), [&](const store::Table* table) {
        return store::isAnnounced(database, *table);
    });
}

}  // namespace data
