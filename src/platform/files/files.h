#pragma once

#include <string>

/// Files that are shared with programs to which "Runs.txt" and "runs.txt" are the same: a file is
/// written under the name given, and looked for without regard to the case of its name. Folders are
/// taken as they are written.
namespace files {

/// What stands between the parts of a path.
inline constexpr const char* Separator = "/";

/// The path of the file that is there: of that very name, otherwise the first in byte order whose
/// name differs in ASCII case only. The path as it is given where there is none.
[[nodiscard]] std::string find(const std::string& path);

/// Whether such a file is there. Folders do not count.
[[nodiscard]] bool exists(const std::string& path);

/// Copies a file, over an existing one too. Raises "File not found" (53), "Path/File access
/// error" (75).
void copy(const std::string& from, const std::string& to);

/// Deletes the file; true when it was there and is gone.
bool remove(const std::string& path);

/// Adds one line to the end of the file, which is made where there is none. Line ends inside the
/// line become blanks. True when it was written.
bool appendLine(const std::string& path, std::string line);

/// The folder of the running program, without a separator at its end.
[[nodiscard]] std::string programFolder();

}  // namespace files
