#pragma once

#include <memory>
#include <string>

#include "platform/base/notcopied.h"
#include "platform/base/ports.h"

namespace support {

/// A user who gives up as soon as a wait is told.
class Impatience : private base::NotCopied {
public:
    Impatience() {
        base::ports().waitBox = [this](const std::string&) {
            ++told;
            return std::make_unique<Box>();
        };
    }
    ~Impatience() { base::ports().waitBox = former_; }

    int told = 0;

private:
    struct Box : base::WaitBox {
        bool goesOn() override { return false; }
    };
    decltype(base::Ports::waitBox) former_ = base::ports().waitBox;
};

}  // namespace support
