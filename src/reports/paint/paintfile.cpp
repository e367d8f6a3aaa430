#include "reports/paint/paintfile.h"

#include <filesystem>
#include <system_error>

#include "platform/base/error.h"

namespace reports {

void raiseFor(const std::string& path, int reason) {
    const int known = reason == 0 ? EIO : reason;
    throw base::RunTimeError(
        base::errors::PathFileAccess,
        "Path/File access error: " + path + ": " + std::generic_category().message(known));
}

PaintedFile::~PaintedFile() {
    std::error_code ignored;
    if (!isKept_ && std::filesystem::is_regular_file(path_, ignored)) {
        std::filesystem::remove(path_, ignored);
    }
}

}  // namespace reports
