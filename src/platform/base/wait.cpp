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

}  // namespace base
