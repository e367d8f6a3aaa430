#pragma once

#include <string>

namespace store {

/// The engine that keeps the files, and its version: "SQLite 3.40.1".
[[nodiscard]] std::string engineName();

}  // namespace store
