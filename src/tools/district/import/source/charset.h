#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tools::district {

/// How the bytes of a text file are read.
enum class Charset { Utf8, Windows1252 };

/// Where a text ceases to be UTF-8 (from 0), its size where it never does. What is cut off in the
/// middle of a character at the end counts as ceasing.
[[nodiscard]] std::size_t firstInvalid(std::string_view text);

/// The first byte that Windows-1252 has no character for; the text's size where there is none.
[[nodiscard]] std::size_t firstUndefined(std::string_view text);

/// Adds a text in Windows-1252 to one in UTF-8. Undefined bytes become U+FFFD.
void appendFromWindows1252(std::string_view text, std::string& utf8);

}  // namespace tools::district
