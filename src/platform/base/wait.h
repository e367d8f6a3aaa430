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
    using Clock = std::chrono::steady_clock;

    /// `since` is when it began, where that is a while ago.
    explicit Wait(std::string text, Clock::time_point since = Clock::now())
        : text_(std::move(text)), start_(since) {}

    /// Lets a little time pass; false once the user has given up.
    [[nodiscard]] bool goesOn();

private:
    std::string text_;
    Clock::time_point start_;
    std::unique_ptr<WaitBox> box_;
};

/// Long work on the thread of the forms that is nobody's operation: they repaint now and then, and
/// no key or click is taken meanwhile.
///
///     for (base::Breath breath; !rows.Eof(); rows.MoveNext()) {
///         breath.take();
///     }
class Breath {
public:
    /// Cheap to call often.
    void take() {
        constexpr unsigned Often = 32;
        if (++calls_ % Often == 0) {
            takeNow();
        }
    }
    /// Where what comes next is long by itself.
    void takeNow();

private:
    unsigned calls_ = 0;
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

/// Long work on the thread of the forms that is nobody's operation and may be given up: they
/// repaint, and soon the user is told what goes on and may stop it.
class Work {
public:
    explicit Work(std::string text) : text_(std::move(text)) {}

    /// Cheap to call often; false once the user has given up.
    [[nodiscard]] bool goesOn();

private:
    std::string text_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point last_ = start_;
    std::unique_ptr<WaitBox> box_;
};

}  // namespace base
