#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What this folder's own sources share.
namespace files {

[[noreturn]] void raiseAccess(const std::string& path, int error);

/// 0, or the system's error number.
[[nodiscard]] int writeAll(int handle, std::string_view contents);

/// Where the name begins in a path.
[[nodiscard]] std::size_t nameIn(const std::string& path);

/// A new file is for whom its folder lets in: its group in a folder that a group shares.
void openToTheFolders(int handle, const std::string& path);

}  // namespace files
