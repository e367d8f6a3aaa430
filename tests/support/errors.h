#pragma once

#include "platform/base/error.h"

namespace support {

/// The number of the run-time error that an action raises; 0 without one.
template <class Action>
int errorOf(Action&& action) {
    try {
        static_cast<void>(action());
    } catch (const base::RunTimeError& error) {
        return error.number();
    }
    return 0;
}

}  // namespace support
