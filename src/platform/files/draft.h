#pragma once

#include <string>
#include <string_view>

#include "platform/base/notcopied.h"

namespace files {

/// A file that is written beside its place and gets its name when it is whole: nobody reads half of
/// it, and what stood there stays until then. Gone with this unless it was put there. Whoever its
/// folder lets in may read and write it. Each raises "Path/File access error" (75) with the
/// system's reason.
class Draft : private base::NotCopied {
public:
    explicit Draft(const std::string& target);
    ~Draft();

    /// Where it is written, for what opens a file by its name. Not beside write().
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Adds to its end, in blocks.
    void write(std::string_view text);

    /// Gives it its name, in the place of the file that has it.
    void replace();
    /// The same where no file has it; false where one has.
    [[nodiscard]] bool add();

private:
    void flush();
    void close();

    std::string target_;
    std::string path_;
    std::string waiting_;
    int handle_;
};

}  // namespace files
