#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace reports {

/// A text as characters, each with the byte where it begins. What is no UTF-8 is U+FFFD, a control
/// character is a blank.
struct Characters {
    std::u32string codes;
    std::vector<std::uint32_t> starts;  ///< one more than characters: the text's end
};

[[nodiscard]] Characters charactersOf(std::string_view text);

/// Whether a text is UTF-8 without control characters, so that each painter takes it.
[[nodiscard]] bool isClean(std::string_view text);
/// The text with every fault of that kind replaced.
[[nodiscard]] std::string cleaned(std::string_view text);

/// Whether any of its letters may be of a script written from right to left.
[[nodiscard]] bool mayRunRightToLeft(std::string_view text);

/// A stretch of characters in one direction.
struct Stretch {
    std::size_t first = 0;
    std::size_t count = 0;
    bool rightToLeft = false;
};

/// The stretches of a line of that direction, from left to right as they are seen.
[[nodiscard]] std::vector<Stretch> stretchesOf(const Characters& characters, bool rightToLeft);

}  // namespace reports
