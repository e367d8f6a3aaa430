#include "streets/network/network.h"

namespace streets {

Network::~Network() = default;

std::vector<std::optional<Leg>> Network::legs(const Halt& from, std::span<const Halt> to) const {
    std::vector<std::optional<Leg>> all;
    all.reserve(to.size());
    for (const Halt& goal : to) {
        all.push_back(leg(from, goal));
    }
    return all;
}

}  // namespace streets
