#pragma once

#include <memory>
#include <string>

#include "platform/store/base/database.h"

namespace store::postgres {

// What store::open, openAlone, createFile and removeFile do for a path on a server.
[[nodiscard]] std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs);
[[nodiscard]] std::unique_ptr<Database> openAlone(const std::string& path);
[[nodiscard]] std::unique_ptr<Database> createDatabase(const std::string& path);
void removeDatabase(const std::string& path);

}  // namespace store::postgres
