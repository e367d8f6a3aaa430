#pragma once

#include <string>

namespace reports {

/// Adds to a finished PDF, as an update at its end, what its writer does not say of it: that it is
/// tagged, its language, and that a window shows its title instead of its file's name. The file
/// stays as it is where it is not built as expected. Raises "Path/File access error" (75).
void completeCatalog(const std::string& path);

}  // namespace reports
