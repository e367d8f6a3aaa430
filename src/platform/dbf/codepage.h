#pragma once

#include <string>
#include <string_view>

namespace dbf {

/// UTF-8 in the code page 1252; "?" for what it does not have and for bytes that are no UTF-8.
[[nodiscard]] std::string toCodePage(std::string_view utf8);
/// The way back; "?" for the five bytes that the code page leaves free.
[[nodiscard]] std::string fromCodePage(std::string_view bytes);

}  // namespace dbf
