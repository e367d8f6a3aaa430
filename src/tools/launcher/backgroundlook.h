#pragma once

#include <future>
#include <string>

#include "tools/launcher/districtlook.h"

namespace tools::launcher {

/// A look at a district beside the window's own work: a file system that does not answer holds
/// nobody up. One that is still under way when this goes is left to itself.
class BackgroundLook {
public:
    explicit BackgroundLook(std::string folder);

    /// Whether it has come to its end; result() then answers at once.
    [[nodiscard]] bool isDone() const;
    [[nodiscard]] const DistrictLook& result() const { return look_.get(); }

private:
    std::shared_future<DistrictLook> look_;
};

}  // namespace tools::launcher
