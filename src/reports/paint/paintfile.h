#pragma once

#include <string>

#include "platform/base/notcopied.h"

namespace reports {

/// Raises "Path/File access error" (75) with the system's reason for a file.
[[noreturn]] void raiseFor(const std::string& path, int reason);

/// The file that is being painted: gone when this goes, unless it is kept.
class PaintedFile : private base::NotCopied {
public:
    explicit PaintedFile(std::string path) : path_(std::move(path)) {}
    ~PaintedFile();

    void keep() { isKept_ = true; }

private:
    std::string path_;
    bool isKept_ = false;
};

}  // namespace reports
