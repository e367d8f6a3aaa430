#include "tools/district/deadhead/computedtravel.h"

#include <charconv>
#include <sstream>

#include <fmt/format.h>

#include "platform/files/files.h"

namespace tools::district {

namespace {

constexpr std::string_view Heading = "endpoint,destination,minutes,miles\n";

template <class Number>
bool takeNumber(std::string_view& line, Number& number) {
    const auto [stopped, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    line.remove_prefix(static_cast<std::size_t>(stopped - line.data()));
    if (line.starts_with(',')) {
        line.remove_prefix(1);
    }
    return error == std::errc();
}

}  // namespace

TravelRows readComputed(const std::string& path) {
    TravelRows rows;
    if (!files::exists(path)) {
        return rows;
    }
    std::istringstream lines(files::read(path));
    for (std::string line; std::getline(lines, line);) {
        std::string_view rest = line;
        std::pair<std::int64_t, std::int64_t> ends;
        StoredTravel travel;
        if (takeNumber(rest, ends.first) && takeNumber(rest, ends.second) &&
            takeNumber(rest, travel.minutes) && takeNumber(rest, travel.miles)) {
            rows[ends] = travel;
        }
    }
    return rows;
}

void writeComputed(const std::string& path, const TravelRows& rows) {
    std::string text(Heading);
    for (const auto& [ends, travel] : rows) {
        text += fmt::format("{},{},{},{}\n", ends.first, ends.second, travel.minutes, travel.miles);
    }
    files::write(path, text);
}

}  // namespace tools::district
