#pragma once

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <utility>

#include "tools/launcher/districtlook.h"

namespace tools::launcher {

/// A look at a district beside the window's own work: a file system that does not answer holds
/// nobody up. One that is still under way when this goes is left to itself.
class BackgroundLook {
public:
    explicit BackgroundLook(const std::string& folder) {
        std::packaged_task<DistrictLook()> task([folder] { return lookAtDistrict(folder); });
        look_ = task.get_future().share();
        std::thread(std::move(task)).detach();
    }

    /// Whether it has come to its end; result() then answers at once.
    [[nodiscard]] bool isDone() const {
        return look_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }
    [[nodiscard]] const DistrictLook& result() const { return look_.get(); }

private:
    std::shared_future<DistrictLook> look_;
};

}  // namespace tools::launcher
