#include "platform/jet/columnnames.h"

#include <bit>

namespace jet {

namespace {

/// Equal for names that differ in letter case only.
std::uint64_t hashOf(std::string_view name) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : name) {
        hash = (hash ^ (static_cast<unsigned char>(c) | 0x20U)) * 0x100000001b3U;
    }
    return hash;
}

}  // namespace

ColumnNames::ColumnNames(const std::vector<Source>& sources) {
    if (sources.size() < 2) {
        return;
    }
    std::size_t columns = 0;
    for (const Source& source : sources) {
        columns += source.table->columns.size();
    }
    slots_.resize(std::bit_ceil(columns * 2 + 1));
    for (const Source& source : sources) {
        for (const store::Column& column : source.table->columns) {
            const std::uint64_t hash = hashOf(column.name);
            Slot& slot = slots_[slotOf(hash)];
            slot.hash = hash;
            ++slot.count;
        }
    }
}

std::size_t ColumnNames::slotOf(std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = (hash ^ hash >> 32U) & mask;
    while (slots_[at].count > 0 && slots_[at].hash != hash) {
        at = (at + 1) & mask;
    }
    return at;
}

bool ColumnNames::unique(std::string_view name) const {
    return slots_.empty() || slots_[slotOf(hashOf(name))].count == 1;
}

}  // namespace jet
