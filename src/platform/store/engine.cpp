#include "platform/store/engine.h"

#include <sqlite3.h>

namespace store {

std::string engineName() { return std::string("SQLite ") + sqlite3_libversion(); }

}  // namespace store
