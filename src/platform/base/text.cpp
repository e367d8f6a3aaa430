#include "platform/base/text.h"

#include <algorithm>
#include <charconv>

namespace base {

std::string_view trimLeft(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

std::string_view trimRight(std::string_view text) {
    const auto last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

std::string_view trim(std::string_view text) { return trimLeft(trimRight(text)); }

std::string_view codeOf(std::string_view text) {
    const auto trimmed = trimRight(text);
    return trimmed.empty() ? " " : trimmed;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) { return lowered(c); });
    return result;
}

std::string uppered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) { return uppered(c); });
    return result;
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

std::size_t characterSize(std::string_view text) {
    constexpr std::size_t Most = 4;
    const auto end = std::min(text.size(), Most);
    std::size_t size = 1;
    while (size < end && continuesCharacter(text[size])) {
        ++size;
    }
    return size;
}

std::size_t characterStart(std::string_view text, std::size_t offset) {
    while (offset > 0 && offset < text.size() && continuesCharacter(text[offset])) {
        --offset;
    }
    return offset;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count) {
        end += characterSize(text.substr(end));
    }
    return text.substr(0, end);
}

double leadingNumber(std::string_view text) {
    text = trimLeft(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isDigits = end != text.data() && text.find_first_of("0123456789") <
                                                    static_cast<std::size_t>(end - text.data());
    return error == std::errc{} && isDigits ? number : 0;
}

}  // namespace base
