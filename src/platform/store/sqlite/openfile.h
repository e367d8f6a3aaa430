#pragma once

#include <string>

#include <sys/types.h>

namespace store {

/// Which file stood under a name when it was looked at, whatever stands there later.
class OpenFile {
public:
    /// Looks now.
    explicit OpenFile(std::string path);

    [[nodiscard]] bool wasThere() const { return number_ != 0; }
    /// Whether the same file still stands under the name. One look at its folder entry.
    [[nodiscard]] bool isStillThere() const;

private:
    std::string path_;
    dev_t device_ = 0;
    ino_t number_ = 0;  ///< 0 where there was no file
};

}  // namespace store
