#include "tools/district/import/plan/keymap.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace tools::district {

constexpr std::size_t BlockSize = 64UL * 1024;
constexpr std::size_t FirstSlots = 64;

KeyMap::Number KeyMap::find(std::string_view key) const {
    return slots_.empty() ? None : slots_[slotOf(key)];
}

KeyMap::Number KeyMap::add(std::string_view key, const Entry& entry) {
    if (2 * (entries_.size() + 1) > slots_.size()) {
        grow();
    }
    const auto number = static_cast<Number>(entries_.size());
    slots_[slotOf(key)] = number;
    entries_.push_back({kept(key), entry});
    return number;
}

/// Where the key stands or would stand.
std::size_t KeyMap::slotOf(std::string_view key) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = std::hash<std::string_view>{}(key)&mask;
    while (slots_[slot] != None && entries_[slots_[slot]].key != key) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

std::string_view KeyMap::kept(std::string_view key) {
    if (blocks_.empty() || key.size() > left_) {
        left_ = std::max(BlockSize, key.size());
        blocks_.push_back(std::make_unique<char[]>(left_));
    }
    const std::size_t size = std::max(BlockSize, left_);
    char* const place = blocks_.back().get() + (size - left_);
    std::memcpy(place, key.data(), key.size());
    left_ -= key.size();
    return {place, key.size()};
}

void KeyMap::grow() {
    slots_.assign(std::max(FirstSlots, 2 * slots_.size()), None);
    for (Number number = 0; number < entries_.size(); ++number) {
        slots_[slotOf(entries_[number].key)] = number;
    }
}

}  // namespace tools::district
