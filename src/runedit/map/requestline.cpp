#include "runedit/map/requestline.h"

#include <array>

#include "platform/base/text.h"
#include "platform/base/value.h"

namespace runedit {

namespace {

constexpr char Bar = '|';

constexpr std::array Fields{&RequestLine::run,        &RequestLine::screen,
                            &RequestLine::startOrEnd, &RequestLine::startTime,
                            &RequestLine::endTime,    &RequestLine::bellTime,
                            &RequestLine::vehType,    &RequestLine::capacity};

/// Takes what stands before the next `mark` off the text.
std::string_view takeUntil(std::string_view& text, char mark) {
    const auto end = text.find(mark);
    const auto taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return taken;
}

}  // namespace

RequestLine requestFor(const MapRun& run, std::string_view screenWord, double seats) {
    return {.run = run.run,
            .screen = std::string(screenWord),
            .startOrEnd = run.startOrEnd(),
            .startTime = mapTimeText(run.startTime),
            .endTime = mapTimeText(run.endTime),
            .bellTime = mapTimeText(run.bellTime),
            .vehType = run.vehType,
            .capacity = base::numberText(seats)};
}

std::string lineText(const RequestLine& request) {
    std::string line;
    for (const auto field : Fields) {
        line += field == Fields.front() ? "" : std::string(1, Bar);
        line += base::trim(request.*field);
    }
    return line;
}

RequestLine requestIn(std::string_view line) {
    RequestLine request;
    for (const auto field : Fields) {
        request.*field = base::trim(takeUntil(line, Bar));
    }
    return request;
}

std::string_view runOfLine(std::string_view line) {
    const auto bar = line.find(Bar);
    return bar == std::string_view::npos ? std::string_view{} : line.substr(0, bar);
}

std::vector<std::string_view> linesOf(std::string_view list) {
    std::vector<std::string_view> lines;
    while (!list.empty()) {
        auto line = takeUntil(list, '\n');
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        lines.push_back(line);
    }
    return lines;
}

}  // namespace runedit
