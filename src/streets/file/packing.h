#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/geo/projection.h"

// How numbers, texts and places stand in a street file.

namespace streets {

/// Ends a sentence about the file: "is damaged".
[[noreturn]] void refuseFile(const std::string& why);

inline constexpr double PartsOfFoot = 16;

/// A place in sixteenths of a foot from the centre.
struct GridPlace {
    std::int64_t x = 0;
    std::int64_t y = 0;

    friend bool operator==(const GridPlace&, const GridPlace&) = default;
};

class Packer {
public:
    explicit Packer(const geo::Feet& centre) : centre_(centre) {}

    /// Seven bits a byte, the lowest first.
    void number(std::uint64_t value);
    /// An index by its difference from another one.
    void near(std::uint32_t index, std::uint32_t other);
    void byte(std::uint8_t value) { bytes_ += static_cast<char>(value); }
    void text(std::string_view text);
    void real(double value);
    /// By its difference from the place before. Raises for a place beyond the earth.
    void place(const geo::Feet& at);
    /// Where the next difference counts from.
    void setPlace(const geo::Feet& at) { last_ = gridPlace(at); }

    [[nodiscard]] GridPlace gridPlace(const geo::Feet& at) const;
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    geo::Feet centre_;
    GridPlace last_;
    std::string bytes_;
};

/// Reads what a Packer wrote. Everything raises at the end of the bytes and for what cannot be.
class Unpacker {
public:
    explicit Unpacker(std::string_view bytes) : rest_(bytes) {}

    [[nodiscard]] std::uint64_t number();
    [[nodiscard]] std::uint8_t byte();
    [[nodiscard]] std::string text();
    [[nodiscard]] double real();
    [[nodiscard]] geo::Feet place();
    void setPlace(const geo::Feet& at);
    void setCentre(const geo::Feet& centre) { centre_ = centre; }

    /// How many items follow, each of so many bytes at least.
    [[nodiscard]] std::uint32_t count(std::size_t leastBytes);
    /// A number below a limit.
    [[nodiscard]] std::uint32_t index(std::size_t limit);
    [[nodiscard]] std::uint32_t near(std::uint32_t other, std::size_t limit);
    /// What is left.
    [[nodiscard]] std::string_view rest() const { return rest_; }

private:
    geo::Feet centre_;
    GridPlace last_;
    std::string_view rest_;
};

}  // namespace streets
