#include "platform/base/wait.h"

#include <thread>

namespace base {

bool Wait::goesOn() {
    constexpr std::chrono::milliseconds Glance{2};
    constexpr std::chrono::seconds Silent{1};
    std::this_thread::sleep_for(Glance);
    if (box_ == nullptr && std::chrono::steady_clock::now() - start_ >= Silent) {
        box_ = ports().waitBox(text_);
    }
    if (box_ != nullptr) {
        return box_->goesOn();
    }
    ports().repaint();
    return true;
}

constexpr std::chrono::milliseconds Held{40};

bool Work::goesOn() {
    constexpr std::chrono::milliseconds Silent{300};
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < Held) {
        return true;
    }
    if (box_ == nullptr && now - start_ >= Silent) {
        box_ = ports().waitBox(text_);
    }
    if (box_ == nullptr) {
        ports().repaint();
    }
    const bool isWanted = box_ == nullptr || box_->goesOn();
    last_ = std::chrono::steady_clock::now();
    return isWanted;
}

void Breath::takeNow() {
    if (std::chrono::steady_clock::now() - last_ >= Held) {
        ports().repaint();
        last_ = std::chrono::steady_clock::now();
    }
}

}  // namespace base
