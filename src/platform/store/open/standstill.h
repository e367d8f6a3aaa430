#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/notcopied.h"
#include "platform/store/base/database.h"

namespace store {

/// While it lives nobody writes to any of several files: what is opened for reading meanwhile is
/// all of one moment. Meant for milliseconds; whoever wants to write waits.
class StandStill : private base::NotCopied {
public:
    /// Takes the write locks of all files or of none, so that nobody who holds one of them and
    /// wants another is kept waiting. Raises StoreError: Locked where they are never free together.
    StandStill(const std::vector<std::string>& paths, std::chrono::milliseconds patience);
    ~StandStill();

private:
    [[nodiscard]] bool lockAll(bool isLastTime);
    void unlock();

    std::vector<std::unique_ptr<Database>> files_;
};

/// How long files are waited for that other programs write to.
inline constexpr std::chrono::seconds StandStillPatience{60};

/// The files, in that order, to be read as they are at one moment, while others go on writing.
/// Raises StoreError.
[[nodiscard]] std::vector<std::unique_ptr<Database>> openAtOneMoment(
    const std::vector<std::string>& paths, std::chrono::milliseconds patience = StandStillPatience);

}  // namespace store
