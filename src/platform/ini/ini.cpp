#include "platform/ini/ini.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "platform/base/encoding.h"
#include "platform/base/text.h"
#include "platform/files/files.h"

namespace ini {

namespace {

using namespace std::string_view_literals;

constexpr auto LineEnds = "\r\n\0"sv;
constexpr auto Blanks = " \t\v\f"sv;

std::string_view stripped(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::string_view withoutQuotes(std::string_view text) {
    const bool isQuoted = text.size() >= 2 && text.front() == text.back() &&
                          (text.front() == '"' || text.front() == '\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

std::string_view takeLine(std::string_view& rest) {
    const auto end = rest.find_first_of(LineEnds);
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return stripped(line);
}

std::optional<std::string_view> sectionName(std::string_view line) {
    if (!line.starts_with('[') || line.find(']') == std::string_view::npos) {
        return std::nullopt;
    }
    return stripped(line.substr(1, line.find(']') - 1));
}

// The value where the line gives that key one.
std::optional<std::string_view> valueOfKey(std::string_view line, std::string_view key) {
    const auto equals = line.find('=');
    if (line.starts_with(';') || equals == std::string_view::npos ||
        !base::equalsNoCase(stripped(line.substr(0, equals)), key)) {
        return std::nullopt;
    }
    return withoutQuotes(stripped(line.substr(equals + 1)));
}

std::optional<std::string_view> search(std::string_view profile, std::string_view section,
                                       std::string_view key) {
    bool isInside = false;
    while (!profile.empty()) {
        const std::string_view line = takeLine(profile);
        if (const auto name = sectionName(line)) {
            if (isInside) {
                return std::nullopt;
            }
            isInside = base::equalsNoCase(*name, section);
        } else if (const auto value = isInside ? valueOfKey(line, key) : std::nullopt) {
            return value;
        }
    }
    return std::nullopt;
}

std::string contents(const std::string& file) {
    const std::string path = files::find(file);
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return {};
    }
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace

std::string valueIn(std::string_view profile, std::string_view section, std::string_view key,
                    std::string_view fallback) {
    const auto found = search(profile, stripped(section), stripped(key));
    return std::string(
        base::firstCharacters(found.value_or(base::trimRight(fallback)), MaxCharacters));
}

std::string readString(const std::string& section, const std::string& key,
                       const std::string& fallback, const std::string& file) {
    return valueIn(decoded(contents(file)), section, key, fallback);
}

std::string decoded(std::string bytes) {
    if (bytes.starts_with("\xFF\xFE")) {
        return base::converted(std::string_view(bytes).substr(2), "UTF-16LE", "UTF-8");
    }
    if (bytes.starts_with("\xFE\xFF")) {
        return base::converted(std::string_view(bytes).substr(2), "UTF-16BE", "UTF-8");
    }
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.erase(0, 3);
    }
    return bytes;
}

}  // namespace ini
