#pragma once

#include <string>
#include <string_view>

namespace store {

/// Whether a path names something on a database server, "postgresql://planner@office/vireo/", and
/// not in a file system.
[[nodiscard]] bool isServer(std::string_view path);

/// The path of a file in a folder, which ends as the settings have it: "/data/" gives
/// "/data/routing.mdb", "postgresql://office/vireo/?sslmode=require" gives
/// "postgresql://office/vireo/routing.mdb?sslmode=require".
[[nodiscard]] std::string pathIn(std::string_view folder, std::string_view file);

/// The path of another file in the same folder as one.
[[nodiscard]] std::string pathBeside(std::string_view path, std::string_view file);

/// A path on a server in its parts.
struct ServerPath {
    std::string connection;  ///< what the server's library is told: "postgresql://office/vireo?…"
    std::string file;        ///< "routing.mdb"; empty where the path ends with a slash
};

/// Raises StoreError where the path names no district, or holds a password.
[[nodiscard]] ServerPath serverPathOf(std::string_view path);

}  // namespace store
