#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runedit/map/maprun.h"

namespace runedit {

/// A line of "Runs.txt": what the map program is asked to do with one run. Fields are texts, as
/// they stand in the line.
struct RequestLine {
    std::string run = {};
    std::string screen = {};      ///< the word of the screen that asks
    std::string startOrEnd = {};  ///< the time that the others are counted from
    std::string startTime = {};
    std::string endTime = {};
    std::string bellTime = {};
    std::string vehType = {};
    std::string capacity = {};  ///< seats

    friend bool operator==(const RequestLine&, const RequestLine&) = default;
};

/// The request for a run with that many seats.
[[nodiscard]] RequestLine requestFor(const MapRun& run, std::string_view screenWord, double seats);

/// The fields trimmed and joined by "|", without a line end.
[[nodiscard]] std::string lineText(const RequestLine& request);
/// Reads a line; fields that are missing are empty, what follows the last one is dropped.
[[nodiscard]] RequestLine requestIn(std::string_view line);

/// The run that a line is about: the text before the first "|"; empty for a line without one.
[[nodiscard]] std::string_view runOfLine(std::string_view line);
/// The lines of a request list, with either kind of line end. A last line end begins no new line.
[[nodiscard]] std::vector<std::string_view> linesOf(std::string_view list);

}  // namespace runedit
