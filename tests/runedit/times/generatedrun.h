#pragma once

#include <random>
#include <string>
#include <vector>

#include "runedit/times/stoptimes.h"

namespace runedit {

/// A stored time that no calculation gives.
inline constexpr base::Date Stale{1};

inline base::Date at(int hour, int minute, int second = 0) {
    return base::Date::timeOfDay(hour, minute, second);
}

inline TimedStop stop(const std::string& id, float load, float drive) {
    return {.stopId = id, .loadMinutes = load, .driveMinutes = drive, .time = Stale};
}

/// Runs of 1 to 25 stops, all with ids of their own, with fractional minutes and a time somewhere
/// in the day, often close to midnight.
class RunGenerator {
public:
    explicit RunGenerator(unsigned seed) : random_(seed) {}

    std::vector<TimedStop> stops() {
        std::vector<TimedStop> result(1 + random_() % 25);
        for (std::size_t i = 0; i < result.size(); ++i) {
            result[i].stopId = "S" + std::to_string(i);
            result[i].loadMinutes = minutes();
            result[i].driveMinutes = minutes();
        }
        return result;
    }
    base::Date time() {
        const auto second = static_cast<std::int64_t>(random_() % 86400);
        return {random_() % 2 == 0 ? second : 86400 - second / 100};
    }
    /// Nothing, whole, eighth, decimal or any single minutes.
    float minutes() {
        const auto n = static_cast<float>(random_() % 240);
        switch (random_() % 5) {
            case 0:
                return 0;
            case 1:
                return n / 8;
            case 2:
                return n / 20;
            case 3:
                return n / 237;
            default:
                return static_cast<float>(random_() % 9);
        }
    }
    bool oneIn(unsigned n) { return random_() % n == 0; }

private:
    std::mt19937 random_;
};

}  // namespace runedit
