#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tools::district {

/// Rows by their keys, some 50 bytes a row beside the key: a district's 200,000 students fit beside
/// its stops. Entries are found by number, because they move as others are added.
class KeyMap {
public:
    using Number = std::uint32_t;
    static constexpr Number None = UINT32_MAX;

    enum class State : std::uint8_t {
        Stored,   ///< stands in the district
        Several,  ///< more than one row of the district has this key
        New       ///< comes with the import; its row is a number made up for the time being
    };

    struct Entry {
        std::int64_t row = 0;
        std::uint64_t digest = 0;
        std::uint32_t line = 0;  ///< of the source, in this reading; 0 where it was not met yet
        std::uint32_t note = 0;
        State state = State::Stored;
    };

    [[nodiscard]] Number find(std::string_view key) const;
    /// Adds a key that is not there.
    Number add(std::string_view key, const Entry& entry);
    [[nodiscard]] Entry& operator[](Number number) { return entries_[number].entry; }
    [[nodiscard]] std::string_view keyOf(Number number) const { return entries_[number].key; }
    [[nodiscard]] Number size() const { return static_cast<Number>(entries_.size()); }

private:
    struct Keyed {
        std::string_view key;
        Entry entry;
    };

    [[nodiscard]] std::size_t slotOf(std::string_view key) const;
    [[nodiscard]] std::string_view kept(std::string_view key);
    void grow();

    std::vector<Keyed> entries_;
    std::vector<Number> slots_;
    std::vector<std::unique_ptr<char[]>> blocks_;
    std::size_t left_ = 0;  ///< bytes in the last block
};

}  // namespace tools::district
