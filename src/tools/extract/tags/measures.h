#pragma once

#include <cstdint>
#include <string_view>

namespace tools::extract {

// What signs say, in the units of this country. Of several values the lowest counts; 0 stands for
// none, for words, and for what no sign can say.

/// "35 mph", "50" and "50 km/h" are limits.
[[nodiscard]] std::uint8_t milesPerHourIn(std::string_view text);
/// "4.2", "4.2 m", "13'6"" and "13 ft 6 in" are heights; rounded down.
[[nodiscard]] std::uint16_t inchesIn(std::string_view text);
/// "10", "10 t", "10 st", "20000 lbs" and "9000 kg" are weights; rounded down.
[[nodiscard]] std::uint16_t shortTonTenthsIn(std::string_view text);

}  // namespace tools::extract
