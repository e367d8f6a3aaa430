#pragma once

#include <memory>
#include <string>

#include "platform/store/base/database.h"
#include "platform/store/base/watch.h"

namespace store::postgres {

// What the functions of store/open of these names do for a path on a server.
[[nodiscard]] std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs);
[[nodiscard]] std::unique_ptr<Database> openAlone(const std::string& path);
[[nodiscard]] std::unique_ptr<Database> createDatabase(const std::string& path);
void removeDatabase(const std::string& path);
void announce(Database& database, const Table& table, const std::string& column);
[[nodiscard]] bool isAnnounced(const Database& database, const Table& table);
[[nodiscard]] std::unique_ptr<Watch> watch(const std::string& path, const std::string& who);

}  // namespace store::postgres
