#include "platform/ini/ini.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

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

void appendUtf8(std::string& text, std::uint32_t code) {
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
        append(code);
    } else if (code < 0x800) {
        append(0xC0 | code >> 6);
        append(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        append(0xE0 | code >> 12);
        append(0x80 | (code >> 6 & 0x3F));
        append(0x80 | (code & 0x3F));
    } else {
        append(0xF0 | code >> 18);
        append(0x80 | (code >> 12 & 0x3F));
        append(0x80 | (code >> 6 & 0x3F));
        append(0x80 | (code & 0x3F));
    }
}

std::string utf8FromUtf16(std::string_view bytes, bool bigEndian) {
    const auto unitAt = [&](std::size_t at) -> std::uint32_t {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return bigEndian ? first << 8U | second : second << 8U | first;
    };
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        std::uint32_t code = unitAt(at);
        if (code >= 0xD800 && code < 0xDC00 && at + 3 < bytes.size() &&
            (unitAt(at + 2) & 0xFC00U) == 0xDC00) {
            at += 2;
            code = 0x10000 + ((code & 0x3FFU) << 10) + (unitAt(at) & 0x3FFU);
        } else if ((code & 0xF800U) == 0xD800) {
            code = 0xFFFD;
        }
        appendUtf8(text, code);
    }
    return text;
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
        return utf8FromUtf16(std::string_view(bytes).substr(2), false);
    }
    if (bytes.starts_with("\xFE\xFF")) {
        return utf8FromUtf16(std::string_view(bytes).substr(2), true);
    }
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.erase(0, 3);
    }
    return bytes;
}

}  // namespace ini
