#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Private profiles: sections in square brackets, each followed by lines of a key, an equals sign
/// and a value.
namespace ini {

/// Characters that one value can have; the rest of a longer one is cut off.
inline constexpr std::size_t MaxCharacters = 255;

/// One value of a profile's text. Names are matched without regard to ASCII case; only the first
/// section of the name and its first key of the name count. The value comes trimmed, without one
/// pair of quotes around it. Where section or key are absent: the fallback without trailing blanks.
/// Any bytes are accepted; a line is over at CR, LF or NUL, a line that starts with ";" is a
/// comment.
[[nodiscard]] std::string valueIn(std::string_view profile, std::string_view section,
                                  std::string_view key, std::string_view fallback);

/// The same from a file, found without regard to the case of its name; UTF-8 with or without its
/// mark, or UTF-16 with its mark. A file that is not there or cannot be read has no sections.
[[nodiscard]] std::string readString(const std::string& section, const std::string& key,
                                     const std::string& fallback, const std::string& file);

/// The bytes of a file as text without a byte order mark; UTF-16 becomes UTF-8, "?" for what is
/// none.
[[nodiscard]] std::string decoded(std::string bytes);

}  // namespace ini
