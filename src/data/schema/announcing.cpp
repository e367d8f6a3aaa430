#include "data/schema/announcing.h"

#include "platform/store/open/open.h"

namespace data {

void announceRuns(store::Database& database, DatabaseFile file) {
    if (file != DatabaseFile::Routing) {
        return;
    }
    for (const char* name : {"RUN", "STOP_TRIPTYPE"}) {
        if (const store::Table* table = database.catalog().find(name)) {
            store::announce(database, *table, "RUN");
        }
    }
}

}  // namespace data
