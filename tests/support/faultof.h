#pragma once

#include <exception>
#include <string>

namespace support {

/// What the fault says that an action raises; "" without one.
template <class Action>
std::string faultOf(Action&& action) {
    try {
        static_cast<void>(action());
    } catch (const std::exception& fault) {
        return fault.what();
    }
    return "";
}

}  // namespace support
