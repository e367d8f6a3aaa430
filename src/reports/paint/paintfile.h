#pragma once

#include <string>

namespace reports {

/// Raises "Path/File access error" (75) with the system's reason for a file.
[[noreturn]] void raiseFor(const std::string& path, int reason);

/// The file that is being painted: gone when this goes, unless it is kept.
class PaintedFile {
public:
    explicit PaintedFile(std::string path) : path_(std::move(path)) {}
    ~PaintedFile();
    PaintedFile(const PaintedFile&) = delete;
    PaintedFile& operator=(const PaintedFile&) = delete;

    void keep() { isKept_ = true; }

private:
    std::string path_;
    bool isKept_ = false;
};

}  // namespace reports
