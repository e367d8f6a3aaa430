#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What the bytes of a cell in an Access file mean. Texts given back are UTF-8.
namespace tools::access {

/// A date-time of days since 1899-12-30, before which the fraction still counts forwards from
/// midnight: "1899-12-30 07:30:00". Empty where it is no date between the years 100 and 9999.
[[nodiscard]] std::string dateText(double days);

/// Money, kept as ten-thousandths: "-12.5".
[[nodiscard]] std::string moneyText(std::int64_t tenThousandths);

/// A text of the versions since 2000: UTF-16, behind the bytes FF FE with stretches of one byte a
/// character between two zeros.
[[nodiscard]] std::string wideText(std::string_view bytes);

/// A text of version 97 in a code page, by the system's name for it: "CP1252".
[[nodiscard]] std::string narrowText(std::string_view bytes, const char* codePage);

/// Sixteen bytes as "{00112233-4455-6677-8899-AABBCCDDEEFF}".
[[nodiscard]] std::string guidText(std::string_view bytes);

}  // namespace tools::access
