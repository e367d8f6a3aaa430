#pragma once

#include <chrono>

#include "platform/base/ports.h"

namespace script {

/// The program's clock as a script sets it: it goes on from the given moment. Until it is set it is
/// the clock that was in force.
class ScriptedClock : public base::ClockPort {
public:
    explicit ScriptedClock(const base::ClockPort& real) : real_(real) {}

    /// A time of day is one of today.
    void set(base::Date moment);
    [[nodiscard]] base::Date now() const override;

private:
    const base::ClockPort& real_;
    base::Date moment_;
    std::chrono::steady_clock::time_point setAt_;
    bool isSet_ = false;
};

}  // namespace script
