#include "runsearch/schedule/timescale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include <fmt/format.h>

namespace schedule {

namespace {

constexpr std::array Steps{5 * Minute, 10 * Minute, 15 * Minute, 30 * Minute, Hour, 2 * Hour};

Seconds ofDay(Seconds time) { return ((time % Day) + Day) % Day; }

const char* half(Seconds time) { return ofDay(time) < Day / 2 ? "AM" : "PM"; }

}  // namespace

TimeScale TimeScale::zoomed(double factor, double x) const {
    const double next =
        std::clamp(secondsPerPixel / std::max(factor, 1e-6), FinestScale, CoarsestScale);
    return {timeAt(x) - x * next, next};
}

TimeScale TimeScale::fitting(double from, double until, double pixels) {
    const double scale =
        std::clamp((until - from) / std::max(pixels, 1.0), FinestScale, CoarsestScale);
    return {(from + until) / 2 - scale * std::max(pixels, 1.0) / 2, scale};
}

Seconds stepOf(const TimeScale& scale, double apart) {
    const double seconds = apart * scale.secondsPerPixel;
    const auto step = std::ranges::find_if(Steps, [&](Seconds each) { return each >= seconds; });
    return step != Steps.end()
               ? *step
               : static_cast<Seconds>(std::ceil(seconds / Steps.back())) * Steps.back();
}

std::string clockText(Seconds time, HalfOfDay told) {
    const auto minutes = ofDay(time) / Minute;
    const auto hour = minutes / 60 % 12;
    auto text = fmt::format("{}:{:02}", hour == 0 ? 12 : hour, minutes % 60);
    return told == HalfOfDay::Told ? text + " " + half(time) : text;
}

std::string spanText(Seconds start, Seconds end) {
    const bool same = std::string_view(half(start)) == half(end);
    return clockText(start, same ? HalfOfDay::Left : HalfOfDay::Told) + " – " +
           clockText(end, HalfOfDay::Told);
}

int minutesLeft(Seconds seconds) { return std::max(seconds, 0) / Minute; }

int minutesOf(Seconds seconds) { return (std::abs(seconds) + Minute / 2) / Minute; }

}  // namespace schedule
