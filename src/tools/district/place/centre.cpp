#include "tools/district/place/centre.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>
#include <vector>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/ini/ini.h"
#include "platform/store/base/location.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

constexpr const char* Section = "District";
constexpr const char* Key = "Centre";

/// Numbers apart by commas; none where anything else stands there.
std::vector<double> numbersOf(std::string_view text) {
    std::vector<double> numbers;
    std::istringstream parts{std::string(text)};
    for (std::string part; std::getline(parts, part, ',');) {
        const std::string_view trimmed = base::trim(part);
        const char* const end = trimmed.data() + trimmed.size();
        double number = 0;
        if (std::from_chars(trimmed.data(), end, number).ptr != end || trimmed.empty() ||
            !std::isfinite(number)) {
            return {};
        }
        numbers.push_back(number);
    }
    return numbers;
}

std::optional<geo::Degrees> onEarth(const std::vector<double>& numbers) {
    constexpr double Pole = 90;
    constexpr double HalfWay = 180;
    if (numbers.size() < 2 || std::abs(numbers[0]) >= Pole || std::abs(numbers[1]) > HalfWay) {
        return std::nullopt;
    }
    return geo::Degrees{numbers[0], numbers[1]};
}

bool isSection(std::string_view line, std::string_view section) {
    return base::equalsNoCase(base::trim(line), fmt::format("[{}]", section));
}

bool isKey(std::string_view line, std::string_view key) {
    return line.find('=') != std::string_view::npos &&
           base::equalsNoCase(base::trim(line.substr(0, line.find('='))), key);
}

}  // namespace

std::optional<geo::Centre> keptCentre(const Folders& folders) {
    const std::string text = ini::readString(Section, Key, "", folders.settings().string());
    if (text.empty()) {
        return std::nullopt;
    }
    const auto numbers = numbersOf(text);
    const auto degrees = onEarth(numbers);
    constexpr std::size_t All = 4;
    if (!degrees || numbers.size() != All) {
        refuse(fmt::format("{} names no centre that can be: {}={}.", folders.settings().string(),
                           Key, text));
    }
    return geo::Centre{*degrees, {numbers[2], numbers[3]}};
}

void keepSetting(const Folders& folders, std::string_view key, std::string_view value) {
    if (store::isServer(folders.root.string())) {
        refuse(
            "Where the district lies is kept in the settings of a desktop: name the folder that "
            "vireo-district connect made, not the place on the server.");
    }
    const std::string path = folders.settings().string();
    files::write(path, withSetting(ini::decoded(files::read(path)), Section, key, value));
}

void keepCentre(const Folders& folders, const geo::Centre& centre) {
    keepSetting(folders, Key,
                fmt::format("{},{},{},{}", centre.degrees.latitude, centre.degrees.longitude,
                            centre.feet.x, centre.feet.y));
}

geo::Centre centreFor(const Folders& folders, const std::optional<geo::Degrees>& given,
                      const std::function<geo::Feet()>& middle) {
    const auto kept = keptCentre(folders);
    if (!kept && !given) {
        refuse(
            "The district does not say where on the earth it lies. Name the middle of its stops "
            "once: --centre LATITUDE,LONGITUDE.");
    }
    if (!kept) {
        return {*given, middle()};
    }
    constexpr double Near = 1e-6;
    const auto isOther = [](double one, double other) { return std::abs(one - other) > Near; };
    if (given && (isOther(kept->degrees.latitude, given->latitude) ||
                  isOther(kept->degrees.longitude, given->longitude))) {
        refuse(fmt::format(
            "The district keeps the centre {},{} already. With another one all its stops would "
            "lie elsewhere; take it out of {} first if it is wrong.",
            kept->degrees.latitude, kept->degrees.longitude, folders.settings().string()));
    }
    return *kept;
}

std::optional<geo::Degrees> degreesFrom(std::string_view text) {
    const auto numbers = numbersOf(text);
    return numbers.size() == 2 ? onEarth(numbers) : std::nullopt;
}

std::string withSetting(std::string_view settings, std::string_view section, std::string_view key,
                        std::string_view value) {
    const std::string wanted = fmt::format("{}={}", key, value);
    std::vector<std::string> lines;
    std::istringstream text{std::string(settings)};
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    auto at =
        std::ranges::find_if(lines, [&](const auto& line) { return isSection(line, section); });
    if (at == lines.end()) {
        lines.insert(lines.end(), {"", fmt::format("[{}]", section), wanted});
    } else {
        const auto end = std::find_if(at + 1, lines.end(), [](const std::string& line) {
            return base::trim(line).starts_with('[');
        });
        const auto found =
            std::find_if(at + 1, end, [&](const auto& line) { return isKey(line, key); });
        found == end ? static_cast<void>(lines.insert(at + 1, wanted))
                     : static_cast<void>(*found = wanted);
    }
    std::string all;
    for (const std::string& line : lines) {
        all += line + '\n';
    }
    return all;
}

}  // namespace tools::district
