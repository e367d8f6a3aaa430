#include "tools/script/scriptedclock.h"

namespace script {

void ScriptedClock::set(base::Date moment) {
    const bool timeAlone = moment == moment.timeValue();
    moment_ = timeAlone ? real_.now().dateValue().plusSeconds(moment.seconds) : moment;
    setAt_ = std::chrono::steady_clock::now();
    isSet_ = true;
}

base::Date ScriptedClock::now() const {
    if (!isSet_) {
        return real_.now();
    }
    const auto passed = std::chrono::steady_clock::now() - setAt_;
    return moment_.plusSeconds(std::chrono::duration_cast<std::chrono::seconds>(passed).count());
}

}  // namespace script
