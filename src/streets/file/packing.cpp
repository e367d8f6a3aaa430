#include "streets/file/packing.h"

#include <bit>
#include <cmath>
#include <limits>

#include "platform/base/error.h"

namespace streets {

namespace {

constexpr unsigned BitsOfByte = 7;
constexpr std::uint64_t GoesOn = 0x80;
constexpr std::uint64_t LowBits = 0x7F;
/// Sixteenths of a foot: more than once around the earth.
constexpr std::int64_t Farthest = std::int64_t{1} << 32;

std::uint64_t folded(std::int64_t difference) {
    const auto bits = static_cast<std::uint64_t>(difference);
    return difference < 0 ? ~(bits << 1U) : bits << 1U;
}

std::int64_t unfolded(std::uint64_t value) {
    const auto half = static_cast<std::int64_t>(value >> 1U);
    return (value & 1U) != 0 ? -half - 1 : half;
}

bool isFar(std::int64_t parts) { return parts > Farthest || parts < -Farthest; }

std::int64_t partsOf(double feet) {
    const double parts = std::round(feet * PartsOfFoot);
    if (!(std::abs(parts) <= static_cast<double>(Farthest))) {
        throw base::RunTimeError(base::errors::Overflow, "A place of the map is nowhere on earth.");
    }
    return static_cast<std::int64_t>(parts);
}

}  // namespace

void refuseFile(const std::string& why) {
    throw base::RunTimeError(base::errors::PathFileAccess, why);
}

void Packer::number(std::uint64_t value) {
    for (; value > LowBits; value >>= BitsOfByte) {
        byte(static_cast<std::uint8_t>((value & LowBits) | GoesOn));
    }
    byte(static_cast<std::uint8_t>(value));
}

void Packer::near(std::uint32_t index, std::uint32_t other) {
    number(folded(std::int64_t{index} - std::int64_t{other}));
}

void Packer::text(std::string_view text) {
    number(text.size());
    bytes_ += text;
}

void Packer::real(double value) {
    auto bits = std::bit_cast<std::uint64_t>(value);
    for (std::size_t i = 0; i < sizeof bits; ++i, bits >>= 8U) {
        byte(static_cast<std::uint8_t>(bits & 0xFFU));
    }
}

GridPlace Packer::gridPlace(const geo::Feet& at) const {
    return {partsOf(at.x - centre_.x), partsOf(at.y - centre_.y)};
}

void Packer::place(const geo::Feet& at) {
    const GridPlace now = gridPlace(at);
    number(folded(now.x - last_.x));
    number(folded(now.y - last_.y));
    last_ = now;
}

std::uint64_t Unpacker::number() {
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < std::numeric_limits<std::uint64_t>::digits;
         shift += BitsOfByte) {
        const std::uint64_t next = byte();
        value |= (next & LowBits) << shift;
        if ((next & GoesOn) == 0) {
            return value;
        }
    }
    refuseFile("is damaged");
}

std::uint8_t Unpacker::byte() {
    if (rest_.empty()) {
        refuseFile("is cut off");
    }
    const auto first = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return first;
}

std::string Unpacker::text() {
    const std::size_t size = count(1);
    std::string text(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return text;
}

double Unpacker::real() {
    std::uint64_t bits = 0;
    for (unsigned i = 0; i < sizeof bits; ++i) {
        bits |= std::uint64_t{byte()} << (8U * i);
    }
    const auto value = std::bit_cast<double>(bits);
    if (!std::isfinite(value)) {
        refuseFile("is damaged");
    }
    return value;
}

geo::Feet Unpacker::place() {
    const std::int64_t right = unfolded(number());
    const std::int64_t up = unfolded(number());
    if (isFar(right / 2) || isFar(up / 2)) {
        refuseFile("is damaged");
    }
    last_ = {last_.x + right, last_.y + up};
    if (isFar(last_.x) || isFar(last_.y)) {
        refuseFile("is damaged");
    }
    return {centre_.x + static_cast<double>(last_.x) / PartsOfFoot,
            centre_.y + static_cast<double>(last_.y) / PartsOfFoot};
}

void Unpacker::setPlace(const geo::Feet& at) {
    last_ = {std::llround((at.x - centre_.x) * PartsOfFoot),
             std::llround((at.y - centre_.y) * PartsOfFoot)};
}

std::uint32_t Unpacker::count(std::size_t leastBytes) {
    const std::uint64_t many = number();
    if (many > rest_.size() / leastBytes || many > std::numeric_limits<std::uint32_t>::max()) {
        refuseFile("is cut off");
    }
    return static_cast<std::uint32_t>(many);
}

std::uint32_t Unpacker::index(std::size_t limit) {
    const std::uint64_t value = number();
    if (value >= limit) {
        refuseFile("is damaged");
    }
    return static_cast<std::uint32_t>(value);
}

std::uint32_t Unpacker::near(std::uint32_t other, std::size_t limit) {
    const std::int64_t difference = unfolded(number());
    if (isFar(difference)) {
        refuseFile("is damaged");
    }
    const std::int64_t value = other + difference;
    if (value < 0 || static_cast<std::uint64_t>(value) >= limit) {
        refuseFile("is damaged");
    }
    return static_cast<std::uint32_t>(value);
}

}  // namespace streets
