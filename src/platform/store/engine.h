#pragma once

#include <string>

namespace store {

/// The engine that keeps what is in a folder: "SQLite 3.40.1", "PostgreSQL on a server".
[[nodiscard]] std::string engineName(const std::string& folder);

}  // namespace store
