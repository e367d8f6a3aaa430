#pragma once

#include <string>
#include <string_view>

/// Letter case of every alphabet, character by character: a text keeps its number of characters.
/// Texts are UTF-8.
namespace base {

[[nodiscard]] bool isAscii(std::string_view text);

/// For comparing without case: "É" and "é" become the same.
[[nodiscard]] std::string folded(std::string_view text);
[[nodiscard]] std::string upperCase(std::string_view text);
[[nodiscard]] std::string lowerCase(std::string_view text);

/// The folded character at the beginning of a text that is not empty.
[[nodiscard]] char32_t foldedCharacter(std::string_view text);

/// Below, at or above 0 as `a` stands before `b`, is equal or stands behind it, without case.
[[nodiscard]] int compareFolded(std::string_view a, std::string_view b);

}  // namespace base
