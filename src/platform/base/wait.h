#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/base/ports.h"

namespace base {

/// A wait for another program, on the thread of the forms. They repaint; after a second the user is
/// told what is waited for and may give it up.
///
///     for (base::Wait wait("Waiting for the map."); !isDone();) {
///         if (!wait.goesOn()) {
///             giveUp();
///         }
///     }
class Wait {
public:
    explicit Wait(std::string text) : text_(std::move(text)) {}

    /// Lets a little time pass; false once the user has given up.
    [[nodiscard]] bool goesOn();

private:
    std::string text_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::unique_ptr<WaitBox> box_;
};

}  // namespace base
