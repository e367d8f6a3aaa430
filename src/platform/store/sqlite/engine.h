#pragma once

#include <memory>
#include <string>

#include "platform/store/base/database.h"

namespace store::sqlite {

// What store::open, openAlone, createFile and removeFile do for a file.
[[nodiscard]] std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs);
[[nodiscard]] std::unique_ptr<Database> openAlone(const std::string& path);
[[nodiscard]] std::unique_ptr<Database> createDatabase(const std::string& path);
void removeDatabase(const std::string& path);

/// "3.40.1".
[[nodiscard]] std::string version();

}  // namespace store::sqlite
