#include "tools/launcher/backgroundlook.h"

#include <chrono>
#include <thread>
#include <utility>

namespace tools::launcher {

BackgroundLook::BackgroundLook(std::string folder) {
    std::packaged_task<DistrictLook()> task(
        [folder = std::move(folder)] { return lookAtDistrict(folder); });
    look_ = task.get_future().share();
    std::thread(std::move(task)).detach();
}

bool BackgroundLook::isDone() const {
    return look_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

}  // namespace tools::launcher
