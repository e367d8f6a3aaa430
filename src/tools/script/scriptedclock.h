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
    void set(base::Date moment) {
        const bool timeAlone = moment == moment.timeValue();
        moment_ = timeAlone ? real_.now().dateValue().plusSeconds(moment.seconds) : moment;
        setAt_ = Steady::now();
        isSet_ = true;
    }
    [[nodiscard]] base::Date now() const override {
        using std::chrono::seconds;
        const auto passed = std::chrono::duration_cast<seconds>(Steady::now() - setAt_);
        return isSet_ ? moment_.plusSeconds(passed.count()) : real_.now();
    }

private:
    using Steady = std::chrono::steady_clock;

    const base::ClockPort& real_;
    base::Date moment_;
    Steady::time_point setAt_;
    bool isSet_ = false;
};

}  // namespace script
