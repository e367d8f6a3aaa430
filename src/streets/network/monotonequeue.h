#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace streets {

/// Things that wait under keys, the smallest key taken first. A key that is smaller than the last
/// one taken counts as that one. Some three times as quick as a heap for ways through a city.
class MonotoneQueue {
public:
    [[nodiscard]] bool empty() const { return waiting_ == 0; }

    void clear() {
        for (auto& bucket : buckets_) {
            bucket.clear();
        }
        waiting_ = 0;
        last_ = 0;
    }

    void push(std::uint32_t key, std::uint32_t thing) {
        ++waiting_;
        put({std::max(key, last_), thing});
    }

    /// Takes the thing with the smallest key; not when empty.
    std::uint32_t pop() {
        if (buckets_.front().empty()) {
            sortNext();
        }
        --waiting_;
        const std::uint32_t thing = buckets_.front().back().thing;
        buckets_.front().pop_back();
        return thing;
    }

private:
    struct Entry {
        std::uint32_t key;
        std::uint32_t thing;
    };

    /// A bucket holds keys by the highest bit in which they differ from the last one taken.
    void put(const Entry& entry) {
        buckets_[static_cast<std::size_t>(std::bit_width(entry.key ^ last_))].push_back(entry);
    }

    void sortNext() {
        auto bucket = std::ranges::find_if(buckets_, [](const auto& one) { return !one.empty(); });
        last_ = std::ranges::min_element(*bucket, {}, &Entry::key)->key;
        for (const Entry& entry : *bucket) {
            put(entry);
        }
        bucket->clear();
    }

    std::array<std::vector<Entry>, 33> buckets_;
    std::size_t waiting_ = 0;
    std::uint32_t last_ = 0;
};

}  // namespace streets
