#include "map/shown/comparison.h"

#include <cmath>
#include <string_view>

#include <fmt/format.h>

namespace map {

namespace {

constexpr double SecondsPerMinute = 60;

std::string moreOrLess(double figure, std::string_view unit, int decimals) {
    return fmt::format("{:.{}f} {}", std::abs(figure), decimals, unit);
}

}  // namespace

std::optional<double> Comparison::Stop::minutesLater() const {
    if (!before || !after) {
        return std::nullopt;
    }
    return static_cast<double>(after->seconds - before->seconds) / SecondsPerMinute;
}

Comparison compare(const MappedRun& run, const streets::Solution& solution) {
    Comparison comparison{.minutesMore = solution.totalMinutes - run.minutes,
                          .milesMore = solution.totalMiles - run.miles};
    for (std::size_t i = 0; i < run.stops.size(); ++i) {
        const auto& stop = comparison.stops.emplace_back(
            Comparison::Stop{.before = run.stops[i].time, .after = solution.stops[i].time});
        comparison.changed += std::abs(stop.minutesLater().value_or(0)) >= 0.5 ? 1 : 0;
    }
    return comparison;
}

std::string gainText(const Comparison& comparison) {
    const auto told = [](double more) { return more < 0 ? "shorter" : "longer"; };
    const bool sameMinutes = std::abs(comparison.minutesMore) < 0.05;
    const bool sameMiles = std::abs(comparison.milesMore) < 0.005;
    const auto minutes = moreOrLess(comparison.minutesMore, "minutes", 1);
    const auto miles = moreOrLess(comparison.milesMore, "miles", 2);
    if (sameMinutes && sameMiles) {
        return "As long as before";
    }
    if (sameMinutes || sameMiles) {
        return fmt::format("{} {}", sameMiles ? minutes : miles,
                           told(sameMiles ? comparison.minutesMore : comparison.milesMore));
    }
    if ((comparison.minutesMore < 0) == (comparison.milesMore < 0)) {
        return fmt::format("{}, {} {}", minutes, miles, told(comparison.minutesMore));
    }
    return fmt::format("{} {}, {} {}", minutes, told(comparison.minutesMore), miles,
                       told(comparison.milesMore));
}

std::string signedMinutes(double minutes) {
    const double shown = std::round(minutes * 10) / 10;
    return shown > 0   ? fmt::format("+{:.1f}", shown)
           : shown < 0 ? fmt::format("−{:.1f}", -shown)
                       : "0.0";
}

}  // namespace map
