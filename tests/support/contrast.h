#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

namespace support {

/// How bright a colour looks, from 0 to 1, as the guidelines for readable pages reckon it.
inline double luminance(const QColor& colour) {
    const auto part = [](double share) {
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
           0.0722 * part(colour.blueF());
}

/// The ratio of two colours' luminance, from 1 to 21.
inline double contrastOf(const QColor& one, const QColor& other) {
    const auto [less, more] = std::minmax({luminance(one), luminance(other)});
    return (more + 0.05) / (less + 0.05);
}

}  // namespace support
