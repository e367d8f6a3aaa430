#include "streets/district/homes.h"

#include <charconv>
#include <cmath>
#include <filesystem>
#include <optional>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/files/files.h"

namespace streets {

namespace {

constexpr std::string_view HomesHeading = "student,x,y,address\n";

/// Up to the next comma, which goes with it.
std::string_view valueTaken(std::string_view& line) {
    const auto end = std::min(line.find(','), line.size());
    const auto value = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return base::trim(value);
}

std::optional<double> homeFeetIn(std::string_view text) {
    double feet = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, feet);
    const bool isNumber = error == std::errc() && stopped == end && std::isfinite(feet);
    return isNumber ? std::optional(feet) : std::nullopt;
}

/// What would part values or lines.
std::string withoutPartings(std::string text, std::string_view partings) {
    for (char& c : text) {
        c = partings.find(c) == std::string_view::npos ? c : ' ';
    }
    return text;
}

}  // namespace

std::string textOf(std::span<const Home> homes) {
    std::string text(HomesHeading);
    for (const Home& home : homes) {
        text += fmt::format("{},{:.1f},{:.1f},{}\n", withoutPartings(home.student, ",\r\n"),
                            home.at.x, home.at.y, withoutPartings(home.address, "\r\n"));
    }
    return text;
}

HomeList homesIn(std::string_view text) {
    HomeList list;
    for (int number = 1; !text.empty(); ++number) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (number == 1 || base::trim(line).empty()) {
            continue;
        }
        const auto student = valueTaken(line);
        const auto x = homeFeetIn(valueTaken(line));
        const auto y = homeFeetIn(valueTaken(line));
        if (x && y) {
            list.homes.push_back({std::string(student), {*x, *y}, std::string(base::trim(line))});
        } else {
            list.faults.push_back(fmt::format("Line {} of {} names no place.", number, HomesFile));
        }
    }
    return list;
}

std::vector<Home> readHomes(const std::string& folder) {
    const auto file = (std::filesystem::path(folder) / HomesFile).string();
    return files::exists(file) ? homesIn(files::read(file)).homes : std::vector<Home>();
}

}  // namespace streets
